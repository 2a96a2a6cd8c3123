#include "settingvalue.h"

#include "choices.h"
#include "errors.h"
#include "worldfile.h"

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
    // The setting's range is in millimetres.
    if (!millimetres || !(*millimetres >= setting.low && *millimetres <= setting.high))
        refuse(setting, text, name);
    return text.simplified().remove(' ').toLower();
}

/// Papers and their upright sizes in millimetres.
const QList<QPair<QString, QSizeF>>& papers() {
    static const QList<QPair<QString, QSizeF>> sizes{
        {"a0", {841, 1189}},        {"a1", {594, 841}},         {"a2", {420, 594}},
        {"a3", {297, 420}},         {"a4", {210, 297}},         {"a5", {148, 210}},
        {"a6", {105, 148}},         {"letter", {215.9, 279.4}}, {"legal", {215.9, 355.6}},
        {"tabloid", {279.4, 431.8}}};
    return sizes;
}

} // namespace

QColor parseColor(const QString& word) {
    if (QColor::colorNames().contains(word, Qt::CaseInsensitive))
        return {word};
    static const QRegularExpression form("^#([0-9a-f]{3}|[0-9a-f]{6}|[0-9a-f]{8})$",
                                         QRegularExpression::CaseInsensitiveOption);
    if (!form.match(word).hasMatch())
        throw UsageError(
            QString("\"%1\" is not a colour: write #rgb, #rrggbb, #rrggbbaa or a name").arg(word));
    if (word.size() < 9)
        return {word};
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

std::optional<double> parseRatio(const QString& text) {
    static const QRegularExpression form("^ *([0-9]+\\.?[0-9]*) *: *([0-9]+\\.?[0-9]*) *$");
    const auto match = form.match(text);
    const double paper = match.captured(1).toDouble();
    const double model = match.captured(2).toDouble();
    return paper > 0.0 && model > 0.0 ? std::optional(model / paper) : std::nullopt;
}

std::optional<PaperChoice> parsePaper(const QString& text) {
    static const QRegularExpression form("^ *([0-9.]+) *x *([0-9.]+) *(mm|cm|m|in|ft|pt) *$",
                                         QRegularExpression::CaseInsensitiveOption);
    if (const auto match = form.match(text); match.hasMatch()) {
        const auto width = parseLength(match.captured(1) + match.captured(3));
        const auto height = parseLength(match.captured(2) + match.captured(3));
        const bool isPaper = width && height && *width >= 1.0 && *height >= 1.0;
        return isPaper ? std::optional(PaperChoice{{*width, *height}, true}) : std::nullopt;
    }
    const QStringList words = text.trimmed().toLower().split('-');
    for (const auto& [name, size] : papers()) {
        if (name != words.first() || words.size() > 2)
            continue;
        if (words.size() == 1)
            return PaperChoice{size, false};
        if (words[1] == "portrait" || words[1] == "landscape")
            return PaperChoice{words[1] == "portrait" ? size : size.transposed(), true};
    }
    return {};
}

QStringList paperNames() {
    QStringList names;
    for (const auto& [name, size] : papers())
        names.append(name);
    return names;
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
    case SettingType::Ratio:
        if (!parseRatio(text))
            refuse(setting, text, name);
        return QString(text).remove(' ');
    case SettingType::Paper:
        if (!parsePaper(text))
            refuse(setting, text, name);
        return QString(text).remove(' ').toLower();
    case SettingType::World:
        if (const QString word = wordAmong(setting.words, text); !word.isEmpty())
            return word;
        if (!parseWorld(text))
            refuse(setting, text, name);
        return QString(text).remove(' ');
    case SettingType::Text:
        if (text.isEmpty())
            refuse(setting, text, name);
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
    case SettingType::Ratio:
        return "a scale, as 1:100";
    case SettingType::Paper:
        return "a paper (" + paperNames().join(", ") +
               ", also with -landscape or -portrait) or a size, as 200x100mm";
    case SettingType::World:
        return "the six numbers of a world file (A,D,B,E,C,F) or " + words;
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
