// Curves of chains as straight parts.

#include <chainsegments.h>
#include <regiongrid.h>

#include "shapes/piece.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace {

using namespace ovtrace;

/// Two areas, one above the other, and a curve for each chain that is no longer than its ends.
struct TwoAreas {
    RegionGrid grid;
    CrackMap cracks;
    std::vector<std::vector<Piece>> curves;

    TwoAreas() {
        grid.width = 8;
        grid.height = 6;
        for (int y = 0; y < grid.height; ++y)
            grid.ids.insert(grid.ids.end(), 8, y < 3 ? 0 : 1);
        grid.labels = {0, 1};
        cracks = walkCracks(grid);
        for (const CrackChain& chain : cracks.chains) {
            const GridPoint a = cracks.junctions[static_cast<std::size_t>(chain.from)];
            const GridPoint b = cracks.junctions[static_cast<std::size_t>(chain.to)];
            curves.push_back(
                {arcPiece({double(a.x), double(a.y)}, {double(b.x), double(b.y)}, 0.2)});
        }
    }
};

TEST(ChainSegments, FollowOneAnotherFromJunctionToJunction) {
    const TwoAreas areas;
    const std::vector<std::uint32_t> all{0, 1, 2};
    ASSERT_EQ(areas.cracks.chains.size(), all.size());
    const ChainSegments found(areas.cracks, areas.curves, all);
    EXPECT_EQ(found.chainCount, 3u);
    for (const std::uint32_t i : all) {
        const CrackChain& chain = areas.cracks.chains[i];
        auto end = static_cast<std::uint32_t>(chain.from);
        int count = 0;
        for (const EdgeSegment& segment : found.segments) {
            if (segment.boundary != i)
                continue;
            EXPECT_EQ(segment.start, end);
            end = segment.end;
            ++count;
            EXPECT_LT(distanceTo(areas.curves[i].front(), middle(segment.from, segment.to)), 0.011);
        }
        EXPECT_EQ(end, static_cast<std::uint32_t>(chain.to));
        EXPECT_GT(count, 2);
    }
}

TEST(ChainSegments, OnlyTheChainsAskedForAreThere) {
    const TwoAreas areas;
    const std::vector<std::uint32_t> some{1};
    const ChainSegments found(areas.cracks, areas.curves, some);
    EXPECT_TRUE(std::all_of(found.segments.begin(), found.segments.end(),
                            [](const EdgeSegment& segment) { return segment.boundary == 1; }));
    EXPECT_FALSE(found.segments.empty());
}

} // namespace
