#pragma once

#include "stroke.h"

#include <vector>

namespace ovtrace {

/// Numbers of parallel lines side by side at even distances, from one side to the other.
using HatchRow = std::vector<int>;

/// The rows of at least four lines among `lines` (numbers of straight, open strokes, rising).
/// `width` and `height` are those of the image.
std::vector<HatchRow> findHatchRows(const std::vector<Stroke>& strokes,
                                    const std::vector<int>& lines, int width, int height);

} // namespace ovtrace
