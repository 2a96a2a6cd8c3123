#pragma once

#include <vector>

namespace ovtrace {

/// A corner of an outline, in image coordinates: (0, 0) is the upper-left corner of the image.
struct PathPoint {
    int x = 0; ///< pixels, to the right
    int y = 0; ///< pixels, downward
    /// The node's type as the walk found it: 1..15 (nodetypes.h).
    int nodeType = 0;

    bool operator==(const PathPoint&) const = default;
};

/// The corners of one closed outline in walking order; the first is not repeated at the end.
using Path = std::vector<PathPoint>;

/// The midpoint of an outline's unit edge.
struct Internode {
    double x = 0.0; ///< pixels, to the right
    double y = 0.0; ///< pixels, downward
    /// Where the next midpoint lies: eight compass directions clockwise from 0 = right, 8 = here.
    int direction = 0;

    bool operator==(const Internode&) const = default;
};

/// The midpoints of one closed outline; record i lies between corners i and i + 1.
using InternodePath = std::vector<Internode>;

/// A piece of a fitted outline: a straight line or a quadratic Bézier curve; y grows downwards.
///
/// A line is {Line, x1, y1, x2, y2, 0, 0} from (x1, y1) to (x2, y2); a curve is {Curve, x1, y1,
/// x2, y2, x3, y3} from (x1, y1) to (x3, y3) with control point (x2, y2).
struct Segment {
    static constexpr double Line = 1.0;
    static constexpr double Curve = 2.0;

    double type = Line;
    double x1 = 0.0;
    double y1 = 0.0;
    double x2 = 0.0;
    double y2 = 0.0;
    double x3 = 0.0;
    double y3 = 0.0;
};

/// The segments of one outline; each starts where the one before it ends.
using TracedPath = std::vector<Segment>;

} // namespace ovtrace
