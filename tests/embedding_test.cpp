#include "support/randominput.h"

#include <tracebitmap.h>

#include <QImage>

#include <gtest/gtest.h>

// What docs/embedding.md says of the result.

namespace {

/// Twice the area inside the control points, positive for an outline that is counter-clockwise.
double doubleArea(const OvPolyline& polyline) {
    double area = 0.0;
    OvVector before = polyline.getStartPoint();
    const auto goTo = [&](const OvVector& point) {
        area += before.x * point.y - before.y * point.x;
        before = point;
    };
    for (qsizetype i = 1; i < polyline.countPieces(); ++i) {
        if (polyline.isVertexAt(i)) {
            goTo(polyline.getVertexAt(i));
        } else {
            goTo(polyline.getSplineAt(i).getControlPointAt(1));
            goTo(polyline.getSplineAt(i).getControlPointAt(2));
        }
    }
    return area;
}

QImage rings() {
    QImage image(90, 80, QImage::Format_RGB32);
    for (int y = 0; y < 80; ++y) {
        for (int x = 0; x < 90; ++x) {
            const int square = (x - 45) * (x - 45) + (y - 40) * (y - 40);
            image.setPixel(x, y, qRgb(square / 300 % 2 * 255, 40, 90));
        }
    }
    return image;
}

} // namespace

TEST(Embedding, OutlinesRunClockwiseAndEndWhereTheyStart) {
    OvTraceBitmap tracer;
    tracer.setOption(QStringLiteral("monochrome"), 0.0);
    const auto outlines = tracer.trace(rings());
    ASSERT_GT(outlines.size(), 2);
    for (const OvPolyline& outline : outlines) {
        EXPECT_LT(doubleArea(outline), 0.0);
        EXPECT_EQ(outline.getStartPoint(), outline.getEndPoint());
    }
}

TEST(Embedding, OutlinesOfNoAreaOccur) {
    OvTraceBitmap tracer;
    tracer.setOption(QStringLiteral("monochrome"), 0.0);
    tracer.setOption(QStringLiteral("ltres"), 1e9);
    int flat = 0;
    for (const OvPolyline& outline : tracer.trace(rings()))
        flat += doubleArea(outline) == 0.0 ? 1 : 0;
    RandomInput input(1);
    for (int round = 0; round < 50; ++round) {
        for (const OvPolyline& outline : tracer.trace(input.image(20)))
            flat += doubleArea(outline) == 0.0 ? 1 : 0;
    }
    EXPECT_GT(flat, 0);
}
