#pragma once

#include "pathpiece.h"

/// A corner of a polyline of arcs: the piece to the next one has this bulge, the tangent of a
/// quarter of its angle; positive when it turns counter-clockwise (y up), 0 for a line.
struct BulgeVertex {
    QPointF point;
    double bulge;
};

/// The pieces as lines and arcs no farther than `tolerance` from them; arcs and circles stay as
/// they are.
///
/// Each quadratic curve becomes pairs of arcs that share the tangent at its ends and, where they
/// meet, at the centre of the circle inscribed to its three points (D. J. Walton and D. S. Meek,
/// "Approximation of quadratic Bézier curves by arc splines", 1994); it is halved until they fit.
/// Cubic curves become quadratic ones before that. An arc that is almost straight becomes a line,
/// so that no radius runs away. The last vertex is the last point, unless that is the first again:
/// a polyline that is closed has no need of it.
std::vector<BulgeVertex> toBulges(std::span<const PathPiece> pieces, double tolerance);
