#include "stageprogress.h"

#include "traceprogress.h"

#include <algorithm>

namespace ovtrace {
namespace {

/// How long a host is left alone. What it is promised is longer, for there is work that cannot be
/// interrupted, such as the growth of an array.
constexpr std::chrono::milliseconds Pause(4);

} // namespace

StageProgress ProgressMeter::stage(double stageFrom, double stageTo) {
    if (host == nullptr)
        return {};
    from = stageFrom;
    to = stageTo;
    expected = 0;
    done = 0;
    nextLook = Interval;
    ask(from);
    return StageProgress(*this);
}

void ProgressMeter::look() {
    nextLook = done + Interval;
    if (std::chrono::steady_clock::now() - lastAsked < Pause)
        return;
    // More may be done than was expected: a fraction never leaves its stage.
    const double part =
        done < expected ? static_cast<double>(done) / static_cast<double>(expected) : 1.0;
    ask(from + (to - from) * part);
}

void ProgressMeter::ask(double fraction) {
    // What is learnt of the work on the way must not make it look less than before.
    reached = std::max(reached, fraction);
    if (!host->report(reached))
        throw TraceCancelled();
    lastAsked = std::chrono::steady_clock::now();
}

} // namespace ovtrace
