#pragma once

#include "settingtable.h"
#include "writers/writeroptions.h"

#include <QColor>
#include <QJsonValue>
#include <QRect>

#include <optional>

/// "#rgb", "#rrggbb", "#rrggbbaa" or one of SVG's names, in any case; throws UsageError for
/// anything else.
QColor parseColor(const QString& word);

/// "#rrggbb", or "#rrggbbaa" for a colour that is not opaque.
QString colorWord(const QColor& color);

/// A length with its unit, as "120mm", in millimetres; nothing for anything else.
std::optional<double> parseLength(const QString& text);

/// "x,y,width,height" in pixels; nothing for anything else and for an empty rectangle.
std::optional<QRect> parseRectangle(const QString& text);

/// What "1:100" multiplies lengths by, 100; nothing for anything else.
std::optional<double> parseRatio(const QString& text);

/// "a3" lies as the drawing does; "a3-landscape", "a3-portrait" and "200x100mm" as they are.
/// Nothing for anything else.
std::optional<PaperChoice> parsePaper(const QString& text);

/// The names of papers that parsePaper() knows.
QStringList paperNames();

/// The value in its canonical form from the words that people type. Throws UsageError, which calls
/// the setting by `name` and says what is allowed.
QVariant settingFromText(const Setting& setting, const QString& text, const QString& name);

/// The same from a value of any type: the table's own for this setting, or a text.
QVariant settingFromValue(const Setting& setting, const QVariant& value, const QString& name);

/// The same from a file.
QVariant settingFromJson(const Setting& setting, const QJsonValue& value, const QString& name);

/// A value as people type it; "on" and "off" for a switch.
QString settingToText(const QVariant& value);
QJsonValue settingToJson(const QVariant& value);

/// What is allowed, as in "a number from 1 to 5" or "one of mm, cm, in".
QString allowedFor(const Setting& setting);

/// A number with no more digits than it needs to be read back.
QString numberWord(double value);
