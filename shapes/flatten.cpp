#include "shapes/flatten.h"

#include "shapes/piece.h"

#include <algorithm>
#include <cmath>

namespace ovtrace {
namespace {

/// All halves of an arc are as high as one another.
void flattenArc(Point from, Point to, double bulge, double tolerance, std::vector<Point>& points) {
    const Point chord = to - from;
    if (std::fabs(bulge) * length(chord) / 2.0 <= tolerance) {
        points.push_back(to);
        return;
    }
    const Point top = middle(from, to) - turnedQuarter(chord) * (bulge / 2.0);
    // The tangent of half the angle.
    const double half = bulge / (1.0 + std::sqrt(1.0 + bulge * bulge));
    flattenArc(from, top, half, tolerance, points);
    flattenArc(top, to, half, tolerance, points);
}

void flattenCubic(const Piece& piece, double tolerance, std::vector<Point>& points) {
    // The chord of a part of length 1 / n is three quarters of the larger second difference / n²
    // away.
    const double bend = std::max(length(piece.from - piece.control1 * 2.0 + piece.control2),
                                 length(piece.control1 - piece.control2 * 2.0 + piece.to));
    const int count = std::max(1, static_cast<int>(std::ceil(std::sqrt(0.75 * bend / tolerance))));
    for (int i = 1; i < count; ++i)
        points.push_back(pointAt(piece, double(i) / count));
    points.push_back(piece.to);
}

} // namespace

void flatten(const Piece& piece, double tolerance, std::vector<Point>& points) {
    if (piece.kind == PieceKind::Line)
        points.push_back(piece.to);
    else if (piece.kind == PieceKind::Arc)
        flattenArc(piece.from, piece.to, piece.bulge, tolerance, points);
    else
        flattenCubic(piece, tolerance, points);
}

} // namespace ovtrace
