#include "shapes/junctions.h"

#include <algorithm>

namespace ovtrace {

namespace {

/// The direction in which the distance from the carrier grows, at `place`.
Point normalAt(const Carrier& carrier, Point place) {
    return turnedQuarter(directionAt(carrier, place));
}

/// Normal equations of a point under weighted distances.
struct PointEquations {
    double xx = 0.0;
    double xy = 0.0;
    double yy = 0.0;
    double x = 0.0;
    double y = 0.0;

    void add(Point normal, double distance, double weight) {
        xx += weight * normal.x * normal.x;
        xy += weight * normal.x * normal.y;
        yy += weight * normal.y * normal.y;
        x += weight * normal.x * distance;
        y += weight * normal.y * distance;
    }

    [[nodiscard]] Point solution() const {
        const double determinant = xx * yy - xy * xy;
        return {(yy * x - xy * y) / determinant, (xx * y - xy * x) / determinant};
    }
};

} // namespace

double uncertaintyAt(const Carrier& carrier, Point place) {
    // What no fit can promise: a hundredth of a sample's usual share.
    constexpr double least = 1e-3;
    if (carrier.support.isEmpty())
        return 1.0;
    const double weight = carrier.support.weight();
    const Point mean = carrier.support.mean();
    const PowerMeans means = carrier.support.aboutMean();
    const double along = std::max(means.xx + means.yy, 1e-12);
    const double reach = lengthSquared(place - mean) / along;
    // A line's place and direction; a circle's curvature adds a term of the fourth order.
    const double terms = carrier.isLine() ? 1.0 + reach : 2.0 + reach + reach * reach;
    return std::sqrt(terms / weight + least * least);
}

Point meetingPoint(std::span<const JunctionEnd> ends, Point around, double spread) {
    constexpr int rounds = 4;
    Point place = around;
    for (int round = 0; round < rounds; ++round) {
        PointEquations equations;
        const double prior = 1.0 / (spread * spread);
        equations.add({1.0, 0.0}, around.x - place.x, prior);
        equations.add({0.0, 1.0}, around.y - place.y, prior);
        for (const JunctionEnd& end : ends) {
            const double sigma = uncertaintyAt(end.carrier, place);
            equations.add(normalAt(end.carrier, place), -signedDistance(end.carrier, place),
                          1.0 / (sigma * sigma));
        }
        const Point step = equations.solution();
        if (!isFinite(step))
            return around;
        place += step;
    }
    // Carriers that do not meet near by say nothing about the place.
    return distance(place, around) <= 6.0 * spread ? place : around;
}

} // namespace ovtrace
