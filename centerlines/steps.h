#pragma once

#include <cmath>

namespace ovtrace {

/// How many whole steps of `step` pixels a way of `length` pixels has; below 0 for a length below
/// 0.
inline int stepsIn(double length, double step) {
    return static_cast<int>(std::floor(length / step));
}

} // namespace ovtrace
