// Ink at twice the size.

#include "doubling.h"
#include "pace.h"

#include <gtest/gtest.h>

using namespace ovtrace;

namespace {

/// Vertical strokes of whole pixels, 10 pixels apart.
InkLevels stripes(int size, int width) {
    InkLevels ink{size, size, {}};
    for (int y = 0; y < size; ++y)
        for (int x = 0; x < size; ++x)
            ink.levels.push_back(x % 10 < width ? 255 : 0);
    return ink;
}

TEST(Doubling, NarrowIsWhatHasAboutOnePixel) {
    Pace pace(nullptr);
    EXPECT_TRUE(isNarrow(stripes(100, 1), 115, pace));
    EXPECT_FALSE(isNarrow(stripes(100, 3), 115, pace));
    EXPECT_FALSE(isNarrow(InkLevels{10, 10, std::vector<std::uint8_t>(100)}, 115, pace));
}

TEST(Doubling, PlainInkAndItsSumStay) {
    Pace pace(nullptr);
    const InkLevels plain = doubled({7, 5, std::vector<std::uint8_t>(35, 200)}, pace);
    ASSERT_EQ(plain.width, 14);
    ASSERT_EQ(plain.height, 10);
    for (const std::uint8_t level : plain.levels)
        EXPECT_EQ(level, 200);
    // A stroke keeps its place: as much ink left of its middle as right of it.
    InkLevels stroke{9, 9, std::vector<std::uint8_t>(81)};
    for (int y = 0; y < 9; ++y)
        stroke.levels[stroke.indexOf(4, y)] = 200;
    const InkLevels twice = doubled(stroke, pace);
    int sum = 0;
    for (int x = 0; x < 18; ++x) {
        EXPECT_EQ(twice.at(x, 8), twice.at(17 - x, 8));
        sum += twice.at(x, 8);
    }
    // The cubic would go below paper beside a lone pixel; what is cut off there is added.
    EXPECT_NEAR(sum, 400, 40);
}

TEST(Doubling, HalvesEverythingThatHasALength) {
    Found found;
    found.strokes.resize(1);
    found.strokes[0].ends[1].at = {8.0, 6.0};
    found.strokes[0].width = 3.0;
    found.strokes[0].dashes = {12.0, 4.0};
    found.nodes.push_back({8.0, 6.0});
    found.widths.push_back(3.0);
    found.areas.push_back({InkMask::Solid, {{{2.0, 4.0}}}, {6.0, 2.0}});
    halve(found);
    EXPECT_EQ(found.strokes[0].finish(), (Point{4.0, 3.0}));
    EXPECT_EQ(found.strokes[0].width, 1.5);
    EXPECT_EQ(found.strokes[0].dashes, (std::vector<double>{6.0, 2.0}));
    EXPECT_EQ(found.nodes[0], found.strokes[0].finish());
    EXPECT_EQ(found.widths[0], 1.5);
    EXPECT_EQ(found.areas[0].rings[0][0], (Point{1.0, 2.0}));
    EXPECT_EQ(found.areas[0].inside, (Point{3.0, 1.0}));
}

} // namespace
