#pragma once

#include <algorithm>
#include <cstddef>

namespace ovtrace {

/// The cell of a row of `count` that a place lies in, counted in cells; the nearest one where it
/// lies beside them.
inline std::size_t cellOf(double place, std::size_t count) {
    return place <= 0.0 ? 0 : std::min(static_cast<std::size_t>(place), count - 1);
}

} // namespace ovtrace
