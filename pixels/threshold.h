#pragma once

#include <QRgb>

#include <algorithm>

class QColor;
class QImage;

namespace ovtrace {

/// Which colours turn white: those whose HSL lightness is above a limit, or none.
class Threshold {
public:
    Threshold(bool useBrightness, int limit);

    bool isWhite(const QColor& color) const;
    /// The same for the 8-bit channels of `pixel`, whatever its alpha.
    bool isWhite(QRgb pixel) const {
        const int red = qRed(pixel);
        const int green = qGreen(pixel);
        const int blue = qBlue(pixel);
        const int larger = std::max(red, std::max(green, blue));
        const int smaller = std::min(red, std::min(green, blue));
        return larger + smaller >= whiteSum;
    }

private:
    bool useBrightness;
    int limit;
    /// From which sum of its largest and smallest channel on a colour of 8-bit channels turns
    /// white: its lightness follows from that sum alone and grows with it.
    int whiteSum;
};

/// Whether pixels of the image can be set to any colour: not with 1 bit a pixel or a colour table.
bool takesPixelColors(const QImage& image);

/// Makes every pixel opaque white or black by the threshold; for images that take pixel colours.
void applyThreshold(QImage& image, const Threshold& threshold);

} // namespace ovtrace
