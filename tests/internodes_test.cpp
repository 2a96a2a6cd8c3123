#include "support/conversions.h"

#include <internodes.h>

#include <gtest/gtest.h>

using namespace ovtrace;

namespace {

InternodePath nodesOf(const QList<QList<int>>& points) {
    InternodePath nodes;
    internodes(toPath(points), nodes);
    return nodes;
}

} // namespace

TEST(Internodes, OnePixel) {
    EXPECT_EQ(nodesOf({{0, 0, 4}, {1, 0, 8}, {1, 1, 1}, {0, 1, 2}}),
              (InternodePath{{0.5, 0, 1}, {1, 0.5, 3}, {0.5, 1, 5}, {0, 0.5, 7}}));
}

TEST(Internodes, StraightRun) {
    const InternodePath nodes = nodesOf({{0, 0, 4}, {1, 0, 12}, {2, 0, 8}});
    ASSERT_EQ(nodes.size(), 3U);
    EXPECT_EQ(nodes[0], (Internode{0.5, 0, 0}));
    EXPECT_EQ(nodes[1].x, 1.5);
    EXPECT_EQ(nodes[1].y, 0.0);
}

TEST(Internodes, AllDirections) {
    const auto direction = [](int dx, int dy) {
        // Points 0, 1 and 2 with the second midpoint half of (dx, dy) beyond the first.
        return nodesOf({{0, 0, 1}, {5, 5, 1}, {dx, dy, 1}})[0].direction;
    };
    EXPECT_EQ(direction(1, 0), 0);
    EXPECT_EQ(direction(1, 1), 1);
    EXPECT_EQ(direction(0, 1), 2);
    EXPECT_EQ(direction(-1, 1), 3);
    EXPECT_EQ(direction(-1, 0), 4);
    EXPECT_EQ(direction(-1, -1), 5);
    EXPECT_EQ(direction(0, -1), 6);
    EXPECT_EQ(direction(1, -1), 7);
    EXPECT_EQ(direction(0, 0), 8);
}

TEST(Internodes, TheLastRecordLooksPastTheStart) {
    const InternodePath nodes =
        nodesOf({{0, 0, 4}, {1, 0, 12}, {2, 0, 8}, {2, 1, 1}, {1, 1, 3}, {0, 1, 2}});
    EXPECT_EQ(nodes.back(), (Internode{0, 0.5, 7}));
    EXPECT_EQ(nodes[4], (Internode{0.5, 1, 5}));
}

TEST(Internodes, DegeneratePaths) {
    EXPECT_TRUE(nodesOf({}).empty());
    EXPECT_EQ(nodesOf({{3, 4, 1}}), (InternodePath{{3, 4, 8}}));
    EXPECT_EQ(nodesOf({{0, 0, 1}, {1, 0, 1}}), (InternodePath{{0.5, 0, 8}, {0.5, 0, 8}}));
}
