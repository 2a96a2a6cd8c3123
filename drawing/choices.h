#pragma once

#include "settings.h"
#include "writers/writeroptions.h"

/// The words of an option and what they stand for.
template <typename Choice> using Choices = QList<QPair<QString, Choice>>;

// One table each for reading the command line, for settings files and for completion.
const Choices<Method>& methodChoices();
const Choices<Mode>& modeChoices();
const Choices<Unit>& unitChoices();
const Choices<DxfVersion>& dxfVersionChoices();
const Choices<DxfCurves>& dxfCurvesChoices();
const Choices<DxfEdges>& dxfEdgesChoices();
const Choices<StatisticsForm>& statisticsChoices();

/// What a word of the list stands for; the first of them for any other word.
template <typename Choice> Choice choiceOf(const Choices<Choice>& choices, const QString& text) {
    for (const auto& [word, choice] : choices) {
        if (word == text)
            return choice;
    }
    return choices.first().second;
}

/// The word that stands for a choice of the list.
template <typename Choice> QString wordOf(const Choices<Choice>& choices, Choice sought) {
    for (const auto& [word, choice] : choices) {
        if (choice == sought)
            return word;
    }
    return {};
}

template <typename Choice> QStringList wordsOf(const Choices<Choice>& choices) {
    QStringList words;
    for (const auto& [word, choice] : choices)
        words.append(word);
    return words;
}
