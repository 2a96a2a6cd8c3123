#include "outline.h"

#include "vectors.h"

#include <algorithm>
#include <cmath>

namespace {

QPointF toPoint(const OvVector& vector) {
    return {vector.x, vector.y};
}

/// The parameter at which a coordinate of the curve turns; outside 0..1 when it does not.
double turningParameter(double start, double control, double end) {
    const double bend = start - 2.0 * control + end;
    return bend == 0.0 ? -1.0 : (start - control) / bend;
}

} // namespace

Outline toOutline(const OvPolyline& polyline) {
    Outline outline;
    outline.start = toPoint(polyline.getStartPoint());
    outline.pieces.reserve(static_cast<std::size_t>(polyline.countPieces()));
    for (qsizetype i = 1; i < polyline.countPieces(); ++i) {
        if (polyline.isVertexAt(i)) {
            outline.pieces.push_back({false, {}, toPoint(polyline.getVertexAt(i))});
            continue;
        }
        const OvSpline curve = polyline.getSplineAt(i);
        const QPointF control = toPoint(curve.getControlPointAt(1));
        const bool isCurve = std::isfinite(control.x()) && std::isfinite(control.y());
        outline.pieces.push_back(
            {isCurve, isCurve ? control : QPointF(), toPoint(curve.getControlPointAt(2))});
    }
    return outline;
}

Outline transformed(const Outline& outline, double scaleX, double scaleY, QPointF offset) {
    const auto map = [&](QPointF point) {
        return QPointF(point.x() * scaleX + offset.x(), point.y() * scaleY + offset.y());
    };
    Outline result;
    result.start = map(outline.start);
    result.pieces.reserve(outline.pieces.size());
    for (const OutlinePiece& piece : outline.pieces)
        result.pieces.push_back({piece.isCurve, map(piece.control), map(piece.end)});
    return result;
}

QPointF curvePoint(QPointF start, QPointF control, QPointF end, double t) {
    const double s = 1.0 - t;
    return start * (s * s) + control * (2.0 * s * t) + end * (t * t);
}

std::vector<QPointF> flattened(const Outline& outline, double tolerance) {
    std::vector<QPointF> points{outline.start};
    for (const OutlinePiece& piece : outline.pieces) {
        const QPointF start = points.back();
        int count = 1;
        if (piece.isCurve) {
            // The chord of a part of length 1 / n is a quarter of the second difference / n² away.
            const QPointF bend = start - 2.0 * piece.control + piece.end;
            const double distance = length(bend) / 4.0;
            count = std::max(1, static_cast<int>(std::ceil(std::sqrt(distance / tolerance))));
        }
        for (int i = 1; i < count; ++i)
            points.push_back(
                curvePoint(start, piece.control, piece.end, static_cast<double>(i) / count));
        points.push_back(piece.end);
    }
    if (points.back() != points.front())
        points.push_back(points.front());
    return points;
}

void extend(QRectF& box, QPointF point) {
    box.setLeft(std::min(box.left(), point.x()));
    box.setRight(std::max(box.right(), point.x()));
    box.setTop(std::min(box.top(), point.y()));
    box.setBottom(std::max(box.bottom(), point.y()));
}

QRectF boundingBox(const Outline& outline) {
    QRectF box(outline.start, outline.start);
    QPointF start = outline.start;
    for (const OutlinePiece& piece : outline.pieces) {
        extend(box, piece.end);
        if (piece.isCurve) {
            for (const double t : {turningParameter(start.x(), piece.control.x(), piece.end.x()),
                                   turningParameter(start.y(), piece.control.y(), piece.end.y())}) {
                if (t > 0.0 && t < 1.0)
                    extend(box, curvePoint(start, piece.control, piece.end, t));
            }
        }
        start = piece.end;
    }
    return box;
}

double signedArea(const Outline& outline) {
    double twice = 0.0;
    QPointF start = outline.start;
    for (const OutlinePiece& piece : outline.pieces) {
        twice += cross(start, piece.end);
        // Between a quadratic curve and its chord lie two thirds of the triangle of its points.
        if (piece.isCurve)
            twice += cross(piece.control - start, piece.end - start) * 2.0 / 3.0;
        start = piece.end;
    }
    return (twice + cross(start, outline.start)) / 2.0;
}
