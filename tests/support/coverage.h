#pragma once

#include <QImage>

#include <cmath>

namespace coverage {

/// The share of the pixel (x, y) in which `inside` holds, from `Samples` squared places in it.
template <typename Inside> double shareOf(int x, int y, const Inside& inside) {
    constexpr int Samples = 32;
    int count = 0;
    for (int i = 0; i < Samples; ++i) {
        for (int j = 0; j < Samples; ++j)
            count += inside(x + (j + 0.5) / Samples, y + (i + 0.5) / Samples) ? 1 : 0;
    }
    return static_cast<double>(count) / (Samples * Samples);
}

/// Paints where `inside` holds over the image, anti-aliased by exact coverage.
template <typename Inside> void paint(QImage& image, QRgb color, const Inside& inside) {
    const auto mixed = [](int below, int above, double share) {
        return static_cast<int>(std::floor(below + (above - below) * share + 0.5));
    };
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            const double share = shareOf(x, y, inside);
            const QRgb below = image.pixel(x, y);
            image.setPixel(x, y,
                           qRgb(mixed(qRed(below), qRed(color), share),
                                mixed(qGreen(below), qGreen(color), share),
                                mixed(qBlue(below), qBlue(color), share)));
        }
    }
}

inline QImage ground(int width, int height, QRgb color) {
    QImage image(width, height, QImage::Format_RGB32);
    image.fill(color);
    return image;
}

} // namespace coverage
