#pragma once

#include "labelimage.h"

namespace ovtrace {

/// Evens out the rims of areas of similar pixels: a pixel beside another area takes the label, of
/// those around it, that has the nearest colour and most neighbours of its own (iterated
/// conditional modes: J. Besag, J. R. Statist. Soc. B 48 (1986) 259-302). Transparent pixels stay
/// so.
void smoothLabels(const PixelView& image, LabelImage& labels);

} // namespace ovtrace
