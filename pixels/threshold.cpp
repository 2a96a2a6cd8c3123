#include "threshold.h"

#include <QColor>
#include <QFloat16>
#include <QImage>

#include <new>

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

/// Whether the pixel's alpha is stored as a number that no colour has: QImage would complain.
bool hasNoAlpha(const QImage& image, int x, int y) {
    const auto outside = [](float alpha) { return alpha < 0.0F || alpha > 1.0F; };
    const uchar* row = image.constScanLine(y);
    switch (image.format()) {
    case QImage::Format_RGBX16FPx4:
    case QImage::Format_RGBA16FPx4:
        return outside(reinterpret_cast<const qfloat16*>(row)[4 * qsizetype(x) + 3]);
    case QImage::Format_RGBA16FPx4_Premultiplied: // below 0 it divides by nothing
        return reinterpret_cast<const qfloat16*>(row)[4 * qsizetype(x) + 3] > 1.0F;
    case QImage::Format_RGBX32FPx4:
    case QImage::Format_RGBA32FPx4:
        return outside(reinterpret_cast<const float*>(row)[4 * qsizetype(x) + 3]);
    case QImage::Format_RGBA32FPx4_Premultiplied:
        return reinterpret_cast<const float*>(row)[4 * qsizetype(x) + 3] > 1.0F;
    default:
        return false;
    }
}

/// QImage::pixelColor() without its complaints.
QColor pixelColor(const QImage& image, int x, int y) {
    return hasNoAlpha(image, x, y) ? QColor() : image.pixelColor(x, y);
}

void applyToPixels(QImage& image, const Threshold& threshold) {
    const QColor white(255, 255, 255, 255);
    const QColor black(0, 0, 0, 255);
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            const bool isWhite = threshold.isWhite(pixelColor(image, x, y));
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
    if (image.isNull())
        return;
    image.detach();
    if (image.isNull())
        throw std::bad_alloc(); // a copy of its own has found no room
    if (image.format() == QImage::Format_RGB32 || image.format() == QImage::Format_ARGB32)
        applyToRgb32(image, threshold);
    else
        applyToPixels(image, threshold);
}

} // namespace ovtrace
