#include "arguments.h"

#include "programoptions.h"
#include "resultnames.h"

#include <drawing/choices.h>
#include <drawing/jobrequests.h>
#include <drawing/settingsfile.h>
#include <drawing/settinguse.h>
#include <drawing/settingvalue.h>
#include <drawing/writers/formats.h>

#include <QCommandLineParser>
#include <QFileInfo>
#include <QSet>

namespace {

constexpr int MostJobs = 1024;

void declareOptions(QCommandLineParser& parser) {
    for (const ProgramOption& option : programOptions()) {
        QStringList names{option.flag};
        if (option.letter[0] != '\0')
            names.append(option.letter);
        parser.addOption(QCommandLineOption(names, QString(), option.value));
    }
    QSet<QByteArray> declared;
    for (const Setting& setting : settingTable()) {
        if (setting.flag[0] == '\0' || declared.contains(setting.flag))
            continue;
        declared.insert(setting.flag);
        QStringList names{setting.flag};
        if (names.first() == "format")
            names.append("f");
        parser.addOption(QCommandLineOption(
            names, QString(), setting.type == SettingType::Switch ? QString() : "value"));
    }
}

QString flagOf(const Setting& setting) {
    return QString("--") + setting.flag;
}

/// How messages call a setting.
QString flagOrKey(const Setting& setting) {
    return setting.flag[0] != '\0' ? flagOf(setting) : QString("--set %1").arg(setting.key);
}

bool isSet(const QCommandLineParser& parser, const Setting& setting) {
    return setting.flag[0] != '\0' && parser.isSet(setting.flag);
}

void setByFlag(JobSettings& job, const QCommandLineParser& parser, const Setting& setting) {
    if (!isSet(parser, setting))
        return;
    if (qstrcmp(setting.key, "page") == 0 && !parsePages(parser.value("page")).isSingle())
        return; // a choice of several is no setting of one job
    const bool isSwitch = setting.type == SettingType::Switch;
    job.set(setting.key, isSwitch ? "on" : parser.value(setting.flag), flagOf(setting));
}

/// `key=value` as --set takes it.
QPair<QString, QString> splitPair(const QString& word) {
    const qsizetype equals = word.indexOf('=');
    if (equals < 0)
        throw UsageError(QString("--set takes key=value, not \"%1\"").arg(word));
    return {word.left(equals), word.mid(equals + 1)};
}

/// Where no format was named: that of the output's ending, the settings file's, the first.
void completeFormat(JobSettings& job, const QCommandLineParser& parser) {
    const QString suffix = QFileInfo(parser.value("output")).suffix().toLower();
    if (!parser.isSet("format") && findFormat(suffix) != nullptr)
        job.set("format", suffix);
}

/// Throws UsageError for an option that this job does not read.
void checkUses(const JobSettings& job, const QCommandLineParser& parser) {
    for (const Setting& setting : settingTable()) {
        if (!isSet(parser, setting) || !isMeantByFlag(setting, job.method()))
            continue;
        if (const auto reason = whyUnused(setting, job))
            throw UsageError(flagOf(setting) + ' ' + *reason);
    }
    for (const QString& word : parser.values("set")) {
        const QString key = splitPair(word).first;
        if (const auto reason = whyUnused(*findSetting(key), job))
            throw UsageError(QString("\"%1\" %2").arg(key, *reason));
    }
    if (!parser.isSet("fill"))
        return;
    if (parser.isSet("outline"))
        throw UsageError("give one of --fill and --outline");
    if (const auto reason = whyUnused(*findSetting("outline"), job))
        throw UsageError("--fill " + *reason);
}

/// What a settings file says and this job does not read.
QStringList remarksAbout(const JobSettings& file, const JobSettings& job, const QString& fileName) {
    QStringList remarks;
    for (const QString& key : file.given().keys()) {
        const Setting& setting = *findSetting(key);
        // A file holds all options of its method, those of the other modes too.
        const bool isOfMethod = setting.isTracerOption && setting.methods.contains(job.method());
        const auto reason = isOfMethod ? std::nullopt : whyUnused(setting, job);
        if (reason && job.isGiven(key))
            remarks.append(QString("%1: \"%2\" %3").arg(fileName, key, *reason));
    }
    return remarks;
}

JobSettings parseSettings(const QCommandLineParser& parser, QStringList& remarks) {
    JobSettings file;
    if (parser.isSet("settings"))
        file = loadSettings(parser.value("settings"));
    JobSettings job = file;
    // A preset takes the place of other settings, which the options then change again.
    setByFlag(job, parser, *findSetting("preset"));
    for (const Setting& setting : settingTable()) {
        if (qstrcmp(setting.key, "preset") != 0 && !sharesItsFlag(setting))
            setByFlag(job, parser, setting);
    }
    if (parser.isSet("fill"))
        job.set("outline", false);
    for (const QString& word : parser.values("set")) {
        const auto [key, value] = splitPair(word);
        job.set(key, value, '"' + key + '"');
    }
    // What a shared flag means is known when the method is.
    const Method method = job.method();
    for (const Setting& setting : settingTable()) {
        if (sharesItsFlag(setting) && isMeantByFlag(setting, method))
            setByFlag(job, parser, setting);
    }
    completeFormat(job, parser);
    checkUses(job, parser);
    remarks = remarksAbout(file, job, parser.value("settings"));
    return job;
}

QString parseAction(const QCommandLineParser& parser) {
    for (const ProgramOption& option : programOptions()) {
        if (!option.isAction || !parser.isSet(option.flag))
            continue;
        const QString value = parser.value(option.flag);
        if (!option.words.isEmpty() && !option.words.contains(value))
            throw UsageError(QString("--%1 takes %2, not \"%3\"")
                                 .arg(option.flag, option.words.join(" or "), value));
        return value.isEmpty() ? QString(option.flag) : option.flag + ('-' + value);
    }
    return {};
}

int parseJobs(const QCommandLineParser& parser) {
    if (!parser.isSet("jobs"))
        return 1;
    bool isNumber = false;
    const int jobs = parser.value("jobs").toInt(&isNumber);
    if (!isNumber || jobs < 1 || jobs > MostJobs)
        throw UsageError(QString("--jobs takes a whole number from 1 to %1, not \"%2\"")
                             .arg(MostJobs)
                             .arg(parser.value("jobs")));
    return jobs;
}

StatisticsForm parseStatistics(const QCommandLineParser& parser) {
    if (!parser.isSet("stats"))
        return StatisticsForm::None;
    const QString word = parser.value("stats").toLower();
    if (!wordsOf(statisticsChoices()).contains(word))
        throw UsageError(QString("--stats takes one of %1, not \"%2\"")
                             .arg(wordsOf(statisticsChoices()).join(", "), word));
    return choiceOf(statisticsChoices(), word);
}

/// The words that make a worker trace one image as this command line asks.
QStringList workerWords(const QCommandLineParser& parser) {
    QStringList words;
    for (const ProgramOption& option : programOptions()) {
        if (option.isForBatch || !parser.isSet(option.flag))
            continue;
        const QStringList values = parser.values(option.flag);
        if (values.isEmpty())
            words.append(QString("--") + option.flag);
        for (const QString& value : values)
            words.append({QString("--") + option.flag, value});
    }
    for (const Setting& setting : settingTable()) {
        if (!isSet(parser, setting) || qstrcmp(setting.key, "format") == 0)
            continue;
        if (words.contains(flagOf(setting)))
            continue; // of a setting that shares the flag
        words.append(flagOf(setting));
        if (setting.type != SettingType::Switch)
            words.append(parser.value(setting.flag));
    }
    return words;
}

void checkOutputs(const QCommandLineParser& parser, const Arguments& arguments) {
    if (parser.isSet("output") && arguments.output.isEmpty())
        throw UsageError("--output takes a file name");
    if (parser.isSet("output") && parser.isSet("output-dir"))
        throw UsageError("give one of --output and --output-dir");
    if (parser.isSet("output") && parser.isSet("name"))
        throw UsageError("give one of --output and --name");
    if (arguments.output == "-" && arguments.statistics != StatisticsForm::None)
        throw UsageError("figures and a result cannot both go to the standard output; name a file "
                         "with --output");
    checkNameTemplate(arguments.nameTemplate);
    if (arguments.inputs.contains("-") && arguments.inputs.size() > 1)
        throw UsageError("the standard input is one image: give no others beside it");
}

} // namespace

