#include "settingvalue.h"

#include "choices.h"
#include "errors.h"

#include <QJsonArray>
#include <QLocale>
#include <QRegularExpression>

#include <array>
#include <cmath>

namespace {

[[noreturn]] void refuse(const Setting& setting, const QString& text, const QString& name) {
    throw UsageError(QString("%1 takes %2, not \"%3\"").arg(name, allowedFor(setting), text));
}

/// The word of the list that this one is, in any case; empty when it is none.
QString wordAmong(const QStringList& words, const QString& text) {
    for (const QString& word : words) {
        if (word.compare(text, Qt::CaseInsensitive) == 0)
            return word;
    }
    return {};
}

QVariant checkedNumber(const Setting& setting, double value, const QString& text,
                       const QString& name) {
    if (!(value >= setting.low && value <= setting.high))
        refuse(setting, text, name);
    if (setting.type == SettingType::Whole && value != std::floor(value))
        throw UsageError(QString("%1 takes a whole number, not \"%2\"").arg(name, text));
    return value;
}

QVariant numberFromText(const Setting& setting, const QString& text, const QString& name) {
    if (const QString word = wordAmong(setting.words, text); !word.isEmpty())
        return word;
    bool isNumber = false;
    const double value = text.toDouble(&isNumber);
    if (!isNumber)
        refuse(setting, text, name);
    return checkedNumber(setting, value, text, name);
}

QVariant switchFromText(const Setting& setting, const QString& text, const QString& name) {
    const QString word = wordAmong({"on", "off", "true", "false", "yes", "no"}, text);
    if (word.isEmpty())
        refuse(setting, text, name);
    return word == "on" || word == "true" || word == "yes";
}

QString colorFromText(const QString& word, const QString& name) {
    try {
        return colorWord(parseColor(word.trimmed()));
    } catch (const UsageError& error) {
        throw UsageError(QString("%1: %2").arg(name, error.what()));
    }
}

QVariant colorsFromWords(const QStringList& words, const QString& name) {
    QStringList colors;
    for (const QString& word : words)
        colors.append(colorFromText(word, name));
    return colors;
}

QVariant lengthFromText(const Setting& setting, const QString& text, const QString& name) {
    const std::optional<double> millimetres = parseLength(text);
    if (!millimetres || !(*millimetres > 0.0 && *millimetres < 1e7))
        refuse(setting, text, name);
    return text.simplified().remove(' ').toLower();
}

} // namespace

QColor parseColor(const QString& word) {
    if (QColor::colorNames().contains(word, Qt::CaseInsensitive))
        return QColor(word);
    static const QRegularExpression form("^#([0-9a-f]{3}|[0-9a-f]{6}|[0-9a-f]{8})$",
                                         QRegularExpression::CaseInsensitiveOption);
    if (!form.match(word).hasMatch())
        throw UsageError(
            QString("\"%1\" is not a colour: write #rgb, #rrggbb, #rrggbbaa or a name").arg(word));
    if (word.size() < 9)
        return QColor(word);
    const uint value = word.mid(1).toUInt(nullptr, 16);
    return QColor::fromRgba((value >> 8) | (value & 255U) << 24);
}

QString colorWord(const QColor& color) {
    const QString opaque = color.name(QColor::HexRgb);
    return color.alpha() == 255 ? opaque
                                : opaque + QString::number(color.alpha() | 0x100, 16).mid(1);
}

std::optional<double> parseLength(const QString& text) {
    static const QRegularExpression form("^([0-9]+\\.?[0-9]*|\\.[0-9]+) *(mm|cm|m|in|ft|pt)$",
                                         QRegularExpression::CaseInsensitiveOption);
    const auto match = form.match(text.trimmed());
    if (!match.hasMatch())
        return {};
    for (const auto& [word, unit] : unitChoices()) {
        if (word.compare(match.captured(2), Qt::CaseInsensitive) == 0)
            return match.captured(1).toDouble() * millimetresPer(unit);
    }
    return {};
}

std::optional<QRect> parseRectangle(const QString& text) {
    static const QRegularExpression form(
        "^ *([0-9]{1,9}) *, *([0-9]{1,9}) *, *([0-9]{1,9}) *, *([0-9]{1,9}) *$");
    const auto match = form.match(text);
    const QRect rectangle(match.captured(1).toInt(), match.captured(2).toInt(),
                          match.captured(3).toInt(), match.captured(4).toInt());
    return match.hasMatch() && !rectangle.isEmpty() ? std::optional(rectangle) : std::nullopt;
}

