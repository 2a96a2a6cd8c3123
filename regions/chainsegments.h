#pragma once

#include "crackmap.h"
#include "segmentgrid.h"

#include "shapes/piecerecord.h"

#include <span>
#include <vector>

namespace ovtrace {

/// The straight parts of chains' curves, and where they are.
struct ChainSegments {
    /// `curves` has one for each chain of `cracks`; only those of `chains` are looked at.
    ChainSegments(const CrackMap& cracks, std::span<const std::vector<Piece>> curves,
                  std::span<const std::uint32_t> chains);

    /// The grid refers to the segments.
    ChainSegments(const ChainSegments&) = delete;
    ChainSegments& operator=(const ChainSegments&) = delete;

    std::size_t chainCount; ///< how many there are
    /// Chain by chain in the order given. Junctions have their own numbers as corners.
    std::vector<EdgeSegment> segments;
    SegmentGrid grid;
};

} // namespace ovtrace
