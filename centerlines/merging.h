#pragma once

#include "inklevels.h"
#include "strokepaths.h"

#include <vector>

namespace ovtrace {

class Pace;

/// Whether ink runs on along the carrier of `stroke` from its end for `distance` pixels.
bool inkRunsOn(const InkLevels& ink, const Stroke& stroke, int end, double distance);

/// Joins strokes that one line or one circle explains and between which ink runs on: lines that
/// go through crossings, circles that close. Strokes whose place other strokes explain are
/// dropped: what is left of where strokes run together.
void mergeStrokes(std::vector<Stroke>& strokes, const InkLevels& ink, const Measure& measure,
                  Pace& pace);

/// Whether all of the points lie in the ink of strokes, within `slack` pixels.
bool liesInStrokes(const std::vector<Point>& points, const std::vector<Stroke>& strokes,
                   double slack);

/// Drops short strokes that lie within others.
void dropExplained(std::vector<Stroke>& strokes, Pace& pace);

/// Drops strokes with a free end that lie within others now that ends were joined, what stood where
/// two arcs run together in a cusp, and returns which.
std::vector<int> dropExplainedStubs(std::vector<Stroke>& strokes, Pace& pace);

} // namespace ovtrace
