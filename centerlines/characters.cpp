#include "characters.h"

#include <algorithm>
#include <cmath>

namespace ovtrace {
namespace {

/// Share of the rectangle of its own moments that a bar fills at least; letters fill less.
constexpr double BarFill = 0.85;
/// Length over width of a bent bar at least, and its share of that rectangle.
constexpr double Slender = 4.0;
constexpr double BentFill = 0.65;
/// How far apart the feet of characters in a line may be, over the height of the lower one.
constexpr double FeetApart = 0.12;
/// Least height of one character of a line over that of its neighbour, and share of the lower one's
/// height that the higher one covers at least.
constexpr double LeastHeight = 0.55;
constexpr double Covered = 0.7;
/// Share of the narrower one's width in which neighbours may overlap.
constexpr double Overlap = 0.3;

struct Spread {
    double x = 0.0;
    double y = 0.0;
    double xx = 0.0;
    double xy = 0.0;
    double yy = 0.0;
};

Spread spreadOf(const InkComponents& all, const InkComponent& component) {
    Spread s;
    const double n = component.area;
    forEachPixel(all, component, [&](int x, int y) {
        s.x += x;
        s.y += y;
    });
    s.x /= n;
    s.y /= n;
    forEachPixel(all, component, [&](int x, int y) {
        s.xx += (x - s.x) * (x - s.x);
        s.xy += (x - s.x) * (y - s.y);
        s.yy += (y - s.y) * (y - s.y);
    });
    // The pixel's own extent adds a twelfth.
    s.xx = s.xx / n + 1.0 / 12.0;
    s.xy = s.xy / n;
    s.yy = s.yy / n + 1.0 / 12.0;
    return s;
}

bool isBar(const Spread& s, int area) {
    // A rectangle a by b has the variances a^2/12 and b^2/12.
    const double sides = 12.0 * std::sqrt(std::max(s.xx * s.yy - s.xy * s.xy, 0.0));
    if (area >= BarFill * sides)
        return true;
    // A dash of an arc is a little bent: long, narrow and nearly full.
    const double half = (s.xx - s.yy) / 2.0;
    const double root = std::sqrt(half * half + s.xy * s.xy);
    const double mean = (s.xx + s.yy) / 2.0;
    return mean + root > Slender * Slender * (mean - root) && area >= BentFill * sides;
}

bool isRing(const InkComponents& all, const InkComponent& component, const Spread& s,
            double strokeWidth) {
    double least = 1e9;
    double greatest = 0.0;
    forEachPixel(all, component, [&](int x, int y) {
        const double d = (x - s.x) * (x - s.x) + (y - s.y) * (y - s.y);
        least = std::min(least, d);
        greatest = std::max(greatest, d);
    });
    least = std::sqrt(least);
    greatest = std::sqrt(greatest);
    const double width = greatest - least;
    return least > 1.5 && width < 1.5 * strokeWidth + 1.5 &&
           component.area > 0.5 * 3.1416 * (greatest * greatest - least * least);
}

int common(Extent a, Extent b) {
    return std::min(a.end, b.end) - std::max(a.begin, b.begin);
}

} // namespace

Form formOf(const InkComponents& all, const InkComponent& component, double strokeWidth) {
    const Spread s = spreadOf(all, component);
    if (isBar(s, component.area))
        return Form::Bar;
    return isRing(all, component, s, strokeWidth) ? Form::Ring : Form::Complex;
}

Extent across(const InkComponent& c, bool upright) {
    return upright ? Extent{c.left, c.right} : Extent{c.top, c.bottom};
}

bool isInLine(const InkComponent& a, const InkComponent& b, bool upright, double gap) {
    const Extent ha = across(a, upright);
    const Extent hb = across(b, upright);
    const double low = std::min(ha.length(), hb.length());
    const double high = std::max(ha.length(), hb.length());
    const Extent wa = across(a, !upright);
    const Extent wb = across(b, !upright);
    return low >= LeastHeight * high && common(ha, hb) >= Covered * low &&
           common(wa, wb) <= Overlap * std::min(wa.length(), wb.length()) &&
           -common(wa, wb) <= gap * high;
}

bool haveFeetInLine(const InkComponent& a, const InkComponent& b, bool upright, double slack) {
    const Extent ha = across(a, upright);
    const Extent hb = across(b, upright);
    const double most = std::max(slack, FeetApart * std::min(ha.length(), hb.length()));
    return std::abs(ha.end - hb.end) <= most || (upright && std::abs(ha.begin - hb.begin) <= most);
}

} // namespace ovtrace
