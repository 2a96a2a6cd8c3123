// Rings as polylines in drawing coordinates.

#include "support/lettermap.h"

#include "regions/outlines.h"

#include "shapes/piece.h"

#include <gtest/gtest.h>

namespace {

using namespace ovtrace;

TEST(Outlines, RingsHaveYUpAndTurnCounterClockwise) {
    const RegionMap map = mapOf({"AB", "AB", "AA"});
    const OvPolyline outline = ringPolyline(map, map.ringsOf(map.regions[1])[0]);
    EXPECT_EQ(outline.getStartPoint(), outline.getEndPoint());
    double area = 0.0;
    for (qsizetype i = 0; i + 1 < outline.countPieces(); ++i) {
        const OvVector a = outline.getVertexAt(i);
        const OvVector b = outline.getVertexAt(i + 1);
        area += (a.x * b.y - b.x * a.y) / 2.0;
        EXPECT_GE(a.x, 1.0);
        EXPECT_GE(a.y, 1.0); // the lowest row is not of this region
    }
    EXPECT_DOUBLE_EQ(area, 2.0);
}

TEST(Outlines, BulgesChangeTheirSignWithYAndWithTheWalk) {
    RegionMap map;
    map.width = 10;
    map.height = 10;
    map.pieces = {arcPiece({2, 5}, {8, 5}, 0.5), arcPiece({8, 5}, {2, 5}, 0.5)};
    MapBoundary boundary;
    boundary.pieceCount = 2;
    map.boundaries = {boundary};
    map.steps = {{BoundaryId{0}, false}, {BoundaryId{0}, true}};
    MapRing forth;
    forth.stepCount = 1;
    MapRing back = forth;
    back.firstStep = 1;
    map.rings = {forth, back};
    EXPECT_DOUBLE_EQ(ringPolyline(map, forth).getVertexParametersAt(0)[0], -0.5);
    EXPECT_DOUBLE_EQ(ringPolyline(map, back).getVertexParametersAt(0)[0], 0.5);
    EXPECT_EQ(ringPolyline(map, forth).getVertexAt(0).y, 5.0);
}

} // namespace
