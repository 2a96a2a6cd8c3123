// Groups of similar colours.

#include "support/colors.h"

#include <clusters.h>
#include <mixing.h>

#include <gtest/gtest.h>

#include <algorithm>

namespace {

using namespace ovtrace;

TEST(Clusters, ColoursApartAreTheirOwnGroups) {
    ColorCounts counts;
    counts.add(White, 50);
    counts.add(Black, 20);
    std::vector<QRgb> found = clusterColors(counts, 8);
    std::sort(found.begin(), found.end());
    EXPECT_EQ(found, (std::vector<QRgb>{Black, White}));
}

TEST(Clusters, GroupsAreMeansOfWhatIsNear) {
    ColorCounts counts;
    for (int i = 0; i < 10; ++i) {
        counts.add(qRgb(20 + i, 30, 40), 3);
        counts.add(qRgb(200 + i, 90, 40), 5);
    }
    std::vector<QRgb> found = clusterColors(counts, 2);
    ASSERT_EQ(found.size(), 2U);
    std::sort(found.begin(), found.end());
    EXPECT_LE(farthestChannel(found[0], qRgb(24, 30, 40)), 1);
    EXPECT_LE(farthestChannel(found[1], qRgb(204, 90, 40)), 1);
}

TEST(Clusters, NothingGivesNothing) {
    ColorCounts counts;
    EXPECT_TRUE(clusterColors(counts, 4).empty());
    EXPECT_TRUE(leadingColors(counts, 4).empty());
    counts.add(White);
    EXPECT_TRUE(clusterColors(counts, 0).empty());
}

TEST(Clusters, LeadingColoursAreKeptExactlyAndTheNearestGo) {
    ColorCounts counts;
    counts.add(qRgb(10, 10, 10), 100);
    counts.add(qRgb(12, 10, 10), 50);
    counts.add(qRgb(200, 10, 10), 5);
    EXPECT_EQ(leadingColors(counts, 3).size(), 3U);
    EXPECT_EQ(leadingColors(counts, 2), (std::vector<QRgb>{qRgb(10, 10, 10), qRgb(200, 10, 10)}));
}

TEST(Clusters, TransparentIsNoGrey) {
    ColorCounts counts;
    counts.add(0U, 100);
    counts.add(White, 100);
    std::vector<QRgb> found = clusterColors(counts, 2);
    std::sort(found.begin(), found.end());
    EXPECT_EQ(found, (std::vector<QRgb>{0U, White}));
}

} // namespace
