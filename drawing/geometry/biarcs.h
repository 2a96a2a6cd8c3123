#pragma once

#include "outline.h"

/// A corner of a polyline of arcs: the piece to the next one has this bulge, the tangent of a
/// quarter of its angle; positive when it turns counter-clockwise (y up), 0 for a line.
struct BulgeVertex {
    QPointF point;
    double bulge;
};

/// The outline as lines and arcs no farther than `tolerance` from it.
///
/// Each quadratic curve becomes pairs of arcs that share the tangent at its ends and, where they
/// meet, at the centre of the circle inscribed to its three points (D. J. Walton and D. S. Meek,
/// "Approximation of quadratic Bézier curves by arc splines", 1994); it is halved until they fit.
/// An arc that is almost straight becomes a line, so that no radius runs away. The last vertex is
/// not a repetition of the first: the polyline is closed.
std::vector<BulgeVertex> toBulges(const Outline& outline, double tolerance);

/// The centre and radius of the arc from `start` to `end` with a bulge other than 0.
struct ArcCircle {
    QPointF centre;
    double radius;
};
ArcCircle arcCircle(QPointF start, QPointF end, double bulge);
