#pragma once

#include <QPointF>
#include <QRectF>

#include <cstdint>
#include <span>
#include <vector>

enum class PieceKind : std::uint8_t {
    Line,
    Arc,       ///< of a circle, by its bulge
    Quadratic, ///< Bézier curve with one control point
    Cubic,     ///< Bézier curve with two control points
    Circle,    ///< a whole one, alone in its path
    Ellipse    ///< a whole one, alone in its path
};

/// A piece of a path. Which fields count depends on the kind.
struct PathPiece {
    PieceKind kind = PieceKind::Line;
    QPointF from;
    QPointF to; ///< of a circle or an ellipse again `from`, a point of it
    /// The control point of a quadratic curve, the first one of a cubic curve; the centre of a
    /// circle or an ellipse.
    QPointF control;
    QPointF control2; ///< of a cubic curve; of an ellipse the vector from its centre to `from`
    /// Of an arc, the tangent of a quarter of its angle: positive when it runs counter-clockwise
    /// with y up. Of a circle or an ellipse, 1 when it runs so, else -1.
    double bulge = 0.0;
    double radius = 0.0; ///< of a circle; of an ellipse the one across `control2`
};

PathPiece linePiece(QPointF from, QPointF to);
PathPiece arcPiece(QPointF from, QPointF to, double bulge);
PathPiece quadraticPiece(QPointF from, QPointF control, QPointF to);
PathPiece cubicPiece(QPointF from, QPointF control, QPointF control2, QPointF to);
/// Begins and ends at its rightmost point.
PathPiece circlePiece(QPointF centre, double radius, bool counterClockwise = true);
/// `axis` leads from the centre to the point where it begins and ends.
PathPiece ellipsePiece(QPointF centre, QPointF axis, double radiusAcross,
                       bool counterClockwise = true);

/// The piece run the other way, with the same numbers.
PathPiece reversed(const PathPiece& piece);

/// The piece stretched and moved: both coordinates times `scale`, y times -1 before that when
/// `flipped`, then `offset` is added.
PathPiece transformed(const PathPiece& piece, double scale, bool flipped, QPointF offset);

/// The centre and radius of the circle of an arc with a bulge other than 0.
struct ArcCircle {
    QPointF centre;
    double radius = 0.0;
};
ArcCircle arcCircle(QPointF start, QPointF end, double bulge);

/// The point of a quadratic curve at 0 <= t <= 1.
QPointF curvePoint(QPointF start, QPointF control, QPointF end, double t);
/// The point of a cubic curve at 0 <= t <= 1.
QPointF cubicPoint(const PathPiece& cubic, double t);

/// Four cubic curves that are a circle or an ellipse within 0.0003 of its radius.
std::vector<PathPiece> asCubics(const PathPiece& ellipse);

/// Cubic curves, of an eighth of a turn at most, that are an arc within 0.000005 of its radius.
std::vector<PathPiece> arcAsCubics(const PathPiece& arc);

/// Appends the corners of straight pieces no farther from the piece than `tolerance`: all but the
/// first. A piece run the other way need not have the same corners.
void flatten(const PathPiece& piece, double tolerance, std::vector<QPointF>& points);

/// The corners of a path or ring when every curve is replaced by straight pieces no farther from it
/// than `tolerance`.
std::vector<QPointF> flattened(std::span<const PathPiece> pieces, double tolerance);
/// The same of a ring: starts and ends with the same point.
std::vector<QPointF> flattenedRing(std::span<const PathPiece> pieces, double tolerance);

/// Enlarges the box to hold the point.
void extend(QRectF& box, QPointF point);

/// The smallest box around the pieces, curves taken exactly.
QRectF boundingBox(std::span<const PathPiece> pieces);

/// The area inside a ring, curves taken exactly; positive when it runs counter-clockwise with y up.
/// A closing straight line is understood.
double signedArea(std::span<const PathPiece> pieces);
