// Images prepared by options, as hosts do.

#include "prepareimage.h"
#include "traceprogress.h"

#include <QImage>

#include <gtest/gtest.h>

#include <random>

namespace {

QImage randomImage(std::mt19937& random) {
    static const QImage::Format formats[] = {QImage::Format_RGB32, QImage::Format_ARGB32,
                                             QImage::Format_Grayscale8, QImage::Format_RGB888,
                                             QImage::Format_RGBA64};
    QImage image(static_cast<int>(1 + random() % 90), static_cast<int>(1 + random() % 90),
                 QImage::Format_ARGB32);
    const bool isNoise = random() % 2 == 0;
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x)
            image.setPixel(
                x, y, isNoise || (x + y / 7) % 11 == 0 ? static_cast<QRgb>(random()) : 0xfff0f0e0U);
    QImage result = image.convertToFormat(formats[random() % std::size(formats)]);
    return random() % 4 == 0 ? result.convertToFormat(QImage::Format_Mono) : result;
}

} // namespace

TEST(PrepareImage, WithoutOptionsTheImageStaysAsItIs) {
    QImage image(30, 20, QImage::Format_RGB888);
    image.fill(qRgb(10, 100, 200));
    const OvPreparedImage prepared = OvPrepareImage().prepare(image);
    EXPECT_EQ(prepared.image, image);
    EXPECT_EQ(prepared.slope, 0.0);
    EXPECT_TRUE(OvPrepareImage().prepare(QImage()).image.isNull());
}

TEST(PrepareImage, ThresholdsByNumbersAndWords) {
    QImage image(64, 64, QImage::Format_Grayscale8);
    image.fill(200);
    image.setPixel(10, 10, qRgb(90, 90, 90));
    for (const double threshold : {-2.0, -3.0, 100.0, 100.9}) {
        OvPrepareImage preparer;
        preparer.setOption("threshold", threshold);
        const QImage page = preparer.prepare(image).image;
        EXPECT_EQ(page.format(), QImage::Format_Mono);
        EXPECT_EQ(page.pixel(10, 10), qRgb(0, 0, 0)) << threshold;
        EXPECT_EQ(page.pixel(11, 10), qRgb(255, 255, 255)) << threshold;
    }
}

TEST(PrepareImage, AnyImageWithAnyOptionsAndTheSameBytesAgain) {
    std::mt19937 random(17);
    for (int round = 0; round < 150; ++round) {
        const QImage image = randomImage(random);
        OvPrepareImage preparer;
        preparer.setOption("whiten", static_cast<int>(random() % 2));
        preparer.setOption("deskew", static_cast<int>(random() % 2));
        preparer.setOption("threshold", static_cast<int>(random() % 300) - 5);
        const OvPreparedImage first = preparer.prepare(image);
        const OvPreparedImage second = OvPrepareImage(preparer).prepare(image);
        ASSERT_FALSE(first.image.isNull());
        ASSERT_EQ(first.image, second.image);
        ASSERT_EQ(first.slope, second.slope);
        ASSERT_GE(first.image.width(), image.width());
        ASSERT_GE(first.image.height(), image.height());
        ASSERT_TRUE(first.slope != 0.0 || first.image.size() == image.size());
    }
}

TEST(PrepareImage, IsStoppedByItsHost) {
    class Stop : public OvTraceProgress {
        bool report(double) override {
            return false;
        }
    } stop;
    QImage image(64, 64, QImage::Format_RGB32);
    image.fill(Qt::white);
    OvPrepareImage preparer;
    preparer.setOption("threshold", -3);
    preparer.setProgress(&stop);
    EXPECT_TRUE(preparer.prepare(image).image.isNull());
}
