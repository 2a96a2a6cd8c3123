// Maps of whole images: plain forms whose truth is known, and what holds for any image.

#include "support/colors.h"
#include "support/coverage.h"
#include "support/pixelview.h"

#include <traceprogress.h>
#include <traceregions.h>

#include "shapes/piece.h"

#include <gtest/gtest.h>

#include <QTransform>

#include <algorithm>
#include <cmath>
#include <random>

namespace {

using namespace ovtrace;
using coverage::ground;
using coverage::paint;
using coverage::paintInLight;

RegionMap traced(const QImage& image, const QMap<QString, double>& options = {}) {
    OvTraceRegions tracer;
    for (auto option = options.begin(); option != options.end(); ++option)
        tracer.setOption(option.key(), option.value());
    return tracer.trace(image);
}

QRgb colorOf(const RegionMap& map, const MapRegion& region) {
    return map.palette[region.color];
}

/// The regions of a colour.
std::vector<MapRegion> regionsOf(const RegionMap& map, QRgb color) {
    std::vector<MapRegion> found;
    std::copy_if(map.regions.begin(), map.regions.end(), std::back_inserter(found),
                 [&](const MapRegion& region) { return colorOf(map, region) == color; });
    return found;
}

Point startOf(const RegionMap& map, RingStep step) {
    const auto pieces = map.piecesOf(map.boundary(step.boundary));
    return step.reversed ? pieces.back().to : pieces.front().from;
}
Point endOf(const RegionMap& map, RingStep step) {
    return startOf(map, {step.boundary, !step.reversed});
}

/// What every map has to be, whatever the image.
void expectWellFormed(const RegionMap& map, double opaqueArea) {
    double area = 0.0;
    for (std::size_t i = 0; i < map.regions.size(); ++i) {
        const MapRegion& region = map.regions[i];
        ASSERT_GT(region.ringCount, 0U);
        area += region.area;
        if (region.enclosing != RegionId::None) {
            EXPECT_LT(indexOf(region.enclosing), i);
        }
        for (const MapRing& ring : map.ringsOf(region)) {
            const auto steps = map.stepsOf(ring);
            ASSERT_FALSE(steps.empty());
            for (std::size_t k = 0; k < steps.size(); ++k) {
                const MapBoundary& boundary = map.boundary(steps[k].boundary);
                EXPECT_EQ(indexOf(steps[k].reversed ? boundary.right : boundary.left), i);
                EXPECT_EQ(endOf(map, steps[k]), startOf(map, steps[(k + 1) % steps.size()]));
            }
        }
    }
    EXPECT_NEAR(area, opaqueArea, 1e-6 * (1.0 + opaqueArea));
    for (const MapBoundary& boundary : map.boundaries) {
        EXPECT_NE(boundary.left, boundary.right);
        const auto pieces = map.piecesOf(boundary);
        ASSERT_FALSE(pieces.empty());
        for (std::size_t k = 0; k < pieces.size(); ++k) {
            EXPECT_TRUE(isFinite(pieces[k].from) && isFinite(pieces[k].to));
            if (k > 0) {
                EXPECT_EQ(pieces[k].from, pieces[k - 1].to);
            }
        }
        if (!boundary.isClosed()) {
            EXPECT_EQ(pieces.front().from, map.junctions[indexOf(boundary.from)]);
            EXPECT_EQ(pieces.back().to, map.junctions[indexOf(boundary.to)]);
        } else {
            EXPECT_EQ(pieces.front().from, pieces.back().to);
        }
    }
}

QImage randomImage(std::mt19937& random, int colors) {
    const QRgb all[] = {0xff000000U, 0xffffffffU, 0xffd62728U, 0xff1f77b4U};
    QImage image(static_cast<int>(random() % 14 + 1), static_cast<int>(random() % 14 + 1),
                 QImage::Format_RGB32);
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x)
            image.setPixel(x, y, all[random() % static_cast<unsigned>(colors)]);
    }
    return image;
}

std::vector<double> sortedAreas(const RegionMap& map) {
    std::vector<double> areas;
    for (const MapRegion& region : map.regions)
        areas.push_back(region.area);
    std::sort(areas.begin(), areas.end());
    return areas;
}

TEST(TraceRegions, NoImageGivesNoMap) {
    const RegionMap map = traced(QImage());
    EXPECT_EQ(map.width, 0);
    EXPECT_TRUE(map.regions.empty());
}

