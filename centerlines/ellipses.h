#pragma once

#include "strokepaths.h"

#include <vector>

namespace ovtrace {

/// Makes ellipses of closed runs of arcs that one explains within the noise. `nodes` are those of
/// the strokes' ends: what stood on the arcs then stands on the ellipse, and nodes between the arcs
/// go.
void findEllipses(std::vector<Stroke>& strokes, std::vector<Point>& nodes, const Measure& measure);

} // namespace ovtrace
