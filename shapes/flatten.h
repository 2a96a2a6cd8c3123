#pragma once

#include "shapes/piecerecord.h"

#include <vector>

namespace ovtrace {

/// Appends the corners of straight parts no farther from the piece than `tolerance`: all but the
/// first. Arcs are halved, cubics are cut at even parameters.
void flatten(const Piece& piece, double tolerance, std::vector<Point>& points);

} // namespace ovtrace
