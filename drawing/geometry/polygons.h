#pragma once

#include "noding.h"

/// A polygon: its outer ring runs counter-clockwise and its holes clockwise; all of them end where
/// they start and meet at single points at most.
struct Polygon {
    Corners outer;
    std::vector<Corners> holes;
};

/// The area that rings (closed; outer ones counter-clockwise, holes clockwise) go around, as
/// polygons without crossings, repeated corners or empty areas. `cell` as for Noding.
std::vector<Polygon> polygonsOf(std::vector<Corners> rings, double cell);

/// The area inside a closed ring, positive when it runs counter-clockwise with y up.
double areaOf(const Corners& ring);
