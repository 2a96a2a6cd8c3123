#include "saddles.h"

#include "mixing.h"

#include <algorithm>
#include <array>

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

/// Whether both colours cover pixels around the corner whole.
bool reachesBoth(const PixelView& image, const ColorAxis& axis, int x, int y) {
    constexpr double Whole = 0.95;
    double least = 1.0;
    double most = 0.0;
    for (int row = std::max(y - 2, 0); row < std::min(y + 2, image.height); ++row) {
        for (int column = std::max(x - 2, 0); column < std::min(x + 2, image.width); ++column) {
            const double t = axis.position(image.at(column, row));
            least = std::min(least, t);
            most = std::max(most, t);
        }
    }
    return most >= Whole && least <= 1.0 - Whole;
}

/// Whether a pixel has its label from none around it but, perhaps, one that lies diagonally.
bool isAlone(const LabelImage& labels, int x, int y) {
    const std::uint16_t label = labels.at(x, y);
    int alike = 0;
    for (int row = std::max(y - 1, 0); row < std::min(y + 2, labels.height); ++row) {
        for (int column = std::max(x - 1, 0); column < std::min(x + 2, labels.width); ++column)
            alike += int(labels.at(column, row) == label);
    }
    return alike <= 2;
}

} // namespace

bool joinsFalling(const PixelView& image, const LabelImage& labels, int x, int y) {
    const std::uint16_t falling = labels.at(x, y);
    const std::uint16_t rising = labels.at(x - 1, y);
    const QRgb a = labels.palette[falling];
    const QRgb b = labels.palette[rising];
    const ColorAxis axis(a, b, labels.light);
    const std::array shares{axis.position(image.at(x - 1, y - 1)), axis.position(image.at(x, y)),
                            axis.position(image.at(x, y - 1)), axis.position(image.at(x - 1, y))};
    const double covered = shares[0] + shares[1] + shares[2] + shares[3];
    // Beside a tip both pixels hold shares of its colour, as they do not beside a speck.
    constexpr double Held = 0.3; // of the two together
    const bool fallingTip = shares[2] + shares[3] <= 2.0 - Held &&
                            (isAlone(labels, x - 1, y - 1) || isAlone(labels, x, y));
    const bool risingTip =
        shares[0] + shares[1] >= Held && (isAlone(labels, x, y - 1) || isAlone(labels, x - 1, y));
    if (fallingTip != risingTip)
        return fallingTip;
    // A line that covers no pixel whole is held against what it reaches here.
    const auto [least, most] = std::minmax_element(shares.begin(), shares.end());
    const double half = reachesBoth(image, axis, x, y) ? 2.0 : 2.0 * (*least + *most);
    // Four coverages, each known to a step of the colours.
    const double uncertainty = 4.0 * axis.step();
    if (covered < half - uncertainty)
        return true;
    if (covered > half + uncertainty)
        return false;
    const int more = majority(labels, x, y, falling, rising);
    if (more != 0)
        return more < 0;
    const int lightness = qGray(a) - qGray(b);
    return lightness != 0 ? lightness < 0 : falling < rising;
}

} // namespace ovtrace
