#pragma once

#include <QPointF>
#include <QRectF>

#include <vector>

#include <ovpolyline.h>

/// A piece of an outline, from the end of the piece before it: a line or a quadratic Bézier curve.
struct OutlinePiece {
    bool isCurve;
    QPointF control; ///< of a curve
    QPointF end;
};

/// A closed outline as plain points, in the coordinates of its polyline.
struct Outline {
    QPointF start;
    std::vector<OutlinePiece> pieces;
};

/// The pieces of a traced polyline.
///
/// Strange tolerances can give a curve without a control point: its chord stays.
Outline toOutline(const OvPolyline& polyline);

/// The outline moved and stretched: x and y are multiplied by `scaleX` and `scaleY`, then `offset`
/// is added.
Outline transformed(const Outline& outline, double scaleX, double scaleY, QPointF offset);

/// The point of a quadratic curve at 0 <= t <= 1.
QPointF curvePoint(QPointF start, QPointF control, QPointF end, double t);

/// The outline's corners when every curve is replaced by straight pieces no farther from it than
/// `tolerance`; starts and ends with the same point.
std::vector<QPointF> flattened(const Outline& outline, double tolerance);

/// Enlarges the box to hold the point.
void extend(QRectF& box, QPointF point);

/// The smallest box around the outline, curves taken exactly.
QRectF boundingBox(const Outline& outline);

/// The area inside an outline, curves taken exactly; positive when it runs counter-clockwise with
/// y up. A closing straight line is understood.
double signedArea(const Outline& outline);
