#pragma once

#include "inklevels.h"
#include "strokepaths.h"

#include <vector>

namespace ovtrace {

class Pace;

/// Makes one dashed stroke of short strokes that follow each other along a line or a circle with
/// gaps of one length between them: at least three. Their pattern is the median of each dash and
/// gap.
///
/// The first of a row becomes the dashed stroke, the others are dropped.
void joinDashes(std::vector<Stroke>& strokes, const InkLevels& ink, const Measure& measure,
                Pace& pace);

} // namespace ovtrace
