#pragma once

#include "crackmap.h"
#include "labelimage.h"
#include "profile.h"

#include "shapes/moments.h"

#include <vector>

namespace ovtrace {

/// How the places of edges are found.
struct PlaceOptions {
    /// How far a channel may be from a palette colour and still be pure: the image's noise.
    int noise = 0;
};

/// Finds where the edge between two areas runs within the pixels that both share.
///
/// A pixel on an edge holds the share of it that each side covers. Summed across the edge, from a
/// pixel of the one colour to one of the other, that is the mean place of the edge in that row or
/// column: exact for straight edges, off by the curvature / 24 for others (height functions).
class EdgePlaces {
public:
    static constexpr double Anywhere = 1e9;

    EdgePlaces(const PixelView& image, const LabelImage& labels, const PlaceOptions& options)
        : image(image), labels(labels), options(options) {
    }

    /// The places along a chain, in its order: one for each row that it crosses where it is steep,
    /// one for each column where it is flat; in images without anti-aliasing one for each step of
    /// the chain. Neither side is beyond the image. None is farther than
    /// `most` pixels from its edge between pixels; those of different chains never pass each other
    /// when that is less than a half.
    std::vector<Sample> placesOf(const CrackMap& cracks, const CrackChain& chain,
                                 double most = Anywhere) const;

    /// One place for each step of a chain, less than half a pixel from its middle and beside it: in
    /// the squares around the corners of the pixels, the polygons through the places of all chains
    /// meet neither each other nor themselves.
    std::vector<Point> placesBeside(const CrackMap& cracks, const CrackChain& chain) const;

    /// Pixels, along x or y, that nothing drawn beside its steps goes beyond.
    static constexpr double Beside = 0.45;

private:
    EdgePlace edgeAt(GridPoint from, GridPoint to, const std::function<double()>& lean) const;

    const PixelView& image;
    const LabelImage& labels;
    PlaceOptions options;
};

} // namespace ovtrace
