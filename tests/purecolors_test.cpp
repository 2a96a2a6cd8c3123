// Blocks of equal pixels, and counts of colours.

#include "support/colors.h"
#include "support/coverage.h"
#include "support/pixelview.h"

#include <purecolors.h>

#include <gtest/gtest.h>

namespace {

using namespace ovtrace;
using coverage::ground;

TEST(PureColors, PlainImageHasABlockAtEveryPlace) {
    const QImage image = ground(7, 5, Red);
    const PureColors pure = findPureColors(viewOf(image));
    EXPECT_EQ(pure.blockCount, 24U);
    EXPECT_EQ(pure.placeCount, 24U);
    EXPECT_EQ(pure.blocks.countOf(Red), 24U);
}

TEST(PureColors, BlocksAreThoseOfAPlainCount) {
    std::mt19937 random(3);
    for (int round = 0; round < 20; ++round) {
        QImage image = ground(9, 8, White);
        for (int i = 0; i < 20; ++i)
            image.setPixel(int(random() % 9), int(random() % 8), random() % 2 == 0 ? Red : White);
        std::uint32_t red = 0;
        std::uint32_t white = 0;
        for (int y = 0; y < 7; ++y) {
            for (int x = 0; x < 8; ++x) {
                const QRgb color = image.pixel(x, y);
                if (image.pixel(x + 1, y) != color || image.pixel(x, y + 1) != color ||
                    image.pixel(x + 1, y + 1) != color)
                    continue;
                ++(color == Red ? red : white);
            }
        }
        const PureColors pure = findPureColors(viewOf(image));
        EXPECT_EQ(pure.blocks.countOf(Red), red);
        EXPECT_EQ(pure.blocks.countOf(White), white);
        EXPECT_EQ(pure.blockCount, std::uint64_t(red) + white);
    }
}

TEST(PureColors, OneRowHasNoBlocks) {
    const QImage image = ground(9, 1, Red);
    EXPECT_EQ(findPureColors(viewOf(image)).blockCount, 0U);
}

TEST(PureColors, CountingEndsSoonAfterTheMostColours) {
    QImage image = ground(4, 3, White);
    image.setPixel(1, 0, Red);
    EXPECT_EQ(countColors(viewOf(image), 2).countOf(White), 11U);
    // The first row has more than one colour: the others are not looked at.
    EXPECT_EQ(countColors(viewOf(image), 1).countOf(White), 3U);
}

TEST(PureColors, BlocksOfMixesAreNoColours) {
    QImage image = ground(60, 60, White);
    for (int y = 0; y < 60; ++y) {
        for (int x = 0; x < 60; ++x) {
            if (x < 20)
                image.setPixel(x, y, Black);
            else if (x % 2 == 0 && y % 2 == 0 && x > 30)
                image.setPixel(x, y, Grey);
        }
    }
    const auto greys = [&image] {
        const PureColors pure = findPureColors(viewOf(image));
        return withoutMixes(viewOf(image), pure.blocks).countOf(Grey);
    };
    // One block among two hundred pixels of that grey happens; four are an area.
    for (const auto& [x, y] : {std::pair(33, 33), std::pair(33, 34), std::pair(34, 33)})
        image.setPixel(x, y, Grey);
    EXPECT_EQ(greys(), 0U);
    for (int y = 40; y < 46; ++y) {
        for (int x = 40; x < 46; ++x)
            image.setPixel(x, y, Grey);
    }
    EXPECT_GT(greys(), 20U);
}

/// Black on the left of a white image, and a grey bar two pixels wide.
QImage withGreyBar() {
    QImage image = ground(60, 60, White);
    for (int y = 0; y < 60; ++y) {
        for (int x = 0; x < 20; ++x)
            image.setPixel(x, y, Black);
    }
    for (int x = 30; x < 50; ++x) {
        image.setPixel(x, 10, Grey);
        image.setPixel(x, 11, Grey);
    }
    return image;
}

std::uint32_t greysOf(const QImage& image) {
    const PureColors pure = findPureColors(viewOf(image));
    return withoutMixes(viewOf(image), pure.blocks).countOf(Grey);
}

TEST(PureColors, BarsOfAMixThatLiesAlongEdgesAreNoColour) {
    QImage image = withGreyBar();
    EXPECT_EQ(greysOf(image), 19U) << "nothing says that it is black in two halves";
    for (int y = 0; y < 60; ++y)
        image.setPixel(20, y, Grey);
    EXPECT_EQ(greysOf(image), 0U);
}

TEST(PureColors, AreasWiderThanTwoPixelsStayThoughTheirColourLiesAlongEdges) {
    QImage image = withGreyBar();
    for (int y = 0; y < 60; ++y)
        image.setPixel(20, y, Grey);
    image.setPixel(40, 12, Grey);
    image.setPixel(41, 12, Grey);
    image.setPixel(42, 12, Grey);
    EXPECT_EQ(greysOf(image), 21U);
}

/// Black on the left of a white image, its edge mixed, and strokes of a thin grey letter.
QImage withGreyLettering() {
    QImage image = ground(60, 60, White);
    for (int y = 0; y < 60; ++y) {
        for (int x = 0; x < 20; ++x)
            image.setPixel(x, y, Black);
        image.setPixel(20, y, y % 4 == 0 ? Grey : Black);
    }
    for (int i = 0; i < 12; ++i) {
        image.setPixel(30, 20 + i, Grey);
        image.setPixel(31 + i, 20, Grey);
        image.setPixel(31 + i, 26, Grey);
    }
    image.setPixel(31, 27, Grey);
    return image;
}

TEST(PureColors, ThinLetteringHasItsOwnColour) {
    EXPECT_GT(greysOf(withGreyLettering()), 0U);
    // The same pixels beside black are its edge, which is mixed.
    QImage image = withGreyLettering();
    for (int y = 1; y < 60; ++y) {
        for (int x = 21; x < 59; ++x) {
            if (image.pixel(x, y) == Grey && image.pixel(x, y - 1) == White)
                image.setPixel(x, y - 1, Black);
        }
    }
    EXPECT_EQ(greysOf(image), 0U);
}

TEST(PureColors, LongLinesAlongThePixelsMayBeMixes) {
    QImage image = withGreyLettering();
    for (int y = 20; y < 32; ++y)
        for (int x = 30; x < 60; ++x)
            image.setPixel(x, y, y == 20 || y == 21 ? Grey : White);
    for (int y = 0; y < 60; ++y)
        image.setPixel(20, y, Grey);
    EXPECT_EQ(greysOf(image), 0U);
}

TEST(PureColors, ColoursThatAreNoMixesStay) {
    QImage image = ground(60, 60, White);
    for (int i = 0; i < 200; ++i)
        image.setPixel(i % 10 * 3 + 10, i / 10 * 3, Red);
    image.setPixel(11, 0, Red);
    image.setPixel(10, 1, Red);
    image.setPixel(11, 1, Red);
    const PureColors pure = findPureColors(viewOf(image));
    EXPECT_EQ(withoutMixes(viewOf(image), pure.blocks).countOf(Red), 1U);
}

} // namespace
