#pragma once

#include "imagedata.h"

class QImage;

namespace ovtrace {

/// The pixels of `image`, whatever its format, as QImage::pixel() gives them.
ImageData loadImageData(const QImage& image);

} // namespace ovtrace
