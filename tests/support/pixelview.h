#pragma once

#include <labelimage.h>

#include <QImage>

#include <random>

namespace ovtrace {

/// The pixels of an image of 32 bits, which has to live on.
inline PixelView viewOf(const QImage& image) {
    return {reinterpret_cast<const QRgb*>(image.constBits()),
            static_cast<std::size_t>(image.bytesPerLine()) / sizeof(QRgb), image.width(),
            image.height()};
}

/// Changes each channel of each pixel by up to `most`, the same on every platform.
inline void addNoise(QImage& image, int most, unsigned seed) {
    std::mt19937 random(seed);
    const auto changed = [&](int value) {
        const auto span = static_cast<unsigned>(2 * most + 1);
        return std::min(std::max(value + static_cast<int>(random() % span) - most, 0), 255);
    };
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            const QRgb color = image.pixel(x, y);
            const int red = changed(qRed(color));
            const int green = changed(qGreen(color));
            image.setPixel(x, y, qRgb(red, green, changed(qBlue(color))));
        }
    }
}

} // namespace ovtrace
