// The rims of areas of similar pixels.

#include "support/coverage.h"
#include "support/pixelview.h"

#include <labelsmoothing.h>

#include <gtest/gtest.h>

namespace {

using namespace ovtrace;
using coverage::ground;

constexpr QRgb Dark = 0xff404040U;
constexpr QRgb Light = 0xff505050U;

/// Dark on the left, light on the right.
LabelImage halves(int width, int height) {
    LabelImage labels;
    labels.width = width;
    labels.height = height;
    labels.palette = {Dark, Light};
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x)
            labels.labels.push_back(x < width / 2 ? 0 : 1);
    }
    return labels;
}

QImage imageOf(const LabelImage& labels) {
    QImage image = ground(labels.width, labels.height, Dark);
    for (int y = 0; y < labels.height; ++y) {
        for (int x = 0; x < labels.width; ++x)
            image.setPixel(x, y, labels.palette[labels.at(x, y)]);
    }
    return image;
}

TEST(LabelSmoothing, PlainHalvesStay) {
    LabelImage labels = halves(12, 10);
    const auto before = labels.labels;
    const QImage image = imageOf(labels);
    smoothLabels(viewOf(image), labels);
    EXPECT_EQ(labels.labels, before);
}

TEST(LabelSmoothing, SpikesThatTheColoursDoNotShowGo) {
    LabelImage labels = halves(12, 11);
    const auto even = labels.labels;
    QImage image = imageOf(labels);
    for (int x = 6; x < 9; ++x) {
        labels.row(5)[x] = 0;
        image.setPixel(x, 5, 0xff484848U); // in the middle of both
    }
    smoothLabels(viewOf(image), labels);
    EXPECT_EQ(labels.labels, even);
}

TEST(LabelSmoothing, ClearlyDifferentPixelsStay) {
    LabelImage labels = halves(12, 11);
    labels.palette = {0xff000000U, 0xffffffffU};
    labels.row(5)[9] = 0;
    const auto before = labels.labels;
    const QImage image = imageOf(labels);
    smoothLabels(viewOf(image), labels);
    EXPECT_EQ(labels.labels, before);
}

TEST(LabelSmoothing, TransparentPixelsNeitherComeNorGo) {
    LabelImage labels = halves(12, 11);
    labels.palette = {0U, 0xff020202U};
    labels.row(5)[6] = 0;
    const auto before = labels.labels;
    const QImage image = imageOf(labels);
    smoothLabels(viewOf(image), labels);
    EXPECT_EQ(labels.labels, before);
}

} // namespace
