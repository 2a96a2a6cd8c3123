#include "mapassembly.h"

#include "shapes/piece.h"

#include <algorithm>
#include <array>
#include <span>
#include <utility>

namespace ovtrace {
namespace {

Point toPoint(GridPoint p) {
    return {static_cast<double>(p.x), static_cast<double>(p.y)};
}

void appendPixelEdges(const CrackMap& cracks, const CrackChain& chain, std::vector<Piece>& pieces) {
    GridPoint corner = chain.start;
    GridPoint p = chain.start;
    for (std::size_t i = 0; i < chain.stepCount; ++i) {
        const Step step = cracks.steps[chain.firstStep + i];
        p = p + step;
        if (i + 1 < chain.stepCount && cracks.steps[chain.firstStep + i + 1] == step)
            continue;
        pieces.push_back(linePiece(toPoint(corner), toPoint(p)));
        corner = p;
    }
}

class MapAssembler {
public:
    MapAssembler(const RegionGrid& grid, const CrackMap& cracks, ShapedChains shapes)
        : grid(grid), cracks(cracks), shapes(std::move(shapes)) {
    }

    RegionMap run(const std::vector<QRgb>& palette) {
        map.width = grid.width;
        map.height = grid.height;
        map.palette = palette;
        addBoundaries();
        addRings();
        addEnclosing();
        map.pieces = std::move(shapes.pieces);
        map.junctions = std::move(shapes.junctions);
        return std::move(map);
    }

private:
    void addBoundaries() {
        map.boundaries.reserve(cracks.chains.size());
        areas.reserve(cracks.chains.size());
        for (std::size_t i = 0; i < cracks.chains.size(); ++i) {
            const CrackChain& chain = cracks.chains[i];
            MapBoundary boundary;
            boundary.firstPiece = static_cast<std::uint32_t>(shapes.starts[i]);
            boundary.pieceCount =
                static_cast<std::uint32_t>(shapes.starts[i + 1] - shapes.starts[i]);
            boundary.left = static_cast<RegionId>(chain.left);
            boundary.right = static_cast<RegionId>(chain.right);
            boundary.from = static_cast<JunctionId>(chain.from);
            boundary.to = static_cast<JunctionId>(chain.to);
            map.boundaries.push_back(boundary);
            areas.push_back(
                areaOf(std::span(shapes.pieces).subspan(shapes.starts[i], boundary.pieceCount)));
        }
    }

    void addRings() {
        map.regions.resize(grid.labels.size());
        for (std::size_t i = 0; i < grid.labels.size(); ++i)
            map.regions[i].color = grid.labels[i];
        for (const CrackRing& ring : cracks.rings) {
            MapRegion& region = map.regions[static_cast<std::size_t>(ring.region)];
            if (region.ringCount++ == 0)
                region.firstRing = static_cast<std::uint32_t>(map.rings.size());
            const double area = addRing(ring);
            region.area += area;
        }
    }
    /// Returns the ring's area, less than 0 for a hole.
    double addRing(const CrackRing& ring) {
        MapRing added;
        added.firstStep = static_cast<std::uint32_t>(map.steps.size());
        added.stepCount = static_cast<std::uint32_t>(ring.passCount);
        double area = 0.0;
        for (std::size_t i = 0; i < ring.passCount; ++i) {
            const ChainPass pass = cracks.passes[ring.firstPass + i];
            map.steps.push_back({static_cast<BoundaryId>(pass.chain), pass.reversed});
            // Turning from +x to +y is clockwise in the picture: outer rings have areas below 0.
            area += pass.reversed ? areas[pass.chain] : -areas[pass.chain];
        }
        added.area = area < 0.0 ? -area : area;
        map.rings.push_back(added);
        return area;
    }

    /// Across its outer ring a region has the one in whose hole it lies, or neighbours in the same
    /// hole; among those is one with an earlier first pixel, so with a smaller number.
    void addEnclosing() {
        std::vector<std::array<bool, 2>> ofHole(cracks.chains.size(), {false, false});
        for (const CrackRing& ring : cracks.rings) {
            for (std::size_t i = 0; i < ring.passCount; ++i) {
                const ChainPass pass = cracks.passes[ring.firstPass + i];
                ofHole[pass.chain][pass.reversed ? 1 : 0] = ring.area < 0;
            }
        }
        for (const CrackRing& ring : cracks.rings) {
            if (ring.area > 0)
                map.regions[static_cast<std::size_t>(ring.region)].enclosing =
                    enclosingOf(ring, ofHole);
        }
    }
    RegionId enclosingOf(const CrackRing& ring,
                         const std::vector<std::array<bool, 2>>& ofHole) const {
        std::int32_t neighbour = ring.region;
        for (std::size_t i = 0; i < ring.passCount; ++i) {
            const ChainPass pass = cracks.passes[ring.firstPass + i];
            const CrackChain& chain = cracks.chains[pass.chain];
            const std::int32_t beyond = pass.reversed ? chain.left : chain.right;
            if (beyond < 0)
                continue;
            if (ofHole[pass.chain][pass.reversed ? 0 : 1])
                return static_cast<RegionId>(beyond);
            neighbour = std::min(neighbour, beyond);
        }
        if (neighbour == ring.region)
            return RegionId::None;
        return map.regions[static_cast<std::size_t>(neighbour)].enclosing;
    }

    const RegionGrid& grid;
    const CrackMap& cracks;
    ShapedChains shapes;
    RegionMap map;
    std::vector<double> areas; ///< of the boundaries, each against the origin
};

} // namespace

ShapedChains pixelEdges(const CrackMap& cracks) {
    ShapedChains shapes;
    shapes.starts.reserve(cracks.chains.size() + 1);
    for (const CrackChain& chain : cracks.chains) {
        shapes.starts.push_back(shapes.pieces.size());
        appendPixelEdges(cracks, chain, shapes.pieces);
    }
    shapes.starts.push_back(shapes.pieces.size());
    for (const GridPoint junction : cracks.junctions)
        shapes.junctions.push_back(toPoint(junction));
    return shapes;
}

RegionMap assembleMap(const RegionGrid& grid, const CrackMap& cracks, ShapedChains shapes,
                      const std::vector<QRgb>& palette) {
    return MapAssembler(grid, cracks, std::move(shapes)).run(palette);
}

} // namespace ovtrace
