#pragma once

#include "inklevels.h"
#include "stroke.h"

#include <vector>

namespace ovtrace {

/// Finds the lines of hatchings before ends are joined, and marks them: at least four parallel ones
/// of like width and even distance side by side, most of which run into other strokes at both ends.
///
/// A line that cuts off so little of a corner of the frame that its skeleton was lost is put where
/// the distances of its neighbours say, if its ink is there.
void completeHatching(std::vector<Stroke>& strokes, const InkLevels& ink);

/// Marks the lines of hatchings among joined strokes, and no others: as above, with a node at each
/// end.
void markHatching(std::vector<Stroke>& strokes, const InkLevels& ink);

} // namespace ovtrace
