#pragma once

#include "labelimage.h"

#include "shapes/piecerecord.h"

#include <cstdint>
#include <span>
#include <vector>

namespace ovtrace {

/// Gives polygons through places of edges the level and upright corners that these places cut: a
/// place says where the edge is in the middle of a row or a column, and the corner of a serif is
/// between two of them. `left` and `right` are the labels beside the curve, as seen in the picture.
///
/// A straight piece from a place in the middle of a column to one in the middle of a row, or the
/// other way round, becomes two that meet in a right angle if the pixel which the corner lies in is
/// then covered as the image says, and was not before.
std::vector<Piece> withSquareCorners(std::span<const Piece> pieces, const PixelView& image,
                                     const LabelImage& labels, std::uint16_t left,
                                     std::uint16_t right);

} // namespace ovtrace
