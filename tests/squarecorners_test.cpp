// Corners that polygons through the places of edges cut.

#include "support/colors.h"
#include "support/coverage.h"
#include "support/pixelview.h"

#include <squarecorners.h>

#include "shapes/piece.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <vector>

namespace {

using namespace ovtrace;
using coverage::ground;
using coverage::paint;

/// The labels of an image that is black and white but for mixes.
LabelImage labelled(const QImage& image) {
    LabelImage labels;
    labels.width = image.width();
    labels.height = image.height();
    labels.palette = {White, Black};
    labels.plainColors = 2;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x)
            labels.labels.push_back(qGray(image.pixel(x, y)) < 128 ? 1 : 0);
    }
    return labels;
}

std::vector<Piece> polygon(const std::vector<Point>& points) {
    std::vector<Piece> pieces;
    for (std::size_t i = 0; i < points.size(); ++i)
        pieces.push_back(linePiece(points[i], points[(i + 1) % points.size()]));
    return pieces;
}

bool hasCorner(const std::vector<Piece>& pieces, Point corner) {
    return std::any_of(pieces.begin(), pieces.end(), [corner](const Piece& piece) {
        return distance(piece.from, corner) < 1e-9;
    });
}

/// A black rectangle from (3.4, 4.3) to (8.7, 6.8), and the middles of its edges in rows and
/// columns clear of its corners.
const std::vector<Point> Places = {{4.5, 4.3}, {5.5, 4.3}, {6.5, 4.3}, {7.5, 4.3}, {8.7, 5.5},
                                   {7.5, 6.8}, {6.5, 6.8}, {5.5, 6.8}, {4.5, 6.8}, {3.4, 5.5}};

TEST(SquareCorners, RectangleGetsItsCorners) {
    QImage image = ground(14, 12, White);
    paint(image, Black,
          [](double x, double y) { return x > 3.4 && x < 8.7 && y > 4.3 && y < 6.8; });
    for (const bool reversed : {false, true}) {
        std::vector<Point> places = Places;
        if (reversed)
            std::reverse(places.begin(), places.end());
        const auto left = static_cast<std::uint16_t>(reversed ? 1 : 0);
        const auto right = static_cast<std::uint16_t>(1 - left);
        const std::vector<Piece> squared =
            withSquareCorners(polygon(places), viewOf(image), labelled(image), left, right);
        EXPECT_EQ(squared.size(), Places.size() + 4);
        for (const Point corner : {Point{3.4, 4.3}, {8.7, 4.3}, {8.7, 6.8}, {3.4, 6.8}})
            EXPECT_TRUE(hasCorner(squared, corner));
        for (std::size_t i = 0; i < squared.size(); ++i)
            EXPECT_EQ(squared[i].to, squared[(i + 1) % squared.size()].from);
    }
}

TEST(SquareCorners, CornersThatTheImageLacksStayCut) {
    QImage image = ground(14, 12, White);
    // The same without its corners, cut where the polygon cuts them.
    paint(image, Black, [](double x, double y) {
        const double across = std::min(x - 3.4, 8.7 - x) / 1.1 + std::min(y - 4.3, 6.8 - y) / 1.2;
        return x > 3.4 && x < 8.7 && y > 4.3 && y < 6.8 && across > 1.0;
    });
    const std::vector<Piece> pieces = polygon(Places);
    EXPECT_EQ(withSquareCorners(pieces, viewOf(image), labelled(image), 0, 1), pieces);
}

} // namespace
