#pragma once

#include "labelimage.h"

namespace ovtrace {

/// How mixed pixels are told from pixels of a colour of their own.
struct MixOptions {
    /// How far a channel of a pixel in a plain area may be from the area's colour.
    int noise = 0;
    /// Whether pixels may be mixes of colours; one of a palette colour between two others may then
    /// be one as well.
    bool hasMixes = true;
    /// How far a channel of a mix may be from its place between the colours that it is made of:
    /// roundings of some paintings one over the other, or the image's noise.
    double tolerance = 6.0;
    /// Most colours in the end; those of the given palette are never fewer.
    std::size_t mostColors = 64;
    /// Whether what the palette does not explain may bring colours of its own.
    bool mayAddColors = true;
    /// The share of a colour's contrast by which a mix may lie beyond it: sharpened edges do.
    double overshoot = 0.0;
    /// What mixes are the mean of.
    Light light = Light::Stored;
};

/// Gives each pixel the colour of `palette` (not empty) that it has, or the one that covers it most
/// if it is a mix of those around it.
///
/// Lines narrower than a pixel keep their colour: a pixel that is the ridge of a line belongs to it
/// when it is covered by more than half of what the ridge is covered there.
///
/// In images with noise a pixel has a palette colour when it is near to it in a block of two by two
/// that are.
///
/// What neither is of a palette colour nor a mix brings colours of its own: those of lines first,
/// then, where it is much (gradients, photographs), groups of similar colours. They come after
/// those of the palette, and LabelImage::plainColors tells where.
LabelImage labelPixels(const PixelView& image, std::vector<QRgb> palette,
                       const MixOptions& options);

} // namespace ovtrace
