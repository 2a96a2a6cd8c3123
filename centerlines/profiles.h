#pragma once

#include "inklevels.h"
#include "skeleton.h"

#include "shapes/point.h"

#include <vector>

namespace ovtrace {

class Pace;

/// What the ink across a stroke says at one place.
struct StrokePoint {
    Point at;            ///< middle of the ink, y down
    float width = 0.0F;  ///< ink across, in pixels
    float peak = 0.0F;   ///< the most ink across, 0 to 1
    bool beside = false; ///< near a node: the ink of other strokes takes part
};

/// Measures the ink along the line through `at` across `direction` (of length 1), no further than
/// `reach` pixels to either side and no further than the valley before the next stroke.
///
/// The middle is the centroid of the ink above each side's own background. Without ink at `at`
/// the width is 0.
StrokePoint profileAt(const InkLevels& ink, Point at, Point direction, double reach);

/// The measured points of each chain of a skeleton, in its order.
std::vector<std::vector<StrokePoint>> strokeProfiles(const InkLevels& ink, const InkMask& mask,
                                                     const std::vector<std::uint8_t>& distance,
                                                     const Skeleton& skeleton, Pace& pace);

} // namespace ovtrace
