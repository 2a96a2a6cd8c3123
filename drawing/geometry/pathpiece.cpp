#include "pathpiece.h"

#include "vectors.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace {

/// The parameter at which a coordinate of the curve turns; outside 0..1 when it does not.
double turningParameter(double start, double control, double end) {
    const double bend = start - 2.0 * control + end;
    return bend == 0.0 ? -1.0 : (start - control) / bend;
}

/// Both parameters at which a coordinate of a cubic curve can turn; outside 0..1 when it does not.
std::array<double, 2> turningParameters(double p0, double p1, double p2, double p3) {
    // A third of the derivative is a t² + 2 b t + c.
    const double a = p3 - 3.0 * p2 + 3.0 * p1 - p0;
    const double b = p2 - 2.0 * p1 + p0;
    const double c = p1 - p0;
    const double square = b * b - a * c;
    if (square < 0.0)
        return {-1.0, -1.0};
    const double q = b < 0.0 ? -b + std::sqrt(square) : -b - std::sqrt(square);
    return {a == 0.0 ? -1.0 : q / a, q == 0.0 ? -1.0 : c / q};
}

int partsFor(double distance, double tolerance) {
    return std::max(1, static_cast<int>(std::ceil(std::sqrt(distance / tolerance))));
}

QPointF middleOfArc(QPointF from, QPointF to, double bulge) {
    const QPointF chord = to - from;
    return (from + to) / 2.0 + QPointF(chord.y(), -chord.x()) * (bulge / 2.0);
}

/// The bulge of half the arc: the tangent of half the angle.
double halved(double bulge) {
    return bulge / (1.0 + std::sqrt(1.0 + bulge * bulge));
}

/// Halves an arc until its parts are flat enough: all of them have the same height.
void flattenArc(QPointF from, QPointF to, double bulge, double tolerance,
                std::vector<QPointF>& points) {
    const QPointF chord = to - from;
    if (std::abs(bulge) * length(chord) / 2.0 <= tolerance) {
        points.push_back(to);
        return;
    }
    const QPointF middle = middleOfArc(from, to, bulge);
    flattenArc(from, middle, halved(bulge), tolerance, points);
    flattenArc(middle, to, halved(bulge), tolerance, points);
}

void appendArcAsCubics(QPointF from, QPointF to, double bulge, std::vector<PathPiece>& cubics) {
    constexpr double EighthOfATurn = 0.2; // the tangent of a sixteenth is 0.19891
    if (std::abs(bulge) > EighthOfATurn) {
        const QPointF middle = middleOfArc(from, to, bulge);
        appendArcAsCubics(from, middle, halved(bulge), cubics);
        appendArcAsCubics(middle, to, halved(bulge), cubics);
        return;
    }
    // The tangents at the ends are the chord turned by half the angle, whose cosine is
    // (1 - b²) / (1 + b²) and whose sine 2 b / (1 + b²); handles of a third of (1 + b²) of the
    // chord's length lead through the arc's middle.
    const QPointF chord = to - from;
    const QPointF left(-chord.y(), chord.x());
    const double square = bulge * bulge;
    const QPointF along = chord * ((1.0 - square) / 3.0);
    const QPointF aside = left * (2.0 * bulge / 3.0);
    cubics.push_back(cubicPiece(from, from + along - aside, to - along - aside, to));
}

QPointF acrossAxis(const PathPiece& ellipse) {
    const QPointF axis = ellipse.control2;
    return QPointF(-axis.y(), axis.x()) * (ellipse.radius * ellipse.bulge / length(axis));
}

