#pragma once

#include <cmath>
#include <limits>

namespace ovtrace {

/// `value` truncated toward zero; INT_MIN when no int can hold it (NaN, infinite, out of range).
inline int truncateToInt(double value) {
    if (value > -2147483649.0 && value < 2147483648.0)
        return static_cast<int>(value);
    return std::numeric_limits<int>::min();
}

/// The greatest whole number not above `value`, or INT_MIN when no int can hold it.
inline int floorToInt(double value) {
    return truncateToInt(std::floor(value));
}

/// The low byte of truncateToInt(), as a stored channel value.
inline signed char truncateToByte(double value) {
    return static_cast<signed char>(truncateToInt(value) & 255);
}

} // namespace ovtrace
