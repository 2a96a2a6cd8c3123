#pragma once

#include "inkmask.h"

#include "shapes/point.h"

#include <cstdint>
#include <vector>

namespace ovtrace {

class Pace;

/// A place where lines of the skeleton end or meet.
struct SkeletonNode {
    Point at;            ///< mean of its pixels, y down
    double radius = 0.0; ///< of the ink around it
    int degree = 0;      ///< ends of chains here
    bool solid = false;  ///< a single end that touches a solid area
};

/// A line of pixels between two nodes, or a closed one.
struct SkeletonChain {
    std::uint32_t first = 0; ///< its pixels in Skeleton::pixels
    std::uint32_t count = 0;
    int from = -1; ///< node at its first pixel; -1 for a closed chain
    int to = -1;
};

/// The thinned ink as a graph.
struct Skeleton {
    std::vector<std::uint32_t> pixels; ///< indices into the mask, chain by chain
    std::vector<SkeletonChain> chains;
    std::vector<SkeletonNode> nodes;
};

/// The graph of the pixels that thin() left (`pixels`, rising) in `mask`, which is used up.
///
/// Branches shorter than the ink around their node are dropped: they come of rough edges.
/// `distance` is that of the ink before thinning.
Skeleton buildSkeleton(InkMask& mask, const std::vector<std::size_t>& pixels,
                       const std::vector<std::uint8_t>& distance, Pace& pace);

} // namespace ovtrace
