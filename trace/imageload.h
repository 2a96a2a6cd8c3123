#pragma once

#include "options.h"
#include "pixelimage.h"

class QImage;

namespace ovtrace {

/// The pixels of `image`, whatever its format, as QImage::pixel() gives them after preprocessing
/// with `options`. Stores no more channels than they need.
PixelImage loadPixels(const QImage& image, OptionMap& options);

} // namespace ovtrace