QVariant settingFromText(const Setting& setting, const QString& text, const QString& name) {
    switch (setting.type) {
    case SettingType::Switch:
        return switchFromText(setting, text, name);
    case SettingType::Whole:
    case SettingType::Number:
        return numberFromText(setting, text, name);
    case SettingType::Choice:
        if (const QString word = wordAmong(setting.words, text); !word.isEmpty())
            return word;
        refuse(setting, text, name);
    case SettingType::Color:
        return colorFromText(text, name);
    case SettingType::Colors:
        return colorsFromWords(text.split(','), name);
    case SettingType::Length:
        return lengthFromText(setting, text, name);
    case SettingType::Rectangle:
        if (!parseRectangle(text))
            refuse(setting, text, name);
        return QString(text).remove(' ');
    case SettingType::Text:
        break;
    }
    return text;
}

QVariant settingFromValue(const Setting& setting, const QVariant& value, const QString& name) {
    const int type = value.userType();
    const bool isNumber = type == QMetaType::Double || type == QMetaType::Int ||
                          type == QMetaType::LongLong || type == QMetaType::UInt;
    const bool takesNumber =
        setting.type == SettingType::Number || setting.type == SettingType::Whole;
    if (isNumber && takesNumber)
        return checkedNumber(setting, value.toDouble(), numberWord(value.toDouble()), name);
    if (type == QMetaType::Bool && setting.type == SettingType::Switch)
        return value;
    if (type == QMetaType::QStringList && setting.type == SettingType::Colors)
        return colorsFromWords(value.toStringList(), name);
    if (type == QMetaType::QString)
        return settingFromText(setting, value.toString(), name);
    refuse(setting, value.toString(), name);
}

QVariant settingFromJson(const Setting& setting, const QJsonValue& value, const QString& name) {
    const auto refuseKind = [&](const char* kind) {
        throw UsageError(QString("%1 takes %2, not %3").arg(name, allowedFor(setting), kind));
    };
    if (value.isNull() || value.isObject())
        refuseKind(value.isNull() ? "null" : "an object");
    if (value.isArray() != (setting.type == SettingType::Colors))
        refuseKind(value.isArray() ? "a list" : "a single value");
    if (value.isBool() != (setting.type == SettingType::Switch))
        refuseKind(value.isBool() ? "true or false" : "a number or a text");
    if (!value.isArray())
        return settingFromValue(setting, value.toVariant(), name);
    QStringList words;
    for (const QJsonValue element : value.toArray()) {
        if (!element.isString())
            throw UsageError(QString("%1 takes a list of texts").arg(name));
        words.append(element.toString());
    }
    return colorsFromWords(words, name);
}

QString settingToText(const QVariant& value) {
    switch (value.userType()) {
    case QMetaType::Bool:
        return value.toBool() ? "on" : "off";
    case QMetaType::Double:
        return numberWord(value.toDouble());
    case QMetaType::QStringList:
        return value.toStringList().join(',');
    default:
        return value.toString();
    }
}

QJsonValue settingToJson(const QVariant& value) {
    return QJsonValue::fromVariant(value);
}

QString allowedFor(const Setting& setting) {
    const QString words = setting.words.join(", ");
    switch (setting.type) {
    case SettingType::Switch:
        return "on or off";
    case SettingType::Whole:
    case SettingType::Number:
        return QString("%1 from %2 to %3%4")
            .arg(setting.type == SettingType::Whole ? "a whole number" : "a number",
                 numberWord(setting.low), numberWord(setting.high),
                 words.isEmpty() ? QString() : ", or " + words);
    case SettingType::Choice:
        return "one of " + words;
    case SettingType::Color:
        return "a colour";
    case SettingType::Colors:
        return "a list of colours";
    case SettingType::Length:
        return "a length with its unit, as 120mm or 4in";
    case SettingType::Rectangle:
        return "x,y,width,height in pixels";
    case SettingType::Text:
        break;
    }
    return "a text";
}

QString numberWord(double value) {
    // 4e8 is written as people write it.
    return std::abs(value) < 1e15 && value == std::floor(value)
               ? QString::number(value, 'f', 0)
               : QString::number(value, 'g', QLocale::FloatingPointShortest);
}
