#pragma once

#include "shapes/piecerecord.h"

#include <cstddef>
#include <vector>

namespace ovtrace {

/// Appends the corners of straight parts no farther from the piece than `tolerance`: all but the
/// first. Arcs are halved, cubics are cut at even parameters.
void flatten(const Piece& piece, double tolerance, std::vector<Point>& points);

/// About how many points flatten() appends.
std::size_t flattenedCount(const Piece& piece, double tolerance);

} // namespace ovtrace
