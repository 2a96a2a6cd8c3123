#include "saddles.h"

#include "mixing.h"

#include <algorithm>

namespace ovtrace {
namespace {

/// How many more pixels have the label `a` than `b` within three pixels of the corner.
int majority(const LabelImage& labels, int x, int y, std::uint16_t a, std::uint16_t b) {
    constexpr int Reach = 3;
    int difference = 0;
    for (int row = std::max(y - Reach, 0); row < std::min(y + Reach, labels.height); ++row) {
        const std::uint16_t* line = labels.row(row);
        for (int column = std::max(x - Reach, 0); column < std::min(x + Reach, labels.width);
             ++column)
            difference += int(line[column] == a) - int(line[column] == b);
    }
    return difference;
}

} // namespace

bool joinsFalling(const PixelView& image, const LabelImage& labels, int x, int y) {
    const std::uint16_t falling = labels.at(x, y);
    const std::uint16_t rising = labels.at(x - 1, y);
    const QRgb a = labels.palette[falling];
    const QRgb b = labels.palette[rising];
    const ColorAxis axis(a, b);
    const double covered = axis.position(image.at(x - 1, y - 1)) + axis.position(image.at(x, y)) +
                           axis.position(image.at(x, y - 1)) + axis.position(image.at(x - 1, y));
    // Four coverages, each known to a step of the colours.
    const double uncertainty = 4.0 * axis.step();
    if (covered < 2.0 - uncertainty)
        return true;
    if (covered > 2.0 + uncertainty)
        return false;
    const int more = majority(labels, x, y, falling, rising);
    if (more != 0)
        return more < 0;
    const int lightness = qGray(a) - qGray(b);
    return lightness != 0 ? lightness < 0 : falling < rising;
}

} // namespace ovtrace
