// The colours of lines along rows and columns.

#include "support/coverage.h"
#include "support/pixelview.h"

#include <gridlines.h>

#include <gtest/gtest.h>

namespace {

using namespace ovtrace;
using coverage::ground;

constexpr QRgb White = 0xffffffffU;
constexpr QRgb Red = 0xffe31a1cU;

std::uint32_t countOf(const ColorCounts& counts, QRgb color) {
    const std::size_t found = counts.find(color);
    return found < counts.entries().size() ? counts.entries()[found].count : 0;
}

TEST(GridLines, AreThoseOfSeveralLinesOnTheGrid) {
    constexpr QRgb Grey = 0xffc8c8c8U;
    QImage image = ground(60, 50, White);
    const auto paintRow = [&](int y) {
        for (int x = 5; x < 45; ++x)
            image.setPixel(x, y, Grey);
    };
    paintRow(10);
    paintRow(20);
    EXPECT_EQ(countOf(findLineColors(viewOf(image)), Grey), 0U) << "this may be chance";
    for (int y = 4; y < 40; ++y)
        image.setPixel(50, y, Grey);
    EXPECT_EQ(countOf(findLineColors(viewOf(image)), Grey), 40U + 40U + 36U);
    EXPECT_EQ(countOf(findLineColors(viewOf(image)), White), 0U);
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
