#pragma once

#include "drawing.h"

#include <regions/regionmap.h>

/// Puts a map of regions into an empty drawing: a path a boundary, a shape a region. Whole circles
/// become such.
void appendRegions(const ovtrace::RegionMap& map, Drawing& drawing);
