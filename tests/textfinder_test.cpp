// Which small parts of a drawing are lettering.

#include "textfinder.h"

#include "pace.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

using namespace ovtrace;

namespace {

/// Pixels of a side of a cell: the width of the strokes.
constexpr int Cell = 3;

/// Ink where a cell is no dot, as markText() leaves it with characters of at most ten cells.
class Page {
public:
    explicit Page(std::vector<std::string> rows) : cells(std::move(rows)) {
        const int width = Cell * static_cast<int>(cells[0].size());
        const int height = Cell * static_cast<int>(cells.size());
        InkLevels ink{width, height, {}};
        ink.levels.resize(static_cast<std::size_t>(width) * static_cast<std::size_t>(height));
        for (int y = 0; y < height; ++y)
            for (int x = 0; x < width; ++x)
                ink.levels[ink.indexOf(x, y)] = cellAt(x, y) == '.' ? 0 : 255;
        Pace pace(nullptr);
        mask = inkMask(ink, 115, pace);
        markText(mask, findComponents(mask, InkMask::Ink, pace), 10.0 * Cell, Cell, pace);
    }

    /// Whether all cells with this letter have the value.
    bool all(char letter, InkMask::Value value) const {
        bool same = true;
        for (int y = 0; y < mask.rows - 2; ++y)
            for (int x = 0; x < mask.stride - 2; ++x)
                same = same && (cellAt(x, y) != letter || mask.values[mask.indexOf(x, y)] == value);
        return same;
    }

private:
    char cellAt(int x, int y) const {
        return cells[static_cast<std::size_t>(y / Cell)][static_cast<std::size_t>(x / Cell)];
    }

    std::vector<std::string> cells;
    InkMask mask;
};

TEST(TextFinder, BarsAfterBarsGoOnALineOfText) {
    const Page page({
        ".H..H.E#####.l.l.l..............",
        ".H..H.E......l.l.l..............",
        ".H..H.E......l.l.l..............",
        ".HHHH.EEEE...l.l.l....----...---",
        ".H..H.E......l.l.l..............",
        ".H..H.E......l.l.l..............",
        ".H..H.E#####.l.l.l..............",
    });
    EXPECT_TRUE(page.all('H', InkMask::Text));
    EXPECT_TRUE(page.all('E', InkMask::Text));
    EXPECT_TRUE(page.all('l', InkMask::Text));
    EXPECT_TRUE(page.all('-', InkMask::Ink));
}

TEST(TextFinder, CharactersThatTouchAreText) {
    const Page page({
        ".............................................",
        ".H..H.E#####.k..k..k..k..k...................",
        ".H..H.E......k.k...k..k..k...................",
        ".H..H.E......kkk...k..k..k........w..w......w",
        ".HHHH.EEEE...kkkkkkkkkkkkk........wwwwwwwwwww",
        ".H..H.E......k.k...k..k..k........w..w......w",
        ".H..H.E......k..k..k..k..k........w..w......w",
        ".H..H.E#####.k...k.k..k..k........w..w......w",
    });
    EXPECT_TRUE(page.all('H', InkMask::Text));
    EXPECT_TRUE(page.all('k', InkMask::Text));
    // A part of the drawing that stands apart.
    EXPECT_TRUE(page.all('w', InkMask::Ink));
}

TEST(TextFinder, WhatIsLowerOrHigherThanTheLineIsNone) {
    const Page page({
        "...............tttttttttttttttttttttt",
        "...............t....................t",
        ".H..H.E#####...t....................t",
        ".H..H.E........t....................t",
        ".H..H.E........t....................t",
        ".HHHH.EEEE.....t....................t",
        ".H..H.E........t....................t",
        ".H..H.E........t....................t",
        ".H..H.E#####.-.t....................t",
        "...............tttttttttttttttttttttt",
        "...............t....................t",
        "...............t....................t",
        "...............tttttttttttttttttttttt",
    });
    EXPECT_TRUE(page.all('H', InkMask::Text));
    EXPECT_TRUE(page.all('t', InkMask::Ink));
}

/// Words of narrow letters stand apart, a 1 for instance. A bar whose foot is not on the line is a
/// part of the drawing.
TEST(TextFinder, WordsOfOneLineAreText) {
    const Page page({
        "................................................",
        ".H..H.E#####....1....H..H.E#####................",
        ".H..H.E.........1....H..H.E.....................",
        ".H..H.E.........1....H..H.E.....................",
        ".HHHH.EEEE......1....HHHH.EEEE..................",
        ".H..H.E.........1....H..H.E.....................",
        ".H..H.E.........1....H..H.E.....................",
        ".H..H.E#####....1....H..H.E#####................",
        "................................................",
        "................................................",
        "................................................",
        "................................................",
        ".H..H.E#####.....b..............................",
        ".H..H.E..........b..............................",
        ".H..H.E..........b..............................",
        ".HHHH.EEEE.......b..............................",
        ".H..H.E..........b..............................",
        ".H..H.E..........b..............................",
        ".H..H.E#####.....b..............................",
        ".................b..............................",
        ".................b..............................",
    });
    EXPECT_TRUE(page.all('1', InkMask::Text));
    EXPECT_TRUE(page.all('b', InkMask::Ink));
}

} // namespace
