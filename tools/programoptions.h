#pragma once

#include <QList>
#include <QStringList>

/// What an option of the program itself is about.
enum class OptionGroup { Files, Settings, Batch, Information };

/// An option of the program that is no setting of a job: what goes where, and what is told.
struct ProgramOption {
    const char* flag = "";    ///< without dashes
    const char* letter = "";  ///< its short form; empty when it has none
    const char* value = "";   ///< the name of its value; empty when it takes none
    const char* meaning = ""; ///< a sentence
    OptionGroup group = OptionGroup::Files;
    QStringList words = {}; ///< the values it takes, where they are few
    bool isAction = false;  ///< asks for something else than tracing
    /// Concerns a whole batch: the process that traces one of its images does not get it.
    bool isForBatch = false;
    bool isHidden = false; ///< not in the help
};

const QList<ProgramOption>& programOptions();
