#include "means3.h"

#include "blurkernels.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>

namespace ovtrace {

using Byte = signed char;

Means3Drops::Means3Drops() {
    const std::span<const double> weights = blurKernel(1);
    for (int before = -128; before < 128; ++before) {
        for (int center = -128; center < 128; ++center) {
            const int after = 2 * center - before;
            if (after < -128 || after > 127)
                continue;
            double sum = before * weights[0];
            sum += center * weights[1];
            sum += after * weights[2];
            const int drop = center - static_cast<int>(std::floor(sum));
            if (drop == 0)
                continue;
            drops[index(static_cast<Byte>(before), static_cast<Byte>(center))] =
                static_cast<std::uint8_t>(drop);
            const auto place = static_cast<unsigned char>(center);
            if (std::abs(center - before) <= 1)
                stepBits[static_cast<std::size_t>(center - before + 1)][place / 8U] |=
                    static_cast<std::uint8_t>(1U << place % 8U);
            lowest = std::min(lowest, center);
            highest = std::max(highest, center);
        }
    }
}

const Means3Drops& Means3Drops::instance() {
    static const Means3Drops drops;
    return drops;
}

Byte mean3(Byte before, Byte center, Byte after, const Means3Drops& drops) {
    const int u = before + after - 2 * center;
    if (u == 0)
        return static_cast<Byte>(center - drops(before, center));
    return static_cast<Byte>(center + (u * Means3Weight >> 16));
}

void means3(const Byte* before, const Byte* center, const Byte* after, Byte* means,
            qsizetype size) {
    const Means3Drops& drops = Means3Drops::instance();
#if OVTRACE_X86
    if (vectorLevel() == VectorLevel::Avx2 && size >= 32) {
        means3Avx2(before, center, after, means, size, drops);
        return;
    }
    if (vectorLevel() != VectorLevel::Scalar && size >= 16) {
        means3Ssse3(before, center, after, means, size, drops);
        return;
    }
#endif
    for (qsizetype i = 0; i < size; ++i)
        means[i] = mean3(before[i], center[i], after[i], drops);
}

} // namespace ovtrace
