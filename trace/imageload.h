#pragma once

#include "imagedata.h"

class QImage;

namespace ovtrace {

/// The pixels of `image`, whatever its format, as QImage::pixel() gives them.
ImageData loadImageData(const QImage& image);

/// Appends the pixels of `image`, row by row, as four stored bytes each.
void appendPixels(const QImage& image, QList<char>& data);

} // namespace ovtrace
