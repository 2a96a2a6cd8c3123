#pragma once

#include "inklevels.h"
#include "inkmask.h"
#include "stroke.h"

#include <vector>

namespace ovtrace {

class Pace;

/// Lettering that touches lines: marks its pixels in the mask as Text and drops the strokes that
/// lie in them.
///
/// The ink of long strokes is taken away; what was attached to them is text when it carries on a
/// line of known text, or when three or more pieces as high as known text stand side by side.
/// `threshold` is the ink of 255 that the mask was made with, `largest` and `strokeWidth` are as
/// for markText().
void markTouchingText(InkMask& mask, const InkLevels& ink, int threshold,
                      std::vector<Stroke>& strokes, double largest, double strokeWidth, Pace& pace);

} // namespace ovtrace
