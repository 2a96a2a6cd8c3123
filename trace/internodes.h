#pragma once

#include "tracerecords.h"

#include <stageprogress.h>

namespace ovtrace {

/// Stores in `nodes` the midpoint of every edge of `path`, each with the direction to the next.
///
/// The midpoints lose the staircase of the pixel grid; record i lies between points i and i + 1,
/// the last one between the last point and the first.
void internodes(const Path& path, InternodePath& nodes, StageProgress progress = {});

} // namespace ovtrace
