#pragma once

#include "tracecancelled.h"
#include "traceprogress.h"

#include <algorithm>
#include <chrono>

namespace ovtrace {

/// Tells the host how far a trace has come, often enough and not more often.
class Pace {
public:
    explicit Pace(OvTraceProgress* progress) : progress(progress), last(Clock::now()) {
    }

    /// Starts a stage that takes the trace from where the last one ended up to `end` (0 to 1).
    void stage(double end) {
        begin = this->end;
        this->end = end;
        if (progress)
            report(begin);
    }

    /// To be called at least every few milliseconds: `done` of `all` of the stage is done.
    void step(double done, double all) {
        if (!progress || Clock::now() - last < Interval)
            return;
        report(begin + (end - begin) * (all > 0.0 ? done / all : 1.0));
    }

private:
    using Clock = std::chrono::steady_clock;
    static constexpr std::chrono::milliseconds Interval{8};

    /// Parts of a stage may each count from its start: what was told stays told.
    void report(double fraction) {
        last = Clock::now();
        told = std::max(told, fraction);
        if (!progress->report(told))
            throw TraceCancelled();
    }

    OvTraceProgress* progress;
    Clock::time_point last;
    double begin = 0.0;
    double end = 0.0;
    double told = 0.0;
};

} // namespace ovtrace
