#include "preprocess.h"

#include <numbers.h>

#include <QImage>

#include <cmath>

namespace ovtrace {

std::optional<Threshold> thresholdFor(const QImage& image, OptionMap& options) {
    if (!(readOption(options, option::Monochrome) > 0.0))
        return std::nullopt;
    // "usealpha" and "alphathreshold" decide nothing, but reading them leaves their keys behind.
    readOption(options, option::UseAlpha);
    readOption(options, option::AlphaThreshold);
    const bool useBrightness = std::floor(readOption(options, option::UseBrightness)) != 0.0;
    const int limit = floorToInt(readOption(options, option::BrightnessThreshold));
    if (!takesPixelColors(image))
        return std::nullopt;
    return Threshold(useBrightness, limit);
}

void preprocess(QImage& image, OptionMap& options) {
    if (const auto threshold = thresholdFor(image, options))
        applyThreshold(image, *threshold);
}

} // namespace ovtrace