TEST(TraceRegions, PlainImageIsOneRegionOfItsExactColour) {
    const RegionMap map = traced(ground(7, 5, Red));
    ASSERT_EQ(map.regions.size(), 1U);
    EXPECT_EQ(colorOf(map, map.regions[0]), Red);
    EXPECT_DOUBLE_EQ(map.regions[0].area, 35.0);
    expectWellFormed(map, 35.0);
}

TEST(TraceRegions, CircleIsTwoArcsOfItsRadius) {
    QImage image = ground(40, 40, White);
    paint(image, Blue, [](double x, double y) { return std::hypot(x - 20.3, y - 19.6) < 12.4; });
    const RegionMap map = traced(image);
    const auto disks = regionsOf(map, Blue);
    ASSERT_EQ(disks.size(), 1U);
    const auto steps = map.stepsOf(map.ringsOf(disks[0])[0]);
    ASSERT_EQ(steps.size(), 1U);
    const auto pieces = map.piecesOf(map.boundary(steps[0].boundary));
    ASSERT_EQ(pieces.size(), 2U);
    for (const Piece& piece : pieces) {
        ASSERT_EQ(piece.kind, PieceKind::Arc);
        EXPECT_NEAR(circleOf(piece).radius, 12.4, 0.02);
        EXPECT_NEAR(circleOf(piece).centre.x, 20.3, 0.01);
        EXPECT_NEAR(circleOf(piece).centre.y, 19.6, 0.01);
    }
    EXPECT_EQ(indexOf(disks[0].enclosing), 0U);
    expectWellFormed(map, 1600.0);
}

TEST(TraceRegions, RingsShareTheirCentreAndTurnedSquaresHaveRightAngles) {
    QImage image = ground(120, 60, White);
    const auto disk = [](double radius) {
        return [radius](double x, double y) { return std::hypot(x - 29.7, y - 30.4) < radius; };
    };
    paint(image, Black, disk(24.3));
    paint(image, White, disk(15.6));
    paint(image, Black, [](double x, double y) {
        const double u = (x - 88.0) * 0.96 + (y - 30.0) * 0.28;
        const double v = (y - 30.0) * 0.96 - (x - 88.0) * 0.28;
        return std::fabs(u) < 19.0 && std::fabs(v) < 16.0;
    });
    const RegionMap map = traced(image);
    std::vector<Point> centres;
    std::vector<Point> sides;
    for (const MapBoundary& boundary : map.boundaries) {
        const auto pieces = map.piecesOf(boundary);
        if (pieces.front().kind == PieceKind::Arc)
            centres.push_back(middle(pieces[0].from, pieces[0].to));
        for (const Piece& piece : pieces) {
            if (pieces.size() == 4 && piece.from.x > 60.0 && piece.from.x < 115.0 &&
                piece.kind == PieceKind::Line)
                sides.push_back(unit(piece.to - piece.from));
        }
    }
    ASSERT_EQ(centres.size(), 2U);
    EXPECT_NEAR(distance(centres[0], centres[1]), 0.0, 1e-12);
    ASSERT_EQ(sides.size(), 4U);
    for (std::size_t k = 0; k < 4; ++k)
        EXPECT_NEAR(dot(sides[k], sides[(k + 1) % 4]), 0.0, 1e-12);
}

TEST(TraceRegions, ShapesThatAreNearlyRegularStayAsTheyAre) {
    QImage image = ground(120, 60, White);
    paint(image, Black, [](double x, double y) { return std::hypot(x - 17.0, y - 30.0) < 10.0; });
    paint(image, Black, [](double x, double y) { return std::hypot(x - 43.0, y - 30.0) < 10.3; });
    // 89 degrees at the lower left: the tangent of one is .017455.
    paint(image, Black, [](double x, double y) {
        return y > 9.6 && y < 50.3 && x < 110.2 && x > 70.4 + (y - 9.6) * 0.017455;
    });
    const RegionMap map = traced(image);
    std::vector<double> radii;
    int slanting = 0;
    for (const MapBoundary& boundary : map.boundaries) {
        const auto pieces = map.piecesOf(boundary);
        if (pieces.front().kind == PieceKind::Arc)
            radii.push_back(circleOf(pieces.front()).radius);
        for (const Piece& piece : pieces) {
            const Point way = piece.to - piece.from;
            slanting += int(std::fabs(std::fabs(way.x / way.y) - 0.017455) < 0.0015);
        }
    }
    ASSERT_EQ(radii.size(), 2U);
    EXPECT_NEAR(radii[0], 10.0, 0.02);
    EXPECT_NEAR(radii[1], 10.3, 0.02);
    EXPECT_EQ(slanting, 1);
}

