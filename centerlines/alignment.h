#pragma once

#include "stroke.h"

#include <vector>

namespace ovtrace {

/// Gives lines the directions of the drawing's frame where their points cannot tell that they lean:
/// across, upright and half way between, all leaning alike where the page was put down askew.
/// Marks them as aligned.
void alignLines(std::vector<Stroke>& strokes);

} // namespace ovtrace
