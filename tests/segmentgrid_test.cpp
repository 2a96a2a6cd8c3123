// Segments by the cells of a grid.

#include <segmentgrid.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <random>

namespace {

using namespace ovtrace;

TEST(SegmentGrid, NothingHasNoCells) {
    EXPECT_EQ(SegmentGrid({}).cellCount(), 0U);
}

TEST(SegmentGrid, EveryPlaceOfASegmentLiesInACellThatHoldsIt) {
    std::mt19937 random(3);
    const auto place = [&] { return double(random() % 1000) / 10.0; };
    std::vector<EdgeSegment> segments;
    for (std::uint32_t i = 0; i < 60; ++i)
        segments.push_back({{place(), place()}, {place(), place()}, i, 2 * i, 2 * i + 1});
    segments.push_back({{0, 50}, {100, 50}, 60, 120, 121});
    segments.push_back({{50, 0}, {50, 100}, 61, 122, 123});
    const SegmentGrid grid(segments);
    for (std::uint32_t i = 0; i < segments.size(); ++i) {
        for (int k = 0; k <= 200; ++k) {
            const Point at = segments[i].from + (segments[i].to - segments[i].from) * (k / 200.0);
            const auto inside = grid.in(grid.cellAt(grid.rowOf(at.y), grid.columnOf(at.x)));
            EXPECT_EQ(std::count(inside.begin(), inside.end(), i), 1);
        }
    }
}

TEST(SegmentGrid, CellsAreAboutAsManyAsSegments) {
    std::vector<EdgeSegment> segments;
    for (std::uint32_t i = 0; i < 1000; ++i)
        segments.push_back({{double(i), 0}, {i + 1.0, 0.5}, 0, i, i + 1});
    EXPECT_LE(SegmentGrid(segments).cellCount(), 2000U);
    // Few segments of a large picture do not make cells of single pixels.
    const std::vector<EdgeSegment> far{{{0, 0}, {1, 1}, 0, 0, 1},
                                       {{30000, 9}, {30000, 30000}, 1, 2, 3}};
    EXPECT_LE(SegmentGrid(far).cellCount(), 4U);
}

} // namespace
