#pragma once

#include "vectorlevel.h"

#include <bit>
#include <cstddef>
#include <cstdint>

#if OVTRACE_X86
#include <emmintrin.h>
#endif

/// Cells of 4 x 4 x 4 colours of one alpha, of which the colour space is made up. A cell goes by
/// its first colour, which has the least of every channel; a colour's place in its cell is 0 to
/// 63: red counts by one, green by four, blue by sixteen. Colours are channelWord()s.
namespace ovtrace::colorcell {

inline constexpr unsigned PlaceBits = 2; ///< of each colour channel
inline constexpr std::uint32_t Places = 1U << 3 * PlaceBits;
inline constexpr std::uint32_t PlaceMask = ((1U << PlaceBits) - 1U) * 0x010101U;

inline std::uint32_t cellOf(std::uint32_t color) {
    return color & ~PlaceMask;
}
inline std::uint32_t placeOf(std::uint32_t color) {
    // The product has the bits of the three channels side by side, from bit 16 on.
    constexpr std::uint32_t SideBySide = 1U << 16U | 1U << (8U + PlaceBits) | 1U << 2U * PlaceBits;
    return (color & PlaceMask) * SideBySide >> 16U & (Places - 1U);
}
inline std::uint32_t colorAt(std::uint32_t cell, std::uint32_t place) {
    return cell |
           ((place | place << (8U - PlaceBits) | place << 2U * (8U - PlaceBits)) & PlaceMask);
}

/// Calls visit(place) for the places whose bits are set, in ascending order.
template <typename Visit> void visitPlaces(std::uint64_t places, const Visit& visit) {
    for (; places != 0; places &= places - 1U)
        visit(static_cast<std::uint32_t>(std::countr_zero(places)));
}

/// Which of the numbers of a cell's colours are not 0: bit i stands for numbers[i].
template <VectorLevel Level> std::uint64_t usedPlaces(const std::uint32_t* numbers) {
    std::uint64_t used = 0;
    for (std::uint32_t place = 0; place < Places; ++place)
        used |= std::uint64_t(numbers[place] != 0 ? 1 : 0) << place;
    return used;
}

/// Which of a cell's bytes equal `value`: bit i stands for bytes[i].
template <VectorLevel Level>
std::uint64_t equalPlaces(const std::uint8_t* bytes, std::uint8_t value) {
    std::uint64_t equal = 0;
    for (std::uint32_t place = 0; place < Places; ++place)
        equal |= std::uint64_t(bytes[place] == value ? 1 : 0) << place;
    return equal;
}

/// The pixels of a cell, and the sums of their channel values less those of its first colour.
struct alignas(16) Totals {
    std::uint32_t pixels;
    std::uint32_t red;
    std::uint32_t green;
    std::uint32_t blue;
};

/// Adds up a cell with that many pixels of each colour, fewer than 2^30 in all.
template <VectorLevel Level> Totals totals(const std::uint32_t* counts) {
    Totals sums{};
    for (std::uint32_t place = 0; place < Places; ++place) {
        const std::uint32_t color = colorAt(0, place);
        sums.pixels += counts[place];
        sums.red += (color & 255U) * counts[place];
        sums.green += (color >> 8U & 255U) * counts[place];
        sums.blue += (color >> 16U & 255U) * counts[place];
    }
    return sums;
}

#if OVTRACE_X86
template <> inline std::uint64_t usedPlaces<VectorLevel::Ssse3>(const std::uint32_t* numbers) {
    std::uint64_t unused = 0;
    for (unsigned place = 0; place < Places; place += 16) {
        const auto zeros = [=](unsigned from) {
            const auto* four = reinterpret_cast<const __m128i*>(numbers + place + from);
            return _mm_cmpeq_epi32(_mm_loadu_si128(four), _mm_setzero_si128());
        };
        const __m128i bytes = _mm_packs_epi16(_mm_packs_epi32(zeros(0), zeros(4)),
                                              _mm_packs_epi32(zeros(8), zeros(12)));
        unused |= std::uint64_t(static_cast<std::uint16_t>(_mm_movemask_epi8(bytes))) << place;
    }
    return ~unused;
}

template <>
inline std::uint64_t equalPlaces<VectorLevel::Ssse3>(const std::uint8_t* bytes,
                                                     std::uint8_t value) {
    const __m128i values = _mm_set1_epi8(static_cast<char>(value));
    std::uint64_t equal = 0;
    for (unsigned place = 0; place < Places; place += 16) {
        const __m128i here = _mm_loadu_si128(reinterpret_cast<const __m128i*>(bytes + place));
        const int mask = _mm_movemask_epi8(_mm_cmpeq_epi8(here, values));
        equal |= std::uint64_t(static_cast<std::uint16_t>(mask)) << place;
    }
    return equal;
}

template <> inline Totals totals<VectorLevel::Ssse3>(const std::uint32_t* counts) {
    // A vector has the four levels of red; there is one for every level of green and of blue.
    __m128i ofGreen[4] = {_mm_setzero_si128(), _mm_setzero_si128(), _mm_setzero_si128(),
                          _mm_setzero_si128()};
    __m128i ofBlue[4];
    for (std::size_t blue = 0; blue < 4; ++blue) {
        ofBlue[blue] = _mm_setzero_si128();
        for (std::size_t green = 0; green < 4; ++green) {
            const auto* levels = reinterpret_cast<const __m128i*>(counts + (blue * 4 + green) * 4);
            const __m128i four = _mm_loadu_si128(levels);
            ofGreen[green] = _mm_add_epi32(ofGreen[green], four);
            ofBlue[blue] = _mm_add_epi32(ofBlue[blue], four);
        }
    }
    // Three times the level 3 is once with level 1 and twice with level 2.
    const auto weighted = [](const __m128i* levels) {
        return _mm_add_epi32(_mm_add_epi32(levels[1], levels[3]),
                             _mm_slli_epi32(_mm_add_epi32(levels[2], levels[3]), 1));
    };
    const __m128i green = weighted(ofGreen);
    const __m128i blue = weighted(ofBlue);
    const __m128i pixels =
        _mm_add_epi32(_mm_add_epi32(ofBlue[0], ofBlue[1]), _mm_add_epi32(ofBlue[2], ofBlue[3]));
    const __m128i red =
        _mm_add_epi32(_mm_and_si128(pixels, _mm_setr_epi32(0, -1, 0, -1)),
                      _mm_slli_epi32(_mm_and_si128(pixels, _mm_setr_epi32(0, 0, -1, -1)), 1));
    // The sums over the lanes of all four.
    const __m128i pixelsRed =
        _mm_add_epi32(_mm_unpacklo_epi32(pixels, red), _mm_unpackhi_epi32(pixels, red));
    const __m128i greenBlue =
        _mm_add_epi32(_mm_unpacklo_epi32(green, blue), _mm_unpackhi_epi32(green, blue));
    Totals sums{};
    _mm_store_si128(reinterpret_cast<__m128i*>(&sums),
                    _mm_add_epi32(_mm_unpacklo_epi64(pixelsRed, greenBlue),
                                  _mm_unpackhi_epi64(pixelsRed, greenBlue)));
    return sums;
}
#endif

} // namespace ovtrace::colorcell
