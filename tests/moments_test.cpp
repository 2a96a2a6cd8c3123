#include "shapes/moments.h"

#include <gtest/gtest.h>

#include <cmath>
#include <random>
#include <vector>

using namespace ovtrace;

namespace {

std::vector<Point> arcPoints(Point centre, double radius, double degrees, int count, double noise) {
    std::mt19937 random(5);
    std::normal_distribution<double> gauss(0.0, 1.0);
    std::vector<Point> points;
    for (int k = 0; k < count; ++k) {
        const double angle = degrees * k / (count - 1) * std::acos(-1.0) / 180.0;
        points.push_back(centre + Point{std::cos(angle), std::sin(angle)} *
                                      (radius + noise * gauss(random)));
    }
    return points;
}

Moments momentsOf(const std::vector<Point>& points, Point origin, double weight = 1.0) {
    Moments moments(origin);
    for (const Point& point : points)
        moments.add(point, weight);
    return moments;
}

} // namespace

TEST(Moments, LineIsFoundFromAnyOrigin) {
    std::vector<Point> points;
    for (int k = 0; k < 20; ++k)
        points.push_back(Point{100.0, 50.0} + unit({3, 4}) * k + unit({-4, 3}) * (k % 2 * 0.02));
    for (const Point origin : {Point{0, 0}, Point{100, 50}, Point{107, 61}}) {
        const LineFit fit(momentsOf(points, origin));
        EXPECT_NEAR(std::abs(cross(fit.direction, unit({3, 4}))), 0.0, 3e-4);
        EXPECT_NEAR(fit.error, 20 * 1e-4, 1e-4);
    }
}

TEST(Moments, SumsMoveWithTheirOrigin) {
    const auto points = arcPoints({30, 40}, 12.0, 70.0, 25, 0.1);
    const Moments near = momentsOf(points, {30, 40}, 4.0);
    const Moments moved = near.about({35, 45}).about({30, 40});
    EXPECT_NEAR(LineFit::errorOf(near), LineFit::errorOf(moved), 1e-8);
    EXPECT_NEAR(CircleFit::errorOf(near), CircleFit::errorOf(moved), 1e-8);
    EXPECT_LT(distance(near.mean(), moved.mean()), 1e-12);
}

TEST(Moments, TwoHalvesAreTheWhole) {
    const auto points = arcPoints({30, 40}, 12.0, 70.0, 25, 0.1);
    Moments first({30, 40});
    Moments second({40, 45});
    for (std::size_t k = 0; k < points.size(); ++k)
        (k < 11 ? first : second).add(points[k], 1.0);
    first.add(second);
    const Moments whole = momentsOf(points, {30, 40});
    EXPECT_EQ(first.count(), whole.count());
    EXPECT_NEAR(CircleFit::errorOf(first), CircleFit::errorOf(whole), 1e-8);
}

TEST(Moments, CircleIsFoundOnWholeAndShortArcs) {
    for (const double degrees : {20.0, 45.0, 90.0, 180.0, 350.0}) {
        const auto points = arcPoints({300, 400}, 50.0, degrees, 40, 0.01);
        const CircleFit fit(momentsOf(points, points[20]));
        ASSERT_TRUE(fit.isValid());
        // A short arc says little: its sagitta against the noise. Three sigmas of 40 points.
        const double sagitta = 50.0 * (1.0 - std::cos(degrees / 2.0 * std::acos(-1.0) / 180.0));
        const double expected = std::max(0.015, 75.0 * 0.01 / sagitta);
        EXPECT_LT(std::abs(fit.radius - 50.0), expected) << degrees;
        EXPECT_LT(distance(fit.centre, {300, 400}), expected) << degrees;
        EXPECT_NEAR(std::sqrt(fit.error / 40.0), 0.01, 0.004) << degrees;
    }
}

TEST(Moments, ErrorsOfGivenShapes) {
    const auto points = arcPoints({30, 40}, 12.0, 70.0, 25, 0.0);
    const Moments moments = momentsOf(points, points[12]);
    EXPECT_NEAR(moments.circleError({30, 40}, 12.0), 0.0, 1e-9);
    EXPECT_NEAR(moments.circleError({30, 40}, 12.1), 25 * 0.01, 0.005);
    double sum = 0.0;
    for (const Point& point : points)
        sum += (point.y - 44.0) * (point.y - 44.0);
    EXPECT_NEAR(moments.lineError({7, 44}, {1, 0}), sum, 1e-9);
}

TEST(Moments, TooLittleForAFit) {
    const Moments none;
    EXPECT_TRUE(none.isEmpty());
    EXPECT_EQ(LineFit(none).error, 0.0);
    EXPECT_FALSE(CircleFit(none).isValid());
    Moments same({5, 5});
    for (int k = 0; k < 4; ++k)
        same.add({5, 5}, 1.0);
    EXPECT_FALSE(CircleFit(same).isValid());
    EXPECT_EQ(LineFit(same).direction, (Point{1, 0}));
    Moments straight({0, 0});
    for (int k = 0; k < 4; ++k)
        straight.add({static_cast<double>(k), 0.0}, 1.0);
    EXPECT_FALSE(CircleFit(straight).isValid());
    EXPECT_TRUE(std::isinf(CircleFit::errorOf(straight)));
}
