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

/// Takes ink away in rounds of two halves. A pixel that a half has left can go in that half later
/// only when its neighbourhood has changed: those wait for it, at first all that have paper beside
/// them.
class Thinner {
public:
    explicit Thinner(InkMask& mask)
        : mask(mask), table(removalTable()), waits(mask.values.size(), 0) {
        for (std::size_t i = 0; i < mask.values.size(); ++i)
            if (mask.values[i] == InkMask::Ink &&
                neighbours(mask.values.data() + i, mask.stride) != 0xFFU)
                wait(i);
    }

    void run(Pace& pace) {
        double rounds = 0.0;
        for (unsigned half = 0, idle = 0; idle < 2; half = 1 - half) {
            idle = takeAway(half) ? 0 : idle + 1;
            rounds += 1.0;
            pace.step(rounds, rounds + 4.0);
        }
    }

    std::vector<std::size_t> rest() {
        std::vector<std::size_t> pixels;
        for (std::size_t i = 0; i < mask.values.size(); ++i)
            if (mask.values[i] == InkMask::Ink)
                pixels.push_back(i);
        straightenStairs(mask, pixels, table);
        return pixels;
    }

private:
    void wait(std::size_t i) {
        for (unsigned half = 0; half < 2; ++half) {
            const auto bit = static_cast<std::uint8_t>(1U << half);
            if (waits[i] & bit)
                continue;
            waits[i] |= bit;
            waiting[half].push_back(i);
        }
    }

    /// All at a time, so that no side is favoured; false when nothing went.
    bool takeAway(unsigned half) {
        const auto bit = static_cast<std::uint8_t>(1U << half);
        going.clear();
        for (const std::size_t i : waiting[half]) {
            waits[i] &= static_cast<std::uint8_t>(~bit);
            if (mask.values[i] == InkMask::Ink &&
                (table[neighbours(mask.values.data() + i, mask.stride)] & bit))
                going.push_back(i);
        }
        waiting[half].clear();
        for (const std::size_t i : going)
            mask.values[i] = InkMask::Paper;
        const std::ptrdiff_t s = mask.stride;
        for (const std::size_t i : going)
            for (const std::ptrdiff_t step :
                 {-s, -s + 1, std::ptrdiff_t{1}, s + 1, s, s - 1, std::ptrdiff_t{-1}, -s - 1}) {
                const std::size_t beside = i + static_cast<std::size_t>(step);
                if (mask.values[beside] == InkMask::Ink)
                    wait(beside);
            }
        return !going.empty();
    }

    InkMask& mask;
    const std::array<std::uint8_t, 256> table;
    std::vector<std::uint8_t> waits; ///< a bit for each half that the pixel waits for
    std::array<std::vector<std::size_t>, 2> waiting;
    std::vector<std::size_t> going;
};

} // namespace

std::vector<std::size_t> thin(InkMask& mask, Pace& pace) {
    Thinner thinner(mask);
    thinner.run(pace);
    return thinner.rest();
}

} // namespace ovtrace
