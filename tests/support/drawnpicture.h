#pragma once

#include <QImage>

/// A square picture, black where `isInk(x, y)` says so and white elsewhere.
template <typename IsInk> QImage drawn(int side, IsInk isInk) {
    QImage image(side, side, QImage::Format_Grayscale8);
    for (int y = 0; y < side; ++y) {
        for (int x = 0; x < side; ++x)
            image.scanLine(y)[x] = isInk(x, y) ? 0 : 255;
    }
    return image;
}
