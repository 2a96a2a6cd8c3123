// What happens to the map when the picture is turned, mirrored, recoloured or framed: the same.

#include "support/colors.h"
#include "support/coverage.h"

#include <traceregions.h>

#include <gtest/gtest.h>

#include <QTransform>

#include <algorithm>
#include <cmath>

namespace {

using namespace ovtrace;
using coverage::ground;
using coverage::paint;

/// A circle, a slanting rectangle, a ring around another colour and thin lines.
QImage makeDrawing() {
    QImage image = ground(90, 70, White);
    paint(image, Red, [](double x, double y) { return std::hypot(x - 21.3, y - 20.6) < 13.2; });
    paint(image, Blue, [](double x, double y) {
        const double along = (x - 63.0) * 0.8 + (y - 20.0) * 0.6;
        const double across = (y - 20.0) * 0.8 - (x - 63.0) * 0.6;
        return std::fabs(along) < 16.0 && std::fabs(across) < 8.5;
    });
    paint(image, Black, [](double x, double y) { return std::hypot(x - 27.4, y - 52.1) < 12.0; });
    paint(image, Red, [](double x, double y) { return std::hypot(x - 27.4, y - 52.1) < 8.0; });
    paint(image, Black, [](double x, double y) {
        return std::fabs((x - 60.0) * 0.28 + (y - 50.0) * 0.96) < 0.6 && std::fabs(x - 62.0) < 18.0;
    });
    return image;
}

const QImage& drawing() {
    static const QImage image = makeDrawing();
    return image;
}

RegionMap traced(const QImage& image) {
    return OvTraceRegions().trace(image);
}

struct Area {
    QRgb color;
    double size;
    std::size_t rings;
};

/// All areas, by colour and size.
std::vector<Area> areasOf(const RegionMap& map) {
    std::vector<Area> areas;
    for (const MapRegion& region : map.regions)
        areas.push_back({map.palette[region.color], region.area, region.ringCount});
    std::sort(areas.begin(), areas.end(), [](const Area& a, const Area& b) {
        return a.color != b.color ? a.color < b.color : a.size < b.size;
    });
    return areas;
}

void expectSame(const std::vector<Area>& areas, const std::vector<Area>& expected,
                double tolerance) {
    ASSERT_EQ(areas.size(), expected.size());
    for (std::size_t i = 0; i < areas.size(); ++i) {
        EXPECT_EQ(areas[i].color, expected[i].color);
        EXPECT_EQ(areas[i].rings, expected[i].rings);
        EXPECT_NEAR(areas[i].size, expected[i].size, tolerance) << std::hex << areas[i].color;
    }
}

/// Square pixels by which fits differ that go through the places in another order.
constexpr double Fitted = 0.3;

TEST(RegionProperties, TurnedPicturesHaveTheSameAreas) {
    const auto areas = areasOf(traced(drawing()));
    EXPECT_EQ(areas.size(), 6U);
    for (const int angle : {90, 180, 270}) {
        SCOPED_TRACE(angle);
        expectSame(areasOf(traced(drawing().transformed(QTransform().rotate(angle)))), areas,
                   Fitted);
    }
}

TEST(RegionProperties, MirroredPicturesHaveTheSameAreas) {
    const auto areas = areasOf(traced(drawing()));
    expectSame(areasOf(traced(drawing().mirrored(true, false))), areas, Fitted);
    expectSame(areasOf(traced(drawing().mirrored(false, true))), areas, Fitted);
}

TEST(RegionProperties, ExchangedColoursChangeNoShape) {
    // Red against blue in every pixel: what is far apart or alike stays so.
    const RegionMap map = traced(drawing());
    const RegionMap exchanged = traced(drawing().rgbSwapped());
    EXPECT_EQ(map.pieces, exchanged.pieces);
    ASSERT_EQ(map.palette.size(), exchanged.palette.size());
    for (std::size_t i = 0; i < map.palette.size(); ++i) {
        const QRgb color = map.palette[i];
        EXPECT_EQ(exchanged.palette[i], qRgba(qBlue(color), qGreen(color), qRed(color), 255));
    }
}

TEST(RegionProperties, AFrameMovesAllAndChangesNothing) {
    constexpr int Frame = 12;
    QImage framed = ground(90 + 2 * Frame, 70 + 2 * Frame, White);
    const QImage image = drawing();
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x)
            framed.setPixel(x + Frame, y + Frame, image.pixel(x, y));
    }
    auto areas = areasOf(traced(image));
    auto expected = areasOf(traced(framed));
    ASSERT_EQ(areas.size(), expected.size());
    // The ground is the largest; it has grown by the frame.
    const auto bySize = [](const Area& a, const Area& b) { return a.size < b.size; };
    const auto ground = std::max_element(areas.begin(), areas.end(), bySize);
    ground->size += framed.width() * framed.height() - image.width() * image.height();
    expectSame(areas, expected, 1e-6);
}

} // namespace
