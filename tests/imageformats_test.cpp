#include "reference/compare.h"
#include "reference/tracetwin.h"
#include "support/conversions.h"

#include <imageload.h>
#include <preprocess.h>
#include <tracebitmap.h>

#include <QColor>
#include <QImage>

#include <gtest/gtest.h>

#include <random>

// Every pixel format of QImage, against the definition by single pixels.

using namespace ovtrace;

namespace {

class EveryFormat : public testing::TestWithParam<int> {
protected:
    /// Pixels of all kinds, opaque and translucent, at an odd width.
    QImage makeImage(int width, int height) const {
        QImage source(width, height, QImage::Format_ARGB32);
        std::mt19937 generator(static_cast<unsigned>(width * 1000 + height));
        for (int y = 0; y < height; ++y) {
            for (int x = 0; x < width; ++x) {
                const QRgb random = static_cast<QRgb>(generator());
                source.setPixel(x, y, x % 3 == 0 ? random | 0xff000000U : random);
            }
        }
        return source.convertToFormat(static_cast<QImage::Format>(GetParam()));
    }
    static QList<QSize> sizes() {
        return {{1, 1}, {37, 11}, {1, 40}, {40, 1}, {8, 3}};
    }
};

} // namespace

TEST_P(EveryFormat, LoadsAsItsPixelsSay) {
    for (const QSize size : sizes()) {
        const QImage image = makeImage(size.width(), size.height());
        ASSERT_EQ(image.format(), GetParam());
        TraceTwin twin;
        twin.loadImageData(image);
        const PixelImage loaded = loadPixels(image);
        EXPECT_EQ(loaded.width, twin.imageData.width);
        EXPECT_EQ(loaded.height, twin.imageData.height);
        EXPECT_EQ(toBytes(loaded), twin.imageData.data);
    }
}

TEST_P(EveryFormat, TurnsBlackAndWhiteAsItsPixelsSay) {
    for (const QSize size : sizes()) {
        for (const double threshold : {-1.0, 90.0, 127.0, 128.0, 200.0, 255.0}) {
            TraceTwin twin;
            twin.setOption("usebrightness", 1.0);
            twin.setOption("brightnessthreshold", threshold);
            OptionMap options = twin.options;
            QImage image = makeImage(size.width(), size.height());
            QImage expected = image.copy();
            preprocess(image, options);
            twin.preprocess(expected);
            EXPECT_EQ(image.format(), GetParam());
            EXPECT_EQ(image, expected) << "threshold " << threshold;
            EXPECT_EQ(options, twin.options);
        }
    }
}

TEST_P(EveryFormat, LoadsBlackAndWhiteAsItsPixelsSay) {
    // Heights around the number of rows that are prepared at a time.
    for (const int height : {1, 15, 16, 17, 33}) {
        TraceTwin twin;
        twin.setOption("usebrightness", 1.0);
        OptionMap options = twin.options;
        const QImage image = makeImage(23, height);
        QImage prepared = image.copy();
        twin.preprocess(prepared);
        twin.loadImageData(prepared);
        EXPECT_EQ(toBytes(loadPixels(image, thresholdFor(image, options))), twin.imageData.data);
    }
}

TEST_P(EveryFormat, TracesLikeTheReference) {
    // Heights around the number of rows that are prepared at a time.
    for (const int height : {15, 16, 17, 33}) {
        const QImage image = makeImage(23, height);
        for (const double monochrome : {0.0, 1.0}) {
            OvTraceBitmap tracer;
            TraceTwin twin;
            for (const char* key : {"monochrome", "usebrightness"}) {
                tracer.setOption(key, monochrome);
                twin.setOption(key, monochrome);
            }
            OvTraceBitmap::seedRandom(1);
            const auto traced = tracer.trace(image);
            TraceTwin::seedRandom(1);
            EXPECT_EQ(difference(traced, twin.trace(image)), QString());
            EXPECT_FALSE(traced.isEmpty());
        }
    }
}

INSTANTIATE_TEST_SUITE_P(ImageFormats, EveryFormat,
                         testing::Range(int(QImage::Format_Invalid) + 1,
                                        int(QImage::NImageFormats)),
                         [](const auto& test) { return "Format" + std::to_string(test.param); });

TEST(ImageLoad, StoresChannelValuesMinus128) {
    QImage image(2, 1, QImage::Format_RGB32);
    image.setPixel(0, 0, qRgb(255, 255, 255));
    image.setPixel(1, 0, qRgb(0, 0, 0));
    EXPECT_EQ(toBytes(loadPixels(image)), QList<char>({127, 127, 127, 127, -128, -128, -128, 127}));
}

TEST(ImageLoad, StoresNoMoreChannelsThanThePixelsNeed) {
    QImage image(5, 3, QImage::Format_ARGB32);
    image.fill(qRgb(7, 7, 7));
    EXPECT_EQ(loadPixels(image).channels, Channels::Grey);
    image.setPixel(4, 2, qRgb(7, 8, 7));
    EXPECT_EQ(loadPixels(image).channels, Channels::Opaque);
    image.setPixel(4, 2, qRgb(7, 7, 8));
    EXPECT_EQ(loadPixels(image).channels, Channels::Opaque);
    image.setPixel(4, 1, qRgba(7, 7, 7, 254));
    EXPECT_EQ(loadPixels(image).channels, Channels::All);
    EXPECT_EQ(loadPixels(image.convertToFormat(QImage::Format_RGB32)).channels, Channels::Opaque);
    OptionMap monochrome{{"monochrome", 1.0}};
    EXPECT_EQ(loadPixels(image, thresholdFor(image, monochrome)).channels, Channels::Grey);
}

TEST(ImageLoad, OpaqueRedPixel) {
    QImage image(1, 1, QImage::Format_ARGB32);
    image.setPixel(0, 0, qRgb(255, 0, 0));
    EXPECT_EQ(toBytes(loadPixels(image)), QList<char>({127, -128, -128, 127}));
}

TEST(ImageLoad, ReadsRowsThatAreNotContiguous) {
    // Rows of a foreign buffer with bytes between them, as a host may hand in.
    std::vector<QRgb> buffer(28, 0x01020304U);
    for (std::size_t i = 0; i < buffer.size(); ++i)
        buffer[i] = static_cast<QRgb>(i * 0x01030507U);
    const QImage image(reinterpret_cast<const uchar*>(buffer.data()), 5, 4, 28,
                       QImage::Format_ARGB32);
    TraceTwin twin;
    twin.loadImageData(image);
    EXPECT_EQ(toBytes(loadPixels(image)), twin.imageData.data);
}
