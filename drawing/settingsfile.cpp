#include "settingsfile.h"

#include "choices.h"
#include "files/files.h"
#include "jobrequests.h"
#include "settinguse.h"
#include "settingvalue.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

namespace {

QList<Setting> tracerOptions() {
    QList<Setting> options;
    for (const Setting& setting : settingTable()) {
        if (setting.isTracerOption)
            options.append(setting);
    }
    return options;
}

QList<Setting> otherSettings() {
    QList<Setting> settings;
    for (const Setting& setting : settingTable()) {
        if (!setting.isTracerOption)
            settings.append(setting);
    }
    return settings;
}

/// The setting of that key in one of the two lists; throws UsageError, with the likeliest one.
const Setting& settingIn(const QList<Setting>& settings, const QString& key, const QString& name) {
    for (const Setting& setting : settings) {
        if (key == setting.key)
            return setting;
    }
    throw UsageError(QString("%1: there is no setting \"%2\" (did you mean \"%3\"?)")
                         .arg(name, key, nearestSetting(key, settings)));
}

void readValue(JobSettings& job, const Setting& setting, const QJsonValue& value,
               const QString& name) {
    const QString place = QString("%1: \"%2\"").arg(name, setting.key);
    job.set(setting.key, settingFromJson(setting, value, place), place);
}

QJsonObject objectOf(const QByteArray& json, const QString& name) {
    QJsonParseError error{};
    const QJsonDocument document = QJsonDocument::fromJson(json, &error);
    if (error.error != QJsonParseError::NoError)
        throw UsageError(QString("%1: no settings: %2").arg(name, error.errorString()));
    if (!document.isObject())
        throw UsageError(QString("%1: settings are an object, not a list").arg(name));
    return document.object();
}

} // namespace

QByteArray settingsToJson(const JobSettings& job) {
    const TraceSettings trace = traceSettings(job);
    QJsonObject options;
    for (auto value = trace.values.begin(); value != trace.values.end(); ++value)
        options[value.key()] = value.value();
    QJsonObject json{{"method", wordOf(methodChoices(), trace.method)}, {"options", options}};
    if (trace.method == Method::Outlines)
        json["mode"] = wordOf(modeChoices(), trace.mode);
    for (const Setting& setting : otherSettings()) {
        const bool isSaid = json.contains(setting.key) || qstrcmp(setting.key, "preset") == 0;
        if (job.isFixed(setting.key) && !isSaid && !whyUnused(setting, job))
            json[setting.key] = settingToJson(job.value(setting.key));
    }
    return QJsonDocument(json).toJson();
}

JobSettings settingsFromJson(const QByteArray& json, const QString& name) {
    const QJsonObject object = objectOf(json, name);
    JobSettings job;
    // The preset comes first: it sets others.
    if (object.contains("preset"))
        readValue(job, *findSetting("preset"), object["preset"], name);
    for (auto value = object.begin(); value != object.end(); ++value) {
        if (value.key() != "options" && value.key() != "preset")
            readValue(job, settingIn(otherSettings(), value.key(), name), value.value(), name);
    }
    const QJsonValue options = object["options"];
    if (!options.isObject() && !options.isUndefined())
        throw UsageError(QString("%1: \"options\" is an object, not %2")
                             .arg(name, options.isArray() ? "a list" : "a single value"));
    const QJsonObject values = options.toObject();
    for (auto value = values.begin(); value != values.end(); ++value)
        readValue(job, settingIn(tracerOptions(), value.key(), name), value.value(), name);
    return job;
}

JobSettings loadSettings(const QString& fileName) {
    return settingsFromJson(openForReading(fileName)->readAll(), fileName);
}
