#include "arguments.h"

#include <drawing/choices.h>
#include <drawing/settingsfile.h>
#include <drawing/writers/formats.h>

#include <QCommandLineParser>
#include <QFileInfo>
#include <QRegularExpression>

#include <cmath>

namespace {

/// Options that ask for something else than tracing.
const QStringList& actions() {
    static const QStringList names{"list-options", "list-formats",   "list-presets",
                                   "plugin-info",  "print-settings", "generate"};
    return names;
}

/// Options that concern a whole batch and not one of its images.
const QStringList& batchOptions() {
    static const QStringList names{"jobs",   "output",        "output-dir",        "name", "stats",
                                   "format", "save-settings", "continue-on-error", "quiet"};
    return names;
}

template <typename Choice>
Choice choose(const QString& option, const QString& word, const Choices<Choice>& choices) {
    for (const auto& [name, choice] : choices) {
        if (name == word)
            return choice;
    }
    throw UsageError(
        QString("%1 takes %2, not \"%3\"").arg(option, wordsOf(choices).join(", "), word));
}

double parseNumber(const QCommandLineParser& parser, const QString& name, double low, double high) {
    bool isNumber = false;
    const double value = parser.value(name).toDouble(&isNumber);
    if (!isNumber || !(value >= low && value <= high))
        throw UsageError(QString("--%1 takes a number from %2 to %3, not \"%4\"")
                             .arg(name, QString::number(low, 'g', 10),
                                  QString::number(high, 'g', 10), parser.value(name)));
    return value;
}

int parseWhole(const QCommandLineParser& parser, const QString& name, int low, int high) {
    const double value = parseNumber(parser, name, low, high);
    if (value != std::floor(value))
        throw UsageError(
            QString("--%1 takes a whole number, not \"%2\"").arg(name, parser.value(name)));
    return static_cast<int>(value);
}

/// A length with its unit, as "120mm", in millimetres.
double parseLength(const QCommandLineParser& parser, const QString& name) {
    static const QRegularExpression form("^([0-9.]+) *(mm|cm|in|pt)$");
    const auto match = form.match(parser.value(name));
    const double value = match.captured(1).toDouble();
    if (!match.hasMatch() || !(value > 0.0 && value < 1e6))
        throw UsageError(QString("--%1 takes a length with its unit, as 120mm or 4in, not \"%2\"")
                             .arg(name, parser.value(name)));
    return value * millimetresPer(choose<Unit>(name, match.captured(2), unitChoices()));
}

QRect parseCrop(const QString& word) {
    static const QRegularExpression form("^([0-9]{1,9}),([0-9]{1,9}),([0-9]{1,9}),([0-9]{1,9})$");
    const auto match = form.match(word);
    const QRect crop(match.captured(1).toInt(), match.captured(2).toInt(),
                     match.captured(3).toInt(), match.captured(4).toInt());
    if (!match.hasMatch() || crop.isEmpty())
        throw UsageError(QString("--crop takes x,y,width,height in pixels, not \"%1\"").arg(word));
    return crop;
}

SizeRequest parseSize(const QCommandLineParser& parser) {
    SizeRequest size;
    if (parser.value("dpi") == "auto")
        size.dotsFromFile = true;
    else if (parser.isSet("dpi"))
        size.dotsPerInch = parseNumber(parser, "dpi", 1, 100000);
    if (parser.isSet("width"))
        size.widthMillimetres = parseLength(parser, "width");
    if (parser.isSet("height"))
        size.heightMillimetres = parseLength(parser, "height");
    const int given = (parser.isSet("dpi") ? 1 : 0) + (size.widthMillimetres ? 1 : 0) +
                      (size.heightMillimetres ? 1 : 0);
    if (given > 1)
        throw UsageError("give one of --dpi, --width and --height; the others follow from it");
    if (parser.isSet("units"))
        size.unit = choose("--units", parser.value("units"), unitChoices());
    if (given == 0 && size.unit.value_or(Unit::Pixel) != Unit::Pixel)
        throw UsageError("--units needs to know the size: give --dpi, --width or --height");
    return size;
}

TraceSettings parseSettings(const QCommandLineParser& parser) {
    TraceSettings settings;
    if (parser.isSet("settings"))
        settings = loadSettings(parser.value("settings"));
    if (parser.isSet("preset")) {
        Choices<const Preset*> choices;
        for (const Preset& preset : presets())
            choices.append({preset.name, &preset});
        const auto* preset = choose<const Preset*>("--preset", parser.value("preset"), choices);
        settings.mode = preset->blackAndWhite ? Mode::Bw : Mode::Color;
        settings.values = preset->values;
    }
    if (parser.isSet("mode"))
        settings.mode = choose("--mode", parser.value("mode"), modeChoices());
    for (const EngineOption& option : engineOptions()) {
        if (option.flag[0] != '\0' && parser.isSet(option.flag))
            settings.values[option.key] =
                checkedValue(option, QString("--") + option.flag, parser.value(option.flag));
    }
    for (const QString& word : parser.values("set")) {
        const qsizetype equals = word.indexOf('=');
        if (equals < 0)
            throw UsageError(QString("--set takes key=value, not \"%1\"").arg(word));
        const EngineOption& option = findEngineOption(word.left(equals));
        settings.values[option.key] = checkedValue(option, option.key, word.mid(equals + 1));
    }
    if (parser.isSet("palette")) {
        settings.palette.clear();
        for (const QString& word : parser.value("palette").split(','))
            settings.palette.append(parseColor(word.trimmed()));
    }
    return settings;
}

WriterOptions parseWriterOptions(const QCommandLineParser& parser) {
    WriterOptions writer;
    if (parser.isSet("fill") && parser.isSet("outline"))
        throw UsageError("give one of --fill and --outline");
    writer.outlinesOnly = parser.isSet("outline");
    writer.closeSeams = parser.isSet("close-seams");
    if (parser.isSet("precision"))
        writer.precision = parseWhole(parser, "precision", 0, 15);
    if (parser.isSet("dxf-version"))
        writer.dxfVersion =
            choose("--dxf-version", parser.value("dxf-version"), dxfVersionChoices());
    if (parser.isSet("dxf-curves"))
        writer.dxfCurves = choose("--dxf-curves", parser.value("dxf-curves"), dxfCurvesChoices());
    if (writer.dxfVersion == DxfVersion::R12 && !asPolylines(writer.dxfCurves))
        throw UsageError("DXF R12 has no splines: choose --dxf-curves arcs or lines");
    if (parser.isSet("deviation"))
        writer.deviation = parseNumber(parser, "deviation", 1e-6, 1000);
    if (parser.isSet("scale"))
        writer.scale = parseNumber(parser, "scale", 0.001, 1000);
    writer.overlay = parser.isSet("overlay");
    return writer;
}

InputRequest parseInput(const QCommandLineParser& parser) {
    InputRequest input;
    if (parser.isSet("page"))
        input.page = parseWhole(parser, "page", 1, 1000000);
    if (parser.isSet("crop"))
        input.crop = parseCrop(parser.value("crop"));
    if (parser.isSet("background"))
        input.background = parseColor(parser.value("background"));
    if (parser.isSet("max-pixels"))
        input.largestPixels = static_cast<qint64>(parseNumber(parser, "max-pixels", 1, 1e12));
    return input;
}

QString parseFormat(const QCommandLineParser& parser, const QString& output) {
    Choices<QString> formats;
    for (const QString& name : formatNames())
        formats.append({name, name});
    if (parser.isSet("format"))
        return choose<QString>("--format", parser.value("format"), formats);
    const QString suffix = QFileInfo(output).suffix().toLower();
    return findFormat(suffix) != nullptr ? suffix : formatNames().first();
}

/// The words that make a worker trace one image as this command line asks.
QStringList workerWords(const QCommandLineParser& parser) {
    QStringList words;
    for (const QString& name : parser.optionNames()) {
        if (batchOptions().contains(name) || words.contains("--" + name) || name.size() == 1)
            continue;
        const QStringList values = parser.values(name);
        if (values.isEmpty())
            words.append("--" + name);
        for (const QString& value : values)
            words.append({"--" + name, value});
    }
    return words;
}

void checkOutputs(const QCommandLineParser& parser, const Arguments& arguments) {
    if (parser.isSet("output") && arguments.output.isEmpty())
        throw UsageError("--output takes a file name");
    if (parser.isSet("output") && parser.isSet("output-dir"))
        throw UsageError("give one of --output and --output-dir");
    if (arguments.output == "-" && arguments.statistics != StatisticsForm::None)
        throw UsageError("figures and a result cannot both go to the standard output; name a file "
                         "with --output");
    if (arguments.nameTemplate.isEmpty() || arguments.nameTemplate.contains('/'))
        throw UsageError("--name takes a file name with {name}, {format} or {page} in it");
    if (arguments.inputs.contains("-") && arguments.inputs.size() > 1)
        throw UsageError("the standard input is one image: give no others beside it");
}

} // namespace

