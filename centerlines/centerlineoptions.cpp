#include "centerlineoptions.h"

#include <algorithm>
#include <cmath>

namespace ovtrace {
namespace {

const QString InkThreshold = QStringLiteral("inkthreshold");
const QString SpeckArea = QStringLiteral("speckarea");
const QString TextSize = QStringLiteral("textsize");

double read(const QMap<QString, double>& options, const QString& key, double least, double most) {
    const double value = options.value(key, defaultCenterlineOptions().value(key));
    return std::isfinite(value) ? std::clamp(value, least, most)
                                : defaultCenterlineOptions().value(key);
}

} // namespace

QMap<QString, double> defaultCenterlineOptions() {
    return {{InkThreshold, 0.45}, {SpeckArea, 1.0}, {TextSize, 18.0}};
}

CenterlineOptions readCenterlineOptions(const QMap<QString, double>& options) {
    CenterlineOptions result;
    result.threshold = static_cast<int>(255.0 * read(options, InkThreshold, 0.05, 0.95));
    result.speckArea = static_cast<int>(read(options, SpeckArea, 0.0, 1e6));
    result.textSize = read(options, TextSize, 0.0, 1000.0);
    return result;
}

} // namespace ovtrace
