#pragma once

namespace ovtrace {

/// Whether a closed run of curves around so much area (square pixels, as areaOf() sums it: more
/// than 0 when it turns from +x to +y) may stand for a ring of pixels: it runs round about as many
/// the same way. Outer rings have more than 0 `pixels` and turn from +y to +x, counter-clockwise
/// as one sees them; holes have less.
bool standsForRing(double area, double pixels);

} // namespace ovtrace
