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

/// Paints where `inside` holds over the image, anti-aliased by exact coverage; `mixed` gives the
/// level of a channel from that below, that above and the share of the latter.
template <typename Inside, typename Mixed>
void paintBy(QImage& image, QRgb color, const Inside& inside, const Mixed& mixed) {
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

/// The same by means of the stored levels.
template <typename Inside> void paint(QImage& image, QRgb color, const Inside& inside) {
    paintBy(image, color, inside, [](int below, int above, double share) {
        return static_cast<int>(std::floor(below + (above - below) * share + 0.5));
    });
}

/// The same by means of light (sRGB curve).
template <typename Inside> void paintInLight(QImage& image, QRgb color, const Inside& inside) {
    const auto light = [](int stored) {
        const double level = stored / 255.0;
        return level <= 0.04045 ? level / 12.92 : std::pow((level + 0.055) / 1.055, 2.4);
    };
    paintBy(image, color, inside, [&light](int below, int above, double share) {
        const double mean = light(below) + (light(above) - light(below)) * share;
        const double level =
            mean <= 0.0031308 ? mean * 12.92 : 1.055 * std::pow(mean, 1.0 / 2.4) - 0.055;
        return static_cast<int>(std::floor(255.0 * level + 0.5));
    });
}

inline QImage ground(int width, int height, QRgb color) {
    QImage image(width, height, QImage::Format_RGB32);
    image.fill(color);
    return image;
}

} // namespace coverage
