#pragma once

#include <optionnames.h>

#include <QMap>
#include <QString>

namespace ovtrace {

/// Option values by lower-case key.
using OptionMap = QMap<QString, double>;

/// The options that a new tracer has, with their defaults.
OptionMap defaultOptions();

/// The value of `key`. A key that is absent is inserted with 0.0, so that copies carry it too.
inline double readOption(OptionMap& options, QLatin1String key) {
    return options[QString(key)];
}

} // namespace ovtrace
