#pragma once

#include "settings.h"

#include <QList>
#include <QString>
#include <QStringList>
#include <QVariant>

/// What a setting's value is, and what type the QVariant that holds it has.
enum class SettingType {
    Switch,    ///< on or off: bool
    Whole,     ///< a whole number within the range: double; or one of the words: QString
    Number,    ///< a number within the range: double; or one of the words: QString
    Choice,    ///< one of the words: QString
    Text,      ///< any text: QString
    Color,     ///< "#rrggbb" or "#rrggbbaa": QString
    Colors,    ///< a list of such colours: QStringList
    Length,    ///< a number with its unit, as "120mm": QString
    Rectangle, ///< "x,y,width,height" in whole pixels: QString
    Ratio,     ///< a scale, as "1:100": QString
    Paper,     ///< "a3", "a3-landscape", "letter" or "200x100mm": QString
    World      ///< six numbers of a world file, "A,D,B,E,C,F": QString; or one of the words
};

/// Where a face shows the setting.
enum class SettingGroup { Method, Input, Preparation, Tracing, Size, Output };

/// Whether people change it often, or may look for it.
enum class SettingRank { Common, More };

/// One setting of a job: the only place that says what it is called, may be, and is read by.
struct Setting {
    const char* key = "";  ///< in settings files, and of a tracer's option
    const char* flag = ""; ///< on a command line, without dashes; empty when it has none of its own
    SettingType type = SettingType::Switch;
    double low = 0.0; ///< of Whole and Number; what makes sense, not what can be computed
    double high = 0.0;
    QStringList words = {}; ///< of Choice; of Whole and Number those allowed beside numbers
    const char* unit = "";  ///< of a number, for people; empty when it has none
    QVariant usual = {};    ///< without the setting; not valid when there is nothing then
    const char* label = "";
    const char* meaning = ""; ///< one plain sentence, without its full stop
    SettingGroup group = SettingGroup::Tracing;
    SettingRank rank = SettingRank::More;
    bool isTracerOption = false; ///< handed to the tracer by its key
    QList<Method> methods = {};  ///< that read it; empty: all
    QList<Mode> modes = {};      ///< of Method::Outlines that read it; empty: all
    QStringList formats = {};    ///< that read it; empty: all
    /// The key of a setting without which this one is not read, unless the format does not read
    /// that one either; empty when there is none.
    const char* needs = "";
    /// The values of that setting with which this one is read; empty: any that was given.
    QStringList needed = {};
    /// The key of a setting that keeps this one from being read when it was given or is on.
    const char* without = "";
};

/// All settings in the order in which they are shown.
const QList<Setting>& settingTable();

/// Settings of different methods may share a flag: whether it means this one when the method is
/// traced by. A flag that no setting of the method has means all that have it.
bool isMeantByFlag(const Setting& setting, Method method);
/// Whether another setting has the same flag.
bool sharesItsFlag(const Setting& setting);

/// The setting with this key; null when there is none.
const Setting* findSetting(const QString& key);

/// The key among these settings, of which there is one at least, that is nearest to a mistyped
/// word.
QString nearestSetting(const QString& word, const QList<Setting>& settings);

/// How a face of the product calls a setting in what it tells its users.
using SettingNaming = QString (*)(const Setting& setting);

/// Says once, before anything is traced, how settings are called; without it by their labels.
void setSettingNaming(SettingNaming naming);

/// What a setting, or the one with this key, is called in messages.
QString settingName(const Setting& setting);
QString settingName(const char* key);
