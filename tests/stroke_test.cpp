#include <drawing/raster/fill.h>
#include <drawing/raster/stroke.h>

#include <gtest/gtest.h>

#include <cmath>

namespace {

/// The covered area, in pixels, of 40 x 40.
double strokedArea(std::span<const QPointF> line, const Pen& pen) {
    QImage picture(40, 40, QImage::Format_ARGB32_Premultiplied);
    picture.fill(Qt::transparent);
    RasterPath stroke;
    appendStroke(line, pen, stroke);
    RasterFill(picture).fill(stroke, FillRule::NonZero, Qt::white);
    double sum = 0.0;
    for (int y = 0; y < 40; ++y) {
        for (int x = 0; x < 40; ++x)
            sum += qAlpha(picture.pixel(x, y)) / 255.0;
    }
    return sum;
}

std::vector<QPointF> square(bool reversed) {
    std::vector<QPointF> line{{10, 10}, {30, 10}, {30, 30}, {10, 30}, {10, 10}};
    if (reversed)
        std::reverse(line.begin(), line.end());
    return line;
}

const double Pi = std::acos(-1.0);

} // namespace

TEST(Stroke, CoversItsWidthAlongClosedLines) {
    // Along 80 pixels, less the overlap inside the corners, plus their outer parts.
    for (const double width : {2.0, 4.0, 6.0}) {
        const double half = width / 2.0;
        const double inside = 80.0 * width - 4.0 * half * half;
        for (const bool reversed : {false, true}) {
            const std::vector<QPointF> line = square(reversed);
            EXPECT_NEAR(strokedArea(line, {width}), inside + 2.0 * half * half, 1.0);
            EXPECT_NEAR(strokedArea(line, {width, true}), inside + Pi * half * half, 1.0);
        }
    }
}

TEST(Stroke, OpenLinesEndFlatOrRound) {
    const std::vector<QPointF> line{{5, 20}, {20, 20}, {20, 35}};
    const double flat = strokedArea(line, {4.0});
    EXPECT_NEAR(flat, 2 * 15 * 4 - 4 + 2, 0.5);
    EXPECT_NEAR(strokedArea(line, {4.0, true}), 2 * 15 * 4 - 4 + Pi * 4 / 4 + Pi * 4, 0.5);
}

TEST(Stroke, ALineOfManyPiecesIsThatOfOne) {
    std::vector<QPointF> pieces;
    for (int i = 0; i <= 60; ++i)
        pieces.emplace_back(5.0 + i * 0.5, 8.0 + i * 0.3);
    const std::vector<QPointF> one{pieces.front(), pieces.back()};
    EXPECT_NEAR(strokedArea(pieces, {3.0, true}), strokedArea(one, {3.0, true}), 0.2);
}

TEST(Stroke, PointsThatRepeatDrawNothingMore) {
    std::vector<QPointF> line = square(false);
    const double once = strokedArea(line, {3.0});
    line.insert(line.begin() + 2, line[2]);
    line.push_back(line.back());
    EXPECT_DOUBLE_EQ(strokedArea(line, {3.0}), once);
    const std::vector<QPointF> point{{5, 5}, {5, 5}};
    EXPECT_EQ(strokedArea(point, {3.0}), 0.0);
    EXPECT_NEAR(strokedArea(point, {3.0, true}), Pi * 2.25, 0.2) << "a round pen makes a dot";
}

TEST(Stroke, DashesCoverTheirShare) {
    const std::vector<QPointF> line{{2, 20}, {20, 20}, {38, 20}};
    EXPECT_NEAR(strokedArea(line, {2.0, false, {4.0, 2.0}}), 6 * 4 * 2, 0.1);
    EXPECT_NEAR(strokedArea(line, {2.0, false, {4.0, 2.0, 1.0, 2.0}}), 2 * (4 * 4 + 4), 0.1);
    EXPECT_NEAR(strokedArea(line, {2.0, false, {0.0, 0.0}}), 36 * 2, 0.1)
        << "dashes of no length are none";
}

TEST(Stroke, DashesGoOnAroundCorners) {
    const std::vector<QPointF> line{{5, 5}, {10, 5}, {10, 35}};
    EXPECT_NEAR(strokedArea(line, {2.0, false, {10.0, 25.0}}), 10 * 2 - 0.5, 0.1);
}

TEST(Stroke, NoNumbersEnd) {
    const std::vector<QPointF> line{{5, 5}, {std::nan(""), 5}, {HUGE_VAL, 35}, {20, 20}};
    RasterPath stroke;
    appendStroke(line, {2.0, true}, stroke);
    EXPECT_GT(strokedArea(line, {2.0}), 0.0);
}
