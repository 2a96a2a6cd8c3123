#include "support/randominput.h"

#include <drawing/raster/fill.h>

#include <QPainter>

#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>

namespace {

/// How often a path goes round a point, with the sign of the direction.
int windingNumber(const RasterPath& path, double x, double y) {
    int number = 0;
    for (std::size_t c = 0; c < path.countContours(); ++c) {
        const std::span<const QPointF> corners = path.contour(c);
        for (std::size_t i = 0; i < corners.size(); ++i) {
            const QPointF a = corners[i];
            const QPointF b = corners[(i + 1) % corners.size()];
            if ((a.y() <= y) == (b.y() <= y))
                continue;
            if (a.x() + (y - a.y()) * (b.x() - a.x()) / (b.y() - a.y()) < x)
                number += a.y() < b.y() ? 1 : -1;
        }
    }
    return number;
}

/// The plain form: the share of points of a fine grid in the pixel that are inside, 0..255.
double sampledCoverage(const RasterPath& path, FillRule rule, int column, int row) {
    constexpr int Samples = 32;
    int inside = 0;
    for (int i = 0; i < Samples; ++i) {
        for (int j = 0; j < Samples; ++j) {
            const int number =
                windingNumber(path, column + (i + 0.5) / Samples, row + (j + 0.5) / Samples);
            inside += (rule == FillRule::NonZero ? number != 0 : number % 2 != 0) ? 1 : 0;
        }
    }
    return 255.0 * inside / (Samples * Samples);
}

QImage filled(const RasterPath& path, FillRule rule, int size, QColor color = Qt::white) {
    QImage picture(size, size, QImage::Format_ARGB32_Premultiplied);
    picture.fill(Qt::transparent);
    RasterFill(picture).fill(path, rule, color);
    return picture;
}

void rectangle(RasterPath& path, double left, double top, double right, double bottom) {
    path.moveTo({left, top});
    path.lineTo({right, top});
    path.lineTo({right, bottom});
    path.lineTo({left, bottom});
}

/// A closed curve around a middle, in one direction or the other, that does not cross itself.
void blob(RandomInput& input, RasterPath& path, QPointF middle, double radius, bool reversed) {
    constexpr int Corners = 8;
    const auto corner = [&](int i, double r) {
        const double angle = (reversed ? -i : i) * std::acos(-1.0) / Corners;
        return QPointF(middle.x() + r * std::cos(angle), middle.y() + r * std::sin(angle));
    };
    path.moveTo(corner(0, radius));
    for (int i = 1; i < Corners; ++i) {
        const double r = radius * input.number(70, 100) / 100.0;
        path.lineTo(corner(2 * i, r));
    }
}

/// Compares the coverages with those of the plain form.
void expectSampled(const RasterPath& path, FillRule rule, int size) {
    const QImage picture = filled(path, rule, size);
    double sum = 0.0;
    for (int y = 0; y < size; ++y) {
        for (int x = 0; x < size; ++x) {
            const double difference =
                std::abs(qAlpha(picture.pixel(x, y)) - sampledCoverage(path, rule, x, y));
            sum += difference;
            // 32 x 32 points know an edge to half of their distance along a pixel's diagonal.
            EXPECT_LE(difference, 255.0 * 1.5 / 32.0) << x << ", " << y;
        }
    }
    EXPECT_LE(sum / (size * size), 0.6);
}

} // namespace

TEST(Fill, CoversItsShareOfAPixel) {
    RasterPath path;
    rectangle(path, 1.5, 1.25, 3.25, 2.5);
    const QImage picture = filled(path, FillRule::NonZero, 5);
    const auto alpha = [&](int x, int y) { return qAlpha(picture.pixel(x, y)); };
    EXPECT_EQ(alpha(1, 1), 96);  // 255 * 0.5 * 0.75
    EXPECT_EQ(alpha(2, 1), 191); // 255 * 0.75
    EXPECT_EQ(alpha(3, 1), 48);  // 255 * 0.25 * 0.75
    EXPECT_EQ(alpha(2, 2), 128); // 255 * 0.5
    EXPECT_EQ(alpha(0, 1), 0);
    EXPECT_EQ(alpha(4, 1), 0);
    EXPECT_EQ(alpha(2, 3), 0);
}

TEST(Fill, AgreesWithThePlainForm) {
    RandomInput input(3);
    for (int round = 0; round < 12; ++round) {
        RasterPath path;
        const bool reversed = input.oneIn(2);
        blob(input, path, {input.number(40, 120) / 10.0, input.number(40, 120) / 10.0},
             input.number(20, 90) / 10.0, reversed); // partly outside the picture
        expectSampled(path, FillRule::NonZero, 16);
    }
}

TEST(Fill, HolesRunTheOtherWayOrCountTwice) {
    RandomInput input(4);
    for (const bool reversed : {false, true}) {
        RasterPath path;
        blob(input, path, {8, 8}, 7.5, false);
        blob(input, path, {8, 8}, 3.5, reversed);
        for (const FillRule rule : {FillRule::NonZero, FillRule::EvenOdd})
            expectSampled(path, rule, 16);
        const bool hole = qAlpha(filled(path, FillRule::NonZero, 16).pixel(8, 8)) == 0;
        EXPECT_EQ(hole, reversed);
        EXPECT_EQ(qAlpha(filled(path, FillRule::EvenOdd, 16).pixel(8, 8)), 0);
    }
}

