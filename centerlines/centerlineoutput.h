#pragma once

#include "outlines.h"
#include "stroke.h"
#include "tracecenterlines.h"

#include <vector>

namespace ovtrace {

/// Fills in the strokes, nodes and areas of `result`, whose height is known; y turns up.
void writeCenterlines(const std::vector<Stroke>& strokes, const std::vector<Point>& nodes,
                      const std::vector<InkArea>& areas, OvCenterlines& result);

/// See OvTraceCenterlines::polylines().
QList<OvPolyline> polylinesOf(const OvCenterlines& centerlines);

} // namespace ovtrace
