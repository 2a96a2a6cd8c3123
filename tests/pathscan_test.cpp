#include "support/conversions.h"

#include <pathscan.h>
#include <pathtables.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <bit>

using namespace ovtrace;

namespace {

using Points = QList<QList<int>>;

struct Found {
    int layer;
    Points points;

    bool operator==(const Found&) const = default;
};

QList<Found> scan(const QuantizedImage& image, float pathomit) {
    const LayerSet layers(image);
    PathScan scan(layers, pathomit);
    QList<Found> found;
    Path path;
    for (int k = scan.next(path); k >= 0; k = scan.next(path))
        found.append({k, toLists(path)});
    return found;
}

QList<Found> inLayer(int layer, const QList<Found>& found) {
    QList<Found> own;
    for (const Found& path : found) {
        if (path.layer == layer)
            own.append(path);
    }
    return own;
}

const Points OnePixel{{0, 0, 4}, {1, 0, 8}, {1, 1, 1}, {0, 1, 2}};

} // namespace

TEST(PathScan, CellsOfEveryWidthGiveTheSameOutlines) {
    const QList<QList<int>> rows{
        {0, 1, 1, 0, 2}, {1, 0, 1, 2, 2}, {1, 1, 1, 0, 2}, {2, 0, 0, 0, 1}};
    const QuantizedImage bytes = quantizedImage(rows, 3);
    const QuantizedImage shorts = quantizedImage(rows, 256);
    const QuantizedImage ints = quantizedImage(rows, 65536);
    ASSERT_TRUE(std::holds_alternative<ByteGrid>(bytes.indices));
    ASSERT_TRUE(std::holds_alternative<ShortGrid>(shorts.indices));
    ASSERT_TRUE(std::holds_alternative<IntGrid>(ints.indices));
    EXPECT_EQ(scan(bytes, 0).size(), 7);
    EXPECT_EQ(scan(shorts, 0), scan(bytes, 0));
    EXPECT_EQ(scan(ints, 0), scan(bytes, 0));
}

TEST(PathTables, DirectionsMatchTheSteps) {
    for (const auto& row : PathSteps) {
        for (const PathStep& step : row) {
            if (step.direction < 0)
                continue;
            const int dx = step.direction == 0 ? 1 : step.direction == 2 ? -1 : 0;
            const int dy = step.direction == 3 ? 1 : step.direction == 1 ? -1 : 0;
            EXPECT_EQ(step.dx, dx);
            EXPECT_EQ(step.dy, dy);
        }
    }
}

TEST(PathTables, HolesStartWhereThreeCellsHaveTheColor) {
    for (std::size_t type = 0; type < 16; ++type)
        EXPECT_EQ(HoleStarts[type], std::popcount(type) == 3 ? 1 : 0);
}

TEST(PathTables, ASecondWalkThroughASaddleTurnsLikeTheFirst) {
    // The scan need not know what a node keeps to know where a walk goes on.
    for (const std::size_t saddle : {5U, 10U}) {
        for (std::size_t d = 0; d < 4; ++d) {
            for (std::size_t kept = 0; kept < 16; ++kept) {
                const bool keeps = std::any_of(
                    PathSteps[saddle].begin(), PathSteps[saddle].end(), [&](const PathStep& step) {
                        return static_cast<std::size_t>(step.nodeType) == kept;
                    });
                if (keeps && PathSteps[kept][d].direction >= 0) {
                    EXPECT_EQ(PathSteps[kept][d].direction, PathSteps[saddle][d].direction);
                }
            }
        }
    }
}

TEST(PathScan, NoColorsGiveNoPaths) {
    EXPECT_TRUE(scan(quantizedImage({{0, 0}, {0, 0}}, 0), 0).isEmpty());
    EXPECT_TRUE(scan(quantizedImage({}, 4), 0).isEmpty());
}

TEST(PathScan, AColorThatDoesNotOccurHasNoPaths) {
    const auto found = scan(quantizedImage({{1, 1}, {1, 1}}, 3), 0);
    EXPECT_EQ(found.size(), 1);
    EXPECT_TRUE(inLayer(0, found).isEmpty());
    EXPECT_TRUE(inLayer(2, found).isEmpty());
}

