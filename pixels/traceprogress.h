#pragma once

#include "traceexport.h"

/// What a host hands to a tracer to learn how far a trace has come, and to stop it.
class OVTRACE_EXPORT OvTraceProgress {
public:
    virtual ~OvTraceProgress();

    /// Takes note that `fraction` (0 to 1, never falling within a trace) of the work is done, and
    /// returns whether the trace shall go on; false ends it with an empty result.
    ///
    /// Called on the thread that traces, between stages and at least every 20 ms within them. It
    /// should return at once and must not use the tracer.
    virtual bool report(double fraction) = 0;
};
