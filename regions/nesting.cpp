#include "nesting.h"

#include <cmath>
#include <numeric>

namespace ovtrace {
namespace {

/// Which chains hang together, by their junctions.
class ChainGroups {
public:
    explicit ChainGroups(const CrackMap& cracks) : parent(cracks.chains.size()) {
        std::iota(parent.begin(), parent.end(), 0U);
        std::vector<std::int64_t> ofJunction(cracks.junctions.size(), -1);
        for (std::uint32_t i = 0; i < cracks.chains.size(); ++i) {
            for (const std::int32_t junction : {cracks.chains[i].from, cracks.chains[i].to}) {
                if (junction < 0)
                    continue;
                std::int64_t& first = ofJunction[static_cast<std::size_t>(junction)];
                if (first < 0)
                    first = i;
                else
                    parent[groupOf(i)] = groupOf(static_cast<std::uint32_t>(first));
            }
        }
    }
    std::uint32_t groupOf(std::uint32_t chain) {
        while (parent[chain] != chain) {
            parent[chain] = parent[parent[chain]];
            chain = parent[chain];
        }
        return chain;
    }

private:
    std::vector<std::uint32_t> parent;
};

/// The leftmost corner of a group, and the steepest segment that ends there: on its left nothing of
/// the group is.
struct Leftmost {
    bool any = false;
    Point at;
    std::uint32_t segment = 0;
    double steepness = 0.0; ///< sine of its angle against x
};

bool isLeft(Point a, Point b) {
    return a.x != b.x ? a.x < b.x : a.y < b.y;
}

class NestingSearch {
public:
    NestingSearch(const CrackMap& cracks, const SegmentGrid& grid)
        : cracks(cracks), grid(grid), segments(grid.all()), groups(cracks) {
    }

    std::vector<Misplacement> run() {
        std::vector<Leftmost> leftmost(cracks.chains.size());
        for (std::uint32_t i = 0; i < segments.size(); ++i)
            enter(i, leftmost[groups.groupOf(segments[i].boundary)]);
        std::vector<Misplacement> found;
        for (const Leftmost& group : leftmost) {
            if (!group.any)
                continue;
            const auto seen = seenLeftOf(group);
            const std::int32_t there =
                seen ? areaBeside(segments[*seen], true) : RegionGrid::Outside;
            const std::int32_t wanted = areaBeside(segments[group.segment], false);
            if (there == wanted)
                continue;
            const Point at = seen ? Point{xAt(segments[*seen], group.at.y), group.at.y} : group.at;
            found.push_back({group.segment, seen, at, wanted});
        }
        return found;
    }

private:
    void enter(std::uint32_t index, Leftmost& group) const {
        const EdgeSegment& segment = segments[index];
        const double size = distance(segment.from, segment.to);
        const double steepness = std::fabs(segment.to.y - segment.from.y) / size;
        for (const Point end : {segment.from, segment.to}) {
            const bool same = group.any && end == group.at;
            if (group.any && !isLeft(end, group.at) && !(same && steepness > group.steepness))
                continue;
            group = {true, end, index, steepness};
        }
    }
    /// The area at the right of a segment, or at its left, as one sees it in the picture.
    std::int32_t areaBeside(const EdgeSegment& segment, bool right) const {
        const CrackChain& chain = cracks.chains[segment.boundary];
        // What runs down has its left where the larger x are.
        const bool down = segment.to.y > segment.from.y;
        return down == right ? chain.left : chain.right;
    }
    static double xAt(const EdgeSegment& segment, double y) {
        const double share = (y - segment.from.y) / (segment.to.y - segment.from.y);
        return segment.from.x + (segment.to.x - segment.from.x) * share;
    }
    /// The segment that is first met on the way to the left.
    std::optional<std::uint32_t> seenLeftOf(const Leftmost& group) {
        const double y = group.at.y;
        const std::uint32_t own = groups.groupOf(segments[group.segment].boundary);
        std::optional<std::uint32_t> found;
        double nearest = 0.0;
        const std::size_t row = grid.rowOf(y);
        for (std::size_t column = grid.columnOf(group.at.x) + 1; column-- > 0;) {
            for (const std::uint32_t i : grid.in(grid.cellAt(row, column))) {
                const EdgeSegment& segment = segments[i];
                if ((segment.from.y <= y) == (segment.to.y <= y) ||
                    groups.groupOf(segment.boundary) == own)
                    continue;
                const double x = xAt(segment, y);
                if (x < group.at.x && (!found || x > nearest)) {
                    found = i;
                    nearest = x;
                }
            }
            if (found && nearest >= grid.leftOf(column))
                break;
        }
        return found;
    }

    const CrackMap& cracks;
    const SegmentGrid& grid;
    std::span<const EdgeSegment> segments;
    ChainGroups groups;
};

} // namespace

std::vector<Misplacement> findMisplaced(const CrackMap& cracks, const SegmentGrid& grid) {
    return NestingSearch(cracks, grid).run();
}

} // namespace ovtrace
