#include "twists.h"

#include <array>
#include <optional>

namespace ovtrace {
namespace {

/// The directions in which boundaries leave a junction, by the first steps of their chains, which
/// are in the order from +x to +y.
using Leaving = std::array<std::optional<Point>, 4>;

/// Whether `a` comes before `b` on the way round from +x to +y, which begins at +x.
bool comesBefore(Point a, Point b) {
    const auto isLate = [](Point p) { return p.y < 0.0 || (p.y == 0.0 && p.x < 0.0); };
    return isLate(a) != isLate(b) ? isLate(b) : cross(a, b) > 0.0;
}

bool isTwisted(const Leaving& leaving) {
    std::array<Point, 4> ways;
    std::size_t count = 0;
    for (const std::optional<Point>& way : leaving) {
        if (way)
            ways[count++] = *way;
    }
    // Going round once, the way begins anew once.
    int starts = 0;
    for (std::size_t i = 0; i < count; ++i)
        starts += comesBefore(ways[i], ways[(i + 1) % count]) ? 0 : 1;
    return count > 2 && starts != 1;
}

} // namespace

std::vector<std::uint32_t> findTwists(const CrackMap& cracks,
                                      std::span<const EdgeSegment> segments) {
    std::vector<Leaving> leaving(cracks.junctions.size());
    const auto enter = [&](std::uint32_t junction, Step step, Point way) {
        if (junction < leaving.size())
            leaving[junction][static_cast<std::size_t>(step)] = way;
    };
    for (const EdgeSegment& segment : segments) {
        const CrackChain& chain = cracks.chains[segment.boundary];
        enter(segment.start, cracks.steps[chain.firstStep], segment.to - segment.from);
        enter(segment.end, opposite(cracks.steps[chain.firstStep + chain.stepCount - 1]),
              segment.from - segment.to);
    }
    std::vector<std::uint32_t> found;
    for (std::uint32_t i = 0; i < leaving.size(); ++i) {
        if (isTwisted(leaving[i]))
            found.push_back(i);
    }
    return found;
}

} // namespace ovtrace
