#pragma once

#include "shapes/moments.h"
#include "shapes/piecerecord.h"

#include <span>

namespace ovtrace {

/// Whether pieces that were fitted to samples follow them: they lead nowhere else, the tips of
/// acute corners excepted, and leave none out. Fits of few places that contradict each other may do
/// both.
bool followsSamples(std::span<const Piece> pieces, std::span<const Sample> samples, bool closed);

} // namespace ovtrace