void flattenEllipse(const PathPiece& piece, double tolerance, std::vector<QPointF>& points) {
    // Of the circle around it, then pressed together.
    const double radius = std::max(length(piece.control2), piece.radius);
    std::vector<QPointF> unit;
    flattenArc({1.0, 0.0}, {-1.0, 0.0}, 1.0, tolerance / radius, unit);
    flattenArc({-1.0, 0.0}, {1.0, 0.0}, 1.0, tolerance / radius, unit);
    unit.pop_back();
    const QPointF across = acrossAxis(piece);
    for (const QPointF& point : unit)
        points.push_back(piece.control + piece.control2 * point.x() + across * point.y());
    points.push_back(piece.to);
}

void extendByCurve(QRectF& box, const PathPiece& piece) {
    if (piece.kind == PieceKind::Quadratic) {
        for (const double t : {turningParameter(piece.from.x(), piece.control.x(), piece.to.x()),
                               turningParameter(piece.from.y(), piece.control.y(), piece.to.y())}) {
            if (t > 0.0 && t < 1.0)
                extend(box, curvePoint(piece.from, piece.control, piece.to, t));
        }
        return;
    }
    const auto x =
        turningParameters(piece.from.x(), piece.control.x(), piece.control2.x(), piece.to.x());
    const auto y =
        turningParameters(piece.from.y(), piece.control.y(), piece.control2.y(), piece.to.y());
    for (const double t : {x[0], x[1], y[0], y[1]}) {
        if (t > 0.0 && t < 1.0)
            extend(box, cubicPoint(piece, t));
    }
}

void extendByArc(QRectF& box, const PathPiece& piece) {
    if (piece.bulge == 0.0)
        return;
    const ArcCircle circle = arcCircle(piece.from, piece.to, piece.bulge);
    for (const QPointF direction : {QPointF(1, 0), QPointF(0, 1), QPointF(-1, 0), QPointF(0, -1)}) {
        // The arc lies on one side of its chord, the rest of the circle on the other.
        const QPointF point = circle.centre + direction * circle.radius;
        if (cross(piece.to - piece.from, point - piece.from) * piece.bulge < 0.0)
            extend(box, point);
    }
}

void extendByWhole(QRectF& box, const PathPiece& piece) {
    QPointF reach(piece.radius, piece.radius);
    if (piece.kind == PieceKind::Ellipse) {
        const QPointF across = acrossAxis(piece);
        reach = QPointF(length({piece.control2.x(), across.x()}),
                        length({piece.control2.y(), across.y()}));
    }
    extend(box, piece.control - reach);
    extend(box, piece.control + reach);
}

constexpr double Pi = 3.14159265358979323846;

/// Twice the area between a piece and its chord.
double twiceBeside(const PathPiece& piece) {
    const QPointF chord = piece.to - piece.from;
    switch (piece.kind) {
    case PieceKind::Line:
        return 0.0;
    case PieceKind::Arc: {
        if (piece.bulge == 0.0)
            return 0.0;
        const double angle = 4.0 * std::atan(piece.bulge);
        const double radius = arcCircle(piece.from, piece.to, piece.bulge).radius;
        return radius * radius * (angle - std::sin(angle));
    }
    case PieceKind::Quadratic:
        // Between a quadratic curve and its chord lie two thirds of the triangle of its points.
        return cross(piece.control - piece.from, chord) * 2.0 / 3.0;
    case PieceKind::Cubic: {
        const QPointF a = piece.control - piece.from;
        const QPointF b = piece.control2 - piece.from;
        return (3.0 * cross(a, b) + 3.0 * cross(a, chord) + 3.0 * cross(b, chord) +
                3.0 * cross(b, chord)) /
               10.0;
    }
    case PieceKind::Circle:
        return 2.0 * Pi * piece.radius * piece.radius * piece.bulge;
    case PieceKind::Ellipse:
        return 2.0 * Pi * piece.radius * length(piece.control2) * piece.bulge;
    }
    return 0.0;
}

} // namespace

PathPiece linePiece(QPointF from, QPointF to) {
    return {PieceKind::Line, from, to, {}, {}, 0.0, 0.0};
}

