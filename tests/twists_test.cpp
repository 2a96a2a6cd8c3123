// Junctions that boundaries leave in the wrong order.

#include <twists.h>

#include <gtest/gtest.h>

namespace {

using namespace ovtrace;

/// Four areas that meet in the middle of an image of 4 x 4 pixels; of each chain the segment that
/// ends in that junction is turned by quarters.
std::vector<std::uint32_t> twists(int quarters, bool mirrored) {
    RegionGrid grid;
    grid.width = 4;
    grid.height = 4;
    for (int i = 0; i < 16; ++i)
        grid.ids.push_back((i % 4) / 2 + (i / 8) * 2);
    grid.labels = {0, 1, 2, 3};
    const CrackMap cracks = walkCracks(grid);
    std::vector<EdgeSegment> segments;
    auto corner = static_cast<std::uint32_t>(cracks.junctions.size());
    for (std::uint32_t i = 0; i < cracks.chains.size(); ++i) {
        const CrackChain& chain = cracks.chains[i];
        GridPoint p = chain.start;
        for (std::size_t k = 0; k < chain.stepCount; ++k) {
            const GridPoint next = p + cracks.steps[chain.firstStep + k];
            EdgeSegment segment{
                {double(p.x), double(p.y)}, {double(next.x), double(next.y)}, i, corner++, corner};
            if (k == 0)
                segment.start = static_cast<std::uint32_t>(chain.from);
            if (k + 1 == chain.stepCount)
                segment.end = static_cast<std::uint32_t>(chain.to);
            const Point middle{2, 2};
            const auto turned = [&](Point at) {
                Point way = at - middle;
                for (int n = 0; n < quarters; ++n)
                    way = turnedQuarter(way);
                return middle + (mirrored ? Point{-way.x, way.y} : way);
            };
            if (segment.from == middle)
                segment.to = turned(segment.to);
            else if (segment.to == middle)
                segment.from = turned(segment.from);
            segments.push_back(segment);
            p = next;
        }
    }
    std::vector<std::uint32_t> found = findTwists(cracks, segments);
    for (const std::uint32_t junction : found)
        EXPECT_EQ(cracks.junctions[junction], (GridPoint{2, 2}));
    return found;
}

TEST(Twists, TurningChangesNoOrder) {
    for (int quarters = 0; quarters < 4; ++quarters)
        EXPECT_TRUE(twists(quarters, false).empty());
}

TEST(Twists, MirroringDoes) {
    for (int quarters = 0; quarters < 4; ++quarters)
        EXPECT_EQ(twists(quarters, true).size(), 1U);
}

} // namespace
