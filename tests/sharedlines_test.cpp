// Paths as straight pieces that meet in their ends alone.

#include "drawing/drawing.h"
#include "drawing/writers/sharedlines.h"

#include <gtest/gtest.h>

namespace {

/// A drawing of 100 x 100 pixels with paths that some area uses.
Drawing drawingOf(const std::vector<std::vector<PathPiece>>& paths) {
    Drawing drawing;
    drawing.size = {100, 100};
    for (const std::vector<PathPiece>& path : paths) {
        drawing.uses.append({drawing.paths.size(), false});
        drawing.paths.begin(path.front().from);
        for (const PathPiece& piece : path)
            drawing.paths.append(piece);
    }
    return drawing;
}

bool meet(const SharedLines& lines, qsizetype count) {
    std::vector<Corners> all;
    for (qsizetype i = 0; i < count; ++i)
        all.push_back(lines.line(i));
    return !Noding(2.0).meetingLines(all).empty();
}

TEST(SharedLines, FollowCurvesWithinTheDeviation) {
    const Drawing drawing = drawingOf({{arcPiece({10, 50}, {90, 50}, 0.5)}});
    const SharedLines coarse(drawing, {1.0, {}});
    const SharedLines fine(drawing, {0.01, {}});
    EXPECT_LT(coarse.line(0).size(), fine.line(0).size());
    EXPECT_EQ(coarse.line(0).front(), QPointF(10, 50));
    EXPECT_EQ(coarse.line(0).back(), QPointF(90, 50));
}

TEST(SharedLines, CurvesThatOthersComeNearGetMorePieces) {
    // A line that ends between an arc around (50, 80), of radius 50, and the middle of its chord.
    const PathPiece arc = arcPiece({10, 50}, {90, 50}, 0.5);
    const Drawing one = drawingOf({{arc}});
    const SharedLines alone(one, {2.0, {}});
    EXPECT_EQ(alone.line(0).size(), 5U);
    const Drawing near = drawingOf({{arc}, {linePiece({61.42, 31.63}, {60.34, 36.2})}});
    const SharedLines lines(near, {2.0, {}});
    EXPECT_FALSE(meet(lines, 2));
    EXPECT_GT(lines.line(0).size(), alone.line(0).size());
}

TEST(SharedLines, PathsThatCrossAreLeftAsTheyAre) {
    const Drawing drawing =
        drawingOf({{arcPiece({10, 50}, {90, 50}, 0.5)}, {linePiece({10, 40}, {90, 40})}});
    EXPECT_TRUE(meet(SharedLines(drawing, {2.0, {}}), 2));
}

TEST(SharedLines, LinesBetweenTheSameEndsAreKeptApart) {
    const Drawing drawing =
        drawingOf({{arcPiece({10, 50}, {90, 50}, 0.02)}, {arcPiece({10, 50}, {90, 50}, -0.02)}});
    const SharedLines lines(drawing, {2.0, {}});
    EXPECT_GT(lines.line(0).size(), 2U);
    EXPECT_GT(lines.line(1).size(), 2U);
}

TEST(SharedLines, PlacesAreRoundedUnlessTheyWouldMeet) {
    const Drawing apart = drawingOf({{linePiece({10.26, 10}, {20, 20.13})}});
    const SharedLines rounded(apart, {0.05, 10.0});
    EXPECT_EQ(rounded.line(0).front(), QPointF(10.3, 10));
    EXPECT_EQ(rounded.line(0).back(), QPointF(20, 20.1));
    // Two lines that are nearer to each other than the digits.
    const Drawing near =
        drawingOf({{linePiece({10, 10.01}, {20, 20.01})}, {linePiece({10, 10.02}, {20, 20.02})}});
    const SharedLines exact(near, {0.05, 10.0});
    EXPECT_FALSE(meet(exact, 2));
    EXPECT_EQ(exact.line(0).front(), QPointF(10, 10.01));
}

TEST(SharedLines, EndsThatPathsShareStayShared) {
    const QPointF junction(50.04, 50.04);
    const Drawing drawing =
        drawingOf({{linePiece({10, 50}, junction)},
                   {linePiece({10, 50.01}, {50.03, 50.05}), linePiece({50.03, 50.05}, {50, 90})},
                   {linePiece(junction, {90.26, 50})}});
    const SharedLines lines(drawing, {0.05, 10.0});
    EXPECT_EQ(lines.line(0).back(), lines.line(2).front());
    EXPECT_EQ(lines.line(0).back(), junction);
}

} // namespace
