#pragma once

#include "errors.h"
#include "settings.h"

#include <QByteArray>

/// "#rrggbb" or "#rrggbbaa"; throws UsageError for anything else.
QColor parseColor(const QString& word);

/// The settings as JSON: the mode, every option of the engine with the value it will have, and the
/// palette if one was given.
QByteArray settingsToJson(const TraceSettings& settings);

/// Reads what settingsToJson() wrote. Throws FileError or UsageError.
TraceSettings loadSettings(const QString& fileName);

/// Every option of the engine that the settings fix, in raw mode those that were given alone.
EngineValues effectiveValues(const TraceSettings& settings);
