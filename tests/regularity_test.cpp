// Lines and circles that are made regular where their samples allow it.

#include "shapes/regularity.h"
#include "shapes/segmentation.h"

#include <gtest/gtest.h>

#include <cmath>
#include <random>
#include <vector>

namespace {

using namespace ovtrace;

constexpr double Pi = 3.14159265358979;

/// A line of this length through a place, at an angle in degrees, with samples a pixel apart whose
/// errors are of the standard deviation that they are said to have.
Carrier line(Point at, double degrees, double length, double sigma, std::mt19937& random) {
    std::normal_distribution<double> noise(0.0, sigma);
    const Point along{std::cos(degrees * Pi / 180.0), std::sin(degrees * Pi / 180.0)};
    Moments support(at);
    for (double way = -length / 2.0; way <= length / 2.0; way += 1.0)
        support.add(at + along * way + turnedQuarter(along) * noise(random), 1.0 / (sigma * sigma));
    return lineCarrier(support, at - along, at + along);
}

Carrier circle(Point centre, double radius, double sigma, std::mt19937& random) {
    std::normal_distribution<double> noise(0.0, sigma);
    std::vector<Sample> samples;
    Moments support(centre);
    for (double angle = 0.0; angle < 2.0 * Pi; angle += 1.0 / radius) {
        const double out = radius + noise(random);
        samples.push_back(
            {centre + Point{std::cos(angle) * out, std::sin(angle) * out}, sigma, false});
        support.add(samples.back().at, 1.0 / (sigma * sigma));
    }
    return circleCarrier(support, samples).value();
}

TEST(Regularity, LevelUprightAndDiagonalLinesAreExactlyThat) {
    std::mt19937 random(1);
    int exact = 0;
    for (int i = 0; i < 50; ++i) {
        std::vector<Carrier> lines{line({20, 10}, 0.0, 40.0, 0.02, random),
                                   line({40, 30}, 90.0, 40.0, 0.02, random),
                                   line({30, 50}, -135.0, 40.0, 0.02, random)};
        alignLines(lines);
        exact += int(lines[0].direction == Point{1.0, 0.0});
        exact += int(lines[1].direction == Point{0.0, 1.0});
        exact += int(lines[2].direction.x == lines[2].direction.y && lines[2].direction.x < 0.0);
    }
    EXPECT_GE(exact, 135); // two standard deviations: 143 of 150
}

TEST(Regularity, TurnedRectanglesHaveRightAngles) {
    std::mt19937 random(2);
    int right = 0;
    for (int i = 0; i < 50; ++i) {
        std::vector<Carrier> sides{
            line({20, 10}, 17.0, 50.0, 0.02, random), line({40, 30}, 107.0, 30.0, 0.02, random),
            line({20, 50}, 197.0, 50.0, 0.02, random), line({0, 30}, 287.0, 30.0, 0.02, random)};
        alignLines(sides);
        bool all = true;
        for (std::size_t k = 0; k < 4; ++k)
            all = all && std::fabs(dot(sides[k].direction, sides[(k + 1) % 4].direction)) < 1e-15;
        right += int(all);
        EXPECT_NEAR(std::atan2(sides[0].direction.y, sides[0].direction.x), 17.0 * Pi / 180.0,
                    0.001);
    }
    EXPECT_GE(right, 40);
}

TEST(Regularity, WhatIsSeenToBeOffStaysSo) {
    std::mt19937 random(3);
    for (const double sigma : {0.02, 0.2887}) {
        for (int i = 0; i < 20; ++i) {
            std::vector<Carrier> lines{line({20, 10}, 0.0, 60.0, sigma, random),
                                       line({40, 30}, 89.0, 60.0, sigma, random)};
            alignLines(lines);
            EXPECT_GT(std::fabs(dot(lines[0].direction, lines[1].direction)), 0.004);
        }
    }
}

TEST(Regularity, LinesThatBendAreNotMadeParallel) {
    std::mt19937 random(4);
    std::vector<Carrier> bent{line({20, 10}, 0.0, 40.0, 0.02, random),
                              line({60, 10}, 0.01, 40.0, 0.02, random)};
    const Point before = bent[0].direction;
    alignLines(bent);
    EXPECT_EQ(bent[0].direction, before);
    EXPECT_NE(bent[0].direction, bent[1].direction);
}

TEST(Regularity, ShortLinesKnowNoDirection) {
    std::mt19937 random(5);
    std::vector<Carrier> lines{line({20, 10}, 1.0, 3.0, 0.2887, random)};
    const Point before = lines[0].direction;
    alignLines(lines);
    EXPECT_EQ(lines[0].direction, before);
}

TEST(Regularity, RingsAreConcentricAndDotsEqual) {
    std::mt19937 random(6);
    int concentric = 0;
    int equal = 0;
    for (int i = 0; i < 40; ++i) {
        std::vector<Carrier> circles{
            circle({30, 30}, 20.0, 0.02, random), circle({30, 30}, 12.0, 0.02, random),
            circle({80, 30}, 6.0, 0.02, random), circle({80, 60}, 6.0, 0.02, random)};
        std::vector<Carrier*> all;
        for (Carrier& each : circles)
            all.push_back(&each);
        matchCircles(all);
        concentric += int(circles[0].at == circles[1].at);
        equal += int(circles[2].radius == circles[3].radius);
        EXPECT_NEAR(circles[0].radius, 20.0, 0.02);
        EXPECT_NEAR(circles[1].radius, 12.0, 0.02);
        EXPECT_NE(circles[2].at, circles[3].at);
    }
    EXPECT_GE(concentric, 32);
    EXPECT_GE(equal, 32);
}

TEST(Regularity, CirclesThatDifferStayApart) {
    std::mt19937 random(7);
    for (const double sigma : {0.02, 0.12}) {
        for (int i = 0; i < 20; ++i) {
            std::vector<Carrier> circles{circle({30, 30}, 10.0, sigma, random),
                                         circle({90, 30}, 10.3, sigma, random),
                                         circle({30.4, 30}, 20.0, sigma, random)};
            std::vector<Carrier*> all{&circles[0], &circles[1], &circles[2]};
            matchCircles(all);
            EXPECT_NE(circles[0].radius, circles[1].radius);
            EXPECT_NE(circles[0].at, circles[2].at);
        }
    }
}

} // namespace
