#pragma once

#include "arguments.h"
#include "drawing.h"
#include "input.h"

/// Traces an image.
///
/// Random draws start afresh, so that the result does not depend on what was traced before.
Drawing traceImage(const InputImage& input, const TraceSettings& settings);

/// Fixes the size and unit of a drawing. Throws FileError when the image's file should say its
/// resolution and does not.
void setSize(Drawing& drawing, const InputImage& input, const SizeRequest& request);

/// What to change when nothing was found to trace.
QString likelyCause(const Drawing& drawing, const TraceSettings& settings);
