// Curves that meet others give way until none does.

#include <contacts.h>
#include <regiongrid.h>
#include <separation.h>

#include "shapes/piece.h"
#include "support/randominput.h"

#include <gtest/gtest.h>

namespace {

using namespace ovtrace;

/// Two rows of areas: the boundary between the areas 0 and 1 lies one pixel above that between
/// 1 and 2.
RegionGrid stripes(int width) {
    RegionGrid grid;
    grid.width = width;
    grid.height = 7;
    for (int y = 0; y < grid.height; ++y)
        grid.ids.insert(grid.ids.end(), static_cast<std::size_t>(width), y < 3 ? 0 : y < 4 ? 1 : 2);
    grid.labels = {0, 1, 0};
    return grid;
}

Point toPoint(GridPoint p) {
    return {double(p.x), double(p.y)};
}

std::vector<std::vector<Piece>> linesBetweenJunctions(const CrackMap& cracks) {
    std::vector<std::vector<Piece>> curves;
    for (const CrackChain& chain : cracks.chains) {
        GridPoint p = chain.start;
        std::vector<Piece> pieces;
        for (std::size_t i = 0; i < chain.stepCount; ++i) {
            const GridPoint next = p + cracks.steps[chain.firstStep + i];
            pieces.push_back(linePiece(toPoint(p), toPoint(next)));
            p = next;
        }
        curves.push_back(pieces);
    }
    return curves;
}

/// The chain between two areas, its start at the left.
std::size_t chainBetween(const CrackMap& cracks, int left, int right) {
    for (std::size_t i = 0; i < cracks.chains.size(); ++i) {
        const CrackChain& chain = cracks.chains[i];
        if (std::minmax(chain.left, chain.right) == std::minmax(left, right))
            return i;
    }
    ADD_FAILURE();
    return 0;
}

TEST(Separation, WhatDoesNotMeetStays) {
    const RegionGrid grid = stripes(40);
    const CrackMap cracks = walkCracks(grid);
    Separation separation(cracks);
    EXPECT_FALSE(separation.search(linesBetweenJunctions(cracks)));
}

TEST(Separation, CurvesThatCrossGiveWayThere) {
    const RegionGrid grid = stripes(40);
    const CrackMap cracks = walkCracks(grid);
    auto curves = linesBetweenJunctions(cracks);
    const std::size_t upper = chainBetween(cracks, 0, 1);
    const std::size_t lower = chainBetween(cracks, 1, 2);
    // One step of the upper boundary dips below the lower one.
    for (std::size_t i = 20; i < 22; ++i) {
        Point& at = i == 20 ? curves[upper][20].to : curves[upper][21].from;
        at.y += 1.5;
    }
    Separation separation(cracks);
    ASSERT_TRUE(separation.search(curves));
    for (const std::size_t chain : {upper, lower}) {
        EXPECT_TRUE(separation.isChanged(chain));
        EXPECT_FALSE(separation.stepsBeside(chain).isWhole(40));
        EXPECT_FALSE(separation.stepsBeside(chain).contains(5));
    }
    EXPECT_TRUE(separation.stepsBeside(upper).contains(20));
    for (std::size_t junction = 0; junction < cracks.junctions.size(); ++junction)
        EXPECT_FALSE(separation.isPinned(junction));
    // What goes on crossing gives way as a whole in the end, and its junctions with it.
    while (separation.search(curves)) {
    }
    EXPECT_TRUE(separation.stepsBeside(upper).isWhole(40));
    EXPECT_TRUE(separation.isPinned(static_cast<std::size_t>(cracks.chains[upper].from)));
}

/// A boundary whose inner corners lie anywhere within 1.5 pixels of theirs, but for what is beside.
std::vector<Piece> shaken(const std::vector<Piece>& pieces, std::uint32_t seed,
                          const PatchedSteps& beside) {
    std::vector<Piece> result = pieces;
    RandomInput random(seed);
    for (std::size_t k = 1; k < pieces.size(); ++k) {
        const Point off{random.number(-150, 150) / 100.0, random.number(-150, 150) / 100.0};
        if (beside.contains(k - 1) || beside.contains(k))
            continue;
        result[k - 1].to += off;
        result[k].from += off;
    }
    return result;
}

TEST(Separation, NothingMeetsInTheEndWhenOnlyChangedCurvesAreLookedAtAgain) {
    const RegionGrid grid = stripes(60);
    const CrackMap cracks = walkCracks(grid);
    const auto straight = linesBetweenJunctions(cracks);
    std::vector<std::uint32_t> all;
    for (std::uint32_t i = 0; i < cracks.chains.size(); ++i)
        all.push_back(i);
    int searches = 0;
    for (std::uint32_t seed = 1; seed <= 50; ++seed) {
        Separation separation(cracks);
        const auto curves = [&] {
            std::vector<std::vector<Piece>> found;
            for (const std::uint32_t i : all)
                found.push_back(shaken(straight[i], seed * 100 + i, separation.stepsBeside(i)));
            return found;
        };
        while (separation.search(curves()))
            ++searches;
        EXPECT_TRUE(findContacts(ChainSegments(cracks, curves(), all).grid).empty()) << seed;
    }
    EXPECT_GT(searches, 50);
}

TEST(Separation, ChangedCurveMayMeetOneThatHasNotChanged) {
    RegionGrid grid = stripes(60);
    // The last row is an area of its own.
    for (std::size_t k = grid.ids.size() - 60; k < grid.ids.size(); ++k)
        grid.ids[k] = 3;
    grid.labels = {0, 1, 0, 1};
    const CrackMap cracks = walkCracks(grid);
    auto curves = linesBetweenJunctions(cracks);
    const auto dip = [&curves](std::size_t chain, std::size_t step, double by) {
        curves[chain][step].to.y += by;
        curves[chain][step + 1].from.y += by;
    };
    const std::size_t upper = chainBetween(cracks, 0, 1);
    const std::size_t middle = chainBetween(cracks, 1, 2);
    const std::size_t lower = chainBetween(cracks, 2, 3);
    dip(upper, 20, 1.5);
    Separation separation(cracks);
    ASSERT_TRUE(separation.search(curves));
    EXPECT_TRUE(separation.isChanged(middle));
    EXPECT_FALSE(separation.isChanged(lower));
    dip(upper, 20, -1.5);
    dip(middle, 40, 2.5);
    ASSERT_TRUE(separation.search(curves));
    EXPECT_FALSE(separation.isChanged(upper));
    EXPECT_TRUE(separation.isChanged(middle));
    EXPECT_TRUE(separation.isChanged(lower));
    EXPECT_TRUE(separation.stepsBeside(lower).contains(40) ||
                separation.stepsBeside(lower).contains(19));
}

TEST(Separation, AreasThatTurnOverGiveWayAsAWhole) {
    const RegionGrid grid = stripes(20);
    const CrackMap cracks = walkCracks(grid);
    auto curves = linesBetweenJunctions(cracks);
    // The upper boundary of the middle area runs below its lower one.
    const std::size_t upper = chainBetween(cracks, 0, 1);
    for (Piece& piece : curves[upper]) {
        piece.from.y += 3.0;
        piece.to.y += 3.0;
    }
    Separation separation(cracks);
    ASSERT_TRUE(separation.search(curves));
    EXPECT_TRUE(separation.stepsBeside(upper).isWhole(20));
}

} // namespace
