#pragma once

#include <color.h>
#include <kernels/vectorlevel.h>

#include <array>
#include <cstdint>
#include <cstdlib>

#if OVTRACE_X86
#include <emmintrin.h>
#endif

namespace ovtrace {

/// A colour (a channelWord()) spread over eight bytes, so that the sum of the absolute differences
/// of two is their distance: red, green, blue and four times alpha, as channel values. The last
/// byte is 0.
inline std::uint64_t spreadColor(std::uint32_t word) {
    return word | static_cast<std::uint64_t>((word >> 24U) * 0x010101U) << 32U;
}

/// The distance of two spread colours, by definition.
inline unsigned spreadDistance(std::uint64_t a, std::uint64_t b) {
    unsigned distance = 0;
    for (unsigned shift = 0; shift < 64; shift += 8) {
        const auto byte = [shift](std::uint64_t spread) {
            return static_cast<int>(spread >> shift & 255U);
        };
        distance += static_cast<unsigned>(std::abs(byte(a) - byte(b)));
    }
    return distance;
}

/// Four colours to compare a pixel with at once.
struct alignas(16) ColorBlock {
    static constexpr std::size_t Size = 4;

    std::array<std::uint64_t, Size> colors{}; ///< spread; unused places repeat the last colour
    std::array<std::int32_t, Size> indices{}; ///< of the colours in the palette, ascending
    std::uint32_t size = 0;                   ///< how many places are used
    bool continues = false;                   ///< whether the next block belongs to this one
};

/// The distance of a spread pixel to the nearest colour of the block, times four, plus the place
/// of that colour in the block: the first one of equally near ones.
template <VectorLevel Level> unsigned nearestInBlock(const ColorBlock& block, std::uint64_t pixel) {
    unsigned best = ~0U;
    for (std::size_t place = 0; place < ColorBlock::Size; ++place) {
        const unsigned key =
            spreadDistance(block.colors[place], pixel) << 2U | static_cast<unsigned>(place);
        best = key < best ? key : best;
    }
    return best;
}

#if OVTRACE_X86
template <>
inline unsigned nearestInBlock<VectorLevel::Ssse3>(const ColorBlock& block, std::uint64_t pixel) {
    const auto* colors = reinterpret_cast<const __m128i*>(block.colors.data());
    const __m128i both = _mm_set1_epi64x(static_cast<long long>(pixel));
    // Each distance, at most 1785, lies in the lowest 16 bits of its half.
    const __m128i first = _mm_sad_epu8(both, _mm_load_si128(colors));
    const __m128i second = _mm_sad_epu8(both, _mm_load_si128(colors + 1));
    const __m128i keys =
        _mm_min_epi16(_mm_or_si128(_mm_slli_epi64(first, 2), _mm_set_epi64x(1, 0)),
                      _mm_or_si128(_mm_slli_epi64(second, 2), _mm_set_epi64x(3, 2)));
    return static_cast<unsigned>(_mm_cvtsi128_si32(_mm_min_epi16(keys, _mm_srli_si128(keys, 8))));
}
#endif

} // namespace ovtrace
