#pragma once

#include "crackmap.h"
#include "segmentgrid.h"

#include <cstdint>
#include <optional>
#include <vector>

namespace ovtrace {

/// A part of the map that lies in another area than its pixels do.
struct Misplacement {
    std::uint32_t segment = 0;               ///< at the part's leftmost corner
    std::optional<std::uint32_t> around;     ///< the segment that is left of it, if any
    Point at;                                ///< of that one, else of the corner
    std::int32_t area = RegionGrid::Outside; ///< that the part ought to lie in
};

/// Looks to the left from the leftmost corner of each group of boundaries that hang together: what
/// is seen there first has to have the area at its right that the group has at its left. Segments
/// have no contacts; their boundaries are chains.
std::vector<Misplacement> findMisplaced(const CrackMap& cracks, const SegmentGrid& grid);

} // namespace ovtrace
