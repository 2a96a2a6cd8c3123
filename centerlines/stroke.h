#pragma once

#include "ellipse.h"
#include "profiles.h"

#include "shapes/carrier.h"

#include <array>
#include <optional>
#include <vector>

namespace ovtrace {

/// One end of a stroke.
struct StrokeEnd {
    Point at;
    /// The stroke that continues the same path there, and which of its ends (0 start, 1 end): they
    /// were one line of the skeleton. -1 for none.
    int next = -1;
    int nextEnd = 0;
    /// Touches a filled area.
    bool solid = false;
    /// Node that the end has been moved to, or -1.
    int node = -1;
};

/// A line, an arc, a circle or an ellipse while it is worked on; y down.
struct Stroke {
    Carrier carrier;
    std::array<StrokeEnd, 2> ends;  ///< start and end along the carrier
    bool closed = false;            ///< a whole circle or ellipse; the ends do not count
    std::optional<Ellipse> ellipse; ///< `carrier` then holds its centre and greater radius
    double width = 0.0;
    double peak = 1.0; ///< usual ink in its middle, 0 to 1
    bool dropped = false;
    std::vector<double> dashes; ///< lengths of dash and gap in turns; empty: drawn through
    bool hatch = false;
    bool aligned = false; ///< has a direction that other lines of the drawing have as well
    int widthClass = 0;
    std::vector<Sample> samples; ///< measured points, for circles to be fitted again

    Point start() const {
        return ends[0].at;
    }
    Point finish() const {
        return ends[1].at;
    }
};

/// Its pieces from start to end; half circles for a circle.
std::vector<Piece> piecesOf(const Stroke& stroke);

double lengthOf(const Stroke& stroke);

/// Once around the circle of an arc, in pixels.
double circumferenceOf(const Stroke& arc);

/// The way along a stroke in steps of about `step`, ends included.
class Walk {
public:
    Walk(const Stroke& stroke, double step);

    /// Steps from end to end.
    [[nodiscard]] int count() const {
        return steps;
    }
    /// The place after k steps.
    [[nodiscard]] Point at(int k) const;

private:
    const Stroke& stroke;
    double length;
    int steps;
};

/// Whether `holds(place)` is true of each place of a walk; none is found after the first of which
/// it is not: the way between two ends that have passed each other on a flat arc goes all around
/// it, and has millions.
template <class Predicate> bool allAlong(const Stroke& stroke, double step, Predicate holds) {
    const Walk walk(stroke, step);
    for (int k = 0; k <= walk.count(); ++k)
        if (!holds(walk.at(k)))
            return false;
    return true;
}

/// All places of a walk.
std::vector<Point> pointsAlong(const Stroke& stroke, double step);

/// The direction in which the stroke leaves its end: outward.
Point outwardAt(const Stroke& stroke, int end);

/// How far along the stroke from its start the projection of `point` lies, in pixels: below 0
/// before the start of a line. On arcs it is measured from the start in the sense of turning, up to
/// a whole turn.
double placeAlong(const Stroke& stroke, Point point);

/// The point of the carrier `distance` pixels beyond the given end, inward when below 0.
Point beyond(const Stroke& stroke, int end, double distance);

/// Whether the projection of `point` lies between the ends, `slack` pixels beyond them included.
bool covers(const Stroke& stroke, Point point, double slack);

} // namespace ovtrace
