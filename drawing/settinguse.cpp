#include "settinguse.h"

#include "choices.h"
#include "settingvalue.h"

namespace {

template <typename Choice>
QStringList namesOf(const QList<Choice>& chosen, const Choices<Choice>& choices) {
    QStringList names;
    for (const Choice choice : chosen) {
        const QString name = wordOf(choices, choice);
        if (!name.isEmpty())
            names.append(name);
    }
    return names;
}

/// "svg, dxf and png".
QString inWords(QStringList words) {
    const QString last = words.takeLast();
    return words.isEmpty() ? last : words.join(", ") + " and " + last;
}

bool isRead(const Setting* setting, const JobSettings& job) {
    return setting != nullptr && !whyUnused(*setting, job);
}

/// Why another setting keeps this one from being read.
std::optional<QString> whyNotWithOthers(const Setting& setting, const JobSettings& job) {
    const Setting* other = findSetting(setting.without);
    if (isRead(other, job) && job.isFixed(other->key) && job.value(other->key) != false)
        return "has no effect with " + settingName(*other);
    other = findSetting(setting.needs);
    if (!isRead(other, job))
        return {};
    const QVariant value = job.value(other->key);
    if (setting.needed.isEmpty())
        return value.isValid() ? std::nullopt : std::optional("needs " + settingName(*other));
    if (setting.needed.contains(settingToText(value)))
        return {};
    return QString("is for %1 %2; that is %3 now")
        .arg(settingName(*other), inWords(setting.needed), settingToText(value));
}

} // namespace

std::optional<QString> whyUnused(const Setting& setting, const JobSettings& job) {
    const auto differs = [](const QStringList& readers, const char* kind, const QString& now) {
        return QString("is for %1; the %2 is %3").arg(inWords(readers), kind, now);
    };
    const Method method = job.method();
    if (!setting.methods.isEmpty() && !setting.methods.contains(method))
        return differs(namesOf(setting.methods, methodChoices()), "method",
                       wordOf(methodChoices(), method));
    if (!setting.modes.isEmpty() && !setting.modes.contains(job.mode()))
        return differs(namesOf(setting.modes, modeChoices()), "mode",
                       wordOf(modeChoices(), job.mode()));
    if (!setting.formats.isEmpty() && !setting.formats.contains(job.format()))
        return differs(setting.formats, "format", job.format());
    return whyNotWithOthers(setting, job);
}

QString readersOf(const Setting& setting) {
    QStringList readers = namesOf(setting.methods, methodChoices());
    for (const QString& mode : namesOf(setting.modes, modeChoices()))
        readers.append("mode " + mode);
    return (readers + setting.formats).join(", ");
}

QStringList toArguments(const JobSettings& job) {
    QStringList words;
    // A preset is read before all others.
    JobSettings said;
    if (job.isGiven("preset"))
        said.set("preset", job.value("preset"));
    for (const Setting& setting : settingTable()) {
        if (!job.isGiven(setting.key) || whyUnused(setting, job))
            continue;
        const QVariant value = job.value(setting.key);
        JobSettings without = job;
        without.reset(setting.key);
        const bool isPreset = qstrcmp(setting.key, "preset") == 0;
        const bool isMethod = qstrcmp(setting.key, "method") == 0;
        // Whatever the rest says by itself need not be said; a method is said rather than guessed.
        if (!isPreset && !isMethod && without.value(setting.key) == value)
            continue;
        if (!isPreset)
            said.set(setting.key, value);
        const QString flag = QString("--") + setting.flag;
        if (value == true)
            words.append(flag);
        else if (setting.flag[0] == '\0' || value == false)
            words.append({"--set", QString("%1=%2").arg(setting.key, settingToText(value))});
        else
            words.append({flag, settingToText(value)});
    }
    // A setting that told the method may be left out for being the usual one.
    if (said.method() != job.method())
        words = QStringList{"--method", wordOf(methodChoices(), job.method())} + words;
    return words;
}
