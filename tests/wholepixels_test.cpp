// Boundaries that run where one colour covers pixels whole.

#include "support/colors.h"
#include "support/coverage.h"
#include "support/pixelview.h"

#include <wholepixels.h>

#include "shapes/piece.h"

#include <gtest/gtest.h>

#include <vector>

namespace {

using namespace ovtrace;
using coverage::ground;

/// White but for black at the bottom, from the middle of the row 5 on.
struct Halves {
    Halves() : image(ground(20, 12, White)) {
        labels.width = 20;
        labels.height = 12;
        labels.palette = {White, Black};
        labels.plainColors = 2;
        labels.labels.assign(20 * 12, 0);
        for (int y = 5; y < 12; ++y) {
            for (int x = 0; x < 20; ++x) {
                image.setPixel(x, y, y == 5 ? Grey : Black);
                labels.row(y)[x] = 1;
            }
        }
    }
    bool areCrossed(Point from, Point to, bool closed = true) const {
        return crossWholePixels(std::vector{linePiece(from, to)}, viewOf(image), labels, closed);
    }

    QImage image;
    LabelImage labels;
};

TEST(WholePixels, AreNotCrossedByLinesThroughMixedOnes) {
    EXPECT_FALSE(Halves().areCrossed({0, 5.5}, {20, 5.5}));
    EXPECT_FALSE(Halves().areCrossed({0, 4.9}, {20, 6.2})) << "not deep";
}

TEST(WholePixels, AreCrossedByLinesElsewhere) {
    EXPECT_TRUE(Halves().areCrossed({0, 4.5}, {20, 4.5}));
    EXPECT_TRUE(Halves().areCrossed({0, 7.5}, {20, 7.5}));
    EXPECT_TRUE(Halves().areCrossed({10, 0}, {10.5, 5}));
}

TEST(WholePixels, BesideTheEndsOfOpenBoundariesDoNotCount) {
    EXPECT_FALSE(Halves().areCrossed({8, 4.5}, {12, 4.5}, false));
    EXPECT_TRUE(Halves().areCrossed({4, 4.5}, {12, 4.5}, false));
}

TEST(WholePixels, GroupsOfSimilarColoursHaveNone) {
    Halves halves;
    halves.labels.plainColors = 0;
    EXPECT_FALSE(halves.areCrossed({0, 4.5}, {20, 4.5}));
}

TEST(WholePixels, NothingBeyondTheImageIsOne) {
    EXPECT_FALSE(Halves().areCrossed({-5, -0.5}, {30, -0.5}));
    EXPECT_FALSE(Halves().areCrossed({-5, 12.5}, {30, 12.5}));
}

} // namespace
