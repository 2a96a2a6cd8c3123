#include <drawing/geometry/pathlist.h>

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace {

void expectSame(const PathPiece& a, const PathPiece& b) {
    EXPECT_EQ(a.kind, b.kind);
    EXPECT_EQ(a.from, b.from);
    EXPECT_EQ(a.to, b.to);
    EXPECT_EQ(a.control, b.control);
    EXPECT_EQ(a.control2, b.control2);
    EXPECT_EQ(a.bulge, b.bulge);
    EXPECT_EQ(a.radius, b.radius);
}

} // namespace

TEST(PathList, GivesBackWhatWasPutIn) {
    const std::vector<std::vector<PathPiece>> all{
        {linePiece({1, 2}, {3, 4}), arcPiece({3, 4}, {5, 1}, -0.3),
         quadraticPiece({5, 1}, {6, 2}, {7, 7}), cubicPiece({7, 7}, {1, 0}, {0, 1}, {1, 2})},
        {circlePiece({10, 10}, 4, false)},
        {ellipsePiece({9, 8}, {3, 4}, 2)}};
    PathList paths;
    for (const auto& pieces : all) {
        paths.begin(pieces.front().from);
        for (const PathPiece& piece : pieces)
            paths.append(piece);
    }
    ASSERT_EQ(paths.size(), 3);
    for (qsizetype i = 0; i < paths.size(); ++i) {
        const auto& expected = all[static_cast<std::size_t>(i)];
        const auto pieces = paths.pieces(i);
        ASSERT_EQ(paths.countPieces(i), static_cast<qsizetype>(expected.size()));
        ASSERT_EQ(pieces.size(), expected.size());
        EXPECT_EQ(paths.start(i), expected.front().from);
        for (std::size_t k = 0; k < pieces.size(); ++k)
            expectSame(pieces[k], expected[k]);
        std::vector<PathPiece> back;
        paths.appendPieces(i, true, back);
        for (std::size_t k = 0; k < pieces.size(); ++k)
            expectSame(back[back.size() - 1 - k], reversed(expected[k]));
    }
}

TEST(PathList, CurvesWithoutControlPointsAreTheirChords) {
    const double nan = std::numeric_limits<double>::quiet_NaN();
    PathList paths;
    paths.begin({0, 0});
    paths.quadraticTo({nan, 1}, {2, 2});
    EXPECT_EQ(paths.pieces(0).front().kind, PieceKind::Line);
    EXPECT_EQ(paths.rawPieces(0).front().kind, PieceKind::Quadratic);
    EXPECT_TRUE(std::isnan(paths.rawPieces(0).front().control.x()));
}

TEST(PathList, APathMayHaveNoPieces) {
    PathList paths;
    paths.begin({4, 5});
    paths.begin({6, 7});
    EXPECT_EQ(paths.size(), 2);
    EXPECT_TRUE(paths.pieces(0).empty());
    EXPECT_EQ(paths.start(1), QPointF(6, 7));
}
