#pragma once

#include "labelimage.h"

namespace ovtrace {

/// The colours of an image's plain areas where compression, scaling or blurring has left few pixels
/// of exactly these colours.
struct Plateaus {
    /// How far a channel of a pixel in a plain area may be from the area's colour; 0 where the
    /// plain areas are exact, and `colors` is empty then.
    int noise = 0;
    /// Whether colours change everywhere: photographs, and drawings with many gradients. Noise and
    /// colours are then not told.
    bool isSmooth = false;
    /// The commonest first; more than twice the noise apart.
    std::vector<QRgb> colors;
};

/// Finds the noise of an image and the colours of its plain areas; more than `most` are a sign of a
/// photograph.
///
/// In drawings as they were rendered the pixels that differ from a neighbour differ much, being
/// those on edges; where many differ little, something has been done to the image.
Plateaus findPlateaus(const PixelView& image, std::size_t most);

} // namespace ovtrace
