#pragma once

#include "regiongrid.h"

namespace ovtrace {

/// Gives the pixels of areas of fewer than `size` pixels to the neighbour that they share most of
/// their rim with, among equals to the one with the smaller number; never to what is transparent,
/// so an area that has no other neighbour stays. Returns whether anything has changed; the areas
/// have to be found anew then.
bool mergeSpecks(LabelImage& labels, const RegionGrid& grid, double size);

} // namespace ovtrace
