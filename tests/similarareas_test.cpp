// Photographs and gradients as areas of similar pixels.

#include "support/colors.h"
#include "support/coverage.h"
#include "support/pixelview.h"

#include <similarareas.h>

#include <gtest/gtest.h>

#include <cstdlib>
#include <set>

namespace {

using namespace ovtrace;
using coverage::ground;

QImage gradient(int width, int height) {
    QImage image = ground(width, height, White);
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x)
            image.setPixel(x, y, qRgb(x * 255 / width, 128, 255 - x * 255 / width));
    }
    return image;
}

std::size_t labelsUsed(const LabelImage& labels) {
    return std::set<std::uint16_t>(labels.labels.begin(), labels.labels.end()).size();
}

TEST(SimilarAreas, NoiseIsOneArea) {
    QImage image = ground(60, 40, Grey);
    addNoise(image, 4, 3);
    const LabelImage labels = labelSimilarAreas(viewOf(image), {});
    EXPECT_EQ(labels.plainColors, 0U);
    EXPECT_EQ(labelsUsed(labels), 1U);
    ASSERT_EQ(labels.palette.size(), 1U);
    EXPECT_NEAR(qRed(labels.palette[0]), 128, 1);
}

TEST(SimilarAreas, GradientBecomesBandsOfEvenWidth) {
    const QImage image = gradient(256, 30);
    const LabelImage labels = labelSimilarAreas(viewOf(image), {});
    EXPECT_GE(labelsUsed(labels), 16U);
    EXPECT_LE(labelsUsed(labels), 64U);
    for (int x = 0; x < 256; ++x) {
        const QRgb color = labels.palette[labels.at(x, 11)];
        EXPECT_LE(std::abs(qRed(color) - qRed(image.pixel(x, 11))), 16) << x;
        EXPECT_EQ(labels.at(x, 3), labels.at(x, 29)) << x;
    }
}

TEST(SimilarAreas, LimitsOfAreasAndColoursHold) {
    QImage image = ground(50, 50, White);
    addNoise(image, 127, 9);
    AreaOptions options;
    options.mostAreas = 40;
    options.mostColors = 5;
    const LabelImage labels = labelSimilarAreas(viewOf(image), options);
    EXPECT_LE(labels.palette.size(), 5U);
    EXPECT_LE(labelsUsed(labels), 5U);
}

TEST(SimilarAreas, MoreDetailGivesMoreAreas) {
    QImage image = gradient(120, 60);
    addNoise(image, 20, 4);
    AreaOptions fine;
    fine.detail = 30.0;
    AreaOptions coarse;
    coarse.detail = 3000.0;
    EXPECT_GT(labelsUsed(labelSimilarAreas(viewOf(image), fine)),
              labelsUsed(labelSimilarAreas(viewOf(image), coarse)));
}

TEST(SimilarAreas, TransparentPixelsStayApart) {
    QImage image(20, 20, QImage::Format_ARGB32);
    image.fill(0xff010101U);
    for (int y = 5; y < 15; ++y) {
        for (int x = 5; x < 15; ++x)
            image.setPixel(x, y, 0U);
    }
    const LabelImage labels = labelSimilarAreas(viewOf(image), {});
    EXPECT_EQ(qAlpha(labels.palette[labels.at(10, 10)]), 0);
    EXPECT_EQ(qAlpha(labels.palette[labels.at(1, 1)]), 255);
}

} // namespace
