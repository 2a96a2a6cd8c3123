#include "distance.h"

#include "pace.h"
#include "ridgemedian.h"

#include <algorithm>

namespace ovtrace {
namespace {

std::uint8_t raised(int distance) {
    return static_cast<std::uint8_t>(std::min(distance, 255));
}

} // namespace

std::vector<std::uint8_t> distanceToPaper(const InkMask& mask, Pace& pace) {
    std::vector<std::uint8_t> distance(mask.values.size(), 0);
    const std::ptrdiff_t s = mask.stride;
    const int width = mask.stride - 2;
    const int height = mask.rows - 2;
    for (int y = 0; y < height; ++y) {
        const std::size_t first = mask.indexOf(0, y);
        for (std::size_t i = first; i < first + static_cast<std::size_t>(width); ++i) {
            if (!mask.values[i])
                continue;
            const std::uint8_t* at = distance.data() + i;
            distance[i] = raised(
                std::min(std::min(at[-1], *(at - s)) + 3, std::min(at[-s - 1], at[-s + 1]) + 4));
        }
        pace.step(y, 2.0 * height);
    }
    for (int y = height - 1; y >= 0; --y) {
        const std::size_t first = mask.indexOf(0, y);
        for (std::size_t i = first + static_cast<std::size_t>(width); i-- > first;) {
            if (!mask.values[i])
                continue;
            const std::uint8_t* at = distance.data() + i;
            const int back =
                std::min(std::min(at[1], at[s]) + 3, std::min(at[s - 1], at[s + 1]) + 4);
            distance[i] = raised(std::min<int>(at[0], back));
        }
        pace.step(2 * height - y, 2.0 * height);
    }
    return distance;
}

std::uint8_t medianRidge(const InkMask& mask, const std::vector<std::uint8_t>& distance,
                         Pace& pace) {
    RidgeMedian median;
    for (int y = 0; y < mask.rows - 2; ++y) {
        const std::size_t first = mask.indexOf(0, y);
        for (std::size_t i = first; i < first + static_cast<std::size_t>(mask.stride - 2); ++i) {
            if (distance[i])
                median.look(distance.data() + i, mask.stride);
        }
        pace.step(y, mask.rows);
    }
    return median.value();
}

} // namespace ovtrace
