// Black and white: by a number, by the image's own, and by the neighbourhood.

#include "binarize.h"
#include "inklevels.h"
#include "pace.h"

#include <QImage>

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <random>

using namespace ovtrace;

namespace {

QImage binary(const QImage& image, ThresholdKind kind, int level = 128) {
    Pace pace(nullptr);
    return binarized(image, kind, level, pace);
}

bool isBlack(const QImage& page, int x, int y) {
    return page.pixel(x, y) == qRgb(0, 0, 0);
}

/// The rule from its definition, with the whole window summed for each pixel.
bool isLocalInk(const InkLevels& image, int x, int y, int radius) {
    double count = 0.0;
    double sum = 0.0;
    double squares = 0.0;
    for (int v = std::max(0, y - radius); v <= std::min(image.height - 1, y + radius); ++v) {
        for (int u = std::max(0, x - radius); u <= std::min(image.width - 1, x + radius); ++u) {
            const double level = image.at(u, v);
            count += 1.0;
            sum += level;
            squares += level * level;
        }
    }
    const double mean = sum / count;
    const double deviation = std::sqrt(std::max(0.0, squares / count - mean * mean));
    return image.at(x, y) <= std::max(102.0, mean * (1.0 + 0.2 * (deviation / 128.0 - 1.0)));
}

TEST(Binarize, ANumberIsTheBrightnessOfTheDarkestChannel) {
    QImage image(6, 1, QImage::Format_RGB32);
    image.fill(Qt::white);
    image.setPixel(0, 0, qRgb(255, 100, 255));
    image.setPixel(1, 0, qRgb(255, 101, 255));
    image.setPixel(2, 0, qRgb(100, 100, 100));
    const QImage page = binary(image, ThresholdKind::Fixed, 100);
    EXPECT_EQ(page.format(), QImage::Format_Mono);
    EXPECT_TRUE(isBlack(page, 0, 0));
    EXPECT_FALSE(isBlack(page, 1, 0));
    EXPECT_TRUE(isBlack(page, 2, 0));
}

TEST(Binarize, RedLinesAreInk) {
    for (const ThresholdKind kind :
         {ThresholdKind::Fixed, ThresholdKind::Auto, ThresholdKind::Local}) {
        QImage image(64, 64, QImage::Format_RGB32);
        image.fill(qRgb(250, 248, 240));
        for (int x = 0; x < 64; ++x) {
            image.setPixel(x, 20, qRgb(230, 30, 40));
            image.setPixel(x, 40, qRgb(20, 20, 20));
        }
        const QImage page = binary(image, kind);
        for (int y = 0; y < 64; ++y)
            EXPECT_EQ(isBlack(page, 30, y), y == 20 || y == 40) << y;
    }
}

TEST(Binarize, LightLinesOnADarkGroundStayLight) {
    for (const ThresholdKind kind :
         {ThresholdKind::Fixed, ThresholdKind::Auto, ThresholdKind::Local}) {
        QImage image(64, 64, QImage::Format_RGB32);
        image.fill(qRgb(0, 0, 60));
        for (int x = 0; x < 64; ++x)
            image.setPixel(x, 30, qRgb(250, 250, 0));
        const QImage page = binary(image, kind);
        for (int y = 0; y < 64; ++y)
            EXPECT_EQ(isBlack(page, 30, y), y != 30) << y;
    }
}

TEST(Binarize, ANumberPartsGreysAlikeOnEitherGround) {
    for (const uint ground : {0U, 255U}) {
        QImage image(300, 3, QImage::Format_Grayscale8);
        image.fill(ground);
        for (int x = 0; x < 256; ++x)
            image.scanLine(1)[x] = static_cast<uchar>(x);
        const QImage page = binary(image, ThresholdKind::Fixed, 90);
        for (int x = 0; x < 256; ++x)
            EXPECT_EQ(isBlack(page, x, 1), x <= 90) << x << " on " << ground;
    }
}

TEST(Binarize, TransparentIsWhite) {
    QImage image(20, 20, QImage::Format_ARGB32);
    image.fill(0);
    image.setPixel(5, 5, qRgba(0, 0, 0, 255));
    const QImage page = binary(image, ThresholdKind::Auto);
    EXPECT_TRUE(isBlack(page, 5, 5));
    EXPECT_FALSE(isBlack(page, 6, 5));
}

TEST(Binarize, UnevenLightTakesALocalThreshold) {
    QImage image(640, 400, QImage::Format_Grayscale8);
    for (int y = 0; y < 400; ++y)
        for (int x = 0; x < 640; ++x)
            image.scanLine(y)[x] =
                static_cast<uchar>((240.0 - 0.3 * x) * (x % 40 < 4 ? 0.55 : 1.0));
    const QImage local = binary(image, ThresholdKind::Local);
    const QImage all = binary(image, ThresholdKind::Auto);
    int wrong = 0;
    int wrongOfAll = 0;
    for (int x = 0; x < 640; ++x) {
        wrong += isBlack(local, x, 200) != (x % 40 < 4) ? 1 : 0;
        wrongOfAll += isBlack(all, x, 200) != (x % 40 < 4) ? 1 : 0;
    }
    EXPECT_EQ(wrong, 0);
    EXPECT_GT(wrongOfAll, 50) << "one threshold for all would do";
}

TEST(Binarize, LargeSolidAreasStayFilled) {
    QImage image(800, 600, QImage::Format_Grayscale8);
    image.fill(235);
    for (int y = 100; y < 500; ++y)
        for (int x = 150; x < 650; ++x)
            image.scanLine(y)[x] = 30;
    const QImage page = binary(image, ThresholdKind::Local);
    for (int y = 0; y < 600; y += 7)
        for (int x = 0; x < 800; x += 7)
            ASSERT_EQ(isBlack(page, x, y), y >= 100 && y < 500 && x >= 150 && x < 650)
                << x << ", " << y;
}

TEST(Binarize, LocalThresholdIsThatOfTheDefinition) {
    std::mt19937 random(3);
    for (int round = 0; round < 40; ++round) {
        InkLevels image{
            static_cast<int>(1 + random() % 40), static_cast<int>(1 + random() % 40), {}};
        image.levels.resize(static_cast<std::size_t>(image.width * image.height));
        for (std::uint8_t& level : image.levels)
            level =
                static_cast<std::uint8_t>(random() % 4 == 0 ? random() % 256 : 180 + random() % 60);
        const int radius = static_cast<int>(1 + random() % 12);
        Pace pace(nullptr);
        const QImage page = locallyBinarized(image, radius, pace);
        for (int y = 0; y < image.height; ++y)
            for (int x = 0; x < image.width; ++x)
                ASSERT_EQ(isBlack(page, x, y), isLocalInk(image, x, y, radius))
                    << round << ": " << x << ", " << y;
    }
}

TEST(Binarize, OnePixelAndNone) {
    for (const ThresholdKind kind :
         {ThresholdKind::Fixed, ThresholdKind::Auto, ThresholdKind::Local}) {
        QImage image(1, 1, QImage::Format_RGB32);
        image.fill(Qt::white);
        EXPECT_EQ(binary(image, kind).size(), QSize(1, 1));
        EXPECT_FALSE(isBlack(binary(image, kind), 0, 0));
        EXPECT_TRUE(binary(QImage(), kind).isNull());
    }
}

} // namespace