TEST(TraceRegions, EdgesMixedInLightLieWhereTheyWereDrawn) {
    for (const QRgb color : {Black, Blue, Red}) {
        for (const QRgb below : {White, qRgb(255, 204, 0)}) {
            QImage image = ground(60, 50, below);
            paintInLight(image, color,
                         [](double x, double y) { return std::hypot(x - 28.3, y - 24.6) < 17.4; });
            const RegionMap map = traced(image);
            ASSERT_EQ(map.regions.size(), 2U);
            const auto disks = regionsOf(map, color);
            ASSERT_EQ(disks.size(), 1U);
            const auto steps = map.stepsOf(map.ringsOf(disks[0])[0]);
            for (const Piece& piece : map.piecesOf(map.boundary(steps[0].boundary))) {
                ASSERT_EQ(piece.kind, PieceKind::Arc);
                EXPECT_NEAR(circleOf(piece).radius, 17.4, 0.02);
                EXPECT_NEAR(circleOf(piece).centre.x, 28.3, 0.02);
                EXPECT_NEAR(circleOf(piece).centre.y, 24.6, 0.02);
            }
        }
    }
}

TEST(TraceRegions, LightIsThatOfTheOption) {
    QImage image = ground(40, 30, White);
    const double edge = 12.5; // half of the pixel: 188 in light
    paintInLight(image, Black, [edge](double x, double) { return x < edge; });
    const auto blackArea = [&image](double light) {
        return regionsOf(traced(image, {{"light", light}}), Black).at(0).area;
    };
    EXPECT_NEAR(blackArea(2.0), 30.0 * edge, 0.5);
    const double taken = 12.0 + (255.0 - 188.0) / 255.0;
    EXPECT_NEAR(blackArea(1.0), 30.0 * taken, 0.5);
    // Nothing tells here.
    EXPECT_EQ(blackArea(0.0), blackArea(1.0));
}

TEST(TraceRegions, ThinLinesMixedInLightKeepTheirWidth) {
    QImage image = ground(60, 60, White);
    paintInLight(image, Black, [](double x, double y) { return std::hypot(x, y) < 12.0; });
    paintInLight(image, Black, [](double x, double y) {
        const double along = (x - 34.0) * 0.6 + (y - 30.0) * 0.8;
        return std::fabs((x - 34.0) * 0.8 - (y - 30.0) * 0.6) < 0.6 && std::fabs(along) < 20.0;
    });
    const auto black = regionsOf(traced(image), Black);
    ASSERT_EQ(black.size(), 2U);
    EXPECT_NEAR(black[1].area, 40.0 * 1.2, 40.0 * 0.05);
}

TEST(TraceRegions, RectangleBetweenThePixelsHasItsFourCorners) {
    QImage image = ground(40, 30, White);
    paint(image, Red,
          [](double x, double y) { return x > 8.3 && x < 29.6 && y > 6.7 && y < 22.25; });
    const RegionMap map = traced(image);
    const auto found = regionsOf(map, Red);
    ASSERT_EQ(found.size(), 1U);
    EXPECT_NEAR(found[0].area, 21.3 * 15.55, 0.5);
    const auto steps = map.stepsOf(map.ringsOf(found[0])[0]);
    const auto pieces = map.piecesOf(map.boundary(steps[0].boundary));
    ASSERT_EQ(pieces.size(), 4U);
    for (const Piece& piece : pieces) {
        EXPECT_EQ(piece.kind, PieceKind::Line);
        EXPECT_LT(std::min(std::fabs(piece.from.x - 8.3), std::fabs(piece.from.x - 29.6)), 0.02);
        EXPECT_LT(std::min(std::fabs(piece.from.y - 6.7), std::fabs(piece.from.y - 22.25)), 0.02);
    }
}

