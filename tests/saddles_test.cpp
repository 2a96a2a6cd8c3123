// Corners at which two colours meet crosswise.

#include "support/colors.h"
#include "support/coverage.h"
#include "support/pixelview.h"

#include <saddles.h>

#include <gtest/gtest.h>

namespace {

using namespace ovtrace;
using coverage::ground;

LabelImage labelled(const QImage& image) {
    LabelImage labels;
    labels.width = image.width();
    labels.height = image.height();
    labels.palette = {White, Black};
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x)
            labels.labels.push_back(qGray(image.pixel(x, y)) < 128 ? 1 : 0);
    }
    return labels;
}

TEST(Saddles, DiagonalLineIsJoinedWhicheverColourItHas) {
    for (const auto& [line, paper] : {std::pair(Black, White), std::pair(White, Black)}) {
        QImage image = ground(12, 12, paper);
        for (int i = 0; i < 12; ++i)
            image.setPixel(i, i, line);
        EXPECT_TRUE(joinsFalling(viewOf(image), labelled(image), 6, 6));
        const QImage mirrored = image.mirrored(true, false);
        EXPECT_FALSE(joinsFalling(viewOf(mirrored), labelled(mirrored), 6, 6));
    }
}

TEST(Saddles, AmongEqualsTheDarkerColourIsJoined) {
    QImage image = ground(2, 2, White);
    image.setPixel(0, 0, Black);
    image.setPixel(1, 1, Black);
    EXPECT_TRUE(joinsFalling(viewOf(image), labelled(image), 1, 1));
    const QImage mirrored = image.mirrored(true, false);
    EXPECT_FALSE(joinsFalling(viewOf(mirrored), labelled(mirrored), 1, 1));
}

TEST(Saddles, CoverageDecidesInSmoothImages) {
    // Both colours are whole around the corner; the four pixels are mostly of one.
    for (const int grey : {20, 235}) {
        QImage image = ground(6, 6, White);
        for (int y = 0; y < 6; ++y) {
            for (int x = 0; x < 6; ++x) {
                if ((x < 3) == (y < 3))
                    image.setPixel(x, y, Black);
            }
        }
        // Of the white pixels at the corner, how much is black.
        const int white = grey < 128 ? 130 : 255;
        const int black = grey < 128 ? 0 : 120;
        image.setPixel(3, 2, qRgb(white, white, white));
        image.setPixel(2, 3, qRgb(white, white, white));
        image.setPixel(2, 2, qRgb(black, black, black));
        image.setPixel(3, 3, qRgb(black, black, black));
        EXPECT_EQ(joinsFalling(viewOf(image), labelled(image), 3, 3), grey < 128);
    }
}

/// Two black pixels that meet at (4, 4), of which the lower right one has no others around it
/// and is `tip`, while the two beside both are `beside`; black goes on from the other one.
QImage wedge(int tip, int beside) {
    QImage image = ground(8, 8, White);
    for (int y = 0; y < 4; ++y) {
        for (int x = 0; x <= y; ++x)
            image.setPixel(x, y, Black);
    }
    image.setPixel(4, 4, qRgb(tip, tip, tip));
    image.setPixel(4, 3, qRgb(beside, beside, beside));
    image.setPixel(3, 4, qRgb(beside, beside, beside));
    return image;
}

TEST(Saddles, TipOfAWedgeStaysWithItThoughItCoversLess) {
    const QImage tip = wedge(120, 205);
    EXPECT_TRUE(joinsFalling(viewOf(tip), labelled(tip), 4, 4));
    const QImage speck = wedge(120, 255);
    EXPECT_FALSE(joinsFalling(viewOf(speck), labelled(speck), 4, 4));
}

} // namespace
