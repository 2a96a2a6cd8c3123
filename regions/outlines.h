#pragma once

#include "regionmap.h"

#include <ovpolyline.h>

namespace ovtrace {

/// A ring of `map` as a closed polyline in drawing coordinates (y up).
OvPolyline ringPolyline(const RegionMap& map, const MapRing& ring);

} // namespace ovtrace
