#include "shapes/piece.h"

#include <gtest/gtest.h>

#include <cmath>
#include <numbers>

using namespace ovtrace;

namespace {

constexpr double degree = std::numbers::pi / 180.0;

Point onCircle(Point centre, double radius, double degrees) {
    return centre + Point{std::cos(degrees * degree), std::sin(degrees * degree)} * radius;
}

Piece arcOf(Point centre, double radius, double from, double to) {
    return arcPiece(onCircle(centre, radius, from), onCircle(centre, radius, to),
                    std::tan((to - from) * degree / 4.0));
}

const Piece curve = cubicPiece({1, 2}, {4, -3}, {9, 4}, {6, 8});

void expectNear(Point a, Point b, double tolerance = 1e-9) {
    EXPECT_LT(distance(a, b), tolerance) << a.x << " " << a.y << " / " << b.x << " " << b.y;
}

/// Half the integral of x dy - y dx, by many chords.
double areaByChords(const Piece& piece) {
    constexpr int count = 20000;
    double area = 0.0;
    Point before = piece.from;
    for (int k = 1; k <= count; ++k) {
        const Point here = pointAt(piece, static_cast<double>(k) / count);
        area += cross(before, here) / 2.0;
        before = here;
    }
    return area;
}

} // namespace

TEST(Piece, ArcsLieOnTheirCircle) {
    const Point centre{3.5, -2.0};
    for (const double angle : {5.0, 60.0, 90.0, 180.0, -30.0, -180.0, 250.0}) {
        const Piece arc = arcOf(centre, 7.0, 20.0, 20.0 + angle);
        const Circle circle = circleOf(arc);
        expectNear(circle.centre, centre);
        EXPECT_NEAR(circle.radius, 7.0, 1e-9);
        for (const double t : {0.1, 0.4, 0.5, 0.8})
            EXPECT_NEAR(distance(pointAt(arc, t), centre), 7.0, 1e-9) << angle;
        expectNear(pointAt(arc, 0.5), onCircle(centre, 7.0, 20.0 + angle / 2.0));
        EXPECT_NEAR(bulgeAround(arc.from, arc.to, centre, angle), arc.bulge,
                    1e-9 * std::abs(arc.bulge));
    }
}

TEST(Piece, TangentsFollowTheCurve) {
    for (const Piece& piece : {linePiece({0, 0}, {3, 4}), arcOf({0, 0}, 5.0, 10.0, 130.0),
                               arcOf({0, 0}, 5.0, 10.0, -80.0), curve}) {
        const double step = 1e-6;
        expectNear(startTangent(piece), unit(pointAt(piece, step) - piece.from), 1e-5);
        expectNear(endTangent(piece), unit(piece.to - pointAt(piece, 1.0 - step)), 1e-5);
    }
}

TEST(Piece, PartsRunThroughTheSamePoints) {
    for (const Piece& piece : {linePiece({0, 0}, {3, 4}), arcOf({1, 1}, 5.0, 10.0, 170.0), curve}) {
        const auto [first, second] = split(piece, 0.3);
        EXPECT_EQ(first.from, piece.from);
        EXPECT_EQ(first.to, second.from);
        EXPECT_EQ(second.to, piece.to);
        for (const double t : {0.2, 0.5, 0.7}) {
            EXPECT_LT(distanceTo(piece, pointAt(first, t)), 0.05);
            EXPECT_LT(distanceTo(piece, pointAt(second, t)), 0.05);
        }
        EXPECT_NEAR(areaOf(first) + areaOf(second), areaOf(piece), 1e-9);
    }
}

TEST(Piece, ReversingTurnsTheAreaRound) {
    for (const Piece& piece : {linePiece({1, 0}, {3, 4}), arcOf({1, 1}, 5.0, 10.0, 170.0), curve}) {
        const Piece back = reversed(piece);
        expectNear(pointAt(back, 0.25), pointAt(piece, 0.75));
        EXPECT_NEAR(areaOf(back), -areaOf(piece), 1e-9);
    }
}

TEST(Piece, AreaIsThatOfManyChords) {
    for (const Piece& piece : {linePiece({1, 0}, {3, 4}), arcOf({1, 1}, 5.0, 10.0, 170.0),
                               arcOf({1, 1}, 5.0, 10.0, -100.0), curve})
        EXPECT_NEAR(areaOf(piece), areaByChords(piece), 1e-6);
    const double disc = areaOf(arcPiece({-2, 0}, {2, 0}, 1)) + areaOf(arcPiece({2, 0}, {-2, 0}, 1));
    EXPECT_NEAR(disc, 4.0 * std::numbers::pi, 1e-9);
}

TEST(Piece, DistanceToArcs) {
    const Piece arc = arcOf({0, 0}, 5.0, 0.0, 90.0);
    EXPECT_NEAR(distanceTo(arc, {4, 4}), std::sqrt(32.0) - 5.0, 1e-12);
    EXPECT_NEAR(distanceTo(arc, {1, 1}), 5.0 - std::sqrt(2.0), 1e-12);
    EXPECT_NEAR(distanceTo(arc, {5, -2}), 2.0, 1e-12);
    EXPECT_NEAR(distanceTo(arc, {-3, 5}), 3.0, 1e-12);
    const Piece most = arcOf({0, 0}, 5.0, 45.0, 315.0);
    EXPECT_NEAR(distanceTo(most, {-6, 0}), 1.0, 1e-9);
    EXPECT_NEAR(distanceTo(most, {5, 0}), distance({5, 0}, most.from), 1e-9);
}

TEST(Piece, BoundsHoldTheCurve) {
    for (const Piece& piece : {arcOf({1, 1}, 5.0, -30.0, 100.0), arcOf({1, 1}, 5.0, 100.0, -30.0),
                               linePiece({4, 2}, {1, 9}), curve}) {
        const Box box = boundsOf(piece);
        for (int k = 0; k <= 100; ++k) {
            const Point p = pointAt(piece, k / 100.0);
            EXPECT_TRUE(p.x >= box.least.x - 1e-9 && p.x <= box.greatest.x + 1e-9);
            EXPECT_TRUE(p.y >= box.least.y - 1e-9 && p.y <= box.greatest.y + 1e-9);
        }
    }
    EXPECT_NEAR(boundsOf(arcOf({1, 1}, 5.0, -30.0, 100.0)).greatest.x, 6.0, 1e-12);
}

TEST(Piece, LengthOfHalfACircle) {
    EXPECT_NEAR(lengthOf(arcOf({0, 0}, 10.0, 0.0, 180.0)), 10.0 * std::numbers::pi, 0.1);
    EXPECT_DOUBLE_EQ(lengthOf(linePiece({0, 0}, {3, 4})), 5.0);
}

TEST(Piece, MovedEndsKeepTheForm) {
    const Piece moved = withEnds(curve, {2, 3}, {6, 9});
    EXPECT_EQ(moved.from, (Point{2, 3}));
    EXPECT_EQ(moved.to, (Point{6, 9}));
    expectNear(startTangent(moved), startTangent(curve));
    expectNear(endTangent(moved), endTangent(curve));
}
