// The paper made white.

#include "pace.h"
#include "whiten.h"

#include <QImage>

#include <gtest/gtest.h>

#include <random>

using namespace ovtrace;

namespace {

QImage whitened(const QImage& image) {
    Pace pace(nullptr);
    return ovtrace::whitened(image, pace);
}

TEST(Whiten, UnevenYellowPaperIsWhiteAndInkStaysDark) {
    QImage image(480, 320, QImage::Format_RGB32);
    std::mt19937 random(5);
    for (int y = 0; y < 320; ++y) {
        for (int x = 0; x < 480; ++x) {
            const double light = (1.0 - x / 960.0) * (x % 60 < 3 ? 0.2 : 1.0);
            const int noise = static_cast<int>(random() % 7) - 3;
            image.setPixel(x, y,
                           qRgb(static_cast<int>(240 * light) + noise,
                                static_cast<int>(225 * light) + noise,
                                static_cast<int>(190 * light) + noise));
        }
    }
    const QImage result = whitened(image);
    int notWhite = 0;
    int notDark = 0;
    for (int y = 0; y < 320; ++y) {
        for (int x = 0; x < 480; ++x) {
            const QRgb pixel = result.pixel(x, y);
            if (x % 60 < 3)
                notDark += qRed(pixel) > 80 || qBlue(pixel) > 80 ? 1 : 0;
            else
                notWhite += pixel != qRgb(255, 255, 255) ? 1 : 0;
        }
    }
    EXPECT_EQ(notDark, 0);
    EXPECT_LT(notWhite, 320 * 480 / 100);
}

TEST(Whiten, CleanWhitePaperChangesNothing) {
    QImage image(200, 150, QImage::Format_ARGB32);
    image.fill(Qt::white);
    for (int i = 0; i < 100; ++i)
        image.setPixel(50 + i, 30 + i, qRgba(10, 200, 30, 255));
    EXPECT_EQ(whitened(image), image);
}

TEST(Whiten, SolidAreasKeepTheirColour) {
    QImage image(600, 500, QImage::Format_RGB32);
    image.fill(qRgb(200, 200, 200));
    for (int y = 100; y < 400; ++y)
        for (int x = 100; x < 500; ++x)
            image.setPixel(x, y, qRgb(160, 20, 20));
    const QImage result = whitened(image);
    EXPECT_EQ(result.pixel(20, 20), qRgb(255, 255, 255));
    const QRgb middle = result.pixel(300, 250);
    EXPECT_LE(qGreen(middle), 45) << "a quarter of the paper's at most";
    EXPECT_LE(qBlue(middle), 45);
    EXPECT_GE(qRed(middle), 195);
}

TEST(Whiten, OpacityStays) {
    QImage image(40, 40, QImage::Format_ARGB32);
    image.fill(0);
    image.setPixel(20, 20, qRgba(9, 8, 7, 120));
    const QImage result = whitened(image);
    EXPECT_EQ(qAlpha(result.pixel(20, 20)), 120);
    EXPECT_EQ(qAlpha(result.pixel(3, 3)), 0);
}

TEST(Whiten, DarkImagesAndBitsComeBackAsTheyAre) {
    QImage dark(50, 50, QImage::Format_RGB32);
    dark.fill(qRgb(20, 30, 40));
    dark.setPixel(5, 5, qRgb(255, 255, 255));
    EXPECT_EQ(whitened(dark), dark);
    QImage bits(50, 50, QImage::Format_Mono);
    bits.fill(1);
    EXPECT_EQ(whitened(bits), bits);
}

TEST(Whiten, NothingGetsDarker) {
    std::mt19937 random(11);
    for (int round = 0; round < 30; ++round) {
        QImage image(static_cast<int>(1 + random() % 50), static_cast<int>(1 + random() % 50),
                     QImage::Format_RGB32);
        for (int y = 0; y < image.height(); ++y)
            for (int x = 0; x < image.width(); ++x)
                image.setPixel(x, y, static_cast<QRgb>(random()) | 0xff000000U);
        const QImage result = whitened(image);
        ASSERT_EQ(result.size(), image.size());
        for (int y = 0; y < image.height(); ++y)
            for (int x = 0; x < image.width(); ++x)
                ASSERT_GE(qGreen(result.pixel(x, y)), qGreen(image.pixel(x, y)));
    }
}

TEST(Whiten, OnePixelAndNone) {
    QImage image(1, 1, QImage::Format_RGB32);
    image.fill(qRgb(200, 190, 180));
    EXPECT_EQ(whitened(image).pixel(0, 0), qRgb(255, 255, 255));
    EXPECT_TRUE(whitened(QImage()).isNull());
}

} // namespace
