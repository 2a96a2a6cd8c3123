#pragma once

#include <QMap>
#include <QString>

#include <algorithm>
#include <cstddef>

namespace ovtrace {

/// The options of a trace as they are used, see docs/regions.md.
struct RegionOptions {
    std::size_t mostColors = 64;
    double tolerance = 0.03;  ///< pixels
    double speck = -1.0;      ///< square pixels; below 0: chosen by what the image is
    bool exactPixels = false; ///< boundaries along the edges of the pixels
    bool cubics = true;
};

/// Reads the options; values out of their range become the nearest in it, what is no number the
/// default.
inline RegionOptions readRegionOptions(const QMap<QString, double>& values) {
    const auto read = [&](const char* key, double standard, double least, double most) {
        const double value = values.value(QLatin1String(key), standard);
        return value == value ? std::clamp(value, least, most) : standard;
    };
    RegionOptions options;
    options.mostColors = static_cast<std::size_t>(read("colors", 64.0, 1.0, 4096.0));
    options.tolerance = read("tolerance", options.tolerance, 0.0, 100.0);
    options.speck = read("speck", options.speck, -1.0, 1e9);
    options.exactPixels = read("fit", 1.0, 0.0, 1.0) == 0.0;
    options.cubics = read("cubics", 1.0, 0.0, 1.0) != 0.0;
    return options;
}

} // namespace ovtrace