TEST(PathScan, OnePixelHasFourPoints) {
    const QuantizedImage image = quantizedImage({{2}}, 3);
    EXPECT_EQ(scan(image, 0), (QList<Found>{{2, OnePixel}}));
    EXPECT_EQ(scan(image, 4), (QList<Found>{{2, OnePixel}})) << "exactly as long as asked for";
    EXPECT_TRUE(scan(image, 5).isEmpty());
    EXPECT_TRUE(scan(image, 8).isEmpty());
}

TEST(PathScan, ANegativeLimitKeepsEveryOuterPath) {
    EXPECT_EQ(scan(quantizedImage({{0, 1, 0}}, 2), -1).size(), 3);
}

TEST(PathScan, HolesAreLeftOut) {
    const QuantizedImage ring = quantizedImage({{0, 0, 0}, {0, 1, 0}, {0, 0, 0}}, 2);
    const auto found = scan(ring, 0);
    ASSERT_EQ(inLayer(0, found).size(), 1);
    EXPECT_EQ(inLayer(0, found).first().points.size(), 12) << "the outer boundary";
    ASSERT_EQ(inLayer(1, found).size(), 1) << "the hole is covered by its own colour";
}

TEST(PathScan, HolesWithProtrusionsAreLeftOut) {
    // A convex corner of the ring inside its hole must not be taken for the start of a region.
    const QuantizedImage ring = quantizedImage(
        {{0, 0, 0, 0, 0}, {0, 1, 1, 1, 0}, {0, 1, 0, 1, 0}, {0, 1, 0, 1, 0}, {0, 0, 0, 0, 0}}, 2);
    EXPECT_EQ(inLayer(0, scan(ring, 0)).size(), 1);
    EXPECT_EQ(inLayer(1, scan(ring, 0)).size(), 1);
}

TEST(PathScan, CornerContactsJoinRegionsAndKeepAType) {
    const auto found = scan(quantizedImage({{0, 1}, {1, 0}}, 2), 0);
    // The first walk meets the saddle as it is, and again with what it has left there itself.
    EXPECT_EQ(inLayer(0, found), (QList<Found>{{0,
                                                {{0, 0, 4},
                                                 {1, 0, 8},
                                                 {1, 1, 5},
                                                 {2, 1, 8},
                                                 {2, 2, 1},
                                                 {1, 2, 2},
                                                 {1, 1, 7},
                                                 {0, 1, 2}}}}));
    EXPECT_EQ(inLayer(1, found), (QList<Found>{{1,
                                                {{1, 0, 4},
                                                 {2, 0, 8},
                                                 {2, 1, 1},
                                                 {1, 1, 10},
                                                 {1, 2, 1},
                                                 {0, 2, 2},
                                                 {0, 1, 4},
                                                 {1, 1, 14}}}}));
}

TEST(PathScan, OuterPathsRunClockwiseOnTheScreen) {
    const auto found = scan(quantizedImage({{0, 0}}, 1), 0);
    ASSERT_EQ(found.size(), 1);
    EXPECT_EQ(found.first().points,
              (Points{{0, 0, 4}, {1, 0, 12}, {2, 0, 8}, {2, 1, 1}, {1, 1, 3}, {0, 1, 2}}));
}

TEST(PathScan, LeavesTheImageAsItWas) {
    const QuantizedImage image = quantizedImage({{0, 1, 0}, {1, 0, 1}, {0, 1, 0}}, 2);
    const auto before = toLists(image.indices);
    const auto first = scan(image, 0);
    EXPECT_EQ(toLists(image.indices), before);
    EXPECT_EQ(scan(image, 0), first);
}

TEST(PathScan, PathsComeInRasterOrderOfTheirStarts) {
    const auto found = scan(quantizedImage({{2, 0, 1}, {0, 1, 2}, {1, 2, 0}}, 3), 0);
    QList<QPair<int, int>> starts;
    for (const Found& path : found)
        starts.append({path.points[0][1], path.points[0][0]});
    EXPECT_TRUE(std::is_sorted(starts.begin(), starts.end()));
    EXPECT_EQ(std::adjacent_find(starts.begin(), starts.end()), starts.end());
}

TEST(PathScan, AnExhaustedScanStaysSo) {
    const QuantizedImage image = quantizedImage({{0}}, 1);
    const LayerSet layers(image);
    PathScan scan(layers, 0);
    Path path;
    EXPECT_EQ(scan.next(path), 0);
    EXPECT_EQ(scan.next(path), -1);
    EXPECT_EQ(scan.next(path), -1);
}