TEST(Fill, PaintsUnderWhatIsThere) {
    QImage picture(2, 2, QImage::Format_ARGB32_Premultiplied);
    picture.fill(Qt::transparent);
    RasterFill raster(picture);
    RasterPath path;
    rectangle(path, 0.5, 0, 2, 1);
    raster.fill(path, FillRule::NonZero, QColor(0, 0, 255, 0));
    EXPECT_EQ(picture.pixel(1, 0), 0U) << "a transparent colour paints nothing";
    raster.fill(path, FillRule::NonZero, QColor(255, 0, 0));
    path.clear();
    rectangle(path, 0, 0, 2, 2);
    raster.fill(path, FillRule::NonZero, QColor(0, 0, 255, 128));
    EXPECT_EQ(picture.pixel(1, 0), qRgb(255, 0, 0));
    EXPECT_NEAR(qAlpha(picture.pixel(0, 0)), 128 + 64, 1);
    EXPECT_NEAR(qAlpha(picture.pixel(1, 1)), 128, 1);
    const std::vector<QRgb> green(2, qRgb(0, 255, 0));
    raster.fillRow(0, green.data());
    EXPECT_EQ(picture.pixel(1, 0), qRgb(255, 0, 0));
    EXPECT_NEAR(qRed(picture.pixel(0, 0)), 128, 1);
    EXPECT_NEAR(qBlue(picture.pixel(0, 0)), 64, 1);
    EXPECT_NEAR(qGreen(picture.pixel(0, 0)), 63, 1);
    EXPECT_EQ(qAlpha(picture.pixel(0, 0)), 255);
}

TEST(Fill, PaintsLikeThePainterWhateverTheOrder) {
    // Areas on top of one another, some to be seen through, in one picture from the top and in the
    // other from the bottom.
    RandomInput input(5);
    for (int round = 0; round < 20; ++round) {
        QImage ours(140, 12, QImage::Format_ARGB32_Premultiplied);
        QImage theirs = ours;
        for (QImage* each : {&ours, &theirs})
            each->fill(Qt::transparent);
        QPainter painter(&theirs);
        RasterFill raster(ours);
        std::vector<std::pair<QRect, QColor>> areas;
        for (int i = 0; i < 12; ++i) {
            const QRect area(input.number(-5, 100), input.number(-5, 8), input.number(1, 120),
                             input.number(1, 12));
            const QColor color(input.number(0, 255), input.number(0, 255), input.number(0, 255),
                               input.oneIn(2) ? 255 : input.number(0, 255));
            painter.fillRect(area, color);
            areas.emplace_back(area, color);
        }
        painter.end();
        for (auto area = areas.rbegin(); area != areas.rend(); ++area) {
            RasterPath path;
            const QRect& box = area->first;
            rectangle(path, box.x(), box.y(), box.x() + box.width(), box.y() + box.height());
            raster.fill(path, FillRule::EvenOdd, area->second);
        }
        for (int y = 0; y < ours.height(); ++y) {
            for (int x = 0; x < ours.width(); ++x) {
                const auto* a = ours.constScanLine(y) + qsizetype(x) * 4;
                const auto* b = theirs.constScanLine(y) + qsizetype(x) * 4;
                for (int channel = 0; channel < 4; ++channel)
                    ASSERT_NEAR(a[channel], b[channel], 4) << x << ", " << y;
            }
        }
    }
}

TEST(Fill, WhatLiesOutsideThePictureCountsWhereItCoversIt) {
    RasterPath path;
    rectangle(path, -1e6, -1e6, 1e6, 1e6);
    const QImage all = filled(path, FillRule::NonZero, 7);
    for (int y = 0; y < 7; ++y) {
        for (int x = 0; x < 7; ++x)
            ASSERT_EQ(qAlpha(all.pixel(x, y)), 255);
    }
    path.clear();
    path.moveTo({-10, 3.5}); // a wedge from the left border to the right one
    path.lineTo({20, -5});
    path.lineTo({20, 12});
    expectSampled(path, FillRule::NonZero, 7);
    path.clear();
    rectangle(path, 8, 0, 20, 7);
    rectangle(path, -20, 0, -1, 7);
    rectangle(path, 0, -9, 7, -1);
    rectangle(path, 0, 7, 7, 9);
    EXPECT_EQ(qAlpha(filled(path, FillRule::NonZero, 7).pixel(6, 6)), 0);
    EXPECT_EQ(qAlpha(filled(path, FillRule::NonZero, 7).pixel(0, 0)), 0);
}

TEST(Fill, NoNumbersPaintNothing) {
    RasterPath path;
    path.moveTo({1, 1});
    path.lineTo({std::nan(""), 4});
    path.lineTo({3, std::nan("")});
    path.lineTo({HUGE_VAL, 2});
    path.lineTo({-1e300, -1e300});
    path.lineTo({1e300, 1e308});
    const QImage picture = filled(path, FillRule::NonZero, 5);
    EXPECT_EQ(picture.size(), QSize(5, 5));
    filled(RasterPath(), FillRule::EvenOdd, 5);
}
