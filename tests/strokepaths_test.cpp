// Noise of strokes, and arcs that are none.

#include "strokepaths.h"

#include <gtest/gtest.h>

#include <cmath>
#include <random>

using namespace ovtrace;

namespace {

/// An arc of a chord of 100 pixels along y = 50 that bends by `sagitta`.
Stroke arcOf(double sagitta) {
    const double radius = (2500.0 + sagitta * sagitta) / (2.0 * sagitta);
    const Point center{60.0, 50.0 - sagitta + radius};
    Stroke stroke;
    Moments support(center);
    for (double x = 10.0; x <= 110.0; x += 1.0) {
        const double dx = x - center.x;
        const Point p{x, center.y - std::sqrt(radius * radius - dx * dx)};
        stroke.samples.push_back({p, 0.1, false});
        support.add(p, 100.0);
    }
    stroke.carrier = *circleCarrier(support, stroke.samples);
    stroke.carrier.support = support;
    stroke.ends[0].at = stroke.samples.front().at;
    stroke.ends[1].at = stroke.samples.back().at;
    return stroke;
}

std::vector<StrokePoint> chainAt(double y, int bumpEvery) {
    std::vector<StrokePoint> points;
    for (int x = 0; x < 200; ++x) {
        StrokePoint point;
        point.at = {x + 0.5, y + (bumpEvery > 0 && x % bumpEvery == 0 ? 0.5 : 0.0)};
        points.push_back(point);
    }
    return points;
}

TEST(StrokePaths, FlatArcsAreLines) {
    std::vector<Stroke> strokes{arcOf(0.4), arcOf(4.0)};
    EXPECT_TRUE(straightenFlat(strokes, {0.1, false, false}));
    EXPECT_TRUE(strokes[0].carrier.isLine());
    EXPECT_NEAR(std::abs(strokes[0].carrier.direction.x), 1.0, 1e-6);
    EXPECT_FALSE(strokes[1].carrier.isLine());
    EXPECT_FALSE(straightenFlat(strokes, {0.1, false, false}));
}

TEST(StrokePaths, BumpsOfTwoLevelsAreRagged) {
    EXPECT_FALSE(measureNoise({chainAt(10.5, 0)}, {true, 1}).ragged);
    EXPECT_TRUE(measureNoise({chainAt(10.5, 9)}, {true, 1}).ragged);
    // With greys it is noise, and no threshold hid any.
    EXPECT_FALSE(measureNoise({chainAt(10.5, 9)}, {false, 1}).ragged);
    EXPECT_GE(measureNoise({chainAt(10.5, 0)}, {true, 1}).sigma, 0.25);
    EXPECT_GE(measureNoise({chainAt(10.5, 0)}, {true, 2}).sigma, 0.5);
}

TEST(StrokePaths, TightCurvesAreNoNoise) {
    std::vector<StrokePoint> coil;
    std::vector<StrokePoint> rough;
    std::minstd_rand draw;
    for (int i = 0; i < 200; ++i) {
        const double angle = i / 7.0; // of a circle of 7 pixels
        const double off =
            0.5 * (static_cast<double>(draw()) / static_cast<double>(draw.max()) - 0.5);
        StrokePoint point;
        point.at = Point{std::cos(angle), std::sin(angle)} * 7.0;
        coil.push_back(point);
        point.at = Point{std::cos(angle), std::sin(angle)} * (7.0 + off);
        rough.push_back(point);
    }
    EXPECT_LT(measureNoise({coil}, {false, 1}).sigma, 0.1);
    EXPECT_GT(measureNoise({rough}, {false, 1}).sigma, 0.1);
}

} // namespace