TEST(TraceRegions, RingHasAHoleInWhichAnotherColourLies) {
    QImage image = ground(50, 50, White);
    const auto disk = [](double radius) {
        return [radius](double x, double y) { return std::hypot(x - 25, y - 25) < radius; };
    };
    paint(image, Red, disk(20.0));
    paint(image, Blue, disk(11.0));
    const RegionMap map = traced(image);
    ASSERT_EQ(map.regions.size(), 3U);
    const MapRegion ring = regionsOf(map, Red).at(0);
    const MapRegion inner = regionsOf(map, Blue).at(0);
    EXPECT_EQ(ring.ringCount, 2U);
    EXPECT_EQ(colorOf(map, map.region(inner.enclosing)), Red);
    constexpr double Pi = 3.14159265358979;
    EXPECT_NEAR(ring.area, Pi * (400.0 - 121.0), 1.0);
    expectWellFormed(map, 2500.0);
}

TEST(TraceRegions, ThinLinesKeepTheirColourAndWidth) {
    for (const double width : {0.7, 1.0, 1.6}) {
        QImage image = ground(60, 60, White);
        paint(image, Black, [](double x, double) { return x < 3.0; });
        const double half = width / 2.0;
        paint(image, Black, [half](double x, double y) {
            const double along = (x - 30.0) * 0.6 + (y - 30.0) * 0.8;
            return std::fabs((x - 30.0) * 0.8 - (y - 30.0) * 0.6) < half && std::fabs(along) < 20.0;
        });
        const RegionMap map = traced(image);
        const auto black = regionsOf(map, Black);
        ASSERT_EQ(black.size(), 2U) << width;
        EXPECT_NEAR(black[1].area, 40.0 * width, 40.0 * 0.05) << width;
        // Its ends are straight: no sample tells a round one.
        for (const RingStep step : map.stepsOf(map.rings[black[1].firstRing])) {
            for (const Piece& piece : map.piecesOf(map.boundary(step.boundary)))
                EXPECT_EQ(piece.kind, PieceKind::Line) << width;
        }
    }
}

TEST(TraceRegions, ThinLinesBetweenTwoColoursKeepTheirColourAndWidth) {
    for (const double width : {0.8, 1.2, 1.6}) {
        QImage image = ground(80, 60, White);
        paint(image, Black, [](double x, double) { return x < 3.0; });
        const auto isInside = [](double x, double y, double radius) {
            return (x - 40.0) * (x - 40.0) + (y - 30.0) * (y - 30.0) < radius * radius;
        };
        paint(image, Black, [&](double x, double y) { return isInside(x, y, 20.0 + width / 2.0); });
        paint(image, Red, [&](double x, double y) { return isInside(x, y, 20.0 - width / 2.0); });
        const RegionMap map = traced(image);
        const auto black = regionsOf(map, Black);
        ASSERT_EQ(black.size(), 2U) << width;
        EXPECT_EQ(map.regions.size(), 4U) << width;
        constexpr double Pi = 3.14159265358979;
        EXPECT_NEAR(black[1].area, 2.0 * Pi * 20.0 * width, 2.0 * Pi * 20.0 * 0.04) << width;
    }
}

TEST(TraceRegions, ThreeAreasMeetInOnePlace) {
    QImage image = ground(40, 40, White);
    paint(image, Red, [](double x, double) { return x < 17.4; });
    paint(image, Blue, [](double, double y) { return y > 21.7; });
    const RegionMap map = traced(image);
    ASSERT_EQ(map.regions.size(), 3U);
    double nearest = 100.0;
    for (const Point junction : map.junctions)
        nearest = std::min(nearest, distance(junction, {17.4, 21.7}));
    EXPECT_LT(nearest, 0.03);
    expectWellFormed(map, 1600.0);
}

TEST(TraceRegions, TransparentPixelsAreNoRegion) {
    QImage image(20, 20, QImage::Format_ARGB32);
    image.fill(Red);
    for (int y = 5; y < 12; ++y) {
        for (int x = 4; x < 14; ++x)
            image.setPixel(x, y, 0x00123456U);
    }
    const RegionMap map = traced(image);
    ASSERT_EQ(map.regions.size(), 1U);
    EXPECT_EQ(map.regions[0].ringCount, 2U);
    EXPECT_NEAR(map.regions[0].area, 400.0 - 70.0, 1e-6);
    const auto hole = map.stepsOf(map.ringsOf(map.regions[0])[1]);
    const MapBoundary& rim = map.boundary(hole[0].boundary);
    EXPECT_EQ(hole[0].reversed ? rim.left : rim.right, RegionId::None);
}

