// Arcs that touch the lines beside them.

#include "tangents.h"

#include <gtest/gtest.h>

#include <cmath>

using namespace ovtrace;

namespace {

void fit(Stroke& stroke, Point from, Point to) {
    Moments support(from);
    for (const Sample& s : stroke.samples)
        support.add(s.at, 1.0 / (s.sigma * s.sigma));
    stroke.carrier = lineCarrier(support, from, to);
    stroke.ends[0].at = from;
    stroke.ends[1].at = to;
    stroke.width = 2.0;
}

/// A line along y = 10 to (50, 10) and from there a quarter of radius 20 about (50, 30); the line
/// took `over` pixels of the arc.
std::vector<Stroke> lineAndQuarter(double over) {
    std::vector<Stroke> strokes(2);
    for (double x = 10.0; x <= 50.0; x += 1.0)
        strokes[0].samples.push_back({{x, 10.0}, 0.1, false});
    fit(strokes[0], {10.0, 10.0}, {50.0 + over, 10.0});
    Stroke& arc = strokes[1];
    Moments support(Point{50.0, 30.0});
    for (int k = 0; k <= 30; ++k) {
        // The rational form of the circle: no library's sine is needed.
        const double t = k / 30.0;
        const Point p{50.0 + 20.0 * 2.0 * t / (1.0 + t * t),
                      30.0 - 20.0 * (1.0 - t * t) / (1.0 + t * t)};
        if (p.x < 50.0 + over)
            continue;
        // Measured 0.1 pixels too far out.
        arc.samples.push_back({p + unit(p - Point{50.0, 30.0}) * 0.1, 0.1, false});
        support.add(arc.samples.back().at, 100.0);
    }
    arc.carrier = *circleCarrier(support, arc.samples);
    arc.ends[0].at = arc.samples.front().at;
    arc.ends[1].at = arc.samples.back().at;
    arc.width = 2.0;
    strokes[0].ends[1].next = 1;
    strokes[0].ends[1].nextEnd = 0;
    arc.ends[0].next = 0;
    arc.ends[0].nextEnd = 1;
    return strokes;
}

TEST(Tangents, LineAndArcTouchWhereTheCircleSaysSo) {
    std::vector<Stroke> strokes = lineAndQuarter(6.0);
    makeTangent(strokes, {0.1, false, false});
    EXPECT_EQ(strokes[0].finish(), strokes[1].start());
    EXPECT_NEAR(strokes[0].finish().x, 50.0, 0.6);
    EXPECT_NEAR(std::abs(signedDistance(strokes[0].carrier, strokes[1].carrier.at)),
                strokes[1].carrier.radius, 1e-6);
    EXPECT_NEAR(strokes[1].carrier.radius, 20.0, 0.5);
}

TEST(Tangents, CornersAndStrangersStay) {
    std::vector<Stroke> strokes = lineAndQuarter(6.0);
    strokes[0].ends[1].next = strokes[1].ends[0].next = -1;
    const Point before = strokes[0].finish();
    makeTangent(strokes, {0.1, false, false});
    EXPECT_EQ(strokes[0].finish(), before);

    // A line that comes in at 45 degrees is a corner.
    std::vector<Stroke> corner = lineAndQuarter(0.0);
    corner[0].samples.clear();
    for (double d = 0.0; d <= 30.0; d += 1.0)
        corner[0].samples.push_back({{20.0 + d, 40.0 - d}, 0.1, false});
    fit(corner[0], {20.0, 40.0}, {50.0, 10.0});
    const Carrier arc = corner[1].carrier;
    makeTangent(corner, {0.1, false, false});
    EXPECT_EQ(corner[1].carrier.at, arc.at);
    EXPECT_EQ(corner[1].carrier.radius, arc.radius);
}

} // namespace
