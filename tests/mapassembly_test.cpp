// From cracks to the map: areas, rings, who encloses whom.

#include "support/lettermap.h"

#include <mapassembly.h>

#include <gtest/gtest.h>

namespace {

using namespace ovtrace;

TEST(MapAssembly, StraightRunsAreOneLine) {
    const RegionMap map = mapOf({"AAAA", "AAAA"});
    ASSERT_EQ(map.regions.size(), 1U);
    EXPECT_EQ(map.boundaries.size(), 1U);
    EXPECT_EQ(map.pieces.size(), 4U);
    EXPECT_DOUBLE_EQ(map.regions[0].area, 8.0);
}

TEST(MapAssembly, AreasAreThoseOfThePixelsWithoutHoles) {
    const RegionMap map = mapOf({"AAAAA", "ABBBA", "ABCBA", "ABBBA", "AAAAA"});
    ASSERT_EQ(map.regions.size(), 3U);
    EXPECT_DOUBLE_EQ(map.regions[0].area, 16.0);
    EXPECT_DOUBLE_EQ(map.regions[1].area, 8.0);
    EXPECT_DOUBLE_EQ(map.regions[2].area, 1.0);
    EXPECT_EQ(map.regions[0].enclosing, RegionId::None);
    EXPECT_EQ(indexOf(map.regions[1].enclosing), 0U);
    EXPECT_EQ(indexOf(map.regions[2].enclosing), 1U);
    const auto rings = map.ringsOf(map.regions[0]);
    ASSERT_EQ(rings.size(), 2U);
    EXPECT_DOUBLE_EQ(rings[0].area, 25.0);
    EXPECT_DOUBLE_EQ(rings[1].area, 9.0);
}

TEST(MapAssembly, NeighboursInOneHoleHaveTheSameEncloser) {
    const RegionMap map = mapOf({"AAAA", "ABCA", "AAAA"});
    ASSERT_EQ(map.regions.size(), 3U);
    EXPECT_EQ(indexOf(map.regions[1].enclosing), 0U);
    EXPECT_EQ(indexOf(map.regions[2].enclosing), 0U);
    EXPECT_EQ(map.junctions.size(), 2U);
    EXPECT_EQ(map.boundaries.size(), 4U);
}

TEST(MapAssembly, WhatLiesInATransparentHoleIsEnclosedByNone) {
    const RegionMap map = mapOf({"AAAAA", "A...A", "A.B.A", "A...A", "AAAAA"});
    ASSERT_EQ(map.regions.size(), 2U);
    EXPECT_EQ(map.regions[1].enclosing, RegionId::None);
    EXPECT_DOUBLE_EQ(map.regions[0].area + map.regions[1].area, 17.0);
}

} // namespace
