#pragma once

#include "shapes/piecerecord.h"

#include <span>
#include <utility>
#include <vector>

namespace ovtrace {

struct Circle {
    Point centre;
    double radius = 0.0;
};

struct Box {
    Point least;
    Point greatest;
};

Piece linePiece(Point from, Point to);
/// An arc; without a bulge a line.
Piece arcPiece(Point from, Point to, double bulge);
Piece cubicPiece(Point from, Point control1, Point control2, Point to);

/// The circle that an arc lies on; `arc.bulge` is not 0.
Circle circleOf(const Piece& arc);

/// The bulge of the arc from `from` to `to` on a circle around `centre`, going round it from +x to
/// +y (`turn` > 0) or the other way. Ends that coincide have no bulge. The ends need not lie on the
/// circle to the last digit: the arc passes its middle.
double bulgeAround(Point from, Point to, Point centre, double turn);

/// The place at the parameter `t` from 0 to 1; on an arc the parameter is that of the rational
/// form (the middle at 1/2, the ends at 0 and 1), not the angle.
Point pointAt(const Piece& piece, double t);

/// The direction of the piece at its start and at its end, of length 1 (0 when it has no length).
Point startTangent(const Piece& piece);
Point endTangent(const Piece& piece);

Piece reversed(const Piece& piece);

/// The two parts before and after the parameter `t`, which share `pointAt(piece, t)`.
std::pair<Piece, Piece> split(const Piece& piece, double t);

/// The distance of `point` from the piece; for cubics from a polyline of `cubicSteps` chords.
double distanceTo(const Piece& piece, Point point);

/// The area between the piece and the origin: half the integral of x dy - y dx. Summed along a
/// closed ring it is its area, positive when the ring turns from +x to +y.
double areaOf(const Piece& piece);
/// The same of pieces that follow one another.
double areaOf(std::span<const Piece> pieces);

Box boundsOf(const Piece& piece);
/// Makes a box as large as to hold a point.
void extend(Box& box, Point point);

/// The length of the piece (arcs and cubics by chords, within about a thousandth).
double lengthOf(const Piece& piece);

/// The piece moved so that it starts and ends there; its form is kept.
Piece withEnds(const Piece& piece, Point from, Point to);

} // namespace ovtrace
