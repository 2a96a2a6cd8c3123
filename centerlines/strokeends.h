#pragma once

#include "inklevels.h"
#include "stroke.h"
#include "strokepaths.h"

#include <vector>

namespace ovtrace {

class Pace;

/// Moves the ends of strokes to where they belong, and returns the places where strokes meet.
///
/// An end whose own line meets another stroke within its ink becomes a node with it: on the line of
/// a stroke that runs through (a T), or where the lines of several ends meet (a corner). Ends of
/// one node get the very same place. All others are put where their ink ends.
std::vector<Point> joinEnds(std::vector<Stroke>& strokes, const InkLevels& ink,
                            const Measure& measure, Pace& pace);

} // namespace ovtrace
