#pragma once

#include "inkmask.h"

#include <cstdint>

namespace ovtrace {

class Pace;

/// Marks the pixels of lettering in the mask as Text.
///
/// Lettering is small components in company: at most `largest` pixels high and wide, closer to
/// each other than half their size, and among them some that are neither bars nor rings (those
/// alone are dashes and holes). One such component alone counts when it is as high as the
/// lettering elsewhere. `strokeWidth` is the usual one, in pixels.
void markText(InkMask& mask, const InkComponents& components, double largest, double strokeWidth,
              Pace& pace);

} // namespace ovtrace
