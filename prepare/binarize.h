#pragma once

#include <cstdint>

class QImage;

namespace ovtrace {

class Pace;
struct InkLevels;

/// How a pixel is told to be ink or paper.
enum class ThresholdKind : std::uint8_t {
    Fixed, ///< by a given brightness
    Auto,  ///< by the brightness that parts the image's pixels best
    Local  ///< by the pixels around it, for uneven light and stains
};

/// Black and white of one bit a pixel, the same size.
///
/// Brightness is that of the darkest channel, so that lines of every colour are ink, red ones too;
/// in an image that is dark for the most part that of the lightest one, and light pixels are the
/// ink. Pixels of at most `level` (0 to 255; Fixed alone) are black. What is transparent is white.
QImage binarized(const QImage& image, ThresholdKind kind, int level, Pace& pace);

/// Black for ink by the mean and the deviation of the square of `2 radius + 1` pixels around each,
/// cut at the image's rim. Brightness is to be evened before: 255 for paper.
QImage locallyBinarized(const InkLevels& brightness, int radius, Pace& pace);

} // namespace ovtrace
