// Ink against the paper: uneven light, dark paper, colours.

#include "inklevels.h"
#include "pace.h"

#include <QImage>

#include <gtest/gtest.h>

using namespace ovtrace;

namespace {

InkLevels levelsOf(const QImage& image) {
    Pace pace(nullptr);
    return inkLevels(image, pace);
}

TEST(InkLevels, UnevenLightIsNoInk) {
    QImage image(320, 160, QImage::Format_Grayscale8);
    for (int y = 0; y < 160; ++y)
        for (int x = 0; x < 320; ++x)
            image.scanLine(y)[x] = static_cast<uchar>((250 - x / 3) * (x % 40 < 3 ? 0.1 : 1.0));
    const InkLevels ink = levelsOf(image);
    for (int x = 20; x < 300; ++x) {
        if (x % 40 < 3)
            EXPECT_GT(ink.at(x, 80), 240) << x;
        else
            EXPECT_LT(ink.at(x, 80), 25) << "less than a tenth at " << x;
    }
}

TEST(InkLevels, LightLinesOnDarkPaperAreInk) {
    QImage image(64, 64, QImage::Format_RGB32);
    image.fill(qRgb(0, 0, 90));
    for (int x = 0; x < 64; ++x)
        image.setPixel(x, 30, qRgb(255, 255, 255));
    const InkLevels ink = levelsOf(image);
    EXPECT_EQ(ink.at(20, 30), 255);
    EXPECT_EQ(ink.at(20, 10), 0);
}

TEST(InkLevels, YellowIsInkAsBlackIs) {
    QImage image(64, 64, QImage::Format_RGB32);
    image.fill(Qt::white);
    for (int x = 0; x < 64; ++x) {
        image.setPixel(x, 20, qRgb(255, 255, 0));
        image.setPixel(x, 40, qRgb(0, 0, 0));
    }
    const InkLevels ink = levelsOf(image);
    EXPECT_EQ(ink.at(30, 20), ink.at(30, 40));
}

TEST(InkLevels, TransparentIsPaper) {
    QImage image(32, 32, QImage::Format_ARGB32);
    image.fill(qRgba(0, 0, 0, 0));
    image.setPixel(5, 5, qRgba(0, 0, 0, 255));
    const InkLevels ink = levelsOf(image);
    EXPECT_EQ(ink.at(5, 5), 255);
    EXPECT_EQ(ink.at(9, 9), 0);
}

TEST(InkLevels, SamplesLieBetweenPixelMiddles) {
    const InkLevels ink{2, 1, {0, 255}};
    EXPECT_DOUBLE_EQ(ink.sample(0.5, 0.5), 0.0);
    EXPECT_DOUBLE_EQ(ink.sample(1.0, 0.5), 0.5);
    EXPECT_DOUBLE_EQ(ink.sample(1.5, 0.5), 1.0);
    EXPECT_DOUBLE_EQ(ink.sample(1.5, 0.0), 0.5) << "paper lies around the image";
    EXPECT_DOUBLE_EQ(ink.sample(50.0, -50.0), 0.0);
}

} // namespace
