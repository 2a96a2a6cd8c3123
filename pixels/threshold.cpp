#include "threshold.h"

#include <QColor>
#include <QImage>

namespace ovtrace {
namespace {

constexpr QRgb White = 0xffffffffU;
constexpr QRgb Black = 0xff000000U;

/// The largest sum of two 8-bit channels.
constexpr int LargestSum = 510;

/// From which sum of its largest and smallest channel on a colour turns white; LargestSum + 1 when
/// none does.
int smallestWhiteSum(const Threshold& threshold) {
    int low = 0;
    int high = LargestSum + 1;
    while (low < high) {
        const int sum = (low + high) / 2;
        if (threshold.isWhite(QColor(sum - sum / 2, sum / 2, sum / 2)))
            high = sum;
        else
            low = sum + 1;
    }
    return low;
}

/// 32-bit pixels whose bytes are the channels themselves.
void applyToRgb32(QImage& image, const Threshold& threshold) {
    const auto blackOrWhite = [&](QRgb pixel) { return threshold.isWhite(pixel) ? White : Black; };
    const int width = image.width();
    for (int y = 0; y < image.height(); ++y) {
        QRgb* row = reinterpret_cast<QRgb*>(image.scanLine(y));
        std::transform(row, row + width, row, blackOrWhite);
    }
}

void applyToPixels(QImage& image, const Threshold& threshold) {
    const QColor white(255, 255, 255, 255);
    const QColor black(0, 0, 0, 255);
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            const bool isWhite = threshold.isWhite(image.pixelColor(x, y));
            image.setPixelColor(x, y, isWhite ? white : black);
        }
    }
}

} // namespace

Threshold::Threshold(bool useBrightness, int limit)
    : useBrightness(useBrightness), limit(limit), whiteSum(smallestWhiteSum(*this)) {
}

bool Threshold::isWhite(const QColor& color) const {
    return useBrightness && color.lightness() > limit;
}

bool takesPixelColors(const QImage& image) {
    switch (image.format()) {
    case QImage::Format_Invalid:
    case QImage::Format_Mono:
    case QImage::Format_MonoLSB:
    case QImage::Format_Indexed8:
        return false;
    default:
        return true;
    }
}

void applyThreshold(QImage& image, const Threshold& threshold) {
    if (image.format() == QImage::Format_RGB32 || image.format() == QImage::Format_ARGB32)
        applyToRgb32(image, threshold);
    else
        applyToPixels(image, threshold);
}

} // namespace ovtrace
