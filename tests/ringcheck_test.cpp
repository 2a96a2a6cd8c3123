// Whether polygons may stand for rings.

#include <ringcheck.h>

#include "shapes/piece.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <vector>

namespace {

using namespace ovtrace;

// Counter-clockwise as one sees it: y is down.
const std::vector<Point> Square{{0, 0}, {0, 3}, {3, 3}, {3, 0}, {0, 0}};

TEST(RingCheck, OuterRingsTurnOneWayAndHolesTheOther) {
    EXPECT_TRUE(isSoundRing(Square, 9.0));
    EXPECT_FALSE(isSoundRing(Square, -9.0));
    std::vector<Point> hole = Square;
    std::reverse(hole.begin(), hole.end());
    EXPECT_TRUE(isSoundRing(hole, -9.0));
    EXPECT_FALSE(isSoundRing(hole, 9.0));
}

TEST(RingCheck, AreaHasToBeAboutThatOfThePixels) {
    EXPECT_FALSE(isSoundRing(Square, 100.0));
    EXPECT_FALSE(isSoundRing(Square, 2.0));
    EXPECT_FALSE(isSoundRing(std::vector<Point>{{0, 0}, {3, 3}, {0, 0}}, 4.0));
}

TEST(RingCheck, SmallRingsMustNotCrossThemselves) {
    const std::vector<Point> crossing{{0, 0}, {0, 4}, {4, 4}, {1, 3}, {1, 5}, {4, 0}, {0, 0}};
    EXPECT_FALSE(isSoundRing(crossing, 12.0));
    EXPECT_TRUE(isSoundRing(crossing, 90.0));
}

TEST(RingCheck, PointsOfAPieceEndWhereTheWalkEnds) {
    const Piece arc = arcPiece({0, 0}, {2, 0}, 1.0);
    std::vector<Point> forth;
    appendPoints(arc, false, forth);
    std::vector<Point> back;
    appendPoints(arc, true, back);
    ASSERT_EQ(forth.size(), back.size());
    EXPECT_EQ(forth.back(), (Point{2, 0}));
    EXPECT_EQ(back.back(), (Point{0, 0}));
    for (const Point point : forth)
        EXPECT_NEAR(distance(point, {1, 0}), 1.0, 1e-9);
    std::vector<Point> line;
    appendPoints(linePiece({0, 0}, {2, 0}), false, line);
    EXPECT_EQ(line, std::vector<Point>(1, Point{2, 0}));
}

} // namespace
