#include "thinning.h"

#include "pace.h"

#include <algorithm>
#include <array>

namespace ovtrace {
namespace {

/// The eight neighbours as bits: north first, then clockwise.
unsigned neighbours(const std::uint8_t* at, std::ptrdiff_t stride) {
    const auto bit = [](std::uint8_t value, unsigned place) {
        return value == InkMask::Ink ? 1U << place : 0U;
    };
    return bit(at[-stride], 0) | bit(at[-stride + 1], 1) | bit(at[1], 2) | bit(at[stride + 1], 3) |
           bit(at[stride], 4) | bit(at[stride - 1], 5) | bit(at[-1], 6) | bit(at[-stride - 1], 7);
}

/// For each neighbourhood, whether its pixel goes in the first (bit 0) or in the second (bit 1)
/// half of a round: Guo and Hall, "Parallel thinning with two-subiteration algorithms" (1989).
/// Bit 2: it can go at any time without breaking the line, and is no end of one.
std::array<std::uint8_t, 256> removalTable() {
    std::array<std::uint8_t, 256> table{};
    for (unsigned n = 0; n < 256; ++n) {
        const auto p = [n](unsigned place) { return (n >> (place % 8)) & 1U; };
        unsigned crossings = 0;
        unsigned first = 0;
        unsigned second = 0;
        unsigned count = 0;
        for (unsigned k = 0; k < 8; k += 2) {
            crossings += p(k) == 0 && (p(k + 1) || p(k + 2)) ? 1U : 0U;
            first += p(k + 7) | p(k);
            second += p(k) | p(k + 1);
            count += p(k) + p(k + 1);
        }
        const unsigned least = std::min(first, second);
        const bool thick = crossings == 1 && least >= 2 && least <= 3;
        if (thick && !((p(0) | p(1) | (1U - p(3))) & p(2)))
            table[n] |= 1;
        if (thick && !((p(4) | p(5) | (1U - p(7))) & p(6)))
            table[n] |= 2;
        if (crossings == 1 && count >= 2)
            table[n] |= 4;
    }
    return table;
}

/// Corners of staircases: pixels without which their neighbours still touch.
void straightenStairs(InkMask& mask, std::vector<std::size_t>& pixels,
                      const std::array<std::uint8_t, 256>& table) {
    const auto isStair = [&](std::size_t i) {
        const unsigned n = neighbours(mask.values.data() + i, mask.stride);
        // A corner has two straight neighbours at a right angle and nothing across from them.
        const bool corner =
            ((n & 0x05U) == 0x05U && !(n & 0x20U)) || ((n & 0x14U) == 0x14U && !(n & 0x80U)) ||
            ((n & 0x50U) == 0x50U && !(n & 0x02U)) || ((n & 0x41U) == 0x41U && !(n & 0x08U));
        return corner && (table[n] & 4U);
    };
    std::erase_if(pixels, [&](std::size_t i) {
        if (!isStair(i))
            return false;
        mask.values[i] = InkMask::Paper;
        return true;
    });
}

} // namespace

std::vector<std::size_t> thin(InkMask& mask, Pace& pace) {
    const std::array<std::uint8_t, 256> table = removalTable();
    std::vector<std::size_t> pixels;
    for (std::size_t i = 0; i < mask.values.size(); ++i)
        if (mask.values[i] == InkMask::Ink)
            pixels.push_back(i);
    // Only pixels whose neighbourhood changed can go later: those with paper beside them.
    std::vector<std::size_t> candidates = pixels;
    std::vector<std::size_t> going;
    double rounds = 0.0;
    for (std::uint8_t half = 1, idle = 0; idle < 2; half = static_cast<std::uint8_t>(3 - half)) {
        going.clear();
        for (const std::size_t i : candidates)
            if (table[neighbours(mask.values.data() + i, mask.stride)] & half)
                going.push_back(i);
        for (const std::size_t i : going)
            mask.values[i] = InkMask::Paper;
        idle = going.empty() ? static_cast<std::uint8_t>(idle + 1) : std::uint8_t(0);
        std::erase_if(candidates, [&](std::size_t i) { return mask.values[i] != InkMask::Ink; });
        rounds += 1.0;
        pace.step(rounds, rounds + 4.0);
    }
    std::erase_if(pixels, [&](std::size_t i) { return mask.values[i] != InkMask::Ink; });
    straightenStairs(mask, pixels, table);
    return pixels;
}

} // namespace ovtrace
