#pragma once

#include "shapes/piecerecord.h"

#include <span>
#include <vector>

namespace ovtrace {

/// Appends the points of a piece without the first one, reversed if it is walked backwards: the end
/// of a line, points of which the last is the end for curves.
void appendPoints(const Piece& piece, bool reversed, std::vector<Point>& points);

/// Whether a closed polygon (the last point is the first one) may stand for a ring of so many
/// square pixels, less than 0 for holes: it runs round about as many, outer rings counter-clockwise
/// as one sees them. Small polygons must not cross themselves either.
bool isSoundRing(std::span<const Point> polygon, double pixels);

} // namespace ovtrace
