#pragma once

#include "shapes/carrier.h"

#include <span>

namespace ovtrace {

/// Makes lines level, upright or diagonal, and parallel or at right angles to each other, where
/// that adds less to their errors than chance does: two standard deviations of their directions.
/// Each turns about the mean of its samples.
void alignLines(std::span<Carrier> carriers);

/// Makes circles concentric, and gives them equal radii, where their samples do not tell the
/// difference (19 of 20 that are so are nearer to each other). All are whole circles.
void matchCircles(std::span<Carrier* const> circles);

} // namespace ovtrace
