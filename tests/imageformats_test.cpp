#include "reference/compare.h"
#include "reference/tracetwin.h"
#include "support/conversions.h"
#include "support/messagelog.h"
#include "support/randominput.h"

#include <imageload.h>
#include <preprocess.h>
#include <tracebitmap.h>

#include <QByteArray>
#include <QColor>
#include <QImage>
#include <QStringList>

#include <gtest/gtest.h>

#include <random>
#include <vector>

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

/// Images of one format with any bytes in memory: bits that the format does not use, indices
/// without colours, numbers that are none, rows inside a larger buffer.
class RawImages {
public:
    RawImages(QImage::Format format, unsigned seed) : format(format), input(seed) {
    }

    /// The image looks at memory of this object and is good until the next call.
    QImage next() {
        const int width = input.number(1, 40);
        const int height = input.number(1, 24);
        const int bits = QImage(1, 1, format).depth();
        const qsizetype stride = (qsizetype(width) * bits + 31) / 32 * 4 + 4 * input.number(0, 3);
        constexpr qsizetype Margin = 16;
        buffer.resize(static_cast<std::size_t>(stride * height + 2 * Margin));
        // Mostly like the bytes of real images: opaque, grey, few colours.
        const int kind = input.number(0, 3);
        for (std::size_t i = 0; i < buffer.size(); ++i) {
            const int byte = input.number(0, 255);
            buffer[i] = static_cast<uchar>(kind == 0                      ? byte
                                           : kind == 1                    ? 255
                                           : kind == 2 && i % 4 != 3      ? byte
                                           : kind == 2 || input.oneIn(50) ? 255
                                                                          : byte & 3);
        }
        if (kind == 1 && input.oneIn(2))
            buffer[buffer.size() / 2] = 254;
        QImage image(buffer.data() + Margin, width, height, stride, format);
        EXPECT_FALSE(image.isNull());
        if (indexed())
            image.setColorTable(colors());
        return image;
    }

private:
    bool indexed() const {
        return format <= QImage::Format_Indexed8;
    }
    QList<QRgb> colors() {
        QList<QRgb> table;
        const int most = format == QImage::Format_Indexed8 ? 256 : 2;
        for (int i = input.oneIn(3) ? most : input.number(0, most); i > 0; --i) {
            const int grey = input.number(0, 255);
            table.append(input.oneIn(9) ? qRgba(grey, 3, 9, grey) : qRgb(grey, grey, grey));
        }
        return table;
    }

    QImage::Format format;
    RandomInput input;
    std::vector<uchar> buffer;
};

/// What an image stores. (QImage's own comparison looks up colours that a table may not have.)
QByteArray bytesOf(const QImage& image) {
    QByteArray bytes;
    const qsizetype used = (qsizetype(image.width()) * image.depth() + 7) / 8;
    for (int y = 0; y < image.height(); ++y)
        bytes.append(reinterpret_cast<const char*>(image.constScanLine(y)), used);
    return bytes;
}

} // namespace

TEST_P(EveryFormat, AnyBytesLoadAsPixelSaysWithoutAWord) {
    RawImages images(static_cast<QImage::Format>(GetParam()), 4000U + unsigned(GetParam()));
    for (int round = 0; round < 60; ++round) {
        const QImage image = images.next();
        MessageLog log;
        TraceTwin twin;
        twin.loadImageData(image);
        MessageLog::messages.clear();
        EXPECT_EQ(toBytes(loadPixels(image)), twin.imageData.data) << "round " << round;
        EXPECT_TRUE(MessageLog::messages.isEmpty()) << MessageLog::messages.first().toStdString();
    }
}

TEST_P(EveryFormat, AnyBytesTurnBlackAndWhiteAsPixelColorSaysWithoutAWord) {
    RawImages images(static_cast<QImage::Format>(GetParam()), 5000U + unsigned(GetParam()));
    RandomInput input(7);
    for (int round = 0; round < 60; ++round) {
        const QImage image = images.next();
        MessageLog log;
        TraceTwin twin;
        twin.setOption("usebrightness", 1.0);
        twin.setOption("brightnessthreshold", input.number(-1, 255));
        OptionMap options = twin.options;
        QImage expected = image.copy();
        twin.preprocess(expected);
        twin.loadImageData(expected);
        MessageLog::messages.clear();
        QImage prepared = image.copy();
        preprocess(prepared, options);
        EXPECT_EQ(bytesOf(prepared), bytesOf(expected)) << "round " << round;
        EXPECT_EQ(toBytes(loadPixels(image, thresholdFor(image, options))), twin.imageData.data);
        EXPECT_TRUE(MessageLog::messages.isEmpty()) << MessageLog::messages.first().toStdString();
    }
}

TEST(ImageLoad, IndicesBeyondTheColorTableAreTransparentZero) {
    QImage image(4, 1, QImage::Format_Indexed8);
    image.setColorTable({qRgb(9, 9, 9), qRgb(7, 7, 7)});
    image.fill(1);
    EXPECT_EQ(loadPixels(image).channels, Channels::Grey) << "no index is beyond it";
    image.scanLine(0)[2] = 2;
    const PixelImage loaded = loadPixels(image);
    EXPECT_EQ(toBytes(loaded).mid(8, 4), QList<char>(4, -128));
    EXPECT_EQ(toBytes(loaded).mid(12, 4), QList<char>({-121, -121, -121, 127}));
}

TEST(ImageLoad, XBytesBelow255AreAlpha) {
    QImage image(3, 2, QImage::Format_RGBX8888);
    image.fill(qRgb(1, 2, 3));
    EXPECT_EQ(loadPixels(image).channels, Channels::Opaque);
    image.scanLine(1)[11] = 0;
    EXPECT_EQ(loadPixels(image).channels, Channels::All);
    EXPECT_EQ(toBytes(loadPixels(image)).last(), -128);
}

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
