#include "centerlineoptions.h"

#include <optionnames.h>

#include <algorithm>
#include <cmath>

namespace ovtrace {
namespace {

using namespace centerlineoption;

double read(const QMap<QString, double>& options, QLatin1String key, double least, double most) {
    const double value = options.value(key, defaultCenterlineOptions().value(key));
    return std::isfinite(value) ? std::clamp(value, least, most)
                                : defaultCenterlineOptions().value(key);
}

} // namespace

QMap<QString, double> defaultCenterlineOptions() {
    return {{QString(InkThreshold), 0.45}, {QString(SpeckArea), 1.0}, {QString(TextSize), 18.0}};
}

CenterlineOptions readCenterlineOptions(const QMap<QString, double>& options) {
    CenterlineOptions result;
    result.threshold = static_cast<int>(255.0 * read(options, InkThreshold, 0.05, 0.95));
    result.speckArea = static_cast<int>(read(options, SpeckArea, 0.0, 1e6));
    result.textSize = read(options, TextSize, 0.0, 1000.0);
    return result;
}

} // namespace ovtrace
