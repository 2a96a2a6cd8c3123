#pragma once

#include "shapes/moments.h"
#include "shapes/piece.h"

#include <optional>
#include <span>
#include <vector>

namespace ovtrace {

/// A line or a circle without ends, that a run of samples lies on.
struct Carrier {
    enum class Kind : std::uint8_t { Line, Circle };

    Kind kind = Kind::Line;
    /// Lines: a point of it. Circles: the centre.
    Point at;
    /// Lines: the direction in which the chain runs, of length 1.
    Point direction{1.0, 0.0};
    double radius = 0.0;
    /// Circles: 1 when the chain goes round from +x to +y, else -1.
    double turn = 1.0;

    /// The samples from `first` to `last` (both included) that it was fitted to, and their sums,
    /// with weights 1/sigma^2. Samples between two carriers belong to neither. In a closed chain
    /// the last carrier may run over the end of the samples: `last` then is `first` plus a number.
    int first = 0;
    int last = 0;
    Moments support;
    /// The sum of squared distances, in units of their variances.
    double error = 0.0;

    [[nodiscard]] bool isLine() const {
        return kind == Kind::Line;
    }
};

/// The line that fits `support` best, running from about `from` to about `to`.
Carrier lineCarrier(const Moments& support, Point from, Point to);

/// The circle that fits `samples` best: the algebraic fit, then geometric steps (Gauss-Newton).
/// None where it is no circle: fewer than three points, or points on a line.
std::optional<Carrier> circleCarrier(const Moments& support, std::span<const Sample> samples);

/// The distance of `point` from the carrier: positive on the left of its direction (as seen with y
/// up; the side to which turnedQuarter() points), for circles where the centre is when `turn` > 0.
double signedDistance(const Carrier& carrier, Point point);

/// The point of the carrier next to `point`.
Point projected(const Carrier& carrier, Point point);

/// The direction in which the chain runs along the carrier beside `point`.
Point directionAt(const Carrier& carrier, Point point);

/// The standard deviation of the carrier's direction, in radians: of a line; of a circle at an end
/// of its samples, where its curvature adds to it.
double endDirectionSigma(const Carrier& carrier);

/// Where two carriers meet: none, one or two places. Lines that are parallel to within rounding do
/// not meet, circles neither when one is inside the other.
std::vector<Point> meetings(const Carrier& a, const Carrier& b);

/// The part of the carrier from `from` to `to`, which lie on it or close by; arcs of more than half
/// a circle as two pieces.
void appendPieces(const Carrier& carrier, Point from, Point to, std::vector<Piece>& pieces);

} // namespace ovtrace
