#include "shapes/segmentation.h"
#include "support/outlinesamples.h"

#include <gtest/gtest.h>

#include <algorithm>

using namespace ovtrace;

namespace {

std::vector<Sample> onFunction(int count, double sigma, double (*function)(double)) {
    std::mt19937 random(11);
    std::normal_distribution<double> gauss(0.0, sigma);
    std::vector<Sample> samples;
    for (int k = 0; k < count; ++k)
        samples.push_back({{k + 0.5, function(k + 0.5) + gauss(random)}, sigma, false});
    return samples;
}

} // namespace

TEST(Segmentation, LongStraightChainIsOneLine) {
    const auto samples = onFunction(5000, 0.01, [](double x) { return 0.3 * x; });
    const ChainModel model = segmentChain(samples, false, {});
    ASSERT_EQ(model.carriers.size(), 1u);
    EXPECT_TRUE(model.carriers[0].isLine());
    EXPECT_LT(std::abs(cross(model.carriers[0].direction, unit({1, 0.3}))), 1e-5);
}

TEST(Segmentation, BreaksAreAtTheCorners) {
    const auto samples = onFunction(90, 0.01, [](double x) {
        return x < 30 ? 0.2 * x : x < 60 ? 12 - 0.2 * x : 0.0;
    });
    const ChainModel model = segmentChain(samples, false, {});
    ASSERT_EQ(model.carriers.size(), 3u);
    EXPECT_NEAR(model.carriers[0].last, 29, 1);
    EXPECT_NEAR(model.carriers[1].last, 59, 1);
}

TEST(Segmentation, LineAndArcAreTold) {
    const auto samples = onFunction(80, 0.01, [](double x) {
        return x < 40 ? 0.0 : 100.0 - std::sqrt(10000.0 - (x - 40) * (x - 40));
    });
    const ChainModel model = segmentChain(samples, false, {});
    ASSERT_EQ(model.carriers.size(), 2u);
    EXPECT_TRUE(model.carriers[0].isLine());
    ASSERT_FALSE(model.carriers[1].isLine());
    EXPECT_NEAR(model.carriers[1].radius, 100.0, 0.5);
    EXPECT_EQ(model.carriers[1].turn, 1.0);
}

TEST(Segmentation, RangesFollowEachOtherRoundAClosedChain) {
    const auto corners = starCorners({40, 40}, 30, 14, 6, 5.0);
    const auto samples = coverageSamples(polygonOutline(corners), 0.003, 0.01);
    const ChainModel model = segmentChain(samples, true, {});
    ASSERT_EQ(model.carriers.size(), 12u);
    const int count = static_cast<int>(samples.size());
    int covered = 0;
    for (const Carrier& carrier : model.carriers) {
        EXPECT_GE(carrier.first, 0);
        EXPECT_LT(carrier.first, count);
        EXPECT_GE(carrier.last, carrier.first);
        covered += carrier.last - carrier.first + 1;
    }
    EXPECT_LE(covered, count);
    EXPECT_GE(covered, count - 3 * 12);
}

TEST(Segmentation, LooseSamplesDoNotCount) {
    auto samples = onFunction(60, 0.01, [](double) { return 5.0; });
    for (const std::size_t k : {20u, 21u, 40u}) {
        samples[k].at.y = 7.0;
        samples[k].loose = true;
    }
    EXPECT_EQ(segmentChain(samples, false, {}).carriers.size(), 1u);
}

TEST(Segmentation, ToleranceAsksForLessDetail) {
    const auto samples =
        onFunction(200, 0.01, [](double x) { return 0.3 * std::sin(x * 0.3) + 0.1 * x; });
    FitOptions fine;
    fine.tolerance = 0.0;
    FitOptions coarse;
    coarse.tolerance = 2.0;
    EXPECT_EQ(segmentChain(samples, false, coarse).carriers.size(), 1u);
    EXPECT_GT(segmentChain(samples, false, fine).carriers.size(), 10u);
}

TEST(Segmentation, ThinLoopIsNeitherACircleNorALine) {
    // The middles of the pixel edges around two pixels beside each other.
    const std::vector<Point> places{{0.5, 0}, {1.5, 0}, {2, 0.5}, {1.5, 1}, {0.5, 1}, {0, 0.5}};
    std::vector<Sample> samples;
    for (const Point& place : places)
        samples.push_back({Point{40, 30} + place, 0.4, false});
    const ChainModel model = segmentChain(samples, true, {});
    for (const Carrier& carrier : model.carriers) {
        if (!carrier.isLine()) {
            EXPECT_LT(carrier.radius, 2.0);
        }
    }
    // Along one side and back along the other.
    samples.clear();
    for (int k = 0; k < 20; ++k)
        samples.push_back({{static_cast<double>(k), 0.0}, 0.4, false});
    for (int k = 19; k >= 0; --k)
        samples.push_back({{static_cast<double>(k), 0.6}, 0.4, false});
    EXPECT_GE(segmentChain(samples, false, {}).carriers.size(), 2u);
}

TEST(Segmentation, WhereAllAreLooseTheyCountAfterAll) {
    std::vector<Sample> samples;
    for (int k = 0; k < 12; ++k)
        samples.push_back({{k + 0.5, 3.0}, 0.01, true});
    const ChainModel model = segmentChain(samples, false, {});
    ASSERT_EQ(model.carriers.size(), 1u);
    EXPECT_TRUE(model.carriers[0].isLine());
}

TEST(Segmentation, BoundedPlacesKeepNearTheirShapes) {
    // One place a pixel and a half off a line is less than the cost of more lines, but too far.
    std::vector<Sample> rounded;
    for (int k = 0; k < 40; ++k)
        rounded.push_back({{k + 0.5, k == 20 ? 1.5 : 0.0}, 0.29, false});
    FitOptions options;
    options.skipCost = std::numeric_limits<double>::infinity();
    EXPECT_EQ(segmentChain(rounded, false, options).carriers.size(), 1u);
    options.mostOff = 0.9;
    const ChainModel model = segmentChain(rounded, false, options);
    int next = 0;
    for (const Carrier& carrier : model.carriers) {
        EXPECT_EQ(carrier.first, next);
        next = carrier.last + 1;
        for (int k = carrier.first; k <= carrier.last; ++k)
            EXPECT_LE(std::abs(signedDistance(carrier, rounded[static_cast<std::size_t>(k)].at)),
                      0.95);
    }
    EXPECT_EQ(next, 40);
}

TEST(Segmentation, NoBreakStaysWhereTheCountOfAClosedChainBegins) {
    // A rounded rectangle has eight shapes wherever its samples begin.
    const Outline outline = roundedRectangle({40.3, 40.2}, {30.1, 20.4}, 9.0, 11.0);
    const auto samples = coverageSamples(outline, 0.003, 0.01);
    for (std::size_t start = 0; start < samples.size(); start += 7) {
        std::vector<Sample> turned(samples);
        std::rotate(turned.begin(), turned.begin() + static_cast<std::ptrdiff_t>(start),
                    turned.end());
        const ChainModel model = segmentChain(turned, true, {});
        EXPECT_EQ(model.carriers.size(), 8u) << start;
        int covered = 0;
        for (const Carrier& carrier : model.carriers)
            covered += carrier.last - carrier.first + 1;
        EXPECT_LE(covered, static_cast<int>(samples.size()));
        EXPECT_GE(covered, static_cast<int>(samples.size()) - 24);
    }
}
