#include "support/conversions.h"

#include <quantization.h>
#include <random.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <ctime>

using namespace ovtrace;

namespace {

constexpr Color Black{-128, -128, -128, 127};
constexpr Color White{127, 127, 127, 127};

const QList<char> BlackPixel{-128, -128, -128, 127};
const QList<char> WhitePixel{127, 127, 127, 127};

/// Three black pixels and a white one.
PixelImage mostlyBlack() {
    return imageOf(2, 2, {BlackPixel, BlackPixel, BlackPixel, WhitePixel});
}

QList<QList<int>> inner(const QuantizedImage& image) {
    QList<QList<int>> rows = toLists(image.indices);
    rows.removeFirst();
    rows.removeLast();
    for (auto& row : rows) {
        row.removeFirst();
        row.removeLast();
    }
    return rows;
}

/// Whether no random draw has been taken since seedRandom(1).
bool nothingDrawn() {
    return ovtrace::random() == 41 / 32767.0;
}

/// Pixels of as many colours as there are, in steps that fall into most parts of the colour space.
PixelImage manyColors(int pixels) {
    PixelImage image(pixels, 1, Channels::Opaque);
    for (int x = 0; x < pixels; ++x)
        storePixel<Channels::Opaque>(image.row(0) + 3 * qsizetype(x),
                                     static_cast<std::uint32_t>(x) * 2654435761U >> 8U |
                                         0xff000000U);
    return image;
}

/// Processor time that the quantization takes, in seconds: the shorter of two runs.
[[maybe_unused]] double secondsFor(int pixels, int colors) {
    double shortest = 1e9;
    for (int run = 0; run < 2; ++run) {
        PixelImage image = manyColors(pixels);
        seedRandom(7);
        Palette palette;
        while (palette.size() < static_cast<std::size_t>(colors))
            palette.push_back(randomColor());
        const std::clock_t start = std::clock();
        colorquantization(std::move(image), palette, {3, 0.02});
        shortest = std::min(shortest, double(std::clock() - start) / CLOCKS_PER_SEC);
    }
    return shortest;
}

} // namespace

TEST(Quantization, WithoutCyclesEveryIndexIsZero) {
    for (const int cycles : {0, -3}) {
        Palette palette{White, Black};
        const auto image = colorquantization(mostlyBlack(), palette, {cycles, 0.5});
        EXPECT_EQ(inner(image), (QList<QList<int>>{{0, 0}, {0, 0}}));
        EXPECT_EQ(palette, (Palette{White, Black}));
    }
}

TEST(Quantization, OneCycleAssignsAndChangesNoColor) {
    const Color darkGrey{-100, -100, -100, 127};
    Palette palette{White, darkGrey};
    seedRandom(1);
    const auto image = colorquantization(mostlyBlack(), palette, {1, 0.9});
    EXPECT_EQ(inner(image), (QList<QList<int>>{{1, 1}, {1, 0}}));
    EXPECT_EQ(palette, (Palette{White, darkGrey}));
    EXPECT_TRUE(nothingDrawn());
}

TEST(Quantization, ColorsMoveToTheMeanOfTheirPixels) {
    Palette palette{{-100, -100, -100, 127}};
    colorquantization(mostlyBlack(), palette, {2, 0.0});
    // 255 / 4 = 63.75, truncated; opaque.
    EXPECT_EQ(palette, (Palette{{63 - 128, 63 - 128, 63 - 128, 127}}));
}

TEST(Quantization, ColorOfTransparentPixelsAloneStays) {
    PixelImage image = imageOf(2, 1, {{10, 20, 30, -128}, {12, 22, 32, -128}});
    const Color start{50, 50, 50, -128};
    Palette palette{start};
    colorquantization(std::move(image), palette, {3, 0.0});
    EXPECT_EQ(palette, Palette{start});
}

TEST(Quantization, EqualColorsGiveTheirPixelsToTheLowerIndex) {
    Palette palette{Black, Black};
    const auto image = colorquantization(mostlyBlack(), palette, {1, 0.0});
    EXPECT_EQ(inner(image), (QList<QList<int>>{{0, 0}, {0, 0}}));
    // The other one is drawn anew where that is allowed at all.
    Palette drawn{Black, Black};
    seedRandom(1);
    const Color expected = randomColor();
    seedRandom(1);
    colorquantization(imageOf(1, 1, {BlackPixel}), drawn, {3, 0.5});
    EXPECT_EQ(drawn, (Palette{Black, expected}));
}

TEST(Quantization, RareColorsAreDrawnAnewExceptBeforeTheLastCycle) {
    const auto drawsWith = [](int cycles, double ratio) {
        Palette palette{Black, White};
        seedRandom(1);
        colorquantization(mostlyBlack(), palette, {cycles, ratio});
        return !nothingDrawn();
    };
    EXPECT_FALSE(drawsWith(2, 0.3)) << "one averaging step, no replacement";
    EXPECT_TRUE(drawsWith(3, 0.3)) << "one opportunity";
    EXPECT_FALSE(drawsWith(3, 0.25)) << "a share of exactly a quarter is not below it";
    EXPECT_FALSE(drawsWith(5, 0.0));
}

