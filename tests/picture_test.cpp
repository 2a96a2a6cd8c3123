#include "support/drawnpicture.h"

#include <drawing/raster/imagerows.h>
#include <drawing/tracing.h>
#include <drawing/writers/painting.h>
#include <drawing/writers/picture.h>

#include <QPainter>

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <ctime>

namespace {

Drawing traced(const QImage& image, Method method = Method::Outlines) {
    InputImage input;
    input.image = image;
    TraceSettings settings;
    settings.method = method;
    if (method == Method::Outlines)
        settings.values = {{"usebrightness", 1.0}};
    return traceImage(std::move(input), settings);
}

QImage blank(QSize size) {
    QImage picture(size, QImage::Format_ARGB32_Premultiplied);
    picture.fill(Qt::transparent);
    return picture;
}

QImage painted(const Drawing& drawing, double scale) {
    QImage picture = blank(drawing.size * scale);
    PicturePainter(picture, drawing, scale).paintFilled();
    return picture;
}

/// The same by Qt's painter.
QImage paintedByQt(const Drawing& drawing, double scale) {
    QImage picture = blank(drawing.size * scale);
    QPainter painter(&picture);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.scale(scale, scale);
    paintFilled(painter, drawing, false);
    return picture;
}

/// The mean difference of the four channels.
double meanDifference(const QImage& a, const QImage& b) {
    double sum = 0.0;
    for (int y = 0; y < a.height(); ++y) {
        for (int i = 0; i < 4 * a.width(); ++i)
            sum += std::abs(a.constScanLine(y)[i] - b.constScanLine(y)[i]);
    }
    return sum / (4.0 * a.width() * a.height());
}

/// Of the processor.
double secondsToPaint(const QImage& image) {
    const Drawing drawing = traced(image);
    double least = HUGE_VAL;
    for (int turn = 0; turn < 3; ++turn) {
        const std::clock_t start = std::clock();
        painted(drawing, 1.0);
        QImage overlay = blank(drawing.size);
        PicturePainter(overlay, drawing, 1.0).paintOverlay();
        least = std::min(least, static_cast<double>(std::clock() - start) / CLOCKS_PER_SEC);
    }
    return least;
}

} // namespace

TEST(Picture, LooksLikeThatOfQtsPainter) {
    for (const char* name : {"logo.png", "drawing.png", "text.png"}) {
        const QImage image = QImage(QString(OVTRACE_SAMPLES "/") + name).copy(40, 40, 260, 200);
        for (const Method method : {Method::Outlines, Method::Regions, Method::Centerlines}) {
            const Drawing drawing = traced(image, method);
            for (const double scale : {1.0, 2.0}) {
                // Qt counts coverage in sixteenths along x and lets edges of areas add up alike.
                EXPECT_LT(meanDifference(painted(drawing, scale), paintedByQt(drawing, scale)), 0.5)
                    << name << ", " << static_cast<int>(method) << ", " << scale;
            }
        }
    }
}

TEST(Picture, TakesTimeForItsPixels) {
    // Teeth one pixel wide all over a megapixel: once a hundred times a page's time.
    const QImage page = QImage(OVTRACE_SAMPLES "/text.png");
    const QImage comb = drawn(1000, [](int x, int y) { return y < 10 || x % 2 == 0; });
    const double pages = 1e6 / (static_cast<double>(page.width()) * page.height());
    EXPECT_LT(secondsToPaint(comb), 15.0 * pages * secondsToPaint(page));
}

TEST(Picture, ManyAreasOnTopOfOneAnotherCostLittleMoreThanOne) {
    const auto squares = [](int width) {
        return drawn(1000, [width](int x, int y) {
            return std::min({x, y, 999 - x, 999 - y}) / width % 2 == 0;
        });
    };
    EXPECT_LT(secondsToPaint(squares(2)), 15.0 * secondsToPaint(squares(100)));
}

TEST(ImageRows, AreTheImageItsMeansOrItsNearestPixels) {
    QImage image(4, 2, QImage::Format_RGB32);
    for (int y = 0; y < 2; ++y) {
        for (int x = 0; x < 4; ++x)
            image.setPixel(x, y, qRgb(x * 10, y * 100, 7));
    }
    ImageRows same(image, {4, 2});
    EXPECT_EQ(same.row(1)[3], qRgb(30, 100, 7));
    ImageRows smaller(image, {2, 1});
    EXPECT_EQ(smaller.row(0)[0], qRgb(5, 50, 7));
    EXPECT_EQ(smaller.row(0)[1], qRgb(25, 50, 7));
    ImageRows larger(image, {8, 4});
    EXPECT_EQ(larger.row(3)[7], qRgb(30, 100, 7));
    EXPECT_EQ(larger.row(1)[2], qRgb(10, 0, 7));
    ImageRows wider(image, {8, 1});
    EXPECT_EQ(wider.row(0)[3], qRgb(10, 50, 7));
}

TEST(ImageRows, ArePremultiplied) {
    QImage image(1, 1, QImage::Format_ARGB32);
    image.setPixel(0, 0, qRgba(200, 100, 0, 128));
    EXPECT_EQ(ImageRows(image, {1, 1}).row(0)[0], qPremultiply(qRgba(200, 100, 0, 128)));
}
