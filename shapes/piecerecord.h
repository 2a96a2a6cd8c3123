#pragma once

#include "shapes/point.h"

#include <cstdint>

namespace ovtrace {

enum class PieceKind : std::uint8_t { Line, Arc, Cubic };

/// A piece of a curve, from `from` to `to`.
struct Piece {
    PieceKind kind = PieceKind::Line;
    Point from;
    Point to;
    /// Arcs: the tangent of a quarter of the angle, positive when the arc turns from +x to +y
    /// (its centre is then on that side of the chord). At most about 1: half a circle.
    double bulge = 0.0;
    /// Cubic Bézier curves: the two inner control points.
    Point control1;
    Point control2;

    friend bool operator==(const Piece& a, const Piece& b) {
        return a.kind == b.kind && a.from == b.from && a.to == b.to && a.bulge == b.bulge &&
               a.control1 == b.control1 && a.control2 == b.control2;
    }
    friend bool operator!=(const Piece& a, const Piece& b) {
        return !(a == b);
    }
};

} // namespace ovtrace
