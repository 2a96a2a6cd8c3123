#include "light.h"

#include <algorithm>
#include <array>
#include <cstddef>

namespace ovtrace {
namespace {

/// The fifth root of a number from 0 to 1 by Newton's steps from above: the same bits everywhere.
constexpr double fifthRoot(double value) {
    double root = 1.0;
    for (int step = 0; step < 64; ++step) {
        const double fourth = root * root * root * root;
        const double next = root - (root * fourth - value) / (5.0 * fourth);
        if (!(next < root))
            break;
        root = next;
    }
    return root;
}

/// IEC 61966-2-1.
constexpr double linearOf(int stored) {
    const double level = stored / 255.0;
    if (level <= 0.04045)
        return 255.0 * level / 12.92;
    const double base = (level + 0.055) / 1.055;
    const double root = fifthRoot(base);
    return 255.0 * base * base * root * root; // to the power of 2.4
}

constexpr auto Levels = [] {
    std::array<double, 256> levels{};
    for (int stored = 0; stored < 256; ++stored)
        levels[static_cast<std::size_t>(stored)] = linearOf(stored);
    return levels;
}();

} // namespace

double linearLevel(int stored) {
    return Levels[static_cast<std::size_t>(stored)];
}

double storedLevel(double linear) {
    const auto above = static_cast<std::size_t>(
        std::lower_bound(Levels.begin() + 1, Levels.end() - 1, linear) - Levels.begin());
    const double step = Levels[above] - Levels[above - 1];
    return static_cast<double>(above) - (Levels[above] - linear) / step;
}

double linearStep(int stored) {
    const int upper = std::max(stored, 1);
    return linearLevel(upper) - linearLevel(upper - 1);
}

} // namespace ovtrace
