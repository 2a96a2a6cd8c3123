#include "internodes.h"

#include <algorithm>
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

void internodes(const Path& path, InternodePath& nodes, StageProgress progress) {
    const std::size_t n = path.size();
    nodes.resize(n);
    const auto between = [](const PathPoint& a, const PathPoint& b, const PathPoint& c) {
        // The next midpoint lies ahead by half of the way from a to c.
        return Internode{(a.x + b.x) * 0.5, (a.y + b.y) * 0.5,
                         Directions[signIndex(c.y - a.y)][signIndex(c.x - a.x)]};
    };
    const std::size_t inner = n < 2 ? 0 : n - 2;
    constexpr std::size_t Piece = 65536; // between two questions to the host
    for (std::size_t start = 0; start < inner; start += Piece) {
        const std::size_t end = std::min(start + Piece, inner);
        for (std::size_t i = start; i < end; ++i)
            nodes[i] = between(path[i], path[i + 1], path[i + 2]);
        progress.advance(static_cast<std::int64_t>(end - start));
    }
    for (std::size_t i = inner; i < n; ++i)
        nodes[i] = between(path[i], path[(i + 1) % n], path[(i + 2) % n]);
}

} // namespace ovtrace
