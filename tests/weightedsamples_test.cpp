#include "shapes/weightedsamples.h"

#include <gtest/gtest.h>

using namespace ovtrace;

namespace {

std::vector<Sample> straight(int count) {
    std::vector<Sample> samples;
    for (int k = 0; k < count; ++k)
        samples.push_back({{double(k), 0.0}, 0.1, false});
    return samples;
}

} // namespace

TEST(WeightedSamples, BeginWhereTheyAreAskedTo) {
    auto samples = straight(5);
    samples[4].loose = true;
    FitOptions options;
    options.tolerance = 0.3;
    const Weighted data = weighted(samples, 2, true, options);
    EXPECT_EQ(data.at(0).x, 2.0);
    EXPECT_EQ(data.at(3).x, 0.0);
    EXPECT_EQ(data.weight(2), 0.0);
    EXPECT_EQ(data.skipCost(2), 0.0);
    // The tolerance is a bound: a third of its square is added to the variance.
    EXPECT_NEAR(data.weight(0), 1.0 / (0.01 + 0.03), 1e-9);
}

TEST(WeightedSamples, WhatRunsBackDoesNotAdvance) {
    auto samples = straight(20);
    for (int k = 0; k < 20; ++k)
        samples.push_back({{19.0 - k, 1.0}, 0.1, false});
    const Weighted data = weighted(samples, 0, false, {});
    EXPECT_TRUE(data.advances(0, 19, 0.0));
    EXPECT_FALSE(data.advances(0, 39, 0.0));
    EXPECT_TRUE(data.advances(0, 39, 6.0)); // nearly the whole of a circle
}

TEST(WeightedSamples, ABoundIsKeptByEachSample) {
    auto samples = straight(21);
    samples[10].at.y = 1.0;
    FitOptions options;
    options.mostOff = 0.9;
    const Weighted bounded = weighted(samples, 0, false, options);
    EXPECT_FALSE(bounded.keepsTo(fitted(bounded, 0, 20, false)));
    EXPECT_TRUE(bounded.keepsTo(fitted(bounded, 0, 9, false)));
    const Weighted unbounded = weighted(samples, 0, false, {});
    EXPECT_TRUE(unbounded.keepsTo(fitted(unbounded, 0, 20, false)));
}

TEST(WeightedSamples, ACircleDoesNotGoOutAndBackBetweenSamples) {
    std::vector<Sample> samples{{{0.0, 0.0}, 0.29, false}, {{4.0, 0.0}, 0.29, false}};
    FitOptions options;
    options.mostOff = 0.9;
    const Weighted data = weighted(samples, 0, false, options);
    EXPECT_FALSE(data.keepsToCircle({2.0, 0.5}, 2.06, 0, 1));
    EXPECT_TRUE(data.keepsToCircle({2.0, 9.8}, 10.0, 0, 1));
}

TEST(WeightedSamples, ChangeIsAtTheCorner) {
    auto samples = straight(20);
    for (int k = 1; k < 20; ++k)
        samples.push_back({{19.0, double(k)}, 0.1, false});
    const Weighted data = weighted(samples, 0, false, {});
    EXPECT_LT(change(data, 10, false), 0.1);
    EXPECT_GT(change(data, 20, false), 3.0);
}
