#pragma once

#include "linecolors.h"
#include "outlines.h"
#include "stroke.h"
#include "tracecenterlines.h"

#include <vector>

namespace ovtrace {

/// What a trace found, y down.
struct Found {
    std::vector<Stroke> strokes;
    std::vector<Point> nodes;
    std::vector<InkArea> areas;
    std::vector<double> widths;
    LineColors colors;
};

/// Drops what is no stroke: ends that coincide, and places outside the image but for half a width.
void dropImpossible(std::vector<Stroke>& strokes, int width, int height);

/// Fills in the strokes, nodes, areas, widths and colours of `result`, whose size is known; y turns
/// up.
void writeCenterlines(const Found& found, OvCenterlines& result);

/// See OvTraceCenterlines::polylines().
QList<OvPolyline> polylinesOf(const OvCenterlines& centerlines);

} // namespace ovtrace
