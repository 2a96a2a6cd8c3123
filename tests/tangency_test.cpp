#include "shapes/tangency.h"
#include "support/outlinesamples.h"

#include <gtest/gtest.h>

using namespace ovtrace;

namespace {

Carrier line(Point at, Point direction) {
    Carrier carrier;
    carrier.at = at;
    carrier.direction = unit(direction);
    return carrier;
}

std::vector<Sample> onArc(Point centre, double radius, double from, double to, double sigma) {
    Outline dense;
    appendArc(dense, centre, radius, from, to);
    std::vector<Sample> samples;
    for (std::size_t k = 0; k < dense.size(); k += 64)
        samples.push_back({dense[k], sigma, false});
    return samples;
}

/// A circle near the truth, as a fit to few samples gives it.
Carrier rough(Point centre, double radius, double turn, std::span<const Sample> samples) {
    Carrier carrier;
    carrier.kind = Carrier::Kind::Circle;
    carrier.at = centre + Point{0.02, -0.03};
    carrier.radius = radius + 0.03;
    carrier.turn = turn;
    carrier.error = chiSquare(carrier, samples);
    return carrier;
}

} // namespace

TEST(Tangency, RoundedCornerTouchesBothSides) {
    const auto samples = onArc({20, 30}, 6, -90, 0, 0.01);
    const Carrier before = line({0, 24}, {1, 0});
    const Carrier after = line({26, 50}, {0, 1});
    const auto circle = tangentCircle(rough({20, 30}, 6, 1, samples), &before, &after, samples, 9);
    ASSERT_TRUE(circle);
    EXPECT_NEAR(circle->radius, 6.0, 1e-6);
    EXPECT_NEAR(signedDistance(before, circle->at), circle->radius, 1e-9);
    EXPECT_NEAR(signedDistance(after, circle->at), circle->radius, 1e-9);
}

TEST(Tangency, EndOfASlot) {
    auto samples = onArc({20, 30}, 6, 90, -90, 0.01);
    const Carrier before = line({0, 36}, {1, 0});
    const Carrier after = line({0, 24}, {-1, 0});
    const auto circle = tangentCircle(rough({20, 30}, 6, -1, samples), &before, &after, samples, 9);
    ASSERT_TRUE(circle);
    EXPECT_NEAR(circle->radius, 6.0, 1e-9);
    EXPECT_LT(distance(circle->at, {20, 30}), 1e-6);
}

TEST(Tangency, OneSide) {
    const auto samples = onArc({20, 30}, 6, -90, -20, 0.01);
    const Carrier before = line({0, 24}, {1, 0});
    const auto circle = tangentCircle(rough({20, 30}, 6, 1, samples), &before, nullptr, samples, 9);
    ASSERT_TRUE(circle);
    EXPECT_NEAR(circle->radius, 6.0, 1e-5);
    EXPECT_NEAR(signedDistance(before, circle->at), circle->radius, 1e-9);
}

TEST(Tangency, RefusedAgainstTheEvidence) {
    const auto samples = onArc({20, 30}, 6, -90, 0, 0.01);
    Carrier exact = rough({20, 30}, 6, 1, samples);
    exact.at = {20, 30};
    exact.radius = 6.0;
    exact.error = 0.0;
    const Carrier off = line({0, 23.5}, {1, 0});
    EXPECT_FALSE(tangentCircle(exact, &off, nullptr, samples, 9));
    EXPECT_FALSE(tangentCircle(exact, nullptr, nullptr, samples, 9));
}
