#include "arguments.h"

#include <QCommandLineParser>
#include <QFileInfo>

#include <algorithm>

namespace {

const QStringList& optionKeys() {
    static const QStringList keys{
        "monochrome",    "numberofcolors", "mincolorratio",  "colorquantcycles",
        "colorsampling", "blurradius",     "blurdelta",      "pathomit",
        "ltres",         "qtres",          "alphathreshold", "brightnessthreshold",
        "usealpha",      "usebrightness"};
    return keys;
}

/// How many letters must be inserted, removed or changed to get from one word to the other.
int editDistance(const QString& a, const QString& b) {
    QList<int> row(b.size() + 1);
    for (int j = 0; j < row.size(); ++j)
        row[j] = j;
    for (qsizetype i = 0; i < a.size(); ++i) {
        int diagonal = row[0];
        row[0] = static_cast<int>(i) + 1;
        for (qsizetype j = 0; j < b.size(); ++j) {
            const int replaced = diagonal + (a[i] == b[j] ? 0 : 1);
            diagonal = row[j + 1];
            row[j + 1] = std::min({replaced, row[j] + 1, row[j + 1] + 1});
        }
    }
    return row.last();
}

QString nearestKey(const QString& word) {
    return *std::min_element(optionKeys().begin(), optionKeys().end(),
                             [&](const QString& a, const QString& b) {
                                 return editDistance(word, a) < editDistance(word, b);
                             });
}

QPair<QString, double> parseOption(const QString& word) {
    const qsizetype equals = word.indexOf('=');
    if (equals < 0)
        throw UsageError(QString("--set takes key=value, not \"%1\"").arg(word));
    const QString key = word.left(equals);
    if (!optionKeys().contains(key))
        throw UsageError(QString("unknown option \"%1\" (did you mean \"%2\"?)")
                             .arg(key, nearestKey(key.toLower())));
    bool isNumber = false;
    const double value = word.mid(equals + 1).toDouble(&isNumber);
    if (!isNumber)
        throw UsageError(
            QString("\"%1\" takes a number, not \"%2\"").arg(key, word.mid(equals + 1)));
    return {key, value};
}

/// "#rrggbb" or "#rrggbbaa".
QColor parseColor(const QString& word) {
    bool isNumber = false;
    const uint value = word.mid(1).toUInt(&isNumber, 16);
    const qsizetype digits = word.size() - 1;
    if (!word.startsWith('#') || !isNumber || (digits != 6 && digits != 8) || word[1] == '+')
        throw UsageError(QString("\"%1\" is not a colour: write #rrggbb or #rrggbbaa").arg(word));
    return digits == 6 ? QColor::fromRgb(value)
                       : QColor::fromRgba((value >> 8) | (value & 255U) << 24);
}

template <typename Choice>
Choice choose(const QString& option, const QString& word,
              const QList<QPair<QString, Choice>>& choices) {
    QStringList names;
    for (const auto& [name, choice] : choices) {
        if (name == word)
            return choice;
        names.append(name);
    }
    throw UsageError(QString("%1 takes %2, not \"%3\"").arg(option, names.join(", "), word));
}

Format parseFormat(const QCommandLineParser& parser, const QString& output) {
    const QList<QPair<QString, Format>> formats{{"svg", Format::Svg}, {"json", Format::Json}};
    if (parser.isSet("format"))
        return choose("--format", parser.value("format"), formats);
    return QFileInfo(output).suffix().toLower() == "json" ? Format::Json : Format::Svg;
}

void declareOptions(QCommandLineParser& parser) {
    parser.setApplicationDescription(
        "Traces image files: turns their colour regions into outlines of lines and curves.");
    parser.addHelpOption();
    parser.addVersionOption();
    parser.addOptions({
        {{"o", "output"},
         "Write to <file>; - is the standard output. Without it each result goes beside its image.",
         "file"},
        {{"f", "format"},
         "svg (the default) or json; without it the ending of the output file decides.",
         "format"},
        {"mode",
         "color (the default), bw (black and white by lightness) or raw (the engine's own "
         "defaults and the image as read).",
         "mode"},
        {"set", "Set an option of the engine, after those of the mode.", "key=value"},
        {"palette", "Start from these colours: #rrggbb or #rrggbbaa, with commas between them.",
         "colours"},
    });
    parser.addPositionalArgument("image", "The image files to trace.", "IMAGE...");
}

} // namespace

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
    arguments.images = parser.positionalArguments();
    if (arguments.images.isEmpty())
        throw UsageError("no image given");
    arguments.output = parser.value("output");
    if (parser.isSet("output") && arguments.output.isEmpty())
        throw UsageError("--output takes a file name");
    arguments.format = parseFormat(parser, arguments.output);
    if (parser.isSet("mode"))
        arguments.mode =
            choose<Mode>("--mode", parser.value("mode"),
                         {{"color", Mode::Color}, {"bw", Mode::Bw}, {"raw", Mode::Raw}});
    for (const QString& word : parser.values("set"))
        arguments.options.append(parseOption(word));
    if (parser.isSet("palette")) {
        for (const QString& word : parser.value("palette").split(','))
            arguments.palette.append(parseColor(word.trimmed()));
    }
    return arguments;
}
