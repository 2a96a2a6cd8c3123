#pragma once

#include "labelimage.h"

namespace ovtrace {

/// Whether at the corner (x, y), between columns x - 1 and x and rows y - 1 and y, the upper-left
/// and the lower-right pixel belong together, rather than the other two.
///
/// For corners where two colours meet crosswise. In a smooth image the mean of the four says which
/// colour covers the corner, more than half or, where a line covers no pixel whole, more than in
/// the middle of what is reached. A pixel that hangs on to its colour by this corner alone is the
/// tip of a wedge, which covers less, if the others around the corner hold some of it as well.
/// Where that says nothing, the colour that is rarer around the
/// corner is held to be a line, as a reader would; among equals the darker one.
bool joinsFalling(const PixelView& image, const LabelImage& labels, int x, int y);

} // namespace ovtrace
