// Whether curves may stand for the rings of areas.

#include <ringcheck.h>

#include "shapes/piece.h"

#include <gtest/gtest.h>

#include <cmath>
#include <vector>

namespace {

using namespace ovtrace;

double areaAround(const std::vector<Point>& points) {
    double area = 0.0;
    for (std::size_t i = 0; i < points.size(); ++i)
        area += areaOf(linePiece(points[i], points[(i + 1) % points.size()]));
    return area;
}

// Counter-clockwise as one sees it: y is down.
const std::vector<Point> Square{{0, 0}, {0, 3}, {3, 3}, {3, 0}};

TEST(RingCheck, OuterRingsTurnOneWayAndHolesTheOther) {
    EXPECT_TRUE(standsForRing(areaAround(Square), 9.0));
    EXPECT_FALSE(standsForRing(areaAround(Square), -9.0));
    const std::vector<Point> hole(Square.rbegin(), Square.rend());
    EXPECT_TRUE(standsForRing(areaAround(hole), -9.0));
    EXPECT_FALSE(standsForRing(areaAround(hole), 9.0));
}

TEST(RingCheck, AreaHasToBeAboutThatOfThePixels) {
    EXPECT_FALSE(standsForRing(areaAround(Square), 100.0));
    EXPECT_FALSE(standsForRing(areaAround(Square), 2.0));
    EXPECT_FALSE(standsForRing(areaAround({{0, 0}, {3, 3}}), 4.0));
}

TEST(RingCheck, CurvesCountWithTheirWholeArea) {
    const Piece below = arcPiece({0, 0}, {2, 0}, -1.0);
    const Piece above = arcPiece({2, 0}, {0, 0}, -1.0);
    const double disc = areaOf(below) + areaOf(above);
    EXPECT_NEAR(std::abs(disc), 3.14159, 1e-4);
    EXPECT_EQ(standsForRing(disc, 4.0), disc < 0.0);
    EXPECT_EQ(standsForRing(-disc, 4.0), disc > 0.0);
}

} // namespace
