#pragma once

#include "crackmap.h"
#include "regionmap.h"

#include <vector>

namespace ovtrace {

/// What the chains of a crack map have become: lines and curves, and places of the junctions.
struct ShapedChains {
    std::vector<Piece> pieces;
    /// For each chain the first of its pieces, and their end.
    std::vector<std::size_t> starts;
    std::vector<Point> junctions;
};

/// The chains along the edges between pixels: lines, one a straight run.
ShapedChains pixelEdges(const CrackMap& cracks);

/// Puts the map together: areas, rings and who encloses whom.
RegionMap assembleMap(const RegionGrid& grid, const CrackMap& cracks, ShapedChains shapes,
                      const std::vector<QRgb>& palette);

} // namespace ovtrace
