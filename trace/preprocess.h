#pragma once

#include "options.h"

#include <QRgb>

#include <algorithm>
#include <optional>

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

/// The threshold that preprocess() puts an image through; none when it leaves the image as it is:
/// with "monochrome" not above 0, and when the image's format takes no pixel colours (1 bit a
/// pixel, or with a colour table).
///
/// White needs "usebrightness" on and a lightness strictly above "brightnessthreshold"; alpha has
/// no effect. The options are read with readOption(), the last four only when "monochrome" is on.
std::optional<Threshold> thresholdFor(const QImage& image, OptionMap& options);

/// Makes every pixel opaque white or black by the threshold.
void applyThreshold(QImage& image, const Threshold& threshold);

/// Puts the image through its threshold, if there is one.
void preprocess(QImage& image, OptionMap& options);

} // namespace ovtrace
