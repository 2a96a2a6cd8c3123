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

/// What the free ends of a drawing say about the pen.
enum class PenCap : std::uint8_t { Butt, Round, Unknown };

/// Measures an end (0 start, 1 end) of a stroke whose ink ends at `tip`.
CapSample capAt(const InkLevels& ink, const Stroke& stroke, int end, Point tip);

/// The cap that all free ends of a drawing have, by the sum of what each one tells.
PenCap penCapOf(const std::vector<CapSample>& samples, const Measure& measure);

/// How far from the end of its ink a stroke of `width` ends, in pixels: where the centre of the
/// pen stopped. Where the cap is unknown, between the two, so that neither is far off.
double capDepth(PenCap cap, double width);

} // namespace ovtrace
