#include "doubling.h"

#include "pace.h"

#include <algorithm>
#include <array>

namespace ovtrace {
namespace {

/// Width of the usual stroke in pixels below which twice the size pays.
constexpr double Narrow = 2.65;
/// Pixels of the largest image that is doubled: 150 dots an inch on an A3 page.
constexpr std::size_t MostPixels = 4'500'000;
/// Steps along the axes over the length of a line, on average over all directions: 4 / pi.
constexpr double StepsOfLength = 1.2732;

/// Weights of the four pixels about a place a quarter before the middle of the third, over 128.
constexpr std::array<int, 4> Weights{-3, 29, 111, -9};

std::uint8_t mixed(const std::array<int, 4>& levels, bool mirrored) {
    int sum = 64;
    for (std::size_t k = 0; k < 4; ++k)
        sum += Weights[mirrored ? 3 - k : k] * levels[k];
    return static_cast<std::uint8_t>(std::clamp(sum / 128, 0, 255));
}

void halve(Point& p) {
    p = p * 0.5;
}

void halve(Stroke& stroke) {
    halve(stroke.carrier.at);
    stroke.carrier.radius *= 0.5;
    if (stroke.ellipse) {
        halve(stroke.ellipse->centre);
        stroke.ellipse->major *= 0.5;
        stroke.ellipse->minor *= 0.5;
    }
    halve(stroke.ends[0].at);
    halve(stroke.ends[1].at);
    stroke.width *= 0.5;
    for (double& length : stroke.dashes)
        length *= 0.5;
    // What fitted it is in the doubled ink's pixels, and has done its work.
    stroke.samples.clear();
    stroke.carrier.support = Moments();
}

} // namespace

bool isNarrow(const InkLevels& ink, int threshold, Pace& pace) {
    if (ink.levels.size() > MostPixels)
        return false;
    double mass = 0.0;
    double edges = 0.0;
    for (int y = 1; y < ink.height; ++y) {
        const std::uint8_t* row = ink.levels.data() + ink.indexOf(0, y);
        const std::uint8_t* above = row - ink.width;
        for (int x = 1; x < ink.width; ++x) {
            mass += row[x];
            const bool isInk = row[x] >= threshold;
            edges += isInk != (row[x - 1] >= threshold) ? 1.0 : 0.0;
            edges += isInk != (above[x] >= threshold) ? 1.0 : 0.0;
        }
        pace.step(y, ink.height);
    }
    return edges > 0.0 && 2.0 * StepsOfLength * mass / 255.0 < Narrow * edges;
}

InkLevels doubled(const InkLevels& ink, Pace& pace) {
    InkLevels result{2 * ink.width, 2 * ink.height, {}};
    result.levels.resize(4 * ink.levels.size());
    // Rows first: the wide image at the old height.
    std::vector<std::uint8_t> wide(2 * ink.levels.size());
    const auto widthOf = static_cast<std::size_t>(result.width);
    for (int y = 0; y < ink.height; ++y) {
        const auto pixel = [&](int x) {
            return static_cast<int>(ink.at(std::clamp(x, 0, ink.width - 1), y));
        };
        std::uint8_t* out = wide.data() + widthOf * static_cast<std::size_t>(y);
        for (int x = 0; x < ink.width; ++x) {
            *out++ = mixed({pixel(x - 2), pixel(x - 1), pixel(x), pixel(x + 1)}, false);
            *out++ = mixed({pixel(x - 1), pixel(x), pixel(x + 1), pixel(x + 2)}, true);
        }
        pace.step(y, 3.0 * ink.height);
    }
    for (int y = 0; y < ink.height; ++y) {
        const auto row = [&](int at) {
            return wide.data() +
                   widthOf * static_cast<std::size_t>(std::clamp(at, 0, ink.height - 1));
        };
        const std::array rows{row(y - 2), row(y - 1), row(y), row(y + 1), row(y + 2)};
        std::uint8_t* upper = result.levels.data() + 2 * widthOf * static_cast<std::size_t>(y);
        for (std::size_t x = 0; x < widthOf; ++x) {
            upper[x] = mixed({rows[0][x], rows[1][x], rows[2][x], rows[3][x]}, false);
            upper[widthOf + x] = mixed({rows[1][x], rows[2][x], rows[3][x], rows[4][x]}, true);
        }
        pace.step(ink.height + 2 * y, 3.0 * ink.height);
    }
    return result;
}

void halve(Found& found) {
    for (Stroke& stroke : found.strokes)
        halve(stroke);
    for (Point& node : found.nodes)
        halve(node);
    for (double& width : found.widths)
        width *= 0.5;
    for (InkArea& area : found.areas) {
        halve(area.inside);
        for (std::vector<Point>& ring : area.rings)
            for (Point& p : ring)
                halve(p);
    }
}

} // namespace ovtrace
