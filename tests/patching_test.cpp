// Curves of which a part is replaced by the polygon beside its pixels.

#include <patching.h>

#include "shapes/piece.h"

#include <gtest/gtest.h>

#include <cmath>

namespace {

using namespace ovtrace;

/// Places of the middles of steps to the right along y = 0, a little above.
std::vector<Point> placesBeside(std::size_t count) {
    std::vector<Point> places;
    for (std::size_t i = 0; i < count; ++i)
        places.push_back({double(i) + 0.5, -0.25});
    return places;
}

void expectJoined(const std::vector<Piece>& pieces) {
    for (std::size_t i = 1; i < pieces.size(); ++i)
        EXPECT_EQ(pieces[i].from, pieces[i - 1].to);
}

TEST(Patching, OnlyTheRangeLeavesTheCurve) {
    const auto places = placesBeside(40);
    const StepRange range{10, 14};
    const auto pieces = patched({linePiece({0, 0}, {40, 0})}, places, {&range, 1}, false);
    expectJoined(pieces);
    EXPECT_EQ(pieces.front().from, (Point{0, 0}));
    EXPECT_EQ(pieces.back().to, (Point{40, 0}));
    for (const Piece& piece : pieces) {
        const bool near = piece.to.x > 10.0 && piece.to.x < 15.0;
        EXPECT_EQ(piece.to.y, near ? -0.25 : 0.0) << piece.to.x;
    }
    EXPECT_EQ(pieces.size(), 5U); // the two ends of the line, the one beside, there and back
}

TEST(Patching, StepsInOneLineAreOneLine) {
    // Ten steps along y = 0; four of them are drawn beside, where the curve is already.
    const std::vector<Piece> pieces{linePiece({0, 0}, {10, 0})};
    std::vector<Point> places;
    for (int i = 0; i < 10; ++i)
        places.push_back({i + 0.5, 0.0});
    const std::vector<StepRange> ranges{{3, 6}};
    const auto straight = patched(pieces, places, ranges, false);
    ASSERT_EQ(straight.size(), 1u);
    EXPECT_EQ(straight.front(), linePiece({0, 0}, {10, 0}));
    places[5].y = 0.25;
    EXPECT_GE(patched(pieces, places, ranges, false).size(), 3u);
}

TEST(Patching, RangesAtTheEndsKeepTheEnds) {
    const auto places = placesBeside(20);
    const StepRange ranges[] = {{0, 2}, {17, 19}};
    const auto pieces = patched({linePiece({0, 0}, {20, 0})}, places, ranges, false);
    expectJoined(pieces);
    EXPECT_EQ(pieces.front().from, (Point{0, 0}));
    EXPECT_EQ(pieces.front().to, places[0]);
    EXPECT_EQ(pieces.back().from, places[19]);
    EXPECT_EQ(pieces.back().to, (Point{20, 0}));
}

TEST(Patching, ArcsKeepTheirCircle) {
    const Piece arc = arcPiece({-20, 0}, {20, 0}, 1.0);
    std::vector<Point> places;
    for (int i = 0; i < 60; ++i)
        places.push_back(pointAt(arc, (i + 0.5) / 60.0) * 1.02);
    const StepRange ranges[] = {{10, 12}, {30, 31}};
    const auto pieces = patched({arc}, places, ranges, false);
    expectJoined(pieces);
    int arcs = 0;
    for (const Piece& piece : pieces) {
        if (piece.kind != PieceKind::Arc)
            continue;
        ++arcs;
        EXPECT_NEAR(length(circleOf(piece).centre), 0.0, 1e-6);
    }
    EXPECT_EQ(arcs, 3);
}

TEST(Patching, ClosedCurvesStayClosed) {
    const std::vector<Piece> circle{arcPiece({-10, 0}, {10, 0}, 1.0),
                                    arcPiece({10, 0}, {-10, 0}, 1.0)};
    std::vector<Point> places;
    for (int i = 0; i < 64; ++i) {
        const double angle = i * 0.0981747704;
        places.push_back({9.8 * std::cos(angle), 9.8 * std::sin(angle)});
    }
    for (const StepRange range :
         {StepRange{0, 3}, StepRange{20, 25}, StepRange{61, 63}, StepRange{0, 63}}) {
        const auto pieces = patched(circle, places, {&range, 1}, true);
        expectJoined(pieces);
        EXPECT_EQ(pieces.front().from, pieces.back().to);
        double area = 0.0;
        for (const Piece& piece : pieces)
            area += areaOf(piece);
        EXPECT_NEAR(area, 310.0, 12.0);
    }
}

TEST(Patching, StepsWidenUntilTheyAreAll) {
    PatchedSteps steps;
    EXPECT_TRUE(steps.empty());
    steps.widen({50}, 1000, false);
    ASSERT_EQ(steps.all().size(), 1U);
    EXPECT_EQ(steps.all()[0], (StepRange{48, 52}));
    steps.widen({50, 500}, 1000, false);
    ASSERT_EQ(steps.all().size(), 2U);
    EXPECT_EQ(steps.all()[0], (StepRange{43, 57}));
    EXPECT_TRUE(steps.contains(500));
    EXPECT_FALSE(steps.contains(490));
    for (int i = 0; i < 12; ++i)
        steps.widen({50}, 1000, false);
    EXPECT_TRUE(steps.isWhole(1000));
}

TEST(Patching, StepsOfClosedChainsGoOnBeyondTheirLast) {
    PatchedSteps steps;
    steps.widen({0}, 100, true);
    ASSERT_EQ(steps.all().size(), 2U);
    EXPECT_EQ(steps.all()[0], (StepRange{0, 2}));
    EXPECT_EQ(steps.all()[1], (StepRange{98, 99}));
}

TEST(Patching, StepsAreFoundByPlaceAndDirection) {
    CrackMap cracks;
    CrackChain chain;
    chain.start = {0, 0};
    // To the right, and back one pixel below.
    cracks.steps.assign(30, Step::Right);
    cracks.steps.push_back(Step::Down);
    cracks.steps.insert(cracks.steps.end(), 30, Step::Left);
    chain.stepCount = cracks.steps.size();
    const StepFinder finder(cracks, chain);
    EXPECT_EQ(finder.nearest({12.4, 0.6}, {1, 0}), 12U);
    EXPECT_EQ(finder.nearest({12.4, 0.4}, {-1, 0}), 48U);
    EXPECT_EQ(finder.nearest({12.4, 30.0}, {1, 0}), StepFinder::None);
}

TEST(Patching, BentCurvesReachTheirNewEnds) {
    const auto pieces =
        bentTo({linePiece({0, 0}, {40, 0}), linePiece({40, 0}, {40, 30})}, {0, 0.5}, {40.5, 30});
    expectJoined(pieces);
    EXPECT_EQ(pieces.front().from, (Point{0, 0.5}));
    EXPECT_EQ(pieces.back().to, (Point{40.5, 30}));
    // The corner between stays, and most of the lines.
    EXPECT_EQ(pieces.size(), 4U);
    EXPECT_EQ(pieces[1].to, (Point{40, 0}));
    EXPECT_EQ(pieces[1].from.y, 0.0);
}

} // namespace
