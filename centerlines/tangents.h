#pragma once

#include "strokepaths.h"

#include <vector>

namespace ovtrace {

/// Where an arc runs smoothly into the lines beside it, makes it touch them, when the measured
/// points allow it: the place where a line becomes an arc is known only by that, as both lie in the
/// same ink for many pixels. The ends of both are put where they touch.
void makeTangent(std::vector<Stroke>& strokes, const Measure& measure);

} // namespace ovtrace
