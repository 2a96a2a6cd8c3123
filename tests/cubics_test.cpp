#include "shapes/cubics.h"

#include <gtest/gtest.h>

#include <cmath>

using namespace ovtrace;

namespace {

std::vector<Sample> along(const Piece& piece, int count, double sigma) {
    std::vector<Sample> samples;
    for (int k = 0; k < count; ++k)
        samples.push_back({pointAt(piece, (k + 0.5) / count), sigma, false});
    return samples;
}

} // namespace

TEST(Cubics, ACurveComesBack) {
    const Piece truth = cubicPiece({0, 0}, {10, 18}, {30, 22}, {45, 3});
    const auto curve = fittedCubic({truth.from, startTangent(truth)}, {truth.to, endTangent(truth)},
                                   along(truth, 60, 0.01), 1.5);
    ASSERT_TRUE(curve);
    EXPECT_EQ(curve->from, truth.from);
    EXPECT_EQ(curve->to, truth.to);
    for (int k = 0; k <= 50; ++k)
        EXPECT_LT(distanceTo(truth, pointAt(*curve, k / 50.0)), 0.06);
    EXPECT_LT(std::abs(cross(startTangent(*curve), startTangent(truth))), 1e-12);
    EXPECT_LT(std::abs(cross(endTangent(*curve), endTangent(truth))), 1e-12);
}

TEST(Cubics, WhatNoCurveFitsIsRefused) {
    const Piece half = arcPiece({0, 0}, {40, 0}, 1.0);
    const CurveEnd from{half.from, startTangent(half)};
    const CurveEnd to{half.to, endTangent(half)};
    EXPECT_FALSE(fittedCubic(from, to, along(half, 60, 0.01), 1.5));
    EXPECT_TRUE(fittedCubic(from, to, along(half, 60, 0.5), 1.5));
}

TEST(Cubics, WithoutSamplesHandlesAreAThirdOfTheChord) {
    const auto curve = fittedCubic({{0, 0}, {1, 0}}, {{3, 4}, {0, 1}}, {}, 1.5);
    ASSERT_TRUE(curve);
    EXPECT_NEAR(curve->control1.x, 5.0 / 3.0, 1e-9);
    EXPECT_NEAR(curve->control2.y, 4.0 - 5.0 / 3.0, 1e-9);
    const std::vector<Sample> same(5, Sample{{2, 2}, 0.01, false});
    EXPECT_FALSE(fittedCubic({{2, 2}, {1, 0}}, {{2, 2}, {1, 0}}, same, 1.5));
}

TEST(Cubics, PlaceAndDirectionOnACurve) {
    const Piece truth = cubicPiece({0, 0}, {10, 18}, {30, 22}, {45, 3});
    const auto samples = along(truth, 60, 0.01);
    const Point direction = unit(pointAt(truth, 0.5 + 1e-6) - pointAt(truth, 0.5 - 1e-6));
    const auto end = localEnd(std::span(samples).subspan(24, 12), pointAt(truth, 0.5),
                              unit(direction + Point{0.05, 0.1}));
    ASSERT_TRUE(end);
    EXPECT_LT(distance(end->at, pointAt(truth, 0.5)), 0.002);
    EXPECT_LT(std::abs(cross(end->tangent, direction)), 0.001);
    EXPECT_FALSE(localEnd(std::span(samples).subspan(0, 4), {0, 0}, {1, 0}));
}
