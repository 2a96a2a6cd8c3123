#include "support/conversions.h"

#include <palette.h>
#include <random.h>

#include <gtest/gtest.h>

#include <cmath>
#include <set>
#include <tuple>

using namespace ovtrace;

namespace {

Color grey(int value) {
    const auto stored = static_cast<signed char>(value - 128);
    return {stored, stored, stored, 127};
}

/// The channel values of a palette's regular grid part.
std::set<int> levels(const Palette& palette, std::size_t gridEntries) {
    std::set<int> values;
    for (std::size_t i = 0; i < gridEntries; ++i) {
        for (const signed char stored : {palette[i].red, palette[i].green, palette[i].blue})
            values.insert(stored + 128);
    }
    return values;
}

} // namespace

TEST(Random, DrawsTheSequenceOfTheWindowsRuntime) {
    seedRandom(1);
    for (const int draw : {41, 18467, 6334, 26500, 19169})
        EXPECT_EQ(ovtrace::random(), draw / 32767.0);
}

TEST(Random, ColorTakesFourDrawsInChannelOrder) {
    seedRandom(1);
    const Color color = randomColor();
    const auto channel = [](int draw) {
        return static_cast<signed char>(std::floor(draw / 32767.0 * 255.0) - 128.0);
    };
    EXPECT_EQ(color, (Color{channel(41), channel(18467), channel(6334), channel(26500)}));
    EXPECT_EQ(ovtrace::random(), 19169 / 32767.0);
}

TEST(GeneratedPalette, GridSizesAndSteps) {
    const QList<std::tuple<int, int, int>> grids{
        {8, 2, 255},  {16, 2, 255}, {27, 3, 127}, {32, 3, 127}, {64, 3, 127},
        {100, 4, 85}, {125, 4, 85}, {128, 5, 63}, {216, 5, 63}, {256, 6, 51}};
    for (const auto& [count, steps, step] : grids) {
        seedRandom(1);
        const Palette palette = generatepalette(count);
        ASSERT_EQ(palette.size(), static_cast<std::size_t>(count));
        const auto gridEntries = static_cast<std::size_t>(steps * steps * steps);
        std::set<int> expected;
        for (int i = 0; i < steps; ++i)
            expected.insert(i * step);
        EXPECT_EQ(levels(palette, gridEntries), expected) << count << " colours";
        // The rest is random, four draws a colour.
        seedRandom(1);
        for (std::size_t i = gridEntries; i < palette.size(); ++i)
            EXPECT_EQ(palette[i], randomColor()) << count << " colours, entry " << i;
    }
}

TEST(GeneratedPalette, EightColorsAreTheCornersOfTheCube) {
    const Palette palette = generatepalette(8);
    const auto corner = [](int red, int green, int blue) {
        const auto stored = [](int on) { return static_cast<signed char>(on * 255 - 128); };
        return Color{stored(red), stored(green), stored(blue), 127};
    };
    const Palette expected{corner(0, 0, 0), corner(0, 0, 1), corner(0, 1, 0), corner(0, 1, 1),
                           corner(1, 0, 0), corner(1, 0, 1), corner(1, 1, 0), corner(1, 1, 1)};
    EXPECT_EQ(palette, expected);
}

TEST(GeneratedPalette, TopLevelOf27ColorsIs254) {
    EXPECT_EQ(levels(generatepalette(27), 27), (std::set<int>{0, 127, 254}));
}

TEST(GeneratedPalette, GreyRamps) {
    EXPECT_EQ(generatepalette(2), (Palette{grey(0), grey(255)}));
    EXPECT_EQ(generatepalette(3), (Palette{grey(0), grey(128), grey(255)}));
    EXPECT_EQ(generatepalette(7),
              (Palette{grey(0), grey(43), grey(85), grey(128), grey(170), grey(213), grey(255)}));
}

TEST(GeneratedPalette, OneColorIsOpaqueBlackAndNoneIsEmpty) {
    EXPECT_EQ(generatepalette(1), Palette{grey(0)});
    EXPECT_TRUE(generatepalette(0).empty());
    EXPECT_TRUE(generatepalette(-5).empty());
}

TEST(SampledPalette, OneColorFillsEveryEntry) {
    const PixelImage image = imageOf(2, 2, QList<QList<char>>(4, {-17, 17, 100, 127}));
    EXPECT_EQ(samplepalette(image, 5), Palette(5, Color{-16, 16, 96, 112}));
}

TEST(SampledPalette, CoarsensTowardTheMiddle) {
    const PixelImage image = imageOf(2, 1, {{15, 15, 15, 15}, {-15, -15, -15, -15}});
    EXPECT_EQ(samplepalette(image, 2), Palette(2, Color{0, 0, 0, 0}));
}

TEST(SampledPalette, SpreadsThePicksOverFewerColors) {
    const PixelImage image =
        imageOf(3, 1, {{64, 64, 64, 112}, {-128, -128, -128, 112}, {0, 0, 0, 112}});
    const Color dark{-128, -128, -128, 112};
    const Color middle{0, 0, 0, 112};
    const Color bright{64, 64, 64, 112};
    EXPECT_EQ(samplepalette(image, 8),
              (Palette{dark, dark, dark, middle, middle, middle, bright, bright}));
    EXPECT_EQ(samplepalette(image, 1), Palette{dark});
}

TEST(SampledPalette, KnownNumberOfColorsChangesNothing) {
    PixelImage image = imageOf(3, 2,
                               {{96, 96, 96, 127},
                                {96, 96, 96, 127},
                                {-96, 0, 0, 127},
                                {96, 96, 96, 127},
                                {-96, 0, 0, 127},
                                {96, 96, 96, 127}});
    const Palette sampled = samplepalette(image, 2);
    EXPECT_EQ(sampled, (Palette{{-96, 0, 0, 112}, {96, 96, 96, 112}}));
    image.mostColors = 2;
    EXPECT_EQ(samplepalette(image, 2), sampled);
}

TEST(SampledPalette, NothingToSampleIsEmpty) {
    EXPECT_TRUE(samplepalette(PixelImage(0, 0, Channels::All), 4).empty());
    const PixelImage image = imageOf(1, 1, {{0, 0, 0, 0}});
    EXPECT_TRUE(samplepalette(image, 0).empty());
    EXPECT_TRUE(samplepalette(image, -1).empty());
}

TEST(Brightness, SumsNearZeroCountAsEqual) {
    const Color minus{-2, 0, 0, 0};
    const Color plus{2, 0, 0, 0};
    EXPECT_FALSE(lessThanColor(minus, plus));
    EXPECT_FALSE(lessThanColor(plus, minus));
    EXPECT_TRUE(lessThanColor({-3, 0, 0, 0}, plus));
    EXPECT_FALSE(lessThanColor({0, 0, 0, -128}, {0, 0, 0, 127})) << "alpha is ignored";
}
