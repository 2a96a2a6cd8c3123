// Areas that lie in other areas than their pixels do.

#include <nesting.h>

#include <gtest/gtest.h>

namespace {

using namespace ovtrace;

/// An image of 12 x 6 pixels, its right half another area than its left, with an area of 2 x 2 in
/// the left one.
CrackMap islandMap() {
    RegionGrid grid;
    grid.width = 12;
    grid.height = 6;
    for (int y = 0; y < 6; ++y) {
        for (int x = 0; x < 12; ++x) {
            const bool island = x >= 2 && x < 4 && y >= 2 && y < 4;
            grid.ids.push_back(island ? 2 : x < 6 ? 0 : 1);
        }
    }
    grid.labels = {0, 1, 2};
    return walkCracks(grid);
}

/// The map's segments along the pixels, those of the closed chain moved to the right.
std::vector<EdgeSegment> segmentsOf(const CrackMap& cracks, double moved) {
    std::vector<EdgeSegment> segments;
    auto corner = static_cast<std::uint32_t>(cracks.junctions.size());
    for (std::uint32_t i = 0; i < cracks.chains.size(); ++i) {
        const CrackChain& chain = cracks.chains[i];
        GridPoint p = chain.start;
        for (std::size_t k = 0; k < chain.stepCount; ++k, corner += 2) {
            const GridPoint next = p + cracks.steps[chain.firstStep + k];
            const double off = chain.from < 0 ? moved : 0.0;
            segments.push_back(
                {{p.x + off, double(p.y)}, {next.x + off, double(next.y)}, i, corner, corner + 1});
            p = next;
        }
    }
    return segments;
}

TEST(Nesting, WhatLiesInItsAreaIsLeftAlone) {
    const CrackMap cracks = islandMap();
    for (const double moved : {0.0, 0.5, -1.5}) {
        const auto segments = segmentsOf(cracks, moved);
        EXPECT_TRUE(findMisplaced(cracks, SegmentGrid(segments)).empty());
    }
}

TEST(Nesting, WhatLiesInAnotherAreaIsFound) {
    const CrackMap cracks = islandMap();
    const auto segments = segmentsOf(cracks, 5.0);
    const auto found = findMisplaced(cracks, SegmentGrid(segments));
    ASSERT_EQ(found.size(), 1U);
    const CrackChain& island = cracks.chains[segments[found[0].segment].boundary];
    EXPECT_LT(island.from, 0);
    ASSERT_TRUE(found[0].around);
    // The boundary of the two halves.
    EXPECT_EQ(found[0].at.x, 6.0);
    EXPECT_EQ(segments[*found[0].around].from.x, 6.0);
}

TEST(Nesting, WhatLiesBeyondTheImageIsFound) {
    const CrackMap cracks = islandMap();
    const auto segments = segmentsOf(cracks, -9.0);
    const auto found = findMisplaced(cracks, SegmentGrid(segments));
    ASSERT_EQ(found.size(), 1U);
    EXPECT_FALSE(found[0].around);
}

} // namespace
