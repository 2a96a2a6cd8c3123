#pragma once

#include "inklevels.h"
#include "stroke.h"
#include "strokepaths.h"

#include <vector>

namespace ovtrace {

/// How the free end of one stroke looks.
struct CapSample {
    double width = 0.0; ///< of the stroke, in pixels
    /// How much earlier the ink ends beside the middle than in it, over the width: 0 for a cut
    /// end, 0.14 for a half circle that nothing blurs.
    double rounding = 0.0;
    double peak = 1.0; ///< usual ink in the middle of the stroke, 0 to 1: blur lowers it
};

/// Measures an end (0 start, 1 end) of a stroke whose ink ends at `tip`.
CapSample capAt(const InkLevels& ink, const Stroke& stroke, int end, Point tip);

/// What all free ends of a drawing say about the pen, by the sum of what each one tells: 1 surely
/// round, -1 surely cut, 0 where they tell nothing, and between where they are not sure.
double penRoundness(const std::vector<CapSample>& samples, const Measure& measure);

/// How far from the end of its ink a stroke of `width` ends, in pixels: where the centre of a pen
/// of the given roundness stopped. Where that is unknown, between the two, so that neither is far
/// off; what makes the ends a little surer moves them a little.
double capDepth(double roundness, double width);

} // namespace ovtrace
