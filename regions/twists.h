#pragma once

#include "crackmap.h"
#include "segmentgrid.h"

#include <cstdint>
#include <span>
#include <vector>

namespace ovtrace {

/// The junctions that boundaries leave in another order, going round, than their chains do; there
/// an area that is transparent can be turned over, and no ring tells. Corners of segments that are
/// junctions have their numbers.
std::vector<std::uint32_t> findTwists(const CrackMap& cracks,
                                      std::span<const EdgeSegment> segments);

} // namespace ovtrace
