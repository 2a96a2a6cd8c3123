// Noise and the colours of plain areas.

#include "support/colors.h"
#include "support/coverage.h"
#include "support/pixelview.h"

#include <mixing.h>
#include <plateaus.h>

#include <gtest/gtest.h>

#include <algorithm>

namespace {

using namespace ovtrace;
using coverage::ground;
using coverage::paint;

QImage drawing() {
    QImage image = ground(80, 80, White);
    paint(image, Red, [](double x, double y) { return std::hypot(x - 30, y - 30) < 19.3; });
    paint(image, Blue, [](double x, double y) { return x + 0.3 * y > 78.2; });
    return image;
}

bool hasNear(const std::vector<QRgb>& colors, QRgb color, int noise) {
    return std::any_of(colors.begin(), colors.end(),
                       [&](QRgb found) { return farthestChannel(found, color) <= noise; });
}

TEST(Plateaus, RenderedDrawingHasNoNoise) {
    const QImage image = drawing();
    const Plateaus found = findPlateaus(viewOf(image), 128);
    EXPECT_EQ(found.noise, 0);
    EXPECT_FALSE(found.isSmooth);
    EXPECT_TRUE(found.colors.empty());
}

TEST(Plateaus, NoiseIsMeasuredAndTheColoursAreFoundWithinIt) {
    for (const int noise : {2, 4, 6}) {
        QImage image = drawing();
        addNoise(image, noise, 5);
        const Plateaus found = findPlateaus(viewOf(image), 128);
        EXPECT_FALSE(found.isSmooth);
        EXPECT_GE(found.noise, noise);
        EXPECT_LE(found.noise, 4 * noise);
        EXPECT_EQ(found.colors.size(), 3U);
        for (const QRgb color : {White, Red, Blue})
            EXPECT_TRUE(hasNear(found.colors, color, found.noise));
    }
}

TEST(Plateaus, EdgesOfPaleAreasAreNoNoise) {
    const QRgb pale = qRgb(244, 233, 216);
    QImage image = ground(80, 80, White);
    paint(image, pale, [](double x, double y) { return std::hypot(x - 40, y - 40) < 29.3; });
    paint(image, Red, [](double x, double y) { return std::hypot(x - 8, y - 8) < 4.6; });
    EXPECT_EQ(findPlateaus(viewOf(image), 128).noise, 0);
    addNoise(image, 4, 5);
    const Plateaus found = findPlateaus(viewOf(image), 128);
    EXPECT_GE(found.noise, 4);
    for (const QRgb color : {White, pale})
        EXPECT_TRUE(hasNear(found.colors, color, found.noise));
}

TEST(Plateaus, GradientIsSmooth) {
    QImage image = ground(200, 60, White);
    for (int y = 0; y < 60; ++y) {
        for (int x = 0; x < 200; ++x)
            image.setPixel(x, y, qRgb(x, 255 - x, 3 * y));
    }
    EXPECT_TRUE(findPlateaus(viewOf(image), 128).isSmooth);
}

TEST(Plateaus, SmallestImagesHaveNoNeighbourhoods) {
    for (const auto& [width, height] : {std::pair(1, 1), {2, 2}, {1, 9}, {9, 1}, {2, 9}}) {
        const QImage image = ground(width, height, Red);
        EXPECT_EQ(findPlateaus(viewOf(image), 128).noise, 0);
    }
}

} // namespace
