#include "preprocess.h"

#include "numbers.h"

#include <QColor>
#include <QImage>

#include <algorithm>
#include <cmath>

namespace ovtrace {
namespace {

constexpr QRgb White = 0xffffffffU;
constexpr QRgb Black = 0xff000000U;

/// Which colours turn white.
class Threshold {
public:
    Threshold(bool useBrightness, int limit) : useBrightness(useBrightness), limit(limit) {
    }
    bool isWhite(const QColor& color) const {
        return useBrightness && color.lightness() > limit;
    }

private:
    bool useBrightness;
    int limit;
};

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

/// The largest sum of two 8-bit channels.
constexpr int LargestSum = 510;

/// From which sum of its largest and smallest channel on a colour of 8-bit channels turns white:
/// its lightness follows from that sum alone and grows with it. LargestSum + 1 when none does.
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
void preprocessRgb32(QImage& image, const Threshold& threshold) {
    const int whiteSum = smallestWhiteSum(threshold);
    const auto blackOrWhite = [=](QRgb pixel) {
        const int red = qRed(pixel);
        const int green = qGreen(pixel);
        const int blue = qBlue(pixel);
        const int larger = std::max(red, std::max(green, blue));
        const int smaller = std::min(red, std::min(green, blue));
        return larger + smaller >= whiteSum ? White : Black;
    };
    const int width = image.width();
    for (int y = 0; y < image.height(); ++y) {
        QRgb* row = reinterpret_cast<QRgb*>(image.scanLine(y));
        std::transform(row, row + width, row, blackOrWhite);
    }
}

void preprocessPixels(QImage& image, const Threshold& threshold) {
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

void preprocess(QImage& image, OptionMap& options) {
    if (!(readOption(options, option::Monochrome) > 0.0))
        return;
    // "usealpha" and "alphathreshold" decide nothing, but reading them leaves their keys behind.
    readOption(options, option::UseAlpha);
    readOption(options, option::AlphaThreshold);
    const bool useBrightness = std::floor(readOption(options, option::UseBrightness)) != 0.0;
    const int limit = floorToInt(readOption(options, option::BrightnessThreshold));
    if (!takesPixelColors(image))
        return;
    const Threshold threshold(useBrightness, limit);
    if (image.format() == QImage::Format_RGB32 || image.format() == QImage::Format_ARGB32)
        preprocessRgb32(image, threshold);
    else
        preprocessPixels(image, threshold);
}

} // namespace ovtrace
