#pragma once

#include <QMap>
#include <QString>

namespace ovtrace {

/// The options of a trace as the stages take them.
struct CenterlineOptions {
    int threshold = 115;    ///< ink of 255 from which a pixel counts as ink
    int speckArea = 1;      ///< pixels of the largest speck of dirt
    double textSize = 18.0; ///< size of the largest character over the usual stroke's width
};

/// The options that a new tracer has, with their defaults.
QMap<QString, double> defaultCenterlineOptions();

/// `options` by name; what is missing or no number has its default.
CenterlineOptions readCenterlineOptions(const QMap<QString, double>& options);

} // namespace ovtrace