void declareOptions(QCommandLineParser& parser) {
    parser.setApplicationDescription(
        "Traces image files: turns their colour regions into outlines of lines and curves.");
    QStringList presetNames;
    for (const Preset& preset : presets())
        presetNames.append(preset.name);
    parser.addOptions({
        {{"h", "help"}, "Show this help and exit."},
        {{"v", "version"}, "Show the version and exit."},
        {{"o", "output"},
         "Write to <file>; - is the standard output. Without it each result goes beside its image.",
         "file"},
        {{"f", "format"},
         "One of " + formatNames().join(", ") +
             "; without it the ending of the output file decides.",
         "format"},
        {"output-dir", "Write the results into <folder>.", "folder"},
        {"name",
         "Name the results after <template>: {name} is the image's, {format} the format's, {page} "
         "the page.",
         "template"},
        {"mode",
         "color (the default), bw (black and white by lightness) or raw (the engine's own "
         "defaults and the image as read).",
         "mode"},
        {"preset", "Options for a kind of picture: " + presetNames.join(", ") + ".", "preset"},
    });
    for (const EngineOption& option : engineOptions()) {
        if (option.flag[0] != '\0')
            parser.addOption({option.flag,
                              QString("%1 (%2 to %3).")
                                  .arg(option.meaning, QString::number(option.low, 'g', 10),
                                       QString::number(option.high, 'g', 10)),
                              "number"});
    }
    parser.addOptions({
        {"set", "Set any option of the engine, after those of mode and preset.", "key=value"},
        {"palette", "Start from these colours: #rrggbb or #rrggbbaa, with commas between them.",
         "colours"},
        {"settings", "Start from the settings in <file>.", "file"},
        {"save-settings", "Save the settings to <file>.", "file"},
        {"dpi", "The image has <number> pixels an inch; auto: as its file says.", "number"},
        {"width", "Make the drawing so wide, as 120mm or 4in.", "length"},
        {"height", "Make the drawing so high.", "length"},
        {"units", "Coordinates of DXF and GeoJSON in mm, cm, in, pt or px.", "unit"},
        {"fill", "SVG: fill the outlines (the default)."},
        {"outline", "SVG: stroke the outlines."},
        {"close-seams", "SVG: stroke fills in their own colour, to hide seams between them."},
        {"precision", "SVG, GeoJSON: <digits> after the decimal point; without it all that count.",
         "digits"},
        {"dxf-version", "R2010 (the default), R2000 or R12.", "version"},
        {"dxf-curves",
         "arcs (the default), lines, spline (exact, one an outline) or quadratic (exact, one a "
         "curve).",
         "form"},
        {"deviation", "How far arcs and straight pieces may be off the curves, in pixels (0.05).",
         "pixels"},
        {"scale", "PNG: <factor> pixels for each of the image.", "factor"},
        {"overlay", "PNG: outlines and nodes over the faded image."},
        {"page", "Trace page or frame <number> of the file.", "number"},
        {"crop", "Trace a part of the image alone: x,y,width,height in pixels.", "rectangle"},
        {"background", "Put transparent images on <colour> first.", "colour"},
        {"max-pixels", "Refuse larger images (400000000).", "number"},
        {{"j", "jobs"}, "Trace <number> images at a time.", "number"},
        {"continue-on-error", "Go on with the next image when one fails."},
        {{"q", "quiet"}, "Say nothing but errors."},
        {"stats", "Print figures about each result: table or json.", "form"},
        {"list-options", "List the options of the engine and exit."},
        {"list-presets", "List the presets and exit."},
        {"list-formats", "List the formats that are read and written, and exit."},
        {"print-settings", "Print the settings that would be used, as JSON, and exit."},
        {"plugin", "Load the module <file> instead of the program's own.", "file"},
        {"plugin-info", "Print what the tracing module says about itself, and exit."},
    });
    QCommandLineOption generate("generate", "Print the manual page (man) or completion (bash).",
                                "what");
    generate.setFlags(QCommandLineOption::HiddenFromHelp);
    parser.addOption(generate);
    parser.addPositionalArgument("image",
                                 "Image files, folders of them, or - for the standard "
                                 "input.",
                                 "IMAGE...");
}

