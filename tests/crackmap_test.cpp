// Areas of label images, and the edges between them.

#include <crackmap.h>
#include <specks.h>

#include <gtest/gtest.h>

#include <numeric>
#include <string>

namespace {

using namespace ovtrace;

/// A picture drawn in letters, one a pixel: '.' is white, others are colours.
struct Picture {
    explicit Picture(const std::vector<std::string>& rows) {
        labels.width = static_cast<int>(rows.front().size());
        labels.height = static_cast<int>(rows.size());
        labels.palette = {0xffffffffU, 0xff000000U, 0xffff0000U, 0xff0000ffU, 0x00000000U};
        labels.plainColors = labels.palette.size();
        for (const std::string& row : rows) {
            for (const char letter : row) {
                const auto label = std::string(".krb ").find(letter);
                labels.labels.push_back(static_cast<std::uint16_t>(label));
                pixels.push_back(labels.palette[label]);
            }
        }
    }
    PixelView view() const {
        return {pixels.data(), static_cast<std::size_t>(labels.width), labels.width, labels.height};
    }
    RegionGrid regions() const {
        return findRegions(view(), labels);
    }

    LabelImage labels;
    std::vector<QRgb> pixels;
};

std::int64_t areaSum(const CrackMap& map) {
    return std::accumulate(map.rings.begin(), map.rings.end(), std::int64_t(0),
                           [](std::int64_t sum, const CrackRing& ring) { return sum + ring.area; });
}

TEST(RegionGrid, AreasAreNumberedByTheirFirstPixels) {
    const RegionGrid grid = Picture({".kk", "..k", "r.."}).regions();
    EXPECT_EQ(grid.ids, (std::vector<std::int32_t>{0, 1, 1, 0, 0, 1, 2, 0, 0}));
    EXPECT_EQ(grid.pixelCount, (std::vector<std::uint32_t>{5, 3, 1}));
    EXPECT_EQ(grid.labels, (std::vector<std::uint16_t>{0, 1, 2}));
}

TEST(RegionGrid, TransparentPixelsBelongToNoArea) {
    const RegionGrid grid = Picture({"k k"}).regions();
    EXPECT_EQ(grid.ids, (std::vector<std::int32_t>{0, RegionGrid::Outside, 1}));
}

TEST(RegionGrid, TheRarerColourIsJoinedAcrossACorner) {
    const RegionGrid falling = Picture({"....", ".k..", "..k.", "...."}).regions();
    EXPECT_EQ(falling.labels.size(), 2U);
    EXPECT_TRUE(falling.risingJoins.empty());
    const RegionGrid rising = Picture({"....", "..k.", ".k..", "...."}).regions();
    EXPECT_EQ(rising.labels.size(), 2U);
    EXPECT_EQ(rising.risingJoins.size(), 1U);
}

TEST(RegionGrid, OneColourBetweenTwoOthersIsJoinedAcrossACorner) {
    const RegionGrid grid = Picture({"kr", "bk"}).regions();
    EXPECT_EQ(grid.labels.size(), 3U);
    EXPECT_EQ(grid.at(0, 0), grid.at(1, 1));
}

TEST(CrackMap, OneAreaHasTheRimOfTheImage) {
    const RegionGrid grid = Picture({"...", "..."}).regions();
    const CrackMap map = walkCracks(grid);
    ASSERT_EQ(map.chains.size(), 1U);
    EXPECT_EQ(map.chains[0].stepCount, 10U);
    ASSERT_EQ(map.rings.size(), 1U);
    EXPECT_EQ(map.rings[0].area, 6);
}

TEST(CrackMap, IslandMakesAHole) {
    const RegionGrid grid = Picture({".....", ".kkk.", ".k.k.", ".kkk.", "....."}).regions();
    const CrackMap map = walkCracks(grid);
    EXPECT_EQ(map.chains.size(), 3U);
    EXPECT_TRUE(map.junctions.empty());
    ASSERT_EQ(map.rings.size(), 5U);
    EXPECT_EQ(map.rings[0].area, 25);
    EXPECT_EQ(map.rings[1].area, -9);
    EXPECT_EQ(map.rings[2].area, 9);
    EXPECT_EQ(map.rings[3].area, -1);
    EXPECT_EQ(map.rings[4].area, 1);
}

TEST(CrackMap, ChainsEndWhereThreeAreasMeet) {
    const RegionGrid grid = Picture({"kkrr", "kkrr", "bbbb", "bbbb"}).regions();
    const CrackMap map = walkCracks(grid);
    // Three on the rim, three in between, which meet in the middle.
    EXPECT_EQ(map.junctions.size(), 4U);
    EXPECT_EQ(map.chains.size(), 6U);
    EXPECT_EQ(areaSum(map), 16);
    for (const CrackChain& chain : map.chains)
        EXPECT_TRUE(chain.from >= 0 && chain.to >= 0);
}

TEST(CrackMap, JoinedPixelsArePassedOnTheirOutside) {
    for (const auto& rows : {std::vector<std::string>{"....", ".k..", "..k.", "...."},
                             std::vector<std::string>{"....", "..k.", ".k..", "...."}}) {
        const RegionGrid grid = Picture(rows).regions();
        const CrackMap map = walkCracks(grid);
        EXPECT_TRUE(map.junctions.empty());
        EXPECT_EQ(map.chains.size(), 2U);
        ASSERT_EQ(map.rings.size(), 3U);
        EXPECT_EQ(map.rings[2].area, 2);
        EXPECT_EQ(areaSum(map), 16);
    }
}

TEST(CrackMap, FourAreasMeetInOneJunction) {
    const RegionGrid grid = Picture({"k.", "rb"}).regions();
    const CrackMap map = walkCracks(grid);
    EXPECT_EQ(map.junctions.size(), 5U);
    EXPECT_EQ(map.chains.size(), 8U);
    EXPECT_EQ(areaSum(map), 4);
}

TEST(Specks, BecomePartOfTheNeighbourWithMostOfTheirRim) {
    Picture picture({"....", ".kk.", ".rr.", "...."});
    EXPECT_TRUE(mergeSpecks(picture.labels, picture.regions(), 3.0));
    EXPECT_EQ(picture.regions().labels.size(), 1U);
}

TEST(Specks, NeverBecomeTransparent) {
    Picture picture({"   ", " k ", "   "});
    EXPECT_FALSE(mergeSpecks(picture.labels, picture.regions(), 100.0));
    EXPECT_EQ(picture.labels.at(1, 1), 1);
}

TEST(Specks, ThoseOfTheSizeStay) {
    Picture picture({"....", ".kk.", "...."});
    EXPECT_FALSE(mergeSpecks(picture.labels, picture.regions(), 2.0));
    EXPECT_TRUE(mergeSpecks(picture.labels, picture.regions(), 2.5));
}

} // namespace
