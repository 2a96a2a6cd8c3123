// Arrow heads at the ends of narrow lines.

#include "arrowheads.h"

#include "tracecenterlines.h"

#include <QImage>
#include <QPainter>
#include <QPolygonF>

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

using namespace ovtrace;

namespace {

constexpr int Width = 120;
constexpr int Height = 40;

/// A line 2 pixels wide along y = 20 from x = 10 to x = 110, and a head with its tip at x = 10.
struct Drawing {
    InkLevels ink{Width, Height, std::vector<std::uint8_t>(Width* Height)};
    InkMask mask{Width + 2, Height + 2, std::vector<std::uint8_t>((Width + 2) * (Height + 2))};
    std::vector<Stroke> strokes{1};

    Drawing(double headLength, double headWidth) {
        for (int y = 0; y < Height; ++y)
            for (int x = 10; x < 110; ++x) {
                const double d = x + 0.5 - 10.0;
                const double half =
                    d < headLength ? std::max(d / headLength * headWidth / 2.0, 1.0) : 1.0;
                const double level = std::clamp(half - std::abs(y + 0.5 - 20.0) + 0.5, 0.0, 1.0);
                ink.levels[ink.indexOf(x, y)] = static_cast<std::uint8_t>(255.0 * level);
            }
        Stroke& line = strokes[0];
        Moments support(Point{10.0, 20.0});
        for (int x = 10; x <= 110; ++x)
            support.add({static_cast<double>(x), 20.0}, 1.0);
        line.ends[0].at = {10.0, 20.0};
        line.ends[1].at = {110.0, 20.0};
        line.carrier = lineCarrier(support, line.start(), line.finish());
        line.width = 2.0;
    }

    std::vector<InkArea> heads() const {
        return findArrowHeads(ink, mask, strokes);
    }
};

TEST(ArrowHeads, TriangleAtTheEndIsFound) {
    const std::vector<InkArea> heads = Drawing(20.0, 12.0).heads();
    ASSERT_EQ(heads.size(), 1U);
    EXPECT_EQ(heads[0].kind, InkMask::Solid);
    ASSERT_EQ(heads[0].rings.size(), 1U);
    const std::vector<Point>& ring = heads[0].rings[0];
    ASSERT_EQ(ring.size(), 3U);
    EXPECT_EQ(ring[0], (Point{10.0, 20.0}));
    for (std::size_t k = 1; k < 3; ++k) {
        EXPECT_NEAR(ring[k].x, 30.0, 1.0);
        EXPECT_NEAR(std::abs(ring[k].y - 20.0), 6.0, 1.0);
    }
    // Counter-clockwise as seen with y up.
    EXPECT_LT(cross(ring[1] - ring[0], ring[2] - ring[0]), 0.0);
}

TEST(ArrowHeads, PlainLinesAndSlimWedgesHaveNone) {
    EXPECT_TRUE(Drawing(0.0, 0.0).heads().empty());
    EXPECT_TRUE(Drawing(20.0, 4.0).heads().empty());
    // Wider than long: a bar across, no head.
    EXPECT_TRUE(Drawing(4.0, 16.0).heads().empty());
}

TEST(ArrowHeads, FilledAreasAreNotFoundTwice) {
    Drawing drawing(20.0, 12.0);
    std::fill(drawing.mask.values.begin(), drawing.mask.values.end(), InkMask::Solid);
    EXPECT_TRUE(drawing.heads().empty());
}

/// Bars of a railing: one in the corner of a rail that rises by `slope`, others that stand on it.
QImage railing(double width, double step, double slope) {
    QImage image(160, 120, QImage::Format_RGB32);
    image.fill(Qt::white);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(Qt::black, width, Qt::SolidLine, Qt::FlatCap, Qt::MiterJoin));
    const double left = 20.5;
    const auto rail = [&](double x) { return QPointF(left + x, 100.0 - slope * x); };
    painter.drawPolyline(QPolygonF{QPointF(left, 10.0), rail(0.0), rail(129.5)});
    for (int bar = 1; bar <= 3; ++bar)
        painter.drawLine(QPointF(left + step * bar, 10.0), rail(step * bar));
    return image;
}

TEST(ArrowHeads, CornersThatBarsStandNearAreNone) {
    EXPECT_TRUE(OvTraceCenterlines().trace(railing(3.0, 11.0, 0.7)).areas.isEmpty());
    EXPECT_TRUE(OvTraceCenterlines().trace(railing(3.5, 15.0, 0.5)).areas.isEmpty());
}

} // namespace
