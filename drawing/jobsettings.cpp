#include "jobsettings.h"

#include "choices.h"
#include "errors.h"
#include "presets.h"
#include "settingvalue.h"

namespace {

const Setting& settingOf(const QString& key) {
    if (const Setting* setting = findSetting(key))
        return *setting;
    throw UsageError(QString("there is no setting \"%1\" (did you mean \"%2\"?)")
                         .arg(key, nearestSetting(key, settingTable())));
}

} // namespace

void JobSettings::set(const QString& key, const QVariant& value, const QString& name) {
    const Setting& setting = settingOf(key);
    const QVariant checked =
        settingFromValue(setting, value, name.isEmpty() ? settingName(setting) : name);
    if (key == "preset")
        forgetTracing();
    values[key] = checked;
}

void JobSettings::forgetTracing() {
    for (const Setting& setting : settingTable()) {
        const bool isMethod = qstrcmp(setting.key, "method") == 0;
        const bool isMode = qstrcmp(setting.key, "mode") == 0;
        const bool isPreparation = setting.group == SettingGroup::Preparation;
        if (isMethod || isMode || isPreparation || setting.isTracerOption)
            values.remove(setting.key);
    }
}

void JobSettings::reset(const QString& key) {
    values.remove(key);
}

bool JobSettings::isGiven(const QString& key) const {
    return values.contains(key);
}

bool JobSettings::isFixed(const QString& key) const {
    return givenOrPreset(key).isValid();
}

const QMap<QString, QVariant>& JobSettings::given() const {
    return values;
}

QVariant JobSettings::presetValue(const QString& key) const {
    const Preset* preset = findPreset(values.value("preset").toString());
    return preset != nullptr ? preset->values.value(key) : QVariant();
}

QVariant JobSettings::givenOrPreset(const QString& key) const {
    QVariant given = values.value(key);
    return given.isValid() ? given : presetValue(key);
}

QVariant JobSettings::value(const QString& key) const {
    if (QVariant given = givenOrPreset(key); given.isValid())
        return given;
    if (key == "method")
        return wordOf(methodChoices(), method());
    // The mode is these two options of the tracer.
    const Mode base = choiceOf(modeChoices(), givenOrPreset("mode").toString());
    if (key == "monochrome")
        return base == Mode::Color ? 0.0 : 1.0;
    if (key == "usebrightness")
        return base == Mode::Bw ? 1.0 : 0.0;
    const Setting& setting = settingOf(key);
    return setting.type == SettingType::Switch ? QVariant(false) : setting.usual;
}

double JobSettings::number(const QString& key) const {
    return value(key).toDouble();
}

bool JobSettings::isOn(const QString& key) const {
    return value(key).toBool();
}

QString JobSettings::text(const QString& key) const {
    return settingToText(value(key));
}

Method JobSettings::method() const {
    if (const QVariant given = givenOrPreset("method"); given.isValid())
        return choiceOf(methodChoices(), given.toString());
    for (auto value = values.begin(); value != values.end(); ++value) {
        const Setting& setting = settingOf(value.key());
        if (setting.methods.size() == 1)
            return setting.methods.first();
    }
    return choiceOf(methodChoices(), settingOf("method").usual.toString());
}

Mode JobSettings::mode() const {
    const Mode base = choiceOf(modeChoices(), givenOrPreset("mode").toString());
    if (base == Mode::Raw)
        return base;
    return number("monochrome") > 0.0 ? Mode::Bw : Mode::Color;
}

QString JobSettings::format() const {
    return text("format");
}