TEST(Quantization, MoreThanSixteenMillionPixelsOfAColor) {
    constexpr int Side = 4400;
    for (const int dark : {1, 1200, 4399}) { // rows
        PixelImage image(Side, Side, Channels::Grey);
        for (int y = 0; y < Side; ++y)
            std::fill_n(image.row(y), Side, static_cast<char>(y < dark ? -128 : 127));
        Palette palette{Black};
        colorquantization(std::move(image), palette, {2, 0.0});
        const auto mean = static_cast<signed char>((Side - dark) * 255 / Side - 128);
        EXPECT_EQ(palette, (Palette{{mean, mean, mean, 127}})) << dark;
    }
}

TEST(Quantization, LargestPalettesOfEveryCellWidth) {
    for (const std::size_t size : {255U, 256U, 65535U, 65536U}) {
        for (const QList<char>& other : {QList<char>{5, 5, 5, 127}, {5, 6, 7, 127}, {5, 6, 7, 8}}) {
            Palette palette(size - 1, Black);
            palette.push_back({other[0], other[1], other[2], other[3]});
            const auto image =
                colorquantization(imageOf(3, 1, {other, BlackPixel, other}), palette, {1, 0.0});
            const int last = static_cast<int>(size) - 1;
            EXPECT_EQ(inner(image), (QList<QList<int>>{{last, 0, last}})) << size;
        }
    }
}

TEST(Quantization, AColorTooFarFromAllGetsIndexZero) {
    Palette palette{{-128, -128, -128, -128}, {-128, -128, -128, 0}};
    const auto image = colorquantization(imageOf(1, 1, {WhitePixel}), palette, {1, 0.0});
    EXPECT_EQ(inner(image), (QList<QList<int>>{{0}}));
    // With alpha alike the distance is 765, and the second colour wins.
    Palette near{{-128, -128, -128, -128}, {-128, -128, -128, 127}};
    EXPECT_EQ(inner(colorquantization(imageOf(1, 1, {WhitePixel}), near, {1, 0.0})),
              (QList<QList<int>>{{1}}));
}

TEST(Quantization, AlphaCountsFourTimes) {
    const auto indicesWith = [](Palette palette) {
        return inner(colorquantization(imageOf(1, 1, {{0, 0, 0, 0}}), palette, {1, 0.0}));
    };
    EXPECT_EQ(indicesWith({{0, 0, 0, 10}, {39, 0, 0, 0}}), (QList<QList<int>>{{1}}));
    EXPECT_EQ(indicesWith({{0, 0, 0, 10}, {40, 0, 0, 0}}), (QList<QList<int>>{{0}}));
}

TEST(Quantization, OnePixelHasABorderAllAround) {
    Palette palette{White, Black};
    const auto image = colorquantization(imageOf(1, 1, {BlackPixel}), palette, {1, 0.0});
    EXPECT_EQ(toLists(image.indices), (QList<QList<int>>{{-1, -1, -1}, {-1, 1, -1}, {-1, -1, -1}}));
}

TEST(Quantization, EmptyPaletteRunsNoCycle) {
    Palette palette;
    const auto image = colorquantization(mostlyBlack(), palette, {3, 0.5});
    EXPECT_EQ(image.colors, 0);
    EXPECT_TRUE(palette.empty());
}

TEST(Quantization, CountlessCyclesEndOnceNothingChanges) {
    Palette palette{White, Black};
    const auto image = colorquantization(mostlyBlack(), palette, {2000000000, 0.0});
    EXPECT_EQ(inner(image), (QList<QList<int>>{{1, 1}, {1, 0}}));
}

TEST(Quantization, LargePalettesTakeWiderCells) {
    Palette palette(300, Color{0, 0, 0, 127});
    palette[299] = Black;
    palette[255] = White;
    const auto image = colorquantization(mostlyBlack(), palette, {1, 0.0});
    EXPECT_EQ(inner(image), (QList<QList<int>>{{299, 299}, {299, 255}}));
}

TEST(Quantization, PixelsAndColorsAddUpInsteadOfMultiplying) {
#if defined(NDEBUG) && !defined(__SANITIZE_ADDRESS__) && !defined(__SANITIZE_THREAD__)
    constexpr int Pixels = 30000;
    constexpr int Colors = 100000;
    const double both = secondsFor(Pixels, Colors);
    const double apart = secondsFor(Pixels, 1000) + secondsFor(1, Colors);
    // Eight times is usual, as the tree has more levels; without one it would be a hundred times.
    EXPECT_LT(both, 25.0 * apart) << both << " s, and apart " << apart << " s";
#else
    GTEST_SKIP() << "times mean something in optimised programs alone";
#endif
}
