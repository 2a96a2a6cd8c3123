#include "ringcheck.h"

#include "shapes/piece.h"

#include <algorithm>
#include <cmath>

namespace ovtrace {
namespace {

/// Above 0 when a ring runs counter-clockwise as one sees it, y being down.
double areaOf(std::span<const Point> polygon) {
    double area = 0.0;
    for (std::size_t i = 1; i < polygon.size(); ++i)
        area -= cross(polygon[i - 1] - polygon[0], polygon[i] - polygon[0]) / 2.0;
    return area;
}

bool areApart(double a, double b, double c, double d) {
    return std::max(a, b) < std::min(c, d) || std::max(c, d) < std::min(a, b);
}

/// Whether the inner parts of two segments cross.
bool areCrossing(Point a, Point b, Point c, Point d) {
    if (areApart(a.x, b.x, c.x, d.x) || areApart(a.y, b.y, c.y, d.y))
        return false;
    const double first = cross(b - a, c - a);
    const double second = cross(b - a, d - a);
    const double third = cross(d - c, a - c);
    const double fourth = cross(d - c, b - c);
    return first * second < 0.0 && third * fourth < 0.0;
}

bool crossesItself(std::span<const Point> polygon) {
    for (std::size_t i = 1; i < polygon.size(); ++i) {
        for (std::size_t k = i + 2; k < polygon.size(); ++k) {
            if (areCrossing(polygon[i - 1], polygon[i], polygon[k - 1], polygon[k]))
                return true;
        }
    }
    return false;
}

} // namespace

void appendPoints(const Piece& piece, bool reversed, std::vector<Point>& points) {
    constexpr int Chords = 6;
    const int count = piece.kind == PieceKind::Line ? 1 : Chords;
    for (int i = 1; i < count; ++i) {
        const double t = double(i) / count;
        points.push_back(pointAt(piece, reversed ? 1.0 - t : t));
    }
    points.push_back(reversed ? piece.from : piece.to);
}

bool isSoundRing(std::span<const Point> polygon, double pixels) {
    // Lines that cover a tenth of their pixels, or arcs of which six chords show little.
    constexpr double Least = 0.1;
    constexpr double Most = 4.0;
    const double share = areaOf(polygon) / pixels;
    if (!(share >= Least && share <= Most))
        return false;
    // Where an area is many pixels wide, what its curves are uncertain by does not make them cross.
    constexpr double Small = 64.0;
    constexpr std::size_t Few = 100;
    return std::fabs(pixels) > Small || polygon.size() > Few || !crossesItself(polygon);
}

} // namespace ovtrace
