#pragma once

#include "pagechoice.h"
#include <drawing/errors.h>
#include <drawing/jobsettings.h>
#include <drawing/writers/writeroptions.h>

#include <QStringList>

/// The command line, checked.
struct Arguments {
    QStringList inputs; ///< files, folders, or "-"
    QString output;     ///< a file, "-" for stdout, empty for a file beside each image
    QString outputFolder;
    QString nameTemplate = "{name}";
    JobSettings job; ///< all settings; what the stages read of them follows
    QString format;
    TraceSettings settings;
    SizeRequest size;
    InputRequest input; ///< but for the page
    PageChoice pages;
    WriterOptions writer;
    int jobs = 1;
    bool continueOnError = false;
    bool recursive = false;
    bool overwrite = false; ///< results may replace files that have a picture's ending
    bool isWorker = false;  ///< whether this process takes images of a batch from another
    bool quiet = false;
    StatisticsForm statistics = StatisticsForm::None;
    QStringList worker; ///< the options to hand to worker processes
    QString pluginFile; ///< another module to load; empty for the program's own
    QString action;     ///< instead of tracing: the option that asks for it, or empty
    QString saveSettings;
    QStringList remarks; ///< lines for the user about settings in a file that are not read
};

/// Reads the program's arguments (the first is its name). Throws UsageError.
Arguments parseArguments(const QStringList& words);
