#pragma once

#include <kernels/vectorlevel.h>

#include <cstddef>
#include <cstdint>

#if OVTRACE_X86
#include <emmintrin.h>
#endif

namespace ovtrace {

/// How many cells cornerBits() looks at.
inline constexpr int CornerCells = 64;

/// Which of 64 cells of a row differ from the cell before them and from the one above: bit i
/// stands for cells[i]. Reads cells[-1] .. cells[63] and above[0] .. above[63].
template <typename Cell> std::uint64_t cornerBits(const Cell* cells, const Cell* above) {
    std::uint64_t bits = 0;
    for (int i = 0; i < CornerCells; ++i) {
        const bool differs = (cells[i] != cells[i - 1]) & (cells[i] != above[i]);
        bits |= std::uint64_t(differs) << i;
    }
    return bits;
}

#if OVTRACE_X86
/// Which of 16 cells of one byte equal the cell before them or the one above: 255 in a byte each.
inline __m128i repeats16(const std::uint8_t* cells, const std::uint8_t* above) {
    const auto load = [](const std::uint8_t* from) {
        return _mm_loadu_si128(reinterpret_cast<const __m128i*>(from));
    };
    const __m128i here = load(cells);
    return _mm_or_si128(_mm_cmpeq_epi8(here, load(cells - 1)), _mm_cmpeq_epi8(here, load(above)));
}
/// The same for cells of two bytes.
inline __m128i repeats16(const std::uint16_t* cells, const std::uint16_t* above) {
    const auto eight = [=](int i) {
        const auto load = [i](const std::uint16_t* from) {
            return _mm_loadu_si128(reinterpret_cast<const __m128i*>(from + i));
        };
        const __m128i here = load(cells);
        return _mm_or_si128(_mm_cmpeq_epi16(here, load(cells - 1)),
                            _mm_cmpeq_epi16(here, load(above)));
    };
    return _mm_packs_epi16(eight(0), eight(8));
}

/// The vector form for cells of one byte and of two.
template <typename Cell> std::uint64_t cornerBitsSsse3(const Cell* cells, const Cell* above) {
    std::uint64_t bits = 0;
    for (int i = 0; i < CornerCells; i += 16) {
        const int repeats = _mm_movemask_epi8(repeats16(cells + i, above + i));
        bits |= std::uint64_t(static_cast<std::uint16_t>(~repeats)) << i;
    }
    return bits;
}
#else
template <typename Cell> std::uint64_t cornerBitsSsse3(const Cell* cells, const Cell* above) {
    return cornerBits(cells, above);
}
#endif

} // namespace ovtrace
