#pragma once

#include "inklevels.h"
#include "inkmask.h"

#include "shapes/point.h"

#include <vector>

namespace ovtrace {

class Pace;

/// Ink that stays an outline.
struct InkArea {
    InkMask::Value kind = InkMask::Solid;
    std::vector<std::vector<Point>> rings; ///< closed, y down, the even-odd rule
    Point inside;                          ///< middle of one of its pixels
};

/// Outlines of the pixels of value `kind`, one area a component, at half ink: between the middles
/// of pixels where grey says so.
std::vector<InkArea> outlineAreas(const InkLevels& ink, const InkMask& mask, InkMask::Value kind,
                                  Pace& pace);

} // namespace ovtrace