TEST(TraceRegions, TransparentPixelsAtTheRimLeaveIt) {
    QImage image(20, 20, QImage::Format_ARGB32);
    image.fill(Red);
    for (int y = 0; y < 20; ++y) {
        for (int x = 0; x + y < 17; ++x)
            image.setPixel(x, y, 0U);
    }
    for (const double fit : {0.0, 1.0}) {
        const RegionMap map = traced(image, {{"fit", fit}});
        ASSERT_EQ(map.regions.size(), 1U);
        expectWellFormed(map, map.regions[0].area);
        EXPECT_NEAR(map.regions[0].area, 400.0 - 153.0, fit == 0.0 ? 1e-9 : 10.0);
    }
    QImage clear(3, 3, QImage::Format_ARGB32);
    clear.fill(0U);
    EXPECT_TRUE(traced(clear).regions.empty());
}

TEST(TraceRegions, GivenPaletteIsUsedAndNoOtherColour) {
    QImage image = ground(30, 30, qRgb(250, 250, 250));
    paint(image, qRgb(200, 10, 10), [](double x, double) { return x < 12.5; });
    OvTraceRegions tracer;
    tracer.setPalette({White, Red});
    const RegionMap map = tracer.trace(image);
    EXPECT_EQ(map.palette, (std::vector<QRgb>{White, Red}));
    EXPECT_EQ(map.regions.size(), 2U);
}

TEST(TraceRegions, PixelEdgesAreExact) {
    std::mt19937 random(7);
    for (int round = 0; round < 60; ++round) {
        const QImage image = randomImage(random, 2 + round % 3);
        const RegionMap map = traced(image, {{"fit", 0.0}, {"speck", 0.0}});
        expectWellFormed(map, image.width() * image.height());
        for (const MapRegion& region : map.regions)
            EXPECT_EQ(region.area, std::floor(region.area));
        for (const Piece& piece : map.pieces) {
            EXPECT_EQ(piece.kind, PieceKind::Line);
            EXPECT_TRUE(piece.from.x == piece.to.x || piece.from.y == piece.to.y);
        }
    }
}

TEST(TraceRegions, AnyImageGivesAWholeMapTheSameTwice) {
    std::mt19937 random(11);
    for (int round = 0; round < 150; ++round) {
        const QImage image = randomImage(random, 2 + round % 3);
        const RegionMap map = traced(image);
        expectWellFormed(map, image.width() * image.height());
        const RegionMap again = traced(image);
        EXPECT_EQ(map.pieces, again.pieces);
        EXPECT_EQ(map.palette, again.palette);
        EXPECT_EQ(sortedAreas(map), sortedAreas(again));
    }
}

TEST(TraceRegions, TurnedAndMirroredImagesGiveTheSameAreas) {
    std::mt19937 random(13);
    for (int round = 0; round < 40; ++round) {
        const QImage image = randomImage(random, 2 + round % 3);
        const QMap<QString, double> options{{"fit", 0.0}, {"speck", 0.0}};
        const auto areas = sortedAreas(traced(image, options));
        EXPECT_EQ(areas, sortedAreas(traced(image.mirrored(true, false), options)));
        EXPECT_EQ(areas, sortedAreas(traced(image.transformed(QTransform().rotate(90)), options)));
    }
}

TEST(TraceRegions, OutlinesAreClosedAndTurnTheirHolesTheOtherWay) {
    QImage image = ground(30, 30, White);
    paint(image, Red, [](double x, double y) { return std::hypot(x - 15, y - 15) < 9; });
    const RegionMap map = traced(image);
    const auto outlines = OvTraceRegions::outlines(map);
    ASSERT_EQ(outlines.size(), 3);
    EXPECT_FALSE(outlines[0].hole);
    EXPECT_TRUE(outlines[1].hole);
    EXPECT_FALSE(outlines[2].hole);
    EXPECT_EQ(map.palette[static_cast<std::size_t>(outlines[2].layer)], Red);
    for (const OvRegionOutline& outline : outlines)
        EXPECT_EQ(outline.polyline.getStartPoint(), outline.polyline.getEndPoint());
    // Outer rings turn counter-clockwise with y up: their arcs have bulges above 0.
    EXPECT_GT(outlines[2].polyline.getVertexParametersAt(0)[0], 0.0);
    EXPECT_LT(outlines[1].polyline.getVertexParametersAt(0)[0], 0.0);
}

