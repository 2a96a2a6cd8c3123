// Images turned by a slope.

#include "pace.h"
#include "straighten.h"

#include <QImage>

#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>

using namespace ovtrace;

namespace {

QImage turned(const QImage& image, double slope) {
    Pace pace(nullptr);
    return straightened(image, slope, pace);
}

TEST(Straighten, TheMiddleStaysAndTheRestGoesRoundIt) {
    // Brightness rises by one a pixel along y, which a cubic convolution reproduces.
    QImage image(200, 200, QImage::Format_RGB32);
    for (int y = 0; y < 200; ++y)
        for (int x = 0; x < 200; ++x)
            image.setPixel(x, y, qRgb(y, 255 - y, 20));
    const double slope = 0.1;
    const QImage result = turned(image, slope);
    const double cosine = 1.0 / std::sqrt(1.0 + slope * slope);
    const int dx = (result.width() - image.width()) / 2;
    for (int y = 60; y < 140; y += 9) {
        for (int x = 60; x < 140; x += 9) {
            const double expected = 99.5 + cosine * (y - 99.5) + slope * cosine * (x - 99.5);
            const QRgb pixel = result.pixel(x + dx, y + dx);
            EXPECT_NEAR(qRed(pixel), expected, 1.01) << x << ", " << y;
            EXPECT_NEAR(qGreen(pixel), 255 - expected, 1.01) << x << ", " << y;
            EXPECT_EQ(qBlue(pixel), 20);
        }
    }
}

TEST(Straighten, NothingIsCutOffAndCornersAreTheRims) {
    QImage image(120, 60, QImage::Format_RGB32);
    image.fill(qRgb(200, 210, 220));
    for (const QPoint corner : {QPoint(3, 3), QPoint(116, 3), QPoint(3, 56), QPoint(116, 56)})
        for (int i = 0; i < 9; ++i)
            image.setPixel(corner + QPoint(i / 3 - 1, i % 3 - 1), qRgb(80, 80, 80));
    for (const double slope : {-0.2, 0.2}) {
        const QImage result = turned(image, slope);
        EXPECT_GE(result.width(), 120);
        EXPECT_GE(result.height(), 60);
        EXPECT_EQ(result.pixel(0, 0), qRgb(200, 210, 220));
        EXPECT_EQ(result.pixel(result.width() - 1, result.height() - 1), qRgb(200, 210, 220));
        double ink = 0.0;
        for (int y = 0; y < result.height(); ++y)
            for (int x = 0; x < result.width(); ++x)
                ink += 1.0 - qRed(result.pixel(x, y)) / 200.0;
        EXPECT_NEAR(ink, 36.0 * 0.6, 0.4) << "four dots of nine pixels";
    }
}

TEST(Straighten, OpacityIsTurnedToo) {
    QImage image(40, 40, QImage::Format_ARGB32);
    image.fill(0);
    for (int i = 0; i < 100; ++i)
        image.setPixel(15 + i % 10, 15 + i / 10, qRgba(255, 0, 0, 255));
    const QImage result = turned(image, 0.05);
    EXPECT_EQ(qAlpha(result.pixel(0, 0)), 0);
    EXPECT_EQ(result.pixel(result.width() / 2, result.height() / 2), qRgba(255, 0, 0, 255));
    for (int y = 0; y < result.height(); ++y)
        for (int x = 0; x < result.width(); ++x)
            EXPECT_TRUE(qAlpha(result.pixel(x, y)) <= 8 || qGreen(result.pixel(x, y)) < 40);
}

TEST(Straighten, OnePixel) {
    QImage image(1, 1, QImage::Format_RGB32);
    image.fill(qRgb(9, 99, 199));
    EXPECT_EQ(turned(image, 0.2).pixel(0, 0), qRgb(9, 99, 199));
}

} // namespace
