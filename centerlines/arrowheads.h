#pragma once

#include "inkmask.h"
#include "outlines.h"
#include "stroke.h"

#include <vector>

namespace ovtrace {

/// Arrow heads that are too narrow for a filled area by the depth of their ink: triangles with
/// their tips at ends of lines, told by how the ink across the line grows evenly from the end and
/// then falls to the line's own width. The lines keep their ends.
///
/// Where the mask holds a filled area already, there is none.
std::vector<InkArea> findArrowHeads(const InkLevels& ink, const InkMask& mask,
                                    const std::vector<Stroke>& strokes);

} // namespace ovtrace