Arguments parseArguments(const QStringList& words) {
    setSettingNaming(flagOrKey);
    QCommandLineParser parser;
    declareOptions(parser);
    if (!parser.parse(words))
        throw UsageError(parser.errorText());
    Arguments arguments;
    arguments.action = parseAction(parser);
    arguments.pluginFile = parser.value("plugin");
    arguments.job = parseSettings(parser, arguments.remarks);
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
    arguments.format = arguments.job.format();
    arguments.settings = traceSettings(arguments.job);
    arguments.size = sizeRequest(arguments.job);
    arguments.input = inputRequest(arguments.job);
    arguments.pages = parser.isSet("page")
                          ? parsePages(parser.value("page"))
                          : PageChoice{{{arguments.input.page, arguments.input.page}}};
    arguments.recursive = parser.isSet("recursive");
    arguments.overwrite = parser.isSet("overwrite");
    arguments.writer = writerOptions(arguments.job);
    arguments.jobs = parseJobs(parser);
    arguments.continueOnError = parser.isSet("continue-on-error");
    arguments.quiet = parser.isSet("quiet");
    arguments.statistics = parseStatistics(parser);
    arguments.saveSettings = parser.value("save-settings");
    arguments.worker = workerWords(parser);
    checkOutputs(parser, arguments);
    return arguments;
}
