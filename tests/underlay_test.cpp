#include <drawing/writers/underlay.h>

#include <gtest/gtest.h>

#include <cmath>

namespace {

/// Two rectangles side by side, the left one larger: paths 0 (around the left), 1 (between), 2.
Drawing twoRectangles(int rightAlpha = 255) {
    Drawing drawing;
    drawing.method = Method::Regions;
    drawing.size = QSize(30, 20);
    drawing.palette = {QColor(200, 0, 0), QColor(0, 0, 200, rightAlpha)};
    drawing.paths.begin({20, 20});
    for (const QPointF point : {QPointF(0, 20), QPointF(0, 0), QPointF(20, 0)})
        drawing.paths.lineTo(point);
    drawing.paths.begin({20, 0});
    drawing.paths.lineTo({20, 20});
    drawing.paths.begin({20, 0});
    for (const QPointF point : {QPointF(30, 0), QPointF(30, 20), QPointF(20, 20)})
        drawing.paths.lineTo(point);
    drawing.uses = {{0, false}, {1, false}, {2, false}, {1, true}};
    drawing.rings = {{0, 2}, {2, 2}};
    drawing.shapes = {{ShapeKind::Region, 0, 0, 1, -1}, {ShapeKind::Region, 1, 1, 1, -1}};
    return drawing;
}

/// A disc within a square that has a hole for it.
Drawing discInSquare(bool withDisc) {
    Drawing drawing;
    drawing.method = Method::Regions;
    drawing.size = QSize(40, 40);
    drawing.palette = {QColor(200, 0, 0), QColor(0, 0, 200)};
    drawing.paths.begin({0, 0});
    for (const QPointF point : {QPointF(40, 0), QPointF(40, 40), QPointF(0, 40), QPointF(0, 0)})
        drawing.paths.lineTo(point);
    drawing.paths.appendPath(circlePiece({20, 20}, 10));
    drawing.uses = {{0, false}, {1, true}, {1, false}};
    drawing.rings = {{0, 1}, {1, 1}, {2, 1}};
    drawing.shapes = {{ShapeKind::Region, 0, 0, 2, -1}};
    if (withDisc)
        drawing.shapes.append({ShapeKind::Region, 1, 2, 1, 0});
    return drawing;
}

double areaOf(const std::vector<std::vector<PathPiece>>& rings) {
    double area = 0.0;
    for (const auto& ring : rings)
        area += signedArea(ring);
    return area;
}

void expectClosed(const std::vector<PathPiece>& ring) {
    for (std::size_t i = 0; i < ring.size(); ++i)
        EXPECT_EQ(ring[i].to, ring[(i + 1) % ring.size()].from) << i;
}

} // namespace

TEST(Underlay, TheLargerOneReachesUnderTheSmaller) {
    const Drawing drawing = twoRectangles();
    const Underlay underlay(drawing);
    EXPECT_EQ(underlay.order(), (QList<qsizetype>{0, 1}));
    const auto larger = underlay.rings(0);
    ASSERT_EQ(larger.size(), 1U);
    expectClosed(larger.front());
    EXPECT_GT(areaOf(larger), 420.0) << "at least a pixel and a half more";
    const QRectF box = boundingBox(larger.front());
    EXPECT_EQ(box.topLeft(), QPointF(0, 0));
    EXPECT_GT(box.right(), 21.0);
    EXPECT_LE(box.right(), 23.0);
    EXPECT_EQ(box.bottom(), 20.0) << "nothing beyond the rim";
    const auto smaller = underlay.rings(1);
    EXPECT_EQ(areaOf(smaller), 200.0) << "the upper one draws the boundary as it is";
}

TEST(Underlay, NothingLiesUnderWhatCanBeSeenThrough) {
    const Drawing drawing = twoRectangles(128);
    EXPECT_EQ(areaOf(Underlay(drawing).rings(0)), 400.0);
}

TEST(Underlay, HolesThatOthersFillAreNotCut) {
    const Drawing drawing = discInSquare(true);
    const auto rings = Underlay(drawing).rings(0);
    ASSERT_EQ(rings.size(), 1U);
    EXPECT_EQ(areaOf(rings), 1600.0);
}

TEST(Underlay, HolesWithNothingInThemStay) {
    const Drawing drawing = discInSquare(false);
    const auto rings = Underlay(drawing).rings(0);
    ASSERT_EQ(rings.size(), 2U);
    EXPECT_NEAR(areaOf(rings), 1600.0 - 100.0 * std::acos(-1.0), 1e-9);
    EXPECT_EQ(rings[1].front().kind, PieceKind::Circle);
}

TEST(EdgeGrid, FindsTheNearestEdgeOfALowerRank) {
    EdgeGrid grid(QSize(100, 50), 3.0);
    grid.add({10, 10}, {90, 40}, 1);
    grid.add({10, 12}, {90, 42}, 5);
    grid.sort();
    EXPECT_NEAR(grid.clearance({50, 25}, 2), 0.0, 1e-12);
    EXPECT_NEAR(grid.clearance({50, 27}, 2), 2.0 * 80.0 / std::hypot(80.0, 30.0), 1e-12);
    EXPECT_NEAR(grid.clearance({50, 27}, 6), 0.0, 1e-12);
    EXPECT_EQ(grid.clearance({50, 27}, 1), 3.0) << "none is lower";
    EXPECT_EQ(grid.clearance({10, 45}, 9), 3.0) << "none is near";
}