Arguments parseArguments(const QStringList& words) {
    QCommandLineParser parser;
    declareOptions(parser);
    if (!parser.parse(words))
        throw UsageError(parser.errorText());
    if (parser.isSet("help"))
        parser.showHelp();
    if (parser.isSet("version"))
        parser.showVersion();
    Arguments arguments;
    arguments.pluginFile = parser.value("plugin");
    arguments.settings = parseSettings(parser);
    for (const QString& name : actions()) {
        if (parser.isSet(name))
            arguments.action = name == "generate" ? "generate-" + parser.value(name) : name;
    }
    arguments.inputs = parser.positionalArguments();
    if (arguments.inputs.isEmpty() && arguments.action.isEmpty())
        throw UsageError("no image given");
    arguments.output = parser.value("output");
    arguments.outputFolder = parser.value("output-dir");
    if (parser.isSet("name"))
        arguments.nameTemplate = parser.value("name");
    if (arguments.inputs == QStringList("-") && arguments.output.isEmpty() &&
        arguments.outputFolder.isEmpty())
        arguments.output = "-";
    arguments.format = parseFormat(parser, arguments.output);
    arguments.size = parseSize(parser);
    arguments.input = parseInput(parser);
    arguments.writer = parseWriterOptions(parser);
    if (parser.isSet("jobs"))
        arguments.jobs = parseWhole(parser, "jobs", 1, 1024);
    arguments.continueOnError = parser.isSet("continue-on-error");
    arguments.quiet = parser.isSet("quiet");
    if (parser.isSet("stats"))
        arguments.statistics = choose("--stats", parser.value("stats"), statisticsChoices());
    arguments.saveSettings = parser.value("save-settings");
    arguments.worker = workerWords(parser);
    checkOutputs(parser, arguments);
    return arguments;
}
