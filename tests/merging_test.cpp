// Strokes that others explain.

#include "merging.h"

#include "pace.h"
#include "tracecenterlines.h"

#include <QImage>

#include <gtest/gtest.h>

#include <cmath>
#include <vector>

using namespace ovtrace;

namespace {

Stroke lineOf(Point from, Point to) {
    Stroke stroke;
    stroke.carrier.at = middle(from, to);
    stroke.carrier.direction = unit(to - from);
    stroke.ends[0].at = from;
    stroke.ends[1].at = to;
    stroke.width = 3.0;
    return stroke;
}

std::vector<int> droppedOf(std::vector<Stroke> strokes) {
    Pace pace(nullptr);
    return dropExplainedStubs(strokes, pace);
}

TEST(Merging, StubsWithinOtherStrokesGo) {
    const Stroke longer = lineOf({20, 50}, {80, 50});
    Stroke stub = lineOf({40, 50.5}, {46, 50});
    stub.ends[1].node = 0;
    EXPECT_EQ(droppedOf({longer, stub}), std::vector<int>{1});
    stub.ends[0].node = 1; // a piece between two nodes
    EXPECT_TRUE(droppedOf({longer, stub}).empty());
    EXPECT_TRUE(droppedOf({longer, lineOf({40, 50}, {46, 56})}).empty());
}

/// Half circles side by side that stand on their ends above a line, by the share of samples in each
/// pixel.
QImage coil(Point first, double radius, double width) {
    constexpr int Samples = 8;
    QImage image(120, 60, QImage::Format_Grayscale8);
    const auto isInk = [&](Point p) {
        if (std::abs(p.y - 50.2) <= width / 2.0 && p.x > 5.0 && p.x < 115.0)
            return true;
        for (int turn = 0; turn < 4; ++turn) {
            const double off = distance(p, first + Point{2.0 * radius * turn, 0.0}) - radius;
            if (p.y <= first.y && std::abs(off) <= width / 2.0)
                return true;
        }
        return false;
    };
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x) {
            int ink = 0;
            for (int k = 0; k < Samples * Samples; ++k) {
                const Point p{x + (k % Samples + 0.5) / Samples, y + (k / Samples + 0.5) / Samples};
                ink += isInk(p) ? 1 : 0;
            }
            image.scanLine(y)[x] =
                static_cast<uchar>(255.0 - 255.0 * ink / (Samples * Samples) + 0.5);
        }
    return image;
}

TEST(Merging, NoStubStandsInTheCuspsOfACoil) {
    for (const QImage& image :
         {coil({27.625, 27.625}, 7.0, 1.0), coil({27.75, 27.75}, 7.0, 1.25)}) {
        const OvCenterlines result = OvTraceCenterlines().trace(image);
        EXPECT_EQ(result.strokes.size(), 5);
        EXPECT_EQ(result.nodes.size(), 3);
    }
}

} // namespace
