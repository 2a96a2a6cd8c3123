#pragma once

#include "shapes/moments.h"

#include <optional>
#include <vector>

namespace ovtrace {

/// A whole ellipse.
struct Ellipse {
    Point centre;
    Point axis; ///< of length 1, along the greater radius
    double major = 0.0;
    double minor = 0.0;

    /// The place at the quarter `quarter` (0 to 3 from the axis towards turnedQuarter(axis)) and
    /// the part `t` (0 to 1) of the way to the next one.
    [[nodiscard]] Point at(int quarter, double t) const;
};

/// The ellipse with the least squared distances from the samples that are not loose; none where
/// they determine another conic.
std::optional<Ellipse> fitEllipse(const std::vector<Sample>& samples);

/// How far outside the ellipse a place lies, to the first order: below 0 inside.
double signedDistance(const Ellipse& ellipse, Point p);

/// The point of the ellipse next to a place that lies near it.
Point projected(const Ellipse& ellipse, Point p);

/// Where a line meets the ellipse, next to a place on that line; that place where it does not.
Point meetingNear(const Ellipse& ellipse, Point direction, Point p);

double circumferenceOf(const Ellipse& ellipse);

} // namespace ovtrace
