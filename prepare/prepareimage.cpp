#include "prepareimage.h"

#include "binarize.h"
#include "numbers.h"
#include "pace.h"
#include "skew.h"
#include "straighten.h"
#include "whiten.h"

#include <algorithm>

namespace ovtrace {
namespace {

constexpr double NoThreshold = -1.0;
constexpr double AutoThreshold = -2.0;
constexpr double LocalThreshold = -3.0;

QImage thresholded(const QImage& image, double threshold, Pace& pace) {
    if (threshold == AutoThreshold)
        return binarized(image, ThresholdKind::Auto, 0, pace);
    if (threshold == LocalThreshold)
        return binarized(image, ThresholdKind::Local, 0, pace);
    if (!(threshold >= 0.0))
        return image;
    const int level = truncateToInt(std::min(threshold, 255.0));
    return binarized(image, ThresholdKind::Fixed, level, pace);
}

} // namespace
} // namespace ovtrace

OvPrepareImage::OvPrepareImage() = default;
OvPrepareImage::OvPrepareImage(const OvPrepareImage& other) = default;
OvPrepareImage& OvPrepareImage::operator=(const OvPrepareImage& other) = default;
OvPrepareImage::~OvPrepareImage() = default;

void OvPrepareImage::setOption(const QString& key, double value) {
    options.insert(key, value);
}

void OvPrepareImage::setProgress(OvTraceProgress* newProgress) {
    progress = newProgress;
}

OvPreparedImage OvPrepareImage::prepare(const QImage& image) const {
    using namespace ovtrace;
    OvPreparedImage prepared{image, 0.0};
    if (image.isNull())
        return prepared;
    try {
        Pace pace(progress);
        pace.stage(0.3);
        const bool deskew = options.value("deskew") > 0.0;
        const double threshold = options.value("threshold", NoThreshold);
        // What turning adds at the corners is as light as the paper beside it once that is white.
        if (options.value("whiten") > 0.0 || (deskew && threshold == LocalThreshold))
            prepared.image = whitened(prepared.image, pace);
        QImage page; // locally thresholded, as long as the image stays as it is
        if (deskew) {
            pace.stage(0.6);
            page = binarized(prepared.image, ThresholdKind::Local, 0, pace);
            prepared.slope = skewOf(page, pace);
            pace.stage(0.8);
            if (prepared.slope != 0.0) {
                prepared.image = straightened(prepared.image, prepared.slope, pace);
                page = {};
            }
        }
        pace.stage(1.0);
        prepared.image = threshold == LocalThreshold && !page.isNull()
                             ? page
                             : thresholded(prepared.image, threshold, pace);
    } catch (const TraceCancelled&) {
        return {};
    }
    return prepared;
}
