#pragma once

#include "light.h"

#include <optionnames.h>

#include <QMap>
#include <QString>

#include <algorithm>
#include <cstddef>
#include <optional>

namespace ovtrace {

/// The options of a trace as they are used, see docs/regions.md.
struct RegionOptions {
    std::size_t mostColors = 64;
    double tolerance = 0.03;  ///< pixels
    double speck = -1.0;      ///< square pixels; below 0: chosen by what the image is
    bool exactPixels = false; ///< boundaries along the edges of the pixels
    bool cubics = true;
    std::optional<Light> light; ///< none: told from the image
};

/// The options that a new tracer has, with their defaults.
inline QMap<QString, double> defaultRegionOptions() {
    return {{QString(regionoption::Colors), 64.0}, {QString(regionoption::Tolerance), 0.03},
            {QString(regionoption::Speck), -1.0},  {QString(regionoption::Fit), 1.0},
            {QString(regionoption::Cubics), 1.0},  {QString(regionoption::Light), 0.0}};
}

/// Reads the options; values out of their range become the nearest in it, what is no number the
/// default.
inline RegionOptions readRegionOptions(const QMap<QString, double>& values) {
    const QMap<QString, double> defaults = defaultRegionOptions();
    const auto read = [&](QLatin1String key, double least, double most) {
        const double standard = defaults.value(key);
        const double value = values.value(key, standard);
        return value == value ? std::clamp(value, least, most) : standard;
    };
    RegionOptions options;
    options.mostColors = static_cast<std::size_t>(read(regionoption::Colors, 1.0, 4096.0));
    options.tolerance = read(regionoption::Tolerance, 0.0, 100.0);
    options.speck = read(regionoption::Speck, -1.0, 1e9);
    options.exactPixels = read(regionoption::Fit, 0.0, 1.0) == 0.0;
    options.cubics = read(regionoption::Cubics, 0.0, 1.0) != 0.0;
    const double light = read(regionoption::Light, 0.0, 2.0);
    if (light >= 1.0)
        options.light = light < 2.0 ? Light::Stored : Light::Linear;
    return options;
}

} // namespace ovtrace
