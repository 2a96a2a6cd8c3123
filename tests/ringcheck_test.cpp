// Whether curves may stand for the rings of areas.

#include <ringcheck.h>

#include "shapes/piece.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <vector>

namespace {

using namespace ovtrace;

std::vector<Chord> closed(const std::vector<Point>& points) {
    std::vector<Chord> chords;
    for (std::size_t i = 0; i < points.size(); ++i)
        chords.push_back(
            {points[i], points[(i + 1) % points.size()], static_cast<std::uint32_t>(i)});
    return chords;
}

// Counter-clockwise as one sees it: y is down.
const std::vector<Point> Square{{0, 0}, {0, 3}, {3, 3}, {3, 0}};

TEST(RingCheck, OuterRingsTurnOneWayAndHolesTheOther) {
    EXPECT_TRUE(hasAreaOf(closed(Square), 9.0));
    EXPECT_FALSE(hasAreaOf(closed(Square), -9.0));
    std::vector<Point> hole = Square;
    std::reverse(hole.begin(), hole.end());
    EXPECT_TRUE(hasAreaOf(closed(hole), -9.0));
    EXPECT_FALSE(hasAreaOf(closed(hole), 9.0));
}

TEST(RingCheck, AreaHasToBeAboutThatOfThePixels) {
    EXPECT_FALSE(hasAreaOf(closed(Square), 100.0));
    EXPECT_FALSE(hasAreaOf(closed(Square), 2.0));
    EXPECT_FALSE(hasAreaOf(closed({{0, 0}, {3, 3}}), 4.0));
}

TEST(RingCheck, ChordsOfAPieceFollowItsWalk) {
    const Piece arc = arcPiece({0, 0}, {2, 0}, 1.0);
    for (const bool reversed : {false, true}) {
        std::vector<Chord> chords;
        appendChords(arc, reversed, 7, chords);
        EXPECT_EQ(chords.front().from, reversed ? arc.to : arc.from);
        EXPECT_EQ(chords.back().to, reversed ? arc.from : arc.to);
        for (std::size_t i = 0; i < chords.size(); ++i) {
            EXPECT_NEAR(distance(chords[i].to, {1, 0}), 1.0, 1e-9);
            EXPECT_EQ(chords[i].boundary, 7U);
            if (i > 0) {
                EXPECT_EQ(chords[i].from, chords[i - 1].to);
            }
        }
    }
    std::vector<Chord> line;
    appendChords(linePiece({0, 0}, {2, 0}), false, 1, line);
    EXPECT_EQ(line.size(), 1U);
}

} // namespace
