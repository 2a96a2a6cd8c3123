#include "means3.h"

#include "blurkernels.h"

#include <array>
#include <cmath>

namespace ovtrace {
namespace {

using Byte = signed char;

std::size_t dropIndex(Byte before, Byte center) {
    return static_cast<std::size_t>(static_cast<unsigned char>(before)) << 8 |
           static_cast<unsigned char>(center);
}

std::array<Byte, 65536> makeDrops() {
    const std::span<const double> weights = blurKernel(1);
    std::array<Byte, 65536> drops{};
    for (int before = -128; before < 128; ++before) {
        for (int center = -128; center < 128; ++center) {
            const int after = 2 * center - before;
            if (after < -128 || after > 127)
                continue;
            double sum = before * weights[0];
            sum += center * weights[1];
            sum += after * weights[2];
            drops[dropIndex(static_cast<Byte>(before), static_cast<Byte>(center))] =
                static_cast<Byte>(center - static_cast<int>(std::floor(sum)));
        }
    }
    return drops;
}

} // namespace

Byte means3Drop(Byte before, Byte center) {
    static const std::array<Byte, 65536> Drops = makeDrops();
    return Drops[dropIndex(before, center)];
}

Byte mean3(Byte before, Byte center, Byte after) {
    const int u = before + after - 2 * center;
    if (u == 0)
        return static_cast<Byte>(center - means3Drop(before, center));
    return static_cast<Byte>(center + (u * Means3Weight >> 16));
}

void means3(const Byte* before, const Byte* center, const Byte* after, Byte* means,
            qsizetype size) {
    qsizetype done = 0;
    if (vectorLevel() == VectorLevel::Sse2) {
        done = size / 16 * 16;
        means3Sse2(before, center, after, means, done);
    }
    for (qsizetype i = done; i < size; ++i)
        means[i] = mean3(before[i], center[i], after[i]);
}

} // namespace ovtrace
