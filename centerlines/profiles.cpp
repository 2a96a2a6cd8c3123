#include "profiles.h"

#include "distance.h"
#include "pace.h"

#include <algorithm>
#include <array>

namespace ovtrace {
namespace {

/// Steps of half a pixel across a stroke.
constexpr double Step = 0.5;
constexpr int MostSteps = 64;
/// Ink below this is the noise of paper.
constexpr double Faint = 0.08;
/// Pixels to either side along a chain that tell its direction.
constexpr int DirectionReach = 5;

/// One side of a profile: ink at steps 1, 2, ... from the middle outward.
struct Side {
    int count = 0;
    double background = 0.0;
    std::array<double, MostSteps> ink{};
};

Side sideOf(const InkLevels& ink, Point at, Point outward, double peak, int steps) {
    Side side;
    double least = peak;
    for (int k = 1; k <= steps; ++k) {
        const Point p = at + outward * (k * Step);
        const double level = ink.sample(p.x, p.y);
        // Ink that rises again by more than noise is the next stroke's.
        if (level > least + Faint && least < 0.6 * peak)
            break;
        least = std::min(least, level);
        side.ink[static_cast<std::size_t>(side.count++)] = level;
        if (level < Faint / 2.0)
            break;
    }
    // Back to the lowest place, so that noise on the rise takes no part.
    while (side.count > 0 && side.ink[static_cast<std::size_t>(side.count - 1)] > least)
        --side.count;
    side.background = least > Faint ? least : 0.0;
    return side;
}

} // namespace

StrokePoint profileAt(const InkLevels& ink, Point at, Point direction, double reach) {
    const Point across = turnedQuarter(direction);
    const int steps = std::clamp(static_cast<int>(reach / Step), 2, MostSteps);
    const double middle = ink.sample(at.x, at.y);
    StrokePoint result;
    result.at = at;
    if (middle < Faint)
        return result;
    const Side left = sideOf(ink, at, -across, middle, steps);
    const Side right = sideOf(ink, at, across, middle, steps);
    double sum = middle - std::min(middle, (left.background + right.background) / 2.0);
    double moment = 0.0;
    double total = middle;
    double peak = middle;
    const auto add = [&](const Side& side, double sign) {
        for (int k = 0; k < side.count; ++k) {
            const double level = side.ink[static_cast<std::size_t>(k)];
            const double above = std::max(0.0, level - side.background);
            sum += above;
            moment += sign * (k + 1) * Step * above;
            total += level;
            peak = std::max(peak, level);
        }
    };
    add(left, -1.0);
    add(right, 1.0);
    if (sum <= 0.0)
        return result;
    result.at = at + across * (moment / sum);
    result.width = static_cast<float>(total * Step);
    result.peak = static_cast<float>(peak);
    return result;
}

std::vector<std::vector<StrokePoint>> strokeProfiles(const InkLevels& ink, const InkMask& mask,
                                                     const std::vector<std::uint8_t>& distance,
                                                     const Skeleton& skeleton, Pace& pace) {
    std::vector<std::vector<StrokePoint>> result(skeleton.chains.size());
    double done = 0.0;
    for (std::size_t c = 0; c < skeleton.chains.size(); ++c) {
        const SkeletonChain& chain = skeleton.chains[c];
        const int count = static_cast<int>(chain.count);
        const bool closed = chain.from < 0;
        const auto pixel = [&](int i) -> std::uint32_t {
            const int k = closed ? (i + count) % count : std::clamp(i, 0, count - 1);
            return skeleton.pixels[chain.first + static_cast<std::uint32_t>(k)];
        };
        const auto place = [&](int i) {
            return Point{mask.xOf(pixel(i)) + 0.5, mask.yOf(pixel(i)) + 0.5};
        };
        const auto isNear = [&](Point p, int node) {
            if (node < 0)
                return false;
            const SkeletonNode& n = skeleton.nodes[static_cast<std::size_t>(node)];
            // A free end is rounded by thinning; at a junction other ink joins in.
            const double reach = n.radius + (n.degree >= 3 ? 1.5 : 0.5);
            return ovtrace::distance(n.at, p) < reach;
        };
        result[c].reserve(chain.count);
        for (int i = 0; i < count; ++i) {
            const int reach = closed ? std::min(DirectionReach, count / 6 + 1) : DirectionReach;
            const Point direction = unit(place(i + reach) - place(i - reach));
            const double across = halfWidthAt(distance[pixel(i)]) + 3.0;
            StrokePoint point = profileAt(ink, place(i), direction, across);
            point.beside =
                isNear(place(i), chain.from) || isNear(place(i), chain.to) || point.width <= 0.0F;
            result[c].push_back(point);
            pace.step(done += 1.0, static_cast<double>(skeleton.pixels.size()));
        }
    }
    return result;
}

} // namespace ovtrace
