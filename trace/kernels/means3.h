#pragma once

#include <kernels/vectorlevel.h>

#include <QtGlobal>

#include <array>
#include <cstddef>
#include <cstdint>

namespace ovtrace {

/// Floored weighted means of three stored bytes each, with the blur kernel of radius 1.
///
/// means[i] is floor((before[i] * w0 + center[i] * w1) + after[i] * w0) in doubles, each product
/// and each sum rounded, for w0 = 0.27901 and w1 = 0.44198, whose sum 2 w0 + w1 is exactly 1. It is
/// computed in whole numbers: the exact mean is center + 0.27901 u with u = before + after -
/// 2 center. Unless u is 0 it is at least 0.00095 away from a whole number, far more than the
/// rounding errors, so that it can be floored as it is. When u is 0 the exact mean is the center
/// itself and rounding decides between it and one less: a table holds what it does.
///
/// `means` overlaps none of the three; all have `size` bytes.
void means3(const signed char* before, const signed char* center, const signed char* after,
            signed char* means, qsizetype size);

/// What rounding takes off a mean of equally spaced bytes (before + after = 2 center): 0 or 1.
class Means3Drops {
public:
    Means3Drops();

    signed char operator()(signed char before, signed char center) const {
        return static_cast<signed char>(drops[index(before, center)]);
    }

    /// The least and the greatest center from which anything is ever taken off.
    int lowestCenter() const {
        return lowest;
    }
    int highestCenter() const {
        return highest;
    }

    /// The entries for before = center - step, step being -1, 0 or 1: bit c % 8 of byte c / 8 is
    /// the one for center c, taken as an unsigned byte.
    using Bits = std::array<std::uint8_t, 32>;
    const Bits& bits(int step) const {
        return stepBits[static_cast<std::size_t>(step + 1)];
    }

    /// The one table there is.
    static const Means3Drops& instance();

private:
    static std::size_t index(signed char before, signed char center) {
        return static_cast<std::size_t>(static_cast<unsigned char>(before)) << 8U |
               static_cast<unsigned char>(center);
    }

    std::array<std::uint8_t, 65536> drops{};
    std::array<Bits, 3> stepBits{};
    int lowest = 127;
    int highest = -128;
};

#if OVTRACE_X86
/// The vector forms, for 16 and for 32 bytes or more.
void means3Ssse3(const signed char* before, const signed char* center, const signed char* after,
                 signed char* means, qsizetype size, const Means3Drops& drops);
void means3Avx2(const signed char* before, const signed char* center, const signed char* after,
                signed char* means, qsizetype size, const Means3Drops& drops);
#endif

/// The scalar form, for one byte.
signed char mean3(signed char before, signed char center, signed char after,
                  const Means3Drops& drops);

/// 0.27901 in units of 1 / 65536, rounded down: its products with -512 .. 512, floored to whole
/// numbers, are those of 0.27901 itself.
inline constexpr int Means3Weight = 18285;

} // namespace ovtrace
