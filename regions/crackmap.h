#pragma once

#include "regiongrid.h"

#include <cstdint>
#include <vector>

namespace ovtrace {

/// A way of one pixel along the edges between pixels.
enum class Step : std::uint8_t { Right, Down, Left, Up };

/// A corner between pixels: (0, 0) is the upper-left corner of the image, x right, y down.
struct GridPoint {
    int x = 0;
    int y = 0;

    bool operator==(const GridPoint&) const = default;
};

inline GridPoint operator+(GridPoint p, Step step) {
    switch (step) {
    case Step::Right:
        return {p.x + 1, p.y};
    case Step::Down:
        return {p.x, p.y + 1};
    case Step::Left:
        return {p.x - 1, p.y};
    default:
        return {p.x, p.y - 1};
    }
}

inline Step turnedRight(Step step) {
    return static_cast<Step>((static_cast<int>(step) + 1) % 4);
}
inline Step turnedLeft(Step step) {
    return static_cast<Step>((static_cast<int>(step) + 3) % 4);
}
inline Step opposite(Step step) {
    return static_cast<Step>((static_cast<int>(step) + 2) % 4);
}

/// The pixel to the left of the edge that leads from `p` along `step`.
inline GridPoint pixelLeftOf(GridPoint p, Step step) {
    switch (step) {
    case Step::Right:
        return {p.x, p.y - 1};
    case Step::Down:
        return {p.x, p.y};
    case Step::Left:
        return {p.x - 1, p.y};
    default:
        return {p.x - 1, p.y - 1};
    }
}
inline GridPoint pixelRightOf(GridPoint p, Step step) {
    return pixelLeftOf(p + step, opposite(step));
}

/// The edges between pixels of two areas, from one meeting of three or more to the next.
struct CrackChain {
    GridPoint start;
    std::size_t firstStep = 0; ///< into CrackMap::steps
    std::size_t stepCount = 0;
    std::int32_t left = RegionGrid::Outside;
    std::int32_t right = RegionGrid::Outside;
    std::int32_t from = -1; ///< into CrackMap::junctions; -1 for a closed chain
    std::int32_t to = -1;
};

/// A chain as a ring passes along it.
struct ChainPass {
    std::uint32_t chain = 0;
    bool reversed = false;
};

/// A closed walk with its area on the left.
struct CrackRing {
    std::size_t firstPass = 0; ///< into CrackMap::passes
    std::size_t passCount = 0;
    std::int32_t region = 0;
    std::int64_t area = 0; ///< pixels within, less than 0 for the rim of a hole
};

/// All edges between pixels of different areas, and the rings they form.
struct CrackMap {
    std::vector<CrackChain> chains;
    std::vector<Step> steps;
    std::vector<GridPoint> junctions;
    std::vector<CrackRing> rings; ///< by area (region), the outer ring first
    std::vector<ChainPass> passes;
};

CrackMap walkCracks(const RegionGrid& grid);

} // namespace ovtrace
