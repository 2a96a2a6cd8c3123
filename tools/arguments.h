#pragma once

#include "drawing.h"
#include "engineoptions.h"
#include "errors.h"
#include "writers/writeroptions.h"

#include <QRect>
#include <QStringList>

#include <optional>

class QCommandLineParser;

/// How an image is handed to the tracer, and with which options.
enum class Mode {
    Color, ///< as it is, in colour
    Bw,    ///< black and white by lightness, palette images too
    Raw    ///< the engine's own defaults and the image as read
};

/// What decides about the result of one image.
struct TraceSettings {
    Mode mode = Mode::Color;
    EngineValues values; ///< over the engine's own defaults
    QList<QColor> palette;
};

/// The size of the drawing, as far as it was asked for.
struct SizeRequest {
    std::optional<double> dotsPerInch;
    bool dotsFromFile = false;
    std::optional<double> widthMillimetres;
    std::optional<double> heightMillimetres;
    std::optional<Unit> unit;
};

/// How an image file is read.
struct InputRequest {
    int page = 1;
    QRect crop; ///< in pixels; null for all of the image
    std::optional<QColor> background;
    qint64 largestPixels = 400'000'000;
};

enum class StatisticsForm { None, Table, Json };

/// The command line, checked.
struct Arguments {
    QStringList inputs; ///< files, folders, or "-"
    QString output;     ///< a file, "-" for stdout, empty for a file beside each image
    QString outputFolder;
    QString nameTemplate = "{name}";
    QString format;
    TraceSettings settings;
    SizeRequest size;
    InputRequest input;
    WriterOptions writer;
    int jobs = 1;
    bool continueOnError = false;
    bool quiet = false;
    StatisticsForm statistics = StatisticsForm::None;
    QStringList worker; ///< the options to hand to a worker process, for one image
    QString pluginFile; ///< another module to load; empty for the program's own
    QString action;     ///< instead of tracing: the option that asks for it, or empty
    QString saveSettings;
};

/// Declares the program's options; the help, the manual page and the completion come from here.
void declareOptions(QCommandLineParser& parser);

/// Reads the program's arguments (the first is its name). Throws UsageError.
Arguments parseArguments(const QStringList& words);
