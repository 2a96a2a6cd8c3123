// Filled areas beside strokes.

#include "solids.h"

#include "distance.h"
#include "pace.h"
#include "shapes/point.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <ctime>
#include <functional>

using namespace ovtrace;

namespace {

constexpr int Size = 160;

/// Depth of the middle of a stroke 3 pixels wide.
constexpr std::uint8_t Ridge = 6;

class Sheet {
public:
    /// Ink where `isInk` says so of a pixel's middle.
    explicit Sheet(const std::function<bool(Point)>& isInk, std::uint8_t ridge = Ridge) {
        InkLevels ink{Size, Size, std::vector<std::uint8_t>(std::size_t{Size} * Size)};
        for (int y = 0; y < Size; ++y)
            for (int x = 0; x < Size; ++x)
                ink.levels[ink.indexOf(x, y)] = isInk({x + 0.5, y + 0.5}) ? 255 : 0;
        Pace pace(nullptr);
        mask = inkMask(ink, 115, pace);
        const InkComponents components = findComponents(mask, InkMask::Ink, pace);
        markSolids(mask, distanceToPaper(mask, pace), components, ridge, {}, pace);
    }

    InkMask::Value at(int x, int y) const {
        return static_cast<InkMask::Value>(mask.values[mask.indexOf(x, y)]);
    }

    /// Pixels with the value for which `condition` holds.
    int count(InkMask::Value value, const std::function<bool(Point)>& condition) const {
        int n = 0;
        for (int y = 0; y < Size; ++y)
            for (int x = 0; x < Size; ++x)
                n += at(x, y) == value && condition({x + 0.5, y + 0.5}) ? 1 : 0;
        return n;
    }

private:
    InkMask mask;
};

bool isOnLine(Point p) {
    return std::abs(p.y - 60.5) < 1.5;
}

TEST(Solids, DotOnALineEndsWhereTheLineBegins) {
    const auto isDot = [](Point p) { return distance(p, {60.5, 60.5}) < 8.0; };
    const Sheet sheet([&](Point p) { return isOnLine(p) || isDot(p); });
    EXPECT_EQ(sheet.count(InkMask::Ink, isDot), 0);
    // The line's own ink, but for the blunt angle beside the dot.
    EXPECT_LE(sheet.count(InkMask::Solid, [&](Point p) { return !isDot(p); }), 8);
    EXPECT_EQ(sheet.at(50, 60), InkMask::Ink);
    EXPECT_EQ(sheet.at(71, 60), InkMask::Ink);
}

TEST(Solids, CornersBelongToTheirArea) {
    // A line runs into the middle of the left side of a triangle.
    const auto isTriangle = [](Point p) {
        return p.x > 40.0 && p.x < 80.0 && std::abs(p.y - 60.5) < (80.0 - p.x) / 2.0;
    };
    const Sheet sheet(
        [&](Point p) { return isTriangle(p) || (isOnLine(p) && p.x > 5.0 && p.x < 60.0); });
    EXPECT_EQ(sheet.count(InkMask::Ink, isTriangle), 0);
    EXPECT_EQ(sheet.at(35, 60), InkMask::Ink);
}

TEST(Solids, FrameIsOneWholeArea) {
    const auto isFrame = [](Point p) {
        const double d = std::max(std::abs(p.x - 60.0), std::abs(p.y - 60.0));
        return d < 34.0 && d > 18.0; // deepest in its corners
    };
    const Sheet sheet([&](Point p) { return isFrame(p) || std::abs(p.y - 100.5) < 1.5; });
    EXPECT_EQ(sheet.count(InkMask::Ink, isFrame), 0);
    EXPECT_EQ(sheet.count(InkMask::Solid, [&](Point p) { return !isFrame(p); }), 0);
}

TEST(Solids, WideStrokeIsNone) {
    const Sheet sheet(
        [](Point p) { return std::abs(p.y - 60.0) < 6.0 || std::abs(p.x - 20.5) < 1.5; });
    EXPECT_EQ(sheet.count(InkMask::Solid, [](Point) { return true; }), 0);
}

/// Among wide strokes the corners of a square lie less deep than they do, and very many ways lead
/// into them from its middle: gone one by one they take many seconds and
/// gigabytes.
TEST(Solids, SquareAmongWideStrokesIsFilledOnce) {
    const auto isSquare = [](Point p) {
        return std::max(std::abs(p.x - 80.0), std::abs(p.y - 80.0)) < 79.0;
    };
    const std::clock_t start = std::clock();
    const Sheet sheet(isSquare, 46);
    EXPECT_EQ(sheet.count(InkMask::Ink, isSquare), 0);
    EXPECT_LT(std::clock() - start, 2 * CLOCKS_PER_SEC); // a hundredth of a second; else twelve
}

} // namespace
