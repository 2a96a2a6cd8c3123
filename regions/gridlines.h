#pragma once

#include "colorcounts.h"
#include "labelimage.h"

namespace ovtrace {

/// The colours of lines one pixel wide that lie on the grid, with the number of their pixels: runs
/// of one colour along a row or a column, between two runs of another. One such line may be a
/// thinner line of any colour that covers its pixels in part, and so may two; that more of the same
/// cover lie within their pixels is no chance, and their colour is what is seen. Unless half as
/// many lie between two rows or columns, where the same cover is divided: thin lines in any place.
ColorCounts findLineColors(const PixelView& image);

} // namespace ovtrace
