#pragma once

#include "traceexport.h"

#include <QList>

/// The pixels of an image, four stored bytes each.
class OVTRACE_EXPORT ImageData {
public:
    ImageData();
    /// Takes the three values as given; `data` is shared, not copied.
    ImageData(int width, int height, QList<char>& data);

    int width = 0;  ///< pixels
    int height = 0; ///< pixels
    /// width x height x 4 bytes: rows from the top, pixels from the left, each red, green, blue,
    /// alpha, stored as the channel value minus 128 in a signed byte.
    QList<char> data;
};
