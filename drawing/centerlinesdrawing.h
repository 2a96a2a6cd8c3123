#pragma once

#include "drawing.h"

struct OvCenterlines;

/// Puts strokes, text and solid areas into an empty drawing.
void appendCenterlines(const OvCenterlines& centerlines, Drawing& drawing);
