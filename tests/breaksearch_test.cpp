#include "shapes/breaksearch.h"
#include "support/outlinesamples.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>

using namespace ovtrace;

namespace {

constexpr double infinite = std::numeric_limits<double>::infinity();

Moments momentsOf(const Weighted& data, int first, int last) {
    Moments moments(data.at(last));
    for (int k = last; k >= first; --k)
        if (data.weight(k) > 0.0)
            moments.add(data.at(k), data.weight(k));
    return moments;
}

/// The least cost of one shape, by its definition.
double shapeCost(const Weighted& data, const FitOptions& options, int first, int last) {
    const Moments moments = momentsOf(data, first, last);
    if (moments.count() < 2)
        return infinite;
    double best = infinite;
    const LineFit line(moments);
    if (data.advances(first, last, 0.0) && data.keepsToLine(line.at, line.direction, first, last))
        best =
            (moments.count() < 3 ? 3.0 : 2.0) * options.parameterCost + LineFit::errorOf(moments);
    const CircleFit circle(moments);
    if (moments.count() >= 3 && circle.isValid() && data.advances(first, last, circle.radius) &&
        data.keepsToCircle(circle.centre, circle.radius, first, last))
        best = std::min(best, (moments.count() < 4 ? 4.0 : 3.0) * options.parameterCost +
                                  CircleFit::errorOf(moments));
    return best;
}

/// The cost by trying everything; no sample may be left out.
double plainCost(const Weighted& data, const FitOptions& options) {
    std::vector<double> costs(static_cast<std::size_t>(data.size()) + 1, infinite);
    costs[0] = 0.0;
    for (int end = 1; end <= data.size(); ++end)
        for (int first = 0; first < end; ++first)
            costs[static_cast<std::size_t>(end)] = std::min(
                costs[static_cast<std::size_t>(end)],
                costs[static_cast<std::size_t>(first)] + shapeCost(data, options, first, end - 1));
    return costs.back();
}

/// A walk that turns at random, in places rounded to half pixels or with noise.
std::vector<Sample> randomWalk(std::mt19937& random, bool rounded, int count = 60) {
    std::uniform_real_distribution<double> turn(-0.5, 0.5);
    std::normal_distribution<double> noise(0.0, 0.05);
    std::vector<Sample> samples;
    Point at;
    Point direction{1.0, 0.0};
    double bend = 0.0;
    for (int k = 0; k < count; ++k) {
        if (random() % 12 == 0)
            bend = turn(random);
        if (random() % 20 == 0)
            direction = unit(direction + turnedQuarter(direction) * (4.0 * turn(random)));
        direction = unit(direction + turnedQuarter(direction) * bend);
        at += direction;
        const Point place = rounded ? Point{std::round(at.x * 2.0) / 2.0, std::round(at.y)}
                                    : at + Point{noise(random), noise(random)};
        samples.push_back({place, rounded ? 0.29 : 0.05, false});
    }
    return samples;
}

} // namespace

TEST(BreakSearch, FindsWhatTryingEverythingFinds) {
    std::mt19937 random(5);
    FitOptions options;
    options.skipCost = infinite;
    for (int k = 0; k < 120; ++k) {
        // In longer chains the search does not look at every break.
        const bool bounded = k % 3 == 0;
        options.mostOff = bounded ? 0.9 : infinite;
        const auto samples = randomWalk(random, k % 2 == 0, bounded ? 24 : 60);
        const Weighted data = weighted(samples, 0, false, options);
        const auto found = searchBreaks(data, options, false);
        ASSERT_TRUE(found);
        const double least = plainCost(data, options);
        EXPECT_GE(found->cost, least - 1e-9 * least);
        // What the search does not look at costs more.
        EXPECT_LE(found->cost, least * (1.0 + 1e-9)) << k;
    }
}

TEST(BreakSearch, RangesCoverTheChain) {
    std::mt19937 random(6);
    FitOptions options;
    options.skipCost = infinite;
    const Weighted data = weighted(randomWalk(random, true), 0, false, options);
    const auto found = searchBreaks(data, options, false);
    ASSERT_TRUE(found);
    int next = 0;
    for (const ShapeRange& range : found->ranges) {
        EXPECT_EQ(range.first, next);
        next = range.last + 1;
    }
    EXPECT_EQ(next, data.size());
}

TEST(BreakSearch, AtMostThreeSamplesAreLeftOutAtABreak) {
    FitOptions options;
    std::vector<Sample> samples;
    for (int k = 0; k < 40; ++k)
        samples.push_back({{k < 20 ? double(k) : 20.0, k < 20 ? 0.0 : k - 20.0}, 0.01, false});
    for (const std::size_t k : {19u, 20u})
        samples[k].at += Point{-0.2, 0.2};
    const Weighted data = weighted(samples, 0, false, options);
    const auto found = searchBreaks(data, options, false);
    ASSERT_TRUE(found);
    ASSERT_EQ(found->ranges.size(), 2u);
    EXPECT_EQ(found->ranges[0].last, 18);
    EXPECT_EQ(found->ranges[1].first, 21);
}
