#pragma once

#include "labelimage.h"

#include "shapes/piecerecord.h"

#include <span>

namespace ovtrace {

/// Whether pieces run so deep through a pixel that one colour covers whole that they would leave
/// another a sixth of it: in an anti-aliased image nothing runs there. What is near to the ends of
/// a boundary that is not `closed` is left out, as others place them.
bool crossWholePixels(std::span<const Piece> pieces, const PixelView& image,
                      const LabelImage& labels, bool closed);

} // namespace ovtrace
