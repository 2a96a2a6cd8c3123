// Lines that lean by no more than their points can tell have the directions of the drawing.

#include "alignment.h"

#include <gtest/gtest.h>

#include <array>
#include <cmath>

using namespace ovtrace;

namespace {

constexpr double Sigma = 0.1;

/// A line fitted to points a pixel apart that lie in turns on both sides of it.
Stroke measured(Point from, Point to) {
    const Point direction = unit(to - from);
    const Point aside = turnedQuarter(direction) * Sigma;
    Stroke stroke;
    Moments support(from);
    const int count = static_cast<int>(distance(from, to));
    for (int i = 0; i <= count; ++i) {
        // Four in turns have no trend.
        const double side = i % 4 == 0 || i % 4 == 3 ? 1.0 : -1.0;
        const Point p = from + direction * static_cast<double>(i) + aside * side;
        stroke.samples.push_back({p, Sigma, false});
        support.add(p, 1.0 / (Sigma * Sigma));
    }
    stroke.carrier = lineCarrier(support, from, to);
    stroke.ends[0].at = projected(stroke.carrier, from);
    stroke.ends[1].at = projected(stroke.carrier, to);
    stroke.width = 3.0;
    return stroke;
}

/// Cosine and sine of turns by small rational tangents.
Point turned(Point p, double tangent) {
    const double c = 1.0 / std::sqrt(1.0 + tangent * tangent);
    return {c * (p.x - tangent * p.y), c * (p.y + tangent * p.x)};
}

std::vector<Stroke> frame(double tangent) {
    const std::array<Point, 4> corners{{{100, 100}, {500, 100}, {500, 400}, {100, 400}}};
    std::vector<Stroke> strokes;
    for (std::size_t i = 0; i < corners.size(); ++i)
        strokes.push_back(
            measured(turned(corners[i], tangent), turned(corners[(i + 1) % 4], tangent)));
    return strokes;
}

TEST(Alignment, LeansWithinTheNoiseAreNone) {
    std::vector<Stroke> strokes = frame(0.0);
    strokes.push_back(measured({120, 200}, {320, 200.05}));
    strokes.push_back(measured({200, 120}, {200.04, 300}));
    strokes.push_back(measured({120, 120}, {300.05, 300}));
    alignLines(strokes);
    EXPECT_EQ(strokes[4].start().y, strokes[4].finish().y);
    EXPECT_NEAR(strokes[4].start().y, 200.025, 0.02);
    EXPECT_EQ(strokes[5].start().x, strokes[5].finish().x);
    const Point diagonal = strokes[6].carrier.direction;
    EXPECT_EQ(diagonal.x, diagonal.y);
    for (const Stroke& stroke : strokes)
        EXPECT_TRUE(stroke.aligned);
}

TEST(Alignment, WhatLeansStaysAsItIs) {
    std::vector<Stroke> strokes = frame(0.0);
    strokes.push_back(measured({120, 200}, {320, 200.6}));
    const Carrier before = strokes[4].carrier;
    alignLines(strokes);
    EXPECT_FALSE(strokes[4].aligned);
    EXPECT_EQ(strokes[4].carrier.direction.y, before.direction.y);
}

TEST(Alignment, PagesThatLieAskewStaySoWithRightAngles) {
    constexpr double Lean = 0.007; // 0.4 degrees
    std::vector<Stroke> strokes = frame(Lean);
    strokes.push_back(measured(turned({120, 200}, Lean), turned({320, 200.05}, Lean)));
    alignLines(strokes);
    const Point along = strokes[0].carrier.direction;
    EXPECT_NEAR(along.y / along.x, Lean, 1e-4);
    EXPECT_EQ(dot(along, strokes[1].carrier.direction), 0.0);
    EXPECT_EQ(cross(along, strokes[2].carrier.direction), 0.0);
    EXPECT_EQ(cross(along, strokes[4].carrier.direction), 0.0);
}

TEST(Alignment, TwoLinesAreNoFrame) {
    std::vector<Stroke> strokes{measured({100, 100}, {500, 104}), measured({100, 200}, {500, 204})};
    alignLines(strokes);
    EXPECT_FALSE(strokes[0].aligned);
    EXPECT_FALSE(strokes[1].aligned);
}

} // namespace
