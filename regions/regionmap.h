#pragma once

#include "shapes/piecerecord.h"
#include "shapes/point.h"

#include <QRgb>

#include <cstddef>
#include <cstdint>
#include <vector>

namespace ovtrace {

/// Indices into the lists of a RegionMap, each with a type of its own.
enum class RegionId : std::int32_t { None = -1 };
enum class BoundaryId : std::int32_t {};
enum class JunctionId : std::int32_t { None = -1 };

template <typename Id> constexpr std::size_t indexOf(Id id) {
    return static_cast<std::size_t>(id);
}

/// Some items of a list that follow one another; for as long as the list stays.
template <typename Item> class ListPart {
public:
    ListPart(const Item* firstItem, std::size_t itemCount) : first(firstItem), count(itemCount) {
    }
    const Item* begin() const {
        return first;
    }
    const Item* end() const {
        return first + count;
    }
    const Item* data() const {
        return first;
    }
    std::size_t size() const {
        return count;
    }
    bool empty() const {
        return count == 0;
    }
    const Item& operator[](std::size_t i) const {
        return first[i];
    }
    const Item& front() const {
        return first[0];
    }
    const Item& back() const {
        return first[count - 1];
    }

private:
    const Item* first;
    std::size_t count;
};

/// A curve between two areas, walked so that `left` lies on its left as one sees it in the picture.
struct MapBoundary {
    std::uint32_t firstPiece = 0; ///< into RegionMap::pieces; each starts where the last one ends
    std::uint32_t pieceCount = 0; ///< at least 1
    /// None: beyond the image's rim, or a transparent area.
    RegionId left = RegionId::None;
    RegionId right = RegionId::None;
    /// Where three or more boundaries meet; None (both) for a closed curve that meets no other.
    JunctionId from = JunctionId::None;
    JunctionId to = JunctionId::None;

    bool isClosed() const {
        return from == JunctionId::None;
    }
};

/// A boundary as a ring passes along it.
struct RingStep {
    BoundaryId boundary{};
    bool reversed = false;
};

/// A closed chain of boundaries with its region on the left: outer rings turn counter-clockwise as
/// one sees them in the picture, holes clockwise.
struct MapRing {
    std::uint32_t firstStep = 0; ///< into RegionMap::steps
    std::uint32_t stepCount = 0;
    double area = 0.0; ///< square pixels within the ring, positive for outer rings and for holes
};

/// A connected area of one colour.
struct MapRegion {
    std::uint32_t color = 0;     ///< index into RegionMap::palette
    std::uint32_t firstRing = 0; ///< into RegionMap::rings: the outer ring, then the holes
    std::uint32_t ringCount = 0;
    double area = 0.0; ///< square pixels, without the holes
    /// The region in a hole of which this one lies, alone or with neighbours; None where that hole
    /// is transparent, too. Its index is less than that of this region.
    RegionId enclosing = RegionId::None;
};

/// An image as areas of plain colours that leave no gaps and do not overlap.
///
/// Coordinates are pixels, (0, 0) the upper-left corner of the image, x to the right, y down. Every
/// boundary is stored once, so its two regions share it to the last digit; boundaries that meet
/// end in the same point. The areas of all regions and of what is transparent sum to the image's.
/// Regions are in raster order of their uppermost, among those leftmost pixels.
struct RegionMap {
    int width = 0;  ///< pixels; 0 for no image
    int height = 0; ///< pixels
    /// Colours with their opacity (not premultiplied), as found in the image or as given.
    std::vector<QRgb> palette;
    std::vector<MapRegion> regions;
    std::vector<MapBoundary> boundaries;
    std::vector<MapRing> rings;
    std::vector<RingStep> steps;
    std::vector<Piece> pieces;
    std::vector<Point> junctions;

    const MapRegion& region(RegionId id) const {
        return regions[indexOf(id)];
    }
    const MapBoundary& boundary(BoundaryId id) const {
        return boundaries[indexOf(id)];
    }
    ListPart<MapRing> ringsOf(const MapRegion& region) const {
        return {rings.data() + region.firstRing, region.ringCount};
    }
    ListPart<RingStep> stepsOf(const MapRing& ring) const {
        return {steps.data() + ring.firstStep, ring.stepCount};
    }
    ListPart<Piece> piecesOf(const MapBoundary& boundary) const {
        return {pieces.data() + boundary.firstPiece, boundary.pieceCount};
    }
};

} // namespace ovtrace
