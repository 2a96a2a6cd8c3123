#include "settingsfile.h"

#include "choices.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

namespace {

QString modeName(Mode mode) {
    for (const auto& [name, choice] : modeChoices()) {
        if (choice == mode)
            return name;
    }
    return {};
}

QString colorName(const QColor& color) {
    return color.name(QColor::HexRgb) + QString::number(color.alpha() | 0x100, 16).mid(1);
}

Mode modeOf(const QString& fileName, const QString& name) {
    for (const auto& [word, mode] : modeChoices()) {
        if (word == name)
            return mode;
    }
    throw UsageError(QString("%1: \"mode\" is color, bw or raw").arg(fileName));
}

} // namespace

QColor parseColor(const QString& word) {
    bool isNumber = false;
    const uint value = word.mid(1).toUInt(&isNumber, 16);
    const qsizetype digits = word.size() - 1;
    if (!word.startsWith('#') || !isNumber || (digits != 6 && digits != 8) || word[1] == '+')
        throw UsageError(QString("\"%1\" is not a colour: write #rrggbb or #rrggbbaa").arg(word));
    return digits == 6 ? QColor::fromRgb(value)
                       : QColor::fromRgba((value >> 8) | (value & 255U) << 24);
}

EngineValues effectiveValues(const TraceSettings& settings) {
    EngineValues values;
    if (settings.mode != Mode::Raw) {
        for (const EngineOption& option : engineOptions())
            values[option.key] = option.usual;
        values["monochrome"] = settings.mode == Mode::Bw ? 1.0 : 0.0;
        values["usebrightness"] = values["monochrome"];
    }
    values.insert(settings.values);
    return values;
}

QByteArray settingsToJson(const TraceSettings& settings) {
    QJsonObject options;
    const EngineValues values = effectiveValues(settings);
    for (auto value = values.begin(); value != values.end(); ++value)
        options[value.key()] = value.value();
    QJsonObject json{{"mode", modeName(settings.mode)}, {"options", options}};
    QJsonArray palette;
    for (const QColor& color : settings.palette)
        palette.append(colorName(color));
    if (!palette.isEmpty())
        json["palette"] = palette;
    return QJsonDocument(json).toJson();
}

TraceSettings loadSettings(const QString& fileName) {
    QFile file(fileName);
    if (!file.open(QIODevice::ReadOnly))
        throw FileError(QString("%1: cannot be read: %2").arg(fileName, file.errorString()));
    QJsonParseError error{};
    const QJsonObject json = QJsonDocument::fromJson(file.readAll(), &error).object();
    if (error.error != QJsonParseError::NoError)
        throw FileError(QString("%1: no settings: %2").arg(fileName, error.errorString()));
    TraceSettings settings;
    if (json.contains("mode"))
        settings.mode = modeOf(fileName, json["mode"].toString());
    const QJsonObject options = json["options"].toObject();
    for (auto value = options.begin(); value != options.end(); ++value) {
        const EngineOption& option = findEngineOption(value.key());
        settings.values[value.key()] =
            checkedValue(option, value.key(), value.value().toVariant().toString());
    }
    for (const QJsonValue color : json["palette"].toArray())
        settings.palette.append(parseColor(color.toString()));
    return settings;
}
