#include <drawing/geometry/polygons.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <numeric>

namespace {

double areaOf(const std::vector<Polygon>& polygons) {
    double sum = 0.0;
    for (const Polygon& polygon : polygons) {
        sum += areaOf(polygon.outer);
        for (const Corners& hole : polygon.holes)
            sum += areaOf(hole);
    }
    return sum;
}

Corners rectangle(double left, double bottom, double right, double top) {
    return {{left, bottom}, {right, bottom}, {right, top}, {left, top}, {left, bottom}};
}

Corners reversed(Corners ring) {
    std::reverse(ring.begin(), ring.end());
    return ring;
}

} // namespace

TEST(Polygons, SimpleRingsStayAsTheyAre) {
    const std::vector<Corners> rings{rectangle(0, 0, 10, 10), reversed(rectangle(2, 2, 4, 4))};
    const std::vector<Polygon> polygons = polygonsOf(rings, 2.0);
    ASSERT_EQ(polygons.size(), 1U);
    EXPECT_EQ(polygons[0].outer, rings[0]);
    ASSERT_EQ(polygons[0].holes.size(), 1U);
    EXPECT_EQ(polygons[0].holes[0], rings[1]);
}

TEST(Polygons, ARingThatPinchesItselfIsTwo) {
    // Two squares that share a corner.
    const Corners ring{{0, 0}, {2, 0}, {2, 2}, {4, 2}, {4, 4}, {2, 4}, {2, 2}, {0, 2}, {0, 0}};
    const std::vector<Polygon> polygons = polygonsOf({ring}, 1.0);
    ASSERT_EQ(polygons.size(), 2U);
    EXPECT_EQ(areaOf(polygons), 8.0);
}

TEST(Polygons, APocketThatTouchesItsRingIsAHole) {
    const Corners ring{{0, 0}, {10, 0}, {10, 10}, {0, 10}, {0, 0}, {2, 6}, {6, 2}, {0, 0}};
    const std::vector<Polygon> polygons = polygonsOf({ring}, 1.0);
    ASSERT_EQ(polygons.size(), 1U);
    EXPECT_EQ(polygons[0].holes.size(), 1U);
    EXPECT_EQ(areaOf(polygons), 100.0 - 16.0);
}

TEST(Polygons, WhatIsInsideOutGoes) {
    // A band that crosses itself near its end: the part beyond runs clockwise.
    const Corners ring{{0, 0}, {10, 0}, {12, 2}, {12, 0}, {10, 2}, {0, 2}, {0, 0}};
    const std::vector<Polygon> polygons = polygonsOf({ring}, 2.0);
    ASSERT_EQ(polygons.size(), 1U);
    EXPECT_DOUBLE_EQ(areaOf(polygons), 21.0);
}

TEST(Polygons, WhatIsGoneAroundTwiceCountsOnce) {
    const Corners ring{{0, 0}, {10, 0}, {10, 10}, {0, 10}, {0, 0}, {8, 1}, {8, 8}, {1, 8}, {0, 0}};
    EXPECT_DOUBLE_EQ(areaOf(polygonsOf({ring}, 2.0)), 100.0);
}

TEST(Polygons, EmptyRingsAreNone) {
    EXPECT_TRUE(polygonsOf({Corners{{0, 0}, {5, 5}, {0, 0}}}, 1.0).empty());
    EXPECT_TRUE(polygonsOf({Corners{{0, 0}, {9, 0}, {4, 0}, {2, 0}, {0, 0}}}, 1.0).empty());
    EXPECT_TRUE(polygonsOf(std::vector<Corners>(), 1.0).empty());
}

TEST(Noding, AddsCornersWhereLinesCrossOrTouch) {
    for (const double cell : {2.0, 100.0}) {
        std::vector<Corners> lines{{{0, 5}, {10, 5}}, {{5, 0}, {5, 10}}, {{7, 0}, {7, 5}}};
        EXPECT_TRUE(Noding(cell).addNodes(lines));
        EXPECT_EQ(lines[0], (Corners{{0, 5}, {5, 5}, {7, 5}, {10, 5}}));
        EXPECT_EQ(lines[1], (Corners{{5, 0}, {5, 5}, {5, 10}}));
        EXPECT_EQ(lines[2].size(), 2U);
        EXPECT_FALSE(Noding(cell).addNodes(lines)) << "nothing is left";
    }
}
