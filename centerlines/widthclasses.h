#pragma once

#include "stroke.h"

#include <vector>

namespace ovtrace {

/// Sorts strokes into classes of width: those that differ by less than a measurement does are
/// one pen. Gives each stroke its class and the class's width, the mean by length. Returns the
/// widths of the classes, rising.
std::vector<double> classifyWidths(std::vector<Stroke>& strokes);

} // namespace ovtrace
