#pragma once

#include "pixelimage.h"
#include "stageprogress.h"
#include "threshold.h"

#include <optional>

class QImage;

namespace ovtrace {

/// The pixels of `image`, whatever its format, as QImage::pixel() gives them after
/// applyThreshold() with `threshold`, if there is one. Stores no more channels than they need.
PixelImage loadPixels(const QImage& image, const std::optional<Threshold>& threshold = {},
                      StageProgress progress = {});

} // namespace ovtrace
