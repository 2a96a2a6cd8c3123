#pragma once

#include "stroke.h"

#include <vector>

namespace ovtrace {

/// Marks the lines of hatchings: at least four parallel ones of like width and even distance that
/// lie side by side and end on other strokes at both ends.
void markHatching(std::vector<Stroke>& strokes);

} // namespace ovtrace
