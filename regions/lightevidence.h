#pragma once

#include "labelimage.h"

namespace ovtrace {

/// What the mixed pixels of an image are the mean of, told from its edges: an edge is
/// straight, or bends evenly, from row to row only where mixes are taken for what they are. Stored
/// levels when the edges say little, as in images without mixed pixels and those whose edges all
/// lie along the pixels.
Light lightOfEdges(const PixelView& image);

/// In how many places, of four neighbouring rows or columns of pixels each, an edge is smoother
/// when its pixels are taken for means of the stored levels, or of light.
struct LightEvidence {
    int forStored = 0;
    int forLinear = 0;
};

/// The evidence of all edges between two plain colours.
LightEvidence lightEvidence(const PixelView& image);

} // namespace ovtrace