PathPiece arcPiece(QPointF from, QPointF to, double bulge) {
    return {PieceKind::Arc, from, to, {}, {}, bulge, 0.0};
}

PathPiece quadraticPiece(QPointF from, QPointF control, QPointF to) {
    return {PieceKind::Quadratic, from, to, control, {}, 0.0, 0.0};
}

PathPiece cubicPiece(QPointF from, QPointF control, QPointF control2, QPointF to) {
    return {PieceKind::Cubic, from, to, control, control2, 0.0, 0.0};
}

PathPiece circlePiece(QPointF centre, double radius, bool counterClockwise) {
    const QPointF start = centre + QPointF(radius, 0.0);
    return {PieceKind::Circle, start, start, centre, {}, counterClockwise ? 1.0 : -1.0, radius};
}

PathPiece ellipsePiece(QPointF centre, QPointF axis, double radiusAcross, bool counterClockwise) {
    const QPointF start = centre + axis;
    return {PieceKind::Ellipse, start, start, centre, axis, counterClockwise ? 1.0 : -1.0,
            radiusAcross};
}

PathPiece reversed(const PathPiece& piece) {
    PathPiece result = piece;
    std::swap(result.from, result.to);
    if (piece.kind == PieceKind::Cubic)
        std::swap(result.control, result.control2);
    if (piece.bulge != 0.0)
        result.bulge = -piece.bulge;
    return result;
}

PathPiece transformed(const PathPiece& piece, double scale, bool flipped, QPointF offset) {
    const double scaleY = flipped ? -scale : scale;
    const auto map = [&](QPointF point) {
        return QPointF(point.x() * scale + offset.x(), point.y() * scaleY + offset.y());
    };
    PathPiece result = piece;
    result.from = map(piece.from);
    result.to = map(piece.to);
    result.control = map(piece.control);
    result.control2 = piece.kind == PieceKind::Ellipse
                          ? QPointF(piece.control2.x() * scale, piece.control2.y() * scaleY)
                          : map(piece.control2);
    if (flipped)
        result.bulge = -piece.bulge;
    result.radius = piece.radius * scale;
    return result;
}

ArcCircle arcCircle(QPointF start, QPointF end, double bulge) {
    const QPointF chord = end - start;
    const QPointF left(-chord.y(), chord.x());
    const double towards = (1.0 - bulge * bulge) / (4.0 * bulge);
    const double radius = length(chord) * (1.0 + bulge * bulge) / (4.0 * std::abs(bulge));
    return {(start + end) / 2.0 + left * towards, radius};
}

QPointF curvePoint(QPointF start, QPointF control, QPointF end, double t) {
    const double s = 1.0 - t;
    return start * (s * s) + control * (2.0 * s * t) + end * (t * t);
}

QPointF cubicPoint(const PathPiece& cubic, double t) {
    const double s = 1.0 - t;
    return cubic.from * (s * s * s) + cubic.control * (3.0 * s * s * t) +
           cubic.control2 * (3.0 * s * t * t) + cubic.to * (t * t * t);
}

std::vector<PathPiece> asCubics(const PathPiece& ellipse) {
    // How far the control points of a quarter of the unit circle are from its ends.
    constexpr double Handle = 0.5522847498307936;
    const bool isCircle = ellipse.kind == PieceKind::Circle;
    const QPointF axis = isCircle ? QPointF(ellipse.radius, 0.0) : ellipse.control2;
    const QPointF across =
        isCircle ? QPointF(0.0, ellipse.radius * ellipse.bulge) : acrossAxis(ellipse);
    const std::array<QPointF, 5> reach{axis, across, -axis, -across, axis};
    std::vector<PathPiece> cubics;
    for (std::size_t i = 0; i < 4; ++i) {
        const QPointF from = ellipse.control + reach[i];
        const QPointF to = ellipse.control + reach[i + 1];
        cubics.push_back(
            cubicPiece(from, from + reach[i + 1] * Handle, to + reach[i] * Handle, to));
    }
    cubics.front().from = ellipse.from;
    cubics.back().to = ellipse.from;
    return cubics;
}

