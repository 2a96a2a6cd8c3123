#pragma once

#include "settings.h"
#include "writers/writeroptions.h"

/// The words of an option and what they stand for.
template <typename Choice> using Choices = QList<QPair<QString, Choice>>;

// One table each for reading the command line, for settings files and for completion.
const Choices<Mode>& modeChoices();
const Choices<Unit>& unitChoices();
const Choices<DxfVersion>& dxfVersionChoices();
const Choices<DxfCurves>& dxfCurvesChoices();
const Choices<StatisticsForm>& statisticsChoices();

template <typename Choice> QStringList wordsOf(const Choices<Choice>& choices) {
    QStringList words;
    for (const auto& [word, choice] : choices)
        words.append(word);
    return words;
}
