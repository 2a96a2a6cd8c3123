// Ellipses through measured points.

#include "ellipse.h"

#include <gtest/gtest.h>

#include <cmath>

using namespace ovtrace;

namespace {

Ellipse slanting() {
    return {{40.0, -20.0}, {0.8, 0.6}, 30.0, 12.0};
}

/// Points of an ellipse, shifted to both sides in turns by `noise` pixels.
std::vector<Sample> samplesOf(const Ellipse& ellipse, double noise) {
    std::vector<Sample> samples;
    for (int quarter = 0; quarter < 4; ++quarter)
        for (int k = 0; k < 12; ++k) {
            const Point p = ellipse.at(quarter, k / 12.0);
            const double sign = k % 2 == 0 ? noise : -noise;
            samples.push_back({p + unit(p - ellipse.centre) * sign, 0.1, false});
        }
    return samples;
}

TEST(Ellipse, IsFoundExactly) {
    const Ellipse truth = slanting();
    const auto found = fitEllipse(samplesOf(truth, 0.0));
    ASSERT_TRUE(found);
    EXPECT_LT(distance(found->centre, truth.centre), 1e-9);
    EXPECT_NEAR(std::abs(dot(found->axis, truth.axis)), 1.0, 1e-12);
    EXPECT_NEAR(found->major, 30.0, 1e-9);
    EXPECT_NEAR(found->minor, 12.0, 1e-9);
}

TEST(Ellipse, NoiseIsMeantOutAndLooseSamplesDoNotCount) {
    const Ellipse truth = slanting();
    std::vector<Sample> samples = samplesOf(truth, 0.2);
    samples.push_back({{100.0, 100.0}, 0.1, true});
    const auto found = fitEllipse(samples);
    ASSERT_TRUE(found);
    EXPECT_LT(distance(found->centre, truth.centre), 0.05);
    EXPECT_NEAR(found->major, 30.0, 0.1);
    EXPECT_NEAR(found->minor, 12.0, 0.1);
}

TEST(Ellipse, OtherConicsAreNone) {
    std::vector<Sample> hyperbola;
    std::vector<Sample> line;
    for (int k = 1; k <= 20; ++k) {
        hyperbola.push_back({{static_cast<double>(k), 20.0 / k}, 0.1, false});
        hyperbola.push_back({{static_cast<double>(-k), -20.0 / k}, 0.1, false});
        line.push_back({{static_cast<double>(k), 2.0 * k}, 0.1, false});
    }
    EXPECT_FALSE(fitEllipse(hyperbola));
    EXPECT_FALSE(fitEllipse(line));
    EXPECT_FALSE(fitEllipse({}));
}

TEST(Ellipse, DistancesAndFeetAreThoseOfTheCurve) {
    const Ellipse e = slanting();
    for (int quarter = 0; quarter < 4; ++quarter) {
        EXPECT_NEAR(signedDistance(e, e.at(quarter, 0.3)), 0.0, 1e-12);
        const double radius = quarter % 2 == 0 ? e.major : e.minor;
        const Point tip = e.at(quarter, 0.0);
        EXPECT_NEAR(distance(tip, e.centre), radius, 1e-12);
        const Point out = unit(tip - e.centre);
        EXPECT_NEAR(signedDistance(e, tip + out * 0.1), 0.1, 0.001);
        EXPECT_NEAR(signedDistance(e, tip - out * 0.1), -0.1, 0.001);
        EXPECT_LT(distance(projected(e, tip + out * 0.5), tip), 1e-9);
    }
    const Point meeting = meetingNear(e, {0.6, 0.8}, e.at(1, 0.4) + Point{0.06, 0.08});
    EXPECT_LT(distance(meeting, e.at(1, 0.4)), 1e-9);
    const Point outside{200.0, 0.0};
    EXPECT_EQ(meetingNear(e, {0.0, 1.0}, outside), outside);
}

TEST(Ellipse, CircumferenceIsThatOfItsPolygon) {
    const Ellipse e = slanting();
    double sum = 0.0;
    constexpr int Steps = 1000;
    for (int k = 0; k < 4 * Steps; ++k) {
        const int next = (k + 1) % (4 * Steps);
        sum += distance(e.at(k / Steps, static_cast<double>(k % Steps) / Steps),
                        e.at(next / Steps, static_cast<double>(next % Steps) / Steps));
    }
    EXPECT_NEAR(circumferenceOf(e), sum, 0.001 * sum);
}

} // namespace
