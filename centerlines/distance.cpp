#include "distance.h"

#include "pace.h"

#include <algorithm>
#include <array>

namespace ovtrace {
namespace {

std::uint8_t raised(int distance) {
    return static_cast<std::uint8_t>(std::min(distance, 255));
}

bool isRidge(const std::uint8_t* at, std::ptrdiff_t stride) {
    const int d = at[0];
    // No neighbour is further inside by as much as a step: 3 straight, 4 across corners.
    return at[-1] < d + 3 && at[1] < d + 3 && at[-stride] < d + 3 && at[stride] < d + 3 &&
           at[-stride - 1] < d + 4 && at[-stride + 1] < d + 4 && at[stride - 1] < d + 4 &&
           at[stride + 1] < d + 4;
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
    std::array<std::uint32_t, 256> histogram{};
    std::uint32_t count = 0;
    for (int y = 0; y < mask.rows - 2; ++y) {
        const std::size_t first = mask.indexOf(0, y);
        for (std::size_t i = first; i < first + static_cast<std::size_t>(mask.stride - 2); ++i) {
            if (!distance[i] || !isRidge(distance.data() + i, mask.stride))
                continue;
            ++histogram[distance[i]];
            ++count;
        }
        pace.step(y, mask.rows);
    }
    std::uint32_t seen = 0;
    for (std::size_t i = 0; i < histogram.size(); ++i) {
        seen += histogram[i];
        if (2 * seen > count)
            return static_cast<std::uint8_t>(i);
    }
    return 0;
}

} // namespace ovtrace
