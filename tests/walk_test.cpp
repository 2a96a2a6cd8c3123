// Ways along strokes.

#include "centerlines/stroke.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <vector>

namespace {

using namespace ovtrace;

Stroke arcOf(double radius, Point from, Point to) {
    Stroke arc;
    arc.carrier.kind = Carrier::Kind::Circle;
    arc.carrier.at = {from.x, from.y + radius};
    arc.carrier.radius = radius;
    arc.ends[0].at = from;
    arc.ends[1].at = to;
    return arc;
}

TEST(Walk, LeadsFromEndToEnd) {
    Stroke line;
    line.ends[0].at = {2.0, 3.0};
    line.ends[1].at = {12.0, 3.0};
    const std::vector<Point> places = pointsAlong(line, 0.5);
    ASSERT_EQ(places.size(), 21U);
    EXPECT_EQ(places.front(), line.start());
    EXPECT_EQ(places.back(), line.finish());
    EXPECT_EQ(places[1], (Point{2.5, 3.0}));

    // A quarter of a circle of radius 10.
    const Stroke arc = arcOf(10.0, {0.0, 0.0}, {10.0, 10.0});
    const std::vector<Point> round = pointsAlong(arc, 1.0);
    EXPECT_EQ(round.size(), 16U);
    for (const Point place : round)
        EXPECT_NEAR(distance(place, arc.carrier.at), 10.0, 1e-9);
    EXPECT_NEAR(distance(round.back(), arc.finish()), 0.0, 1e-9);
}

TEST(Walk, GoesOnceAroundAnEllipse) {
    Stroke stroke;
    stroke.closed = true;
    stroke.ellipse = Ellipse{{50.0, 40.0}, {1.0, 0.0}, 20.0, 10.0};
    const std::vector<Point> places = pointsAlong(stroke, 2.0);
    EXPECT_EQ(places.size() % 4, 1U);
    EXPECT_EQ(places.front(), (Point{70.0, 40.0}));
    EXPECT_NEAR(distance(places.back(), places.front()), 0.0, 1e-9);
    for (const Point place : places)
        EXPECT_NEAR(signedDistance(*stroke.ellipse, place), 0.0, 1e-9);
}

/// Its ends have passed each other by a pixel: all around it are many millions of places, of which
/// only those that are asked for are found.
TEST(Walk, AllAroundAFlatArcIsNoLongWay) {
    for (const double radius : {1e7, 1e15}) {
        const Stroke arc = arcOf(radius, {1.0, 0.0}, {0.0, 0.0});
        EXPECT_LE(Walk(arc, 0.5).count(), 100000000);
        int looked = 0;
        EXPECT_FALSE(allAlong(arc, 0.5, [&looked](Point) { return ++looked <= 3; }));
        EXPECT_EQ(looked, 4);
    }
}

} // namespace
