#pragma once

#include "drawing.h"
#include "input.h"
#include "settings.h"

class OvTraceProgress;

/// Traces an image, which is the drawing's from then on.
///
/// `progress`, which may be null, learns how far it is and may stop it: the drawing is empty then.
/// Random draws start afresh, so that the result does not depend on what was traced before.
Drawing traceImage(InputImage&& input, const TraceSettings& settings,
                   OvTraceProgress* progress = nullptr);

/// What to change when nothing was found to trace.
QString likelyCause(const Drawing& drawing, const TraceSettings& settings);
