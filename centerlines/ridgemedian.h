#pragma once

#include "paper.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>

namespace ovtrace {

/// The median depth of the ridges among places of a map of distances (distanceToPaper()): half the
/// width of the usual stroke, as halfWidthAt() reads it.
class RidgeMedian {
public:
    /// Looks at a place; `stride` leads to the row below it.
    void look(const std::uint8_t* at, std::ptrdiff_t stride) {
        if (!isRidge(at, stride))
            return;
        ++histogram[at[0]];
        ++count;
    }

    /// 0 without ridges.
    std::uint8_t value() const {
        return count == 0 ? std::uint8_t{0} : levelOfRank(histogram, count / 2);
    }

private:
    /// No neighbour is further inside by as much as a step: 3 straight, 4 across corners.
    static bool isRidge(const std::uint8_t* at, std::ptrdiff_t s) {
        const int straight = std::max({at[-1], at[1], *(at - s), at[s]});
        const int diagonal = std::max({*(at - s - 1), *(at - s + 1), at[s - 1], at[s + 1]});
        return straight < at[0] + 3 && diagonal < at[0] + 4;
    }

    std::array<std::uint32_t, 256> histogram{};
    std::uint32_t count = 0;
};

} // namespace ovtrace
