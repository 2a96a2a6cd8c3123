#pragma once

#include "options.h"

#include <threshold.h>

#include <optional>

class QImage;

namespace ovtrace {

/// The threshold that preprocess() puts an image through; none when it leaves the image as it is:
/// with "monochrome" not above 0, and when the image's format takes no pixel colours (1 bit a
/// pixel, or with a colour table).
///
/// White needs "usebrightness" on and a lightness strictly above "brightnessthreshold"; alpha has
/// no effect. The options are read with readOption(), the last four only when "monochrome" is on.
std::optional<Threshold> thresholdFor(const QImage& image, OptionMap& options);

/// Puts the image through its threshold, if there is one.
void preprocess(QImage& image, OptionMap& options);

} // namespace ovtrace
