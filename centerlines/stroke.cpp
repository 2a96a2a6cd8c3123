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

Walk::Walk(const Stroke& stroke, double step) : stroke(stroke), length(lengthOf(stroke)) {
    constexpr double Most = 1e8; // which an int can hold, even four times
    // Each quarter of an ellipse has the same number of steps.
    const int parts = stroke.ellipse ? 4 : 1;
    steps = parts * static_cast<int>(std::min(std::max(1.0, length / (parts * step)), Most));
}

Point Walk::at(int k) const {
    if (stroke.ellipse) {
        const int ofQuarter = steps / 4;
        return stroke.ellipse->at(k / ofQuarter % 4,
                                  static_cast<double>(k % ofQuarter) / ofQuarter);
    }
    const Carrier& c = stroke.carrier;
    const Point start = stroke.closed ? c.at + Point{c.radius, 0.0} : stroke.start();
    if (c.isLine())
        return start + (stroke.finish() - start) * (static_cast<double>(k) / steps);
    const double angle = c.turn * length * k / (steps * c.radius);
    return c.at + turnedBy(start - c.at, angle);
}

std::vector<Point> pointsAlong(const Stroke& stroke, double step) {
    const Walk walk(stroke, step);
    std::vector<Point> places;
    for (int k = 0; k <= walk.count(); ++k)
        places.push_back(walk.at(k));
    return places;
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
