#pragma once

#include <QList>
#include <QMap>
#include <QString>

/// An option of the engine as users see it.
struct EngineOption {
    const char* key;
    const char* flag; ///< its own option of the program, without dashes; empty when it has none
    double usual;     ///< the value in color mode
    double low;       ///< the least value that makes sense
    double high;
    const char* meaning;
};

/// All fourteen, in the order of the stages that read them.
const QList<EngineOption>& engineOptions();

using EngineValues = QMap<QString, double>;

/// Checks a value given as text and returns it; throws UsageError that names what is allowed.
double checkedValue(const EngineOption& option, const QString& name, const QString& text);

/// The option with this key; throws UsageError with the likeliest one when there is none.
const EngineOption& findEngineOption(const QString& key);

/// A set of options for a kind of picture.
struct Preset {
    const char* name = "";
    bool blackAndWhite = false;
    EngineValues values;
    const char* meaning = "";
};

const QList<Preset>& presets();
