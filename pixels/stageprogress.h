#pragma once

#include "tracecancelled.h"

#include <chrono>
#include <cstdint>

class OvTraceProgress;

namespace ovtrace {

class ProgressMeter;

/// What a stage counts its work with; costs a test where nobody asks.
class StageProgress {
public:
    /// Nobody asks.
    StageProgress() = default;
    explicit StageProgress(ProgressMeter& meter) : meter(&meter) {
    }

    /// What the stage has to do, in units of about the work on a pixel; more may come as it is
    /// learnt.
    void expect(std::int64_t units) const;
    /// Counts work that has been done, a few milliseconds of it at most. Throws TraceCancelled
    /// when the host does not want more.
    void advance(std::int64_t units) const;

private:
    ProgressMeter* meter = nullptr;
};

/// Tells a host how far a trace has come, and asks it now and then whether to go on.
class ProgressMeter {
public:
    /// The host may be null, and outlives the meter.
    explicit ProgressMeter(OvTraceProgress* host) : host(host) {
    }

    /// Begins the stage between two fractions of the whole trace; asks the host at once.
    StageProgress stage(double from, double to);

private:
    friend class StageProgress;

    /// Work between two looks at the clock: tens of microseconds to a millisecond.
    static constexpr std::int64_t Interval = 8192;

    void look();
    void ask(double fraction);

    OvTraceProgress* host;
    double from = 0.0;
    double to = 0.0;
    double reached = 0.0; ///< the largest fraction so far
    std::int64_t expected = 0;
    std::int64_t done = 0;
    std::int64_t nextLook = Interval; ///< when that much is done
    std::chrono::steady_clock::time_point lastAsked;
};

inline void StageProgress::expect(std::int64_t units) const {
    if (meter != nullptr)
        meter->expected += units;
}

inline void StageProgress::advance(std::int64_t units) const {
    if (meter == nullptr)
        return;
    meter->done += units;
    if (meter->done >= meter->nextLook)
        meter->look();
}

} // namespace ovtrace