TEST(TraceRegions, SpecksBecomePartOfTheirNeighbour) {
    QImage image = ground(20, 20, White);
    paint(image, Red, [](double x, double) { return x < 8.0; });
    image.setPixel(14, 10, Red);
    EXPECT_EQ(traced(image, {{"speck", 0.0}}).regions.size(), 3U);
    const RegionMap map = traced(image, {{"speck", 2.0}});
    EXPECT_EQ(map.regions.size(), 2U);
    expectWellFormed(map, 400.0);
}

TEST(TraceRegions, NoisyDrawingHasTheAreasOfTheCleanOne) {
    QImage image = ground(90, 60, White);
    paint(image, Red, [](double x, double y) { return std::hypot(x - 25, y - 30) < 17.4; });
    paint(image, Blue, [](double x, double y) { return x > 55.3 && x < 81.8 && y > 9 && y < 48; });
    addNoise(image, 6, 2);
    const RegionMap map = traced(image);
    ASSERT_EQ(map.regions.size(), 3U);
    constexpr double Pi = 3.14159265358979;
    EXPECT_NEAR(map.regions[1].area, 26.5 * 39.0, 4.0);
    EXPECT_NEAR(map.regions[2].area, Pi * 17.4 * 17.4, 4.0);
    expectWellFormed(map, 5400.0);
}

TEST(TraceRegions, SmoothImageHasFewAreas) {
    QImage image = ground(160, 120, White);
    for (int y = 0; y < 120; ++y) {
        for (int x = 0; x < 160; ++x)
            image.setPixel(x, y, qRgb(x, 80 + y, 255 - x));
    }
    paint(image, Red, [](double x, double y) { return std::hypot(x - 60, y - 60) < 20.0; });
    addNoise(image, 9, 8);
    const RegionMap map = traced(image);
    EXPECT_GE(map.regions.size(), 10U);
    EXPECT_LE(map.regions.size(), 400U);
    expectWellFormed(map, 160.0 * 120.0);
}

TEST(TraceRegions, BlurredEdgesStayInTheirPlaces) {
    QImage image = ground(60, 40, White);
    // A step blurred over eight pixels.
    for (int y = 0; y < 40; ++y) {
        for (int x = 0; x < 60; ++x) {
            const double t = std::clamp((x - 26.3) / 8.0, 0.0, 1.0);
            const int value = static_cast<int>(255.0 * (1.0 - t * t * (3.0 - 2.0 * t)) + 0.5);
            image.setPixel(x, y, qRgb(value, value, value));
        }
    }
    const RegionMap map = traced(image);
    ASSERT_EQ(map.regions.size(), 2U);
    // Pixel centres are half a pixel from their column's number.
    EXPECT_NEAR(map.regions[0].area, 40.0 * (26.3 + 4.0 + 0.5), 40.0 * 0.05);
}

TEST(TraceRegions, StoppedTraceGivesAnEmptyMap) {
    class Stop final : public OvTraceProgress {
    public:
        bool report(double fraction) override {
            last = fraction;
            return ++count < 2;
        }
        double last = 0.0;
        int count = 0;
    };
    Stop stop;
    OvTraceRegions tracer;
    tracer.setProgress(&stop);
    EXPECT_TRUE(tracer.trace(ground(20, 20, Red)).regions.empty());
    EXPECT_EQ(stop.count, 2);
    EXPECT_GT(stop.last, 0.0);
    tracer.setProgress(nullptr);
    EXPECT_EQ(tracer.trace(ground(20, 20, Red)).regions.size(), 1U);
}

TEST(TraceRegions, WhatNoCurveFollowsIsAPolygonInItsOwnPlaceAlone) {
    QImage page(QStringLiteral(OVTRACE_SAMPLES "/text.png"));
    ASSERT_FALSE(page.isNull());
    page = page.convertToFormat(QImage::Format_Grayscale8);
    for (int y = 0; y < page.height(); ++y) {
        uchar* row = page.scanLine(y);
        for (int x = 0; x < page.width(); ++x)
            row[x] = row[x] > 100 ? 255 : 0;
    }
    const RegionMap curves = OvTraceRegions().trace(page);
    OvTraceRegions exact;
    exact.setOption("fit", 0);
    // Letters of few pixels have places that no curve follows, in most of their boundaries.
    EXPECT_LT(curves.pieces.size() * 3, exact.trace(page).pieces.size() * 2);
}

} // namespace
