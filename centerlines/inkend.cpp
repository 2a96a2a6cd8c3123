#include "inkend.h"

#include <algorithm>

namespace ovtrace {
namespace {

constexpr double EdgeInk = 0.5;
constexpr double InkStep = 0.25;

} // namespace

double inkEnd(const InkLevels& ink, const Stroke& stroke, int end, double inside, double most) {
    const auto level = [&](double d) {
        const Point p = beyond(stroke, end, d);
        const Point across = turnedQuarter(directionAt(stroke.carrier, p)) * 0.5;
        return (2.0 * ink.sample(p.x, p.y) + ink.sample(p.x + across.x, p.y + across.y) +
                ink.sample(p.x - across.x, p.y - across.y)) /
               4.0;
    };
    const double edge = EdgeInk * stroke.peak;
    double d = -inside;
    double before = level(d);
    while (d < most) {
        const double after = level(d + InkStep);
        if (after < edge) {
            // The place of the edge between two steps is interpolated.
            const double part = before > after ? (before - edge) / (before - after) : 0.0;
            return d + InkStep * std::clamp(part, 0.0, 1.0);
        }
        before = after;
        d += InkStep;
    }
    return d;
}

} // namespace ovtrace
