#pragma once

#include "segmentgrid.h"

#include <cstdint>
#include <vector>

namespace ovtrace {

/// Two segments that meet elsewhere than in a corner of both, or one that has no length (twice the
/// same index).
struct Contact {
    std::uint32_t first = 0; ///< index of a segment
    std::uint32_t second = 0;
    Point at;
};

/// Every place where segments cross, touch or lie upon each other, the corners that they share
/// excepted; by the indices of the segments. In time proportional to the number of segments where
/// they are spread evenly.
std::vector<Contact> findContacts(const SegmentGrid& grid);

} // namespace ovtrace
