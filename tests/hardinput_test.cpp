#include <tracebitmap.h>

#include <QElapsedTimer>
#include <QImage>

#include <gtest/gtest.h>

// Images that are unkind: very long, very busy, or with one very long outline.

namespace {

OvTraceBitmap colorTracer() {
    OvTraceBitmap tracer;
    tracer.setOption("monochrome", 0.0);
    tracer.setOption("blurradius", 0.0);
    tracer.setPalette({{-128, -128, -128, 127}, {127, 127, 127, 127}});
    return tracer;
}

template <typename IsWhite> QImage blackAndWhite(int width, int height, const IsWhite& isWhite) {
    QImage image(width, height, QImage::Format_RGB32);
    for (int y = 0; y < height; ++y) {
        QRgb* row = reinterpret_cast<QRgb*>(image.scanLine(y));
        for (int x = 0; x < width; ++x)
            row[x] = isWhite(x, y) ? 0xffffffffU : 0xff000000U;
    }
    return image;
}

} // namespace

TEST(HardInput, VeryLongRowsAndColumns) {
    for (const QSize size : {QSize(30000, 1), QSize(1, 30000)}) {
        OvTraceBitmap tracer = colorTracer();
        // Runs of 100 pixels: each is an outline of 202 corners.
        const QImage image = blackAndWhite(size.width(), size.height(),
                                           [](int x, int y) { return (x + y) / 100 % 2 == 0; });
        const auto outlines = tracer.trace(image);
        EXPECT_EQ(outlines.size(), 300);
        // With the blur, a column or row of its own has no mean at all.
        tracer.setOption("blurradius", 5.0);
        tracer.setPalette({});
        EXPECT_FALSE(tracer.trace(image).isEmpty());
    }
}

TEST(HardInput, CheckerboardOf16Megapixels) {
    // The pixels of each colour all touch at corners: two outlines around everything.
    constexpr int Side = 4096;
    OvTraceBitmap tracer = colorTracer();
    const QImage image = blackAndWhite(Side, Side, [](int x, int y) { return (x + y) % 2 == 0; });
    QElapsedTimer timer;
    timer.start();
    const auto outlines = tracer.trace(image);
    EXPECT_EQ(outlines.size(), 2);
    EXPECT_LT(timer.elapsed(), 60000) << "milliseconds; a few hundred are usual";
}

TEST(HardInput, OneSpiralOutlineThroughTheWholeImage) {
    // Bars joined at alternating ends: a snake with millions of corners.
    constexpr int Side = 2000;
    OvTraceBitmap tracer = colorTracer();
    const QImage image = blackAndWhite(Side, Side, [](int x, int y) {
        return y % 2 == 0 || (y % 4 == 1 ? x == Side - 1 : x == 0);
    });
    const auto outlines = tracer.trace(image);
    ASSERT_FALSE(outlines.isEmpty());
    EXPECT_GT(outlines.first().countPieces(), Side);
}

TEST(HardInput, NoiseOfManyColors) {
    constexpr int Side = 700;
    std::uint32_t state = 9;
    QImage image(Side, Side, QImage::Format_ARGB32);
    for (int y = 0; y < Side; ++y) {
        for (int x = 0; x < Side; ++x) {
            state = state * 1664525U + 1013904223U;
            image.setPixel(x, y, state);
        }
    }
    OvTraceBitmap tracer = colorTracer();
    tracer.setPalette({});
    tracer.setOption("numberofcolors", 1000.0);
    tracer.setOption("pathomit", 0.0);
    const auto outlines = tracer.trace(image);
    EXPECT_GT(outlines.size(), Side * Side / 4);
    EXPECT_EQ(outlines.size(), tracer.getPolylineLayers().size());
}
