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

int cubicParts(const Piece& piece, double tolerance) {
    // The chord of a part of length 1 / n is three quarters of the larger second difference / n²
    // away.
    const double bend = std::max(length(piece.from - piece.control1 * 2.0 + piece.control2),
                                 length(piece.control1 - piece.control2 * 2.0 + piece.to));
    return std::max(1, static_cast<int>(std::ceil(std::sqrt(0.75 * bend / tolerance))));
}

void flattenCubic(const Piece& piece, double tolerance, std::vector<Point>& points) {
    const int count = cubicParts(piece, tolerance);
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

std::size_t flattenedCount(const Piece& piece, double tolerance) {
    if (piece.kind == PieceKind::Line)
        return 1;
    if (piece.kind == PieceKind::Cubic)
        return static_cast<std::size_t>(cubicParts(piece, tolerance));
    std::size_t count = 1;
    double bulge = std::fabs(piece.bulge);
    double height = bulge * distance(piece.from, piece.to) / 2.0;
    while (height > tolerance) {
        // The chord of a half is longer than half the chord by 1 / the cosine of a quarter of the
        // angle, whose tangent the bulge is.
        const double root = std::sqrt(1.0 + bulge * bulge);
        height *= root / (2.0 * (1.0 + root));
        bulge /= 1.0 + root;
        count *= 2;
    }
    return count;
}

} // namespace ovtrace
