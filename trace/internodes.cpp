#include "internodes.h"

#include <array>
#include <cstddef>

namespace ovtrace {
namespace {

/// The eight compass directions clockwise from 0 = right (y grows downwards); 8 is no move at
/// all. Rows go by the sign of dy + 1, columns by the sign of dx + 1.
constexpr std::array<std::array<int, 3>, 3> Directions{{{5, 6, 7}, {4, 8, 0}, {3, 2, 1}}};

/// 0, 1 or 2 for a negative, zero or positive value.
std::size_t signIndex(int value) {
    return static_cast<std::size_t>((value > 0) - (value < 0) + 1);
}

} // namespace

void internodes(const Path& path, InternodePath& nodes) {
    const std::size_t n = path.size();
    nodes.resize(n);
    for (std::size_t i = 0; i < n; ++i) {
        const std::size_t j = i + 1 < n ? i + 1 : i + 1 - n;
        const std::size_t k = j + 1 < n ? j + 1 : j + 1 - n;
        // The next midpoint lies ahead by half of the way from point i to point k.
        const int dx = path[k].x - path[i].x;
        const int dy = path[k].y - path[i].y;
        nodes[i] = {(path[i].x + path[j].x) * 0.5, (path[i].y + path[j].y) * 0.5,
                    Directions[signIndex(dy)][signIndex(dx)]};
    }
}

} // namespace ovtrace
