#include "stroke.h"

#include <algorithm>
#include <cmath>

namespace ovtrace {
namespace {

constexpr double Pi = 3.14159265358979323846;

/// The angle from `a` to `b` (vectors of length 1) in the sense of `turn`, 0 to two pi, by halving
/// it until its tangent is its length: no library's arc tangent is the same everywhere.
double angleBetween(Point a, Point b, double turn) {
    double c = dot(a, b);
    double s = cross(a, b) * turn;
    double whole = 0.0;
    if (s < 0.0) {
        c = -c;
        s = -s;
        whole = Pi;
    }
    double factor = 1.0;
    for (int k = 0; k < 6; ++k) {
        // Half the angle: tan(x/2) = s / (1 + c), by the form that does not cancel.
        const double half = std::sqrt(std::max(0.0, (1.0 + c) / 2.0));
        s = half > 1e-6 ? s / (2.0 * half) : 1.0;
        c = half;
        factor *= 2.0;
    }
    const double t = c > 0.0 ? s / c : 0.0;
    return whole + factor * (t - t * t * t / 3.0 + t * t * t * t * t / 5.0);
}

/// `v` turned by the angle `x` from +x to +y, by powers of a small turn.
Point turnedBy(Point v, double x) {
    // The rational turn with half angle h: tan h by its series, doubled eight times.
    const double h = x / 512.0;
    const double t = h + h * h * h / 3.0;
    double c = (1.0 - t * t) / (1.0 + t * t);
    double s = 2.0 * t / (1.0 + t * t);
    for (int k = 0; k < 8; ++k) {
        const double c2 = c * c - s * s;
        s = 2.0 * s * c;
        c = c2;
    }
    return {v.x * c - v.y * s, v.x * s + v.y * c};
}

} // namespace

std::vector<Piece> piecesOf(const Stroke& stroke) {
    std::vector<Piece> pieces;
    if (!stroke.closed) {
        appendPieces(stroke.carrier, stroke.start(), stroke.finish(), pieces);
        return pieces;
    }
    const Point across{stroke.carrier.radius, 0.0};
    const Point a = stroke.carrier.at - across;
    const Point b = stroke.carrier.at + across;
    pieces.push_back(arcPiece(a, b, stroke.carrier.turn));
    pieces.push_back(arcPiece(b, a, stroke.carrier.turn));
    return pieces;
}

double circumferenceOf(const Stroke& arc) {
    return 2.0 * Pi * arc.carrier.radius;
}

double lengthOf(const Stroke& stroke) {
    if (stroke.ellipse)
        return circumferenceOf(*stroke.ellipse);
    if (stroke.closed)
        return circumferenceOf(stroke);
    if (stroke.carrier.isLine())
        return distance(stroke.start(), stroke.finish());
    return placeAlong(stroke, stroke.finish());
}

namespace {

std::vector<Point> pointsAlong(const Ellipse& ellipse, double step) {
    const int count = std::max(1, static_cast<int>(circumferenceOf(ellipse) / (4.0 * step)));
    std::vector<Point> points;
    points.reserve(4 * static_cast<std::size_t>(count) + 1);
    for (int k = 0; k <= 4 * count; ++k)
        points.push_back(ellipse.at(k / count % 4, static_cast<double>(k % count) / count));
    return points;
}

} // namespace

std::vector<Point> pointsAlong(const Stroke& stroke, double step) {
    if (stroke.ellipse)
        return pointsAlong(*stroke.ellipse, step);
    const double length = lengthOf(stroke);
    const int count = std::max(1, static_cast<int>(length / step));
    std::vector<Point> points;
    points.reserve(static_cast<std::size_t>(count) + 1);
    const Point start =
        stroke.closed ? stroke.carrier.at + Point{stroke.carrier.radius, 0.0} : stroke.start();
    for (int k = 0; k <= count; ++k) {
        if (stroke.carrier.isLine()) {
            points.push_back(start + (stroke.finish() - start) * (static_cast<double>(k) / count));
            continue;
        }
        const double angle = stroke.carrier.turn * length * k / (count * stroke.carrier.radius);
        points.push_back(stroke.carrier.at + turnedBy(start - stroke.carrier.at, angle));
    }
    return points;
}

Point outwardAt(const Stroke& stroke, int end) {
    const Point along = directionAt(stroke.carrier, stroke.ends[static_cast<std::size_t>(end)].at);
    return end == 0 ? -along : along;
}

double placeAlong(const Stroke& stroke, Point point) {
    const Carrier& c = stroke.carrier;
    if (c.isLine())
        return dot(point - stroke.start(), c.direction);
    return c.radius * angleBetween(unit(stroke.start() - c.at), unit(point - c.at), c.turn);
}

Point beyond(const Stroke& stroke, int end, double distance) {
    const Carrier& c = stroke.carrier;
    const Point at = stroke.ends[static_cast<std::size_t>(end)].at;
    const double along = end == 0 ? -distance : distance;
    if (c.isLine())
        return at + c.direction * along;
    return c.at + turnedBy(at - c.at, c.turn * along / c.radius);
}

bool covers(const Stroke& stroke, Point point, double slack) {
    if (stroke.closed)
        return true;
    const double length = lengthOf(stroke);
    const double place = placeAlong(stroke, point);
    if (place >= -slack && place <= length + slack)
        return true;
    return !stroke.carrier.isLine() && place >= circumferenceOf(stroke) - slack;
}

} // namespace ovtrace