std::vector<PathPiece> arcAsCubics(const PathPiece& arc) {
    std::vector<PathPiece> cubics;
    appendArcAsCubics(arc.from, arc.to, arc.bulge, cubics);
    return cubics;
}

void flatten(const PathPiece& piece, double tolerance, std::vector<QPointF>& points) {
    switch (piece.kind) {
    case PieceKind::Line:
        points.push_back(piece.to);
        return;
    case PieceKind::Arc:
        flattenArc(piece.from, piece.to, piece.bulge, tolerance, points);
        return;
    case PieceKind::Quadratic: {
        // The chord of a part of length 1 / n is a quarter of the second difference / n² away.
        const QPointF bend = piece.from - 2.0 * piece.control + piece.to;
        const int count = partsFor(length(bend) / 4.0, tolerance);
        for (int i = 1; i < count; ++i)
            points.push_back(
                curvePoint(piece.from, piece.control, piece.to, static_cast<double>(i) / count));
        points.push_back(piece.to);
        return;
    }
    case PieceKind::Cubic: {
        // Likewise three quarters of the larger second difference.
        const double bend = std::max(length(piece.from - 2.0 * piece.control + piece.control2),
                                     length(piece.control - 2.0 * piece.control2 + piece.to));
        const int count = partsFor(0.75 * bend, tolerance);
        for (int i = 1; i < count; ++i)
            points.push_back(cubicPoint(piece, static_cast<double>(i) / count));
        points.push_back(piece.to);
        return;
    }
    case PieceKind::Circle: {
        const QPointF opposite = 2.0 * piece.control - piece.from;
        flattenArc(piece.from, opposite, piece.bulge, tolerance, points);
        flattenArc(opposite, piece.to, piece.bulge, tolerance, points);
        return;
    }
    case PieceKind::Ellipse:
        flattenEllipse(piece, tolerance, points);
        return;
    }
}

std::vector<QPointF> flattened(std::span<const PathPiece> pieces, double tolerance) {
    std::vector<QPointF> points;
    if (pieces.empty())
        return points;
    points.push_back(pieces.front().from);
    for (const PathPiece& piece : pieces)
        flatten(piece, tolerance, points);
    return points;
}

std::vector<QPointF> flattenedRing(std::span<const PathPiece> pieces, double tolerance) {
    std::vector<QPointF> points = flattened(pieces, tolerance);
    if (!points.empty() && points.back() != points.front())
        points.push_back(points.front());
    return points;
}

void extend(QRectF& box, QPointF point) {
    box.setLeft(std::min(box.left(), point.x()));
    box.setRight(std::max(box.right(), point.x()));
    box.setTop(std::min(box.top(), point.y()));
    box.setBottom(std::max(box.bottom(), point.y()));
}

QRectF boundingBox(std::span<const PathPiece> pieces) {
    if (pieces.empty())
        return {};
    QRectF box(pieces.front().from, pieces.front().from);
    for (const PathPiece& piece : pieces) {
        extend(box, piece.to);
        switch (piece.kind) {
        case PieceKind::Line:
            break;
        case PieceKind::Arc:
            extendByArc(box, piece);
            break;
        case PieceKind::Quadratic:
        case PieceKind::Cubic:
            extendByCurve(box, piece);
            break;
        case PieceKind::Circle:
        case PieceKind::Ellipse:
            extendByWhole(box, piece);
            break;
        }
    }
    return box;
}

double signedArea(std::span<const PathPiece> pieces) {
    if (pieces.empty())
        return 0.0;
    double twice = 0.0;
    for (const PathPiece& piece : pieces)
        twice += cross(piece.from, piece.to) + twiceBeside(piece);
    return (twice + cross(pieces.back().to, pieces.front().from)) / 2.0;
}
