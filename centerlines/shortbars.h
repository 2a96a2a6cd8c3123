#pragma once

#include "inklevels.h"
#include "inkmask.h"
#include "strokepaths.h"

#include <vector>

namespace ovtrace {

class Pace;

/// Strokes of components that are bars too short to have a skeleton to speak of: dots and short
/// dashes. Their place, length and width come from the moments of their ink.
///
/// Looks at components of Ink of at most `longest` pixels; takes those that it returns out of the
/// mask.
std::vector<Stroke> takeShortBars(InkMask& mask, const InkLevels& ink,
                                  const InkComponents& components, double longest, double sigma,
                                  Pace& pace);

} // namespace ovtrace
