#include "shapes/piece.h"

#include <algorithm>
#include <array>

namespace ovtrace {

namespace {

constexpr int cubicSteps = 16;

/// The first half of an arc with this bulge has this one: tan(a/2) from tan(a).
double halfBulge(double bulge) {
    return bulge / (1.0 + std::sqrt(1.0 + bulge * bulge));
}

Point cubicAt(const Piece& piece, double t) {
    const double s = 1.0 - t;
    return piece.from * (s * s * s) + piece.control1 * (3.0 * s * s * t) +
           piece.control2 * (3.0 * s * t * t) + piece.to * (t * t * t);
}

/// The arc as a rational curve of the second degree, whose inner weight is the cosine of half its
/// angle; the inner control point times that weight stays finite for half a circle.
Point arcAt(const Piece& arc, double t) {
    const double b = arc.bulge;
    const double cosine = (1.0 - b * b) / (1.0 + b * b);
    const double sine = 2.0 * b / (1.0 + b * b);
    const Point chord = arc.to - arc.from;
    const Point weighted = middle(arc.from, arc.to) * cosine - turnedQuarter(chord) * (sine / 2.0);
    const double s = 1.0 - t;
    const double weight = s * s + 2.0 * s * t * cosine + t * t;
    return (arc.from * (s * s) + weighted * (2.0 * s * t) + arc.to * (t * t)) / weight;
}

double distanceToSegment(Point from, Point to, Point point) {
    const Point along = to - from;
    const double size = lengthSquared(along);
    const double t = size > 0.0 ? std::clamp(dot(point - from, along) / size, 0.0, 1.0) : 0.0;
    return distance(point, from + along * t);
}

/// Whether `point`, seen from the circle's centre, lies within the arc's angle: on the arc's side
/// of the lines from the centre through its ends.
bool facesArc(const Piece& arc, Point centre, Point point) {
    const double turn = arc.bulge > 0.0 ? 1.0 : -1.0;
    const Point seen = point - centre;
    const bool afterStart = turn * cross(arc.from - centre, seen) >= 0.0;
    const bool beforeEnd = turn * cross(seen, arc.to - centre) >= 0.0;
    return std::abs(arc.bulge) <= 1.0 ? afterStart && beforeEnd : afterStart || beforeEnd;
}

double distanceToArc(const Piece& arc, Point point) {
    const Circle circle = circleOf(arc);
    if (facesArc(arc, circle.centre, point))
        return std::abs(distance(point, circle.centre) - circle.radius);
    return std::min(distance(point, arc.from), distance(point, arc.to));
}

double distanceToCubic(const Piece& piece, Point point) {
    double least = distance(point, piece.from);
    Point before = piece.from;
    for (int k = 1; k <= cubicSteps; ++k) {
        const Point here = cubicAt(piece, static_cast<double>(k) / cubicSteps);
        least = std::min(least, distanceToSegment(before, here, point));
        before = here;
    }
    return least;
}

void extendByArc(Box& box, const Piece& arc) {
    const Circle circle = circleOf(arc);
    const std::array<Point, 4> sides{
        {{circle.radius, 0.0}, {-circle.radius, 0.0}, {0.0, circle.radius}, {0.0, -circle.radius}}};
    for (const Point& side : sides)
        if (facesArc(arc, circle.centre, circle.centre + side))
            extend(box, circle.centre + side);
}

/// The area between a chord and the arc over it, with the arc's sign: the triangles of Archimedes,
/// halving until the bulge is lost in the sum.
double segmentArea(const Piece& arc) {
    double area = 0.0;
    double bulge = arc.bulge;
    double chord = lengthSquared(arc.to - arc.from);
    double count = 1.0;
    // Each step takes the triangle between a chord and the two chords of its half arcs.
    while (std::abs(bulge) > 1e-9) {
        area += count * chord * bulge / 4.0;
        chord *= (1.0 + bulge * bulge) / 4.0;
        bulge = halfBulge(bulge);
        count *= 2.0;
    }
    return area;
}

} // namespace

Piece linePiece(Point from, Point to) {
    Piece piece;
    piece.from = from;
    piece.to = to;
    return piece;
}

Piece arcPiece(Point from, Point to, double bulge) {
    Piece piece = linePiece(from, to);
    if (bulge != 0.0) {
        piece.kind = PieceKind::Arc;
        piece.bulge = bulge;
    }
    return piece;
}

Piece cubicPiece(Point from, Point control1, Point control2, Point to) {
    Piece piece = linePiece(from, to);
    piece.kind = PieceKind::Cubic;
    piece.control1 = control1;
    piece.control2 = control2;
    return piece;
}

Circle circleOf(const Piece& arc) {
    const Point chord = arc.to - arc.from;
    const double b = arc.bulge;
    Circle circle;
    circle.centre = middle(arc.from, arc.to) + turnedQuarter(chord) * ((1.0 - b * b) / (4.0 * b));
    circle.radius = length(chord) * (1.0 + b * b) / (4.0 * std::abs(b));
    return circle;
}

double bulgeAround(Point from, Point to, Point centre, double turn) {
    const Point a = unit(from - centre);
    const Point b = unit(to - centre);
    const double sign = turn > 0.0 ? 1.0 : -1.0;
    const double sine = sign * cross(a, b);
    const double cosine = dot(a, b);
    // tan(angle/2) from the half-angle forms that do not cancel, then once more for the quarter.
    // Beyond half a circle tan(angle/2) is negative, and the quarter's tangent above 1.
    if (cosine >= 0.0) {
        const double tangent = sine / (1.0 + cosine);
        const double quarter = tangent / (1.0 + std::sqrt(1.0 + tangent * tangent));
        return sign * (sine >= 0.0 ? quarter : -1.0 / quarter);
    }
    const double cotangent = sine / (1.0 - cosine);
    return sign * (std::sqrt(1.0 + cotangent * cotangent) - cotangent);
}

Point pointAt(const Piece& piece, double t) {
    if (t <= 0.0)
        return piece.from;
    if (t >= 1.0)
        return piece.to;
    if (piece.kind == PieceKind::Line)
        return piece.from + (piece.to - piece.from) * t;
    return piece.kind == PieceKind::Arc ? arcAt(piece, t) : cubicAt(piece, t);
}

Point startTangent(const Piece& piece) {
    const Point chord = piece.to - piece.from;
    if (piece.kind == PieceKind::Arc) {
        const double b = piece.bulge;
        return unit(chord * (1.0 - b * b) - turnedQuarter(chord) * (2.0 * b));
    }
    if (piece.kind == PieceKind::Cubic) {
        if (piece.control1 != piece.from)
            return unit(piece.control1 - piece.from);
        if (piece.control2 != piece.from)
            return unit(piece.control2 - piece.from);
    }
    return unit(chord);
}

Point endTangent(const Piece& piece) {
    return -startTangent(reversed(piece));
}

Piece reversed(const Piece& piece) {
    Piece other = piece;
    std::swap(other.from, other.to);
    if (piece.kind == PieceKind::Arc)
        other.bulge = -piece.bulge;
    if (piece.kind == PieceKind::Cubic)
        std::swap(other.control1, other.control2);
    return other;
}

std::pair<Piece, Piece> split(const Piece& piece, double t) {
    const Point at = pointAt(piece, t);
    if (piece.kind == PieceKind::Line)
        return {linePiece(piece.from, at), linePiece(at, piece.to)};
    if (piece.kind == PieceKind::Arc) {
        const Point centre = circleOf(piece).centre;
        return {arcPiece(piece.from, at, bulgeAround(piece.from, at, centre, piece.bulge)),
                arcPiece(at, piece.to, bulgeAround(at, piece.to, centre, piece.bulge))};
    }
    const auto between = [t](Point a, Point b) { return a + (b - a) * t; };
    const Point a = between(piece.from, piece.control1);
    const Point b = between(piece.control1, piece.control2);
    const Point c = between(piece.control2, piece.to);
    return {cubicPiece(piece.from, a, between(a, b), at),
            cubicPiece(at, between(b, c), c, piece.to)};
}

double distanceTo(const Piece& piece, Point point) {
    if (piece.kind == PieceKind::Line)
        return distanceToSegment(piece.from, piece.to, point);
    return piece.kind == PieceKind::Arc ? distanceToArc(piece, point)
                                        : distanceToCubic(piece, point);
}

double areaOf(const Piece& piece) {
    const double chord = cross(piece.from, piece.to) / 2.0;
    if (piece.kind == PieceKind::Line)
        return chord;
    if (piece.kind == PieceKind::Arc)
        return chord + segmentArea(piece);
    const Point a = piece.control1 - piece.from;
    const Point b = piece.control2 - piece.from;
    const Point c = piece.to - piece.from;
    return chord + (3.0 * cross(a, b) + 3.0 * cross(a, c) + 6.0 * cross(b, c)) / 20.0;
}

double areaOf(std::span<const Piece> pieces) {
    double area = 0.0;
    for (const Piece& piece : pieces)
        area += areaOf(piece);
    return area;
}

void extend(Box& box, Point point) {
    box.least = {std::min(box.least.x, point.x), std::min(box.least.y, point.y)};
    box.greatest = {std::max(box.greatest.x, point.x), std::max(box.greatest.y, point.y)};
}

Box boundsOf(const Piece& piece) {
    Box box{piece.from, piece.from};
    extend(box, piece.to);
    if (piece.kind == PieceKind::Arc)
        extendByArc(box, piece);
    if (piece.kind == PieceKind::Cubic) {
        extend(box, piece.control1);
        extend(box, piece.control2);
    }
    return box;
}

double lengthOf(const Piece& piece) {
    if (piece.kind == PieceKind::Line)
        return distance(piece.from, piece.to);
    double sum = 0.0;
    Point before = piece.from;
    for (int k = 1; k <= cubicSteps; ++k) {
        const Point here = pointAt(piece, static_cast<double>(k) / cubicSteps);
        sum += distance(before, here);
        before = here;
    }
    return sum;
}

Piece withEnds(const Piece& piece, Point from, Point to) {
    Piece moved = piece;
    moved.from = from;
    moved.to = to;
    if (piece.kind == PieceKind::Cubic) {
        moved.control1 += from - piece.from;
        moved.control2 += to - piece.to;
    }
    return moved;
}

} // namespace ovtrace
