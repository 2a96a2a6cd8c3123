// The colours of lines along rows and columns.

#include "support/colors.h"
#include "support/coverage.h"
#include "support/pixelview.h"

#include <gridlines.h>

#include <gtest/gtest.h>

#include <QTransform>

namespace {

using namespace ovtrace;
using coverage::ground;

TEST(GridLines, AreThoseOfSeveralLinesOnTheGrid) {
    constexpr QRgb LightGrey = 0xffc8c8c8U;
    QImage image = ground(60, 50, White);
    const auto paintRow = [&](int y) {
        for (int x = 5; x < 45; ++x)
            image.setPixel(x, y, LightGrey);
    };
    paintRow(10);
    paintRow(20);
    EXPECT_EQ(findLineColors(viewOf(image)).countOf(LightGrey), 0U) << "this may be chance";
    for (int y = 4; y < 40; ++y)
        image.setPixel(50, y, LightGrey);
    EXPECT_EQ(findLineColors(viewOf(image)).countOf(LightGrey), 40U + 40U + 36U);
    EXPECT_EQ(findLineColors(viewOf(image)).countOf(White), 0U);
}

TEST(GridLines, ThinLinesInAnyPlaceAreOfAnotherColour) {
    // Black lines of .7 pixels: each in one row, or a part of it in the next.
    QImage image = ground(60, 60, White);
    const auto paintRow = [&](int y, int grey) {
        for (int x = 5; x < 45; ++x)
            image.setPixel(x, y, qRgb(grey, grey, grey));
    };
    for (const int y : {5, 10, 15, 20})
        paintRow(y, 76);
    EXPECT_EQ(findLineColors(viewOf(image)).countOf(qRgb(76, 76, 76)), 160U);
    paintRow(30, 204);
    paintRow(31, 127);
    EXPECT_EQ(findLineColors(viewOf(image)).countOf(qRgb(76, 76, 76)), 160U);
    paintRow(40, 102);
    paintRow(41, 229);
    EXPECT_TRUE(findLineColors(viewOf(image)).entries().empty());
    // The same along columns.
    image = image.transformed(QTransform().rotate(90));
    EXPECT_TRUE(findLineColors(viewOf(image)).entries().empty());
}

TEST(GridLines, EdgesThatLieInOneRowAreNoLines) {
    // Red rectangles whose upper edges lie in the middle of a row.
    QImage image = ground(60, 50, White);
    for (int top = 5; top < 40; top += 15) {
        for (int x = 5; x < 45; ++x) {
            image.setPixel(x, top, qRgb(241, 140, 141));
            for (int y = top + 1; y < top + 6; ++y)
                image.setPixel(x, y, Red);
        }
    }
    EXPECT_TRUE(findLineColors(viewOf(image)).entries().empty());
}

} // namespace
