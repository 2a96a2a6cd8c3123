// From ink to the graph of its skeleton, and the profiles across its chains.

#include "distance.h"
#include "inkmask.h"
#include "pace.h"
#include "profiles.h"
#include "skeleton.h"
#include "thinning.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

using namespace ovtrace;

namespace {

/// Ink where the distance from a segment is less than half the width, grey over one pixel.
InkLevels drawn(int size, const std::vector<std::pair<Point, Point>>& segments, double width) {
    InkLevels ink{size, size, {}};
    ink.levels.resize(static_cast<std::size_t>(size) * static_cast<std::size_t>(size));
    for (int y = 0; y < size; ++y)
        for (int x = 0; x < size; ++x) {
            double nearest = 1e9;
            for (const auto& [a, b] : segments) {
                const Point p{x + 0.5, y + 0.5};
                const double t = std::clamp(dot(p - a, b - a) / lengthSquared(b - a), 0.0, 1.0);
                nearest = std::min(nearest, distance(p, a + (b - a) * t));
            }
            const double level = std::clamp(0.5 + width / 2.0 - nearest, 0.0, 1.0);
            ink.levels[ink.indexOf(x, y)] = static_cast<std::uint8_t>(level * 255.0);
        }
    return ink;
}

struct Traced {
    InkMask mask;
    std::vector<std::uint8_t> distance;
    Skeleton skeleton;
};

Traced trace(InkLevels& ink) {
    Pace pace(nullptr);
    Traced t;
    t.mask = inkMask(ink, 115, pace);
    t.distance = distanceToPaper(t.mask, pace);
    const std::vector<std::size_t> pixels = thin(t.mask, pace);
    t.skeleton = buildSkeleton(t.mask, pixels, t.distance, pace);
    return t;
}

TEST(Skeleton, LineIsOneChainBetweenTwoEnds) {
    InkLevels ink = drawn(80, {{{10, 20}, {70, 45}}}, 4.0);
    const Skeleton skeleton = trace(ink).skeleton;
    ASSERT_EQ(skeleton.chains.size(), 1U);
    EXPECT_EQ(skeleton.nodes[static_cast<std::size_t>(skeleton.chains[0].from)].degree, 1);
    EXPECT_NEAR(skeleton.chains[0].count, 58, 5);
}

TEST(Skeleton, CrossingIsOneNode) {
    InkLevels ink = drawn(80, {{{10, 15}, {70, 60}}, {{10, 60}, {70, 20}}}, 3.0);
    const Skeleton skeleton = trace(ink).skeleton;
    EXPECT_EQ(skeleton.chains.size(), 4U);
    EXPECT_EQ(std::count_if(skeleton.nodes.begin(), skeleton.nodes.end(),
                            [](const SkeletonNode& n) { return n.degree == 4; }),
              1);
}

TEST(Skeleton, RoughEdgesMakeNoBranches) {
    InkLevels ink = drawn(80, {{{10, 40}, {70, 40}}}, 7.0);
    for (int x = 15; x < 65; x += 9)
        ink.levels[ink.indexOf(x, 36)] = ink.levels[ink.indexOf(x, 35)] = 255;
    EXPECT_EQ(trace(ink).skeleton.chains.size(), 1U);
}

TEST(Skeleton, RingIsClosed) {
    InkLevels ink = drawn(
        80,
        {{{20, 20}, {60, 20}}, {{60, 20}, {60, 60}}, {{60, 60}, {20, 60}}, {{20, 60}, {20, 20}}},
        3.0);
    const Skeleton skeleton = trace(ink).skeleton;
    ASSERT_EQ(skeleton.chains.size(), 1U);
    EXPECT_EQ(skeleton.chains[0].from, -1);
}

TEST(Profiles, MiddleAndWidthAreThoseOfTheLine) {
    const Point a{12.3, 30.2};
    const Point b{90.1, 51.7};
    InkLevels ink = drawn(100, {{a, b}}, 3.0);
    const Traced t = trace(ink);
    Pace pace(nullptr);
    const auto profiles = strokeProfiles(ink, t.mask, t.distance, t.skeleton, pace);
    ASSERT_EQ(profiles.size(), 1U);
    for (const StrokePoint& point : profiles[0]) {
        if (point.beside || distance(point.at, a) < 5.0 || distance(point.at, b) < 5.0)
            continue;
        EXPECT_LT(std::abs(cross(unit(b - a), point.at - a)), 0.1);
        EXPECT_NEAR(point.width, 3.0, 0.2);
    }
}

TEST(Profiles, NeighbourTakesNoPart) {
    InkLevels ink = drawn(80, {{{10, 30.4}, {70, 30.4}}, {{10, 35.4}, {70, 35.4}}}, 2.5);
    const StrokePoint point = profileAt(ink, {40.0, 30.0}, {1.0, 0.0}, 6.0);
    EXPECT_NEAR(point.at.y, 30.4, 0.05);
    EXPECT_NEAR(point.width, 2.5, 0.2);
}

TEST(Distance, ThirdsOfAPixelFromThePaper) {
    InkLevels ink = drawn(40, {{{5, 20.5}, {35, 20.5}}}, 5.0);
    Pace pace(nullptr);
    const InkMask mask = inkMask(ink, 115, pace);
    const auto distance = distanceToPaper(mask, pace);
    EXPECT_EQ(distance[mask.indexOf(20, 20)], 9);
    EXPECT_EQ(distance[mask.indexOf(20, 18)], 3);
    EXPECT_EQ(distance[mask.indexOf(20, 17)], 0);
    EXPECT_NEAR(halfWidthAt(medianRidge(mask, distance, pace)), 2.5, 0.3);
}

TEST(InkMask, SpecksAndPinholesGo) {
    InkLevels ink = drawn(60, {{{10, 30.5}, {50, 30.5}}}, 5.0);
    ink.levels[ink.indexOf(30, 30)] = 0;
    ink.levels[ink.indexOf(5, 5)] = 255;
    Pace pace(nullptr);
    InkMask mask = inkMask(ink, 115, pace);
    InkComponents components = findComponents(mask, InkMask::Ink, pace);
    EXPECT_EQ(components.components.size(), 2U);
    EXPECT_EQ(mask.values[mask.indexOf(30, 30)], InkMask::Ink);
    EXPECT_GT(ink.at(30, 30), 200);
    EXPECT_EQ(despeckle(components, 1, mask, ink), 1U);
    EXPECT_EQ(components.components.size(), 1U);
    EXPECT_EQ(ink.at(5, 5), 0);
    EXPECT_EQ(mask.values[mask.indexOf(5, 5)], InkMask::Paper);
}

} // namespace
