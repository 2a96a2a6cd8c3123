#include "shapes/junctions.h"

#include <gtest/gtest.h>

#include <cmath>

using namespace ovtrace;

namespace {

/// The line through samples that begin `gap` pixels from `from`.
JunctionEnd lineEnd(Point from, Point direction, double gap, int count, double sigma) {
    Moments moments(from);
    const Point u = unit(direction);
    for (int k = 0; k < count; ++k)
        moments.add(from + u * (gap + k), 1.0 / (sigma * sigma));
    return {lineCarrier(moments, from + u * gap, from + u * (gap + count)), from + u * gap};
}

} // namespace

TEST(Junctions, ThreeLinesMeetWhereTheyDo) {
    const Point truth{20.3, 31.7};
    const JunctionEnd ends[] = {lineEnd(truth, {1, 0.2}, 2, 20, 0.01),
                                lineEnd(truth, {-1, 1}, 2, 20, 0.01),
                                lineEnd(truth, {0.1, -1}, 2, 20, 0.01)};
    EXPECT_LT(distance(meetingPoint(ends, {20.8, 31.2}, 0.7), truth), 0.001);
}

TEST(Junctions, TheThirdEndsOnTheThroughLine) {
    const JunctionEnd ends[] = {lineEnd({10, 10}, {1, 0}, 1, 40, 0.01),
                                lineEnd({10, 10}, {-1, 0}, 1, 40, 0.01),
                                // Less sure, and a little off.
                                lineEnd({10.2, 10}, {0, 1}, 2, 5, 0.1)};
    const Point place = meetingPoint(ends, {10.5, 10.5}, 0.7);
    EXPECT_NEAR(place.y, 10.0, 0.002);
    EXPECT_NEAR(place.x, 10.2, 0.02);
}

TEST(Junctions, ParallelLinesLeaveThePlaceWhereItIs) {
    const JunctionEnd ends[] = {lineEnd({10, 10}, {1, 0}, 1, 40, 0.01),
                                lineEnd({10, 10}, {-1, 0}, 1, 40, 0.01)};
    const Point place = meetingPoint(ends, {11.0, 10.4}, 0.7);
    EXPECT_NEAR(place.y, 10.0, 0.001);
    EXPECT_NEAR(place.x, 11.0, 0.001);
}

TEST(Junctions, FarMeetingsDoNotCount) {
    const JunctionEnd ends[] = {lineEnd({0, 0}, {1, 0}, 1, 40, 0.01),
                                lineEnd({0, 500}, {1, -0.9}, 1, 40, 0.01)};
    const Point around{3, 3};
    EXPECT_EQ(meetingPoint(ends, around, 0.7), around);
    EXPECT_EQ(meetingPoint({}, around, 0.7), around);
}

TEST(Junctions, UncertaintyGrowsWithTheDistance) {
    const JunctionEnd end = lineEnd({0, 0}, {1, 0}, 0, 25, 0.1);
    EXPECT_NEAR(uncertaintyAt(end.carrier, {12, 0}), 0.1 / 5.0, 0.001);
    EXPECT_GT(uncertaintyAt(end.carrier, {40, 0}), 3.0 * uncertaintyAt(end.carrier, {12, 0}));
}
