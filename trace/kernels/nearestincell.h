#pragma once

#include "colorblock.h"

#include <kernels/colorcell.h>

#include <cstddef>
#include <cstdint>

#if OVTRACE_X86
#include <emmintrin.h>
#endif

namespace ovtrace::colorcell {

/// Colours with larger indices are beyond nearestInCell().
inline constexpr int LargestIndex = 30;

/// Stores, by place, the index of that colour of some blocks which is the nearest to the one in
/// the cell; 0 where all are at a distance of 1024 or more. False where there is no form for it:
/// one by one is as fast then.
template <VectorLevel Level>
bool nearestInCell(const ColorBlock* /*block*/, std::uint32_t /*cell*/, std::uint8_t* /*indices*/) {
    return false;
}

#if OVTRACE_X86
/// The nearest of some colours for all places of a cell. The distance is a sum over channels, of
/// which each has four values in a cell at most: only the sums are worked out for every place.
class NearestInCell {
public:
    explicit NearestInCell(std::uint32_t cell)
        : red(_mm_add_epi16(level(cell), fourLevels())),
          green(_mm_add_epi16(level(cell >> 8U), twoLevels())),
          blue(_mm_add_epi16(level(cell >> 16U), fourLevels())), alpha(level(cell >> 24U)) {
        for (__m128i& eight : keys)
            eight = _mm_set1_epi16(LargestKey);
    }

    /// Takes one more colour into account.
    void add(std::uint32_t color, std::int32_t index) {
        const __m128i alphas = _mm_slli_epi16(difference(alpha, level(color >> 24U)), 2);
        const __m128i reds = difference(red, level(color));
        const __m128i base =
            _mm_adds_epi16(_mm_adds_epi16(alphas, reds), _mm_set1_epi16(static_cast<short>(index)));
        const __m128i colorGreen = level(color >> 8U);
        const __m128i upperGreen = _mm_add_epi16(green, _mm_set1_epi16(2 << IndexBits));
        const __m128i lower = _mm_adds_epi16(base, difference(green, colorGreen));
        const __m128i upper = _mm_adds_epi16(base, difference(upperGreen, colorGreen));
        const __m128i blues = difference(blue, level(color >> 16U));
        const __m128i pairs = _mm_unpacklo_epi16(blues, blues);
        takeLess(0, lower, upper, _mm_shuffle_epi32(pairs, 0x00));
        takeLess(2, lower, upper, _mm_shuffle_epi32(pairs, 0x55));
        takeLess(4, lower, upper, _mm_shuffle_epi32(pairs, 0xaa));
        takeLess(6, lower, upper, _mm_shuffle_epi32(pairs, 0xff));
    }

    void storeIndices(std::uint8_t* indices) const {
        const __m128i mask = _mm_set1_epi16(IndexMask);
        for (std::size_t i = 0; i < 8; i += 2) {
            const __m128i found =
                _mm_packus_epi16(_mm_and_si128(keys[i], mask), _mm_and_si128(keys[i + 1], mask));
            const __m128i tooFar = _mm_cmpeq_epi8(found, _mm_set1_epi8(IndexMask));
            _mm_storeu_si128(reinterpret_cast<__m128i*>(indices + 8 * i),
                             _mm_andnot_si128(tooFar, found));
        }
    }

private:
    static constexpr int IndexBits = 5;
    static constexpr int IndexMask = (1 << IndexBits) - 1;
    static_assert(LargestIndex < IndexMask);
    /// What sums saturate to: the keys of all distances from 1024 on. Its index is IndexMask.
    static constexpr short LargestKey = 32767;

    /// A channel value, its lowest eight bits, as the distance in a key.
    static __m128i level(std::uint32_t value) {
        return _mm_set1_epi16(static_cast<short>((value & 255U) << IndexBits));
    }
    static __m128i fourLevels() {
        return _mm_slli_epi16(_mm_setr_epi16(0, 1, 2, 3, 0, 1, 2, 3), IndexBits);
    }
    static __m128i twoLevels() {
        return _mm_slli_epi16(_mm_setr_epi16(0, 0, 0, 0, 1, 1, 1, 1), IndexBits);
    }
    static __m128i difference(__m128i a, __m128i b) {
        return _mm_max_epi16(_mm_sub_epi16(a, b), _mm_sub_epi16(b, a));
    }
    void takeLess(int i, __m128i lower, __m128i upper, __m128i blues) {
        keys[i] = _mm_min_epi16(keys[i], _mm_adds_epi16(lower, blues));
        keys[i + 1] = _mm_min_epi16(keys[i + 1], _mm_adds_epi16(upper, blues));
    }

    __m128i red;   ///< levels by place
    __m128i green; ///< of the two lower levels; the upper ones are two more
    __m128i blue;  ///< the four levels, twice
    __m128i alpha;
    __m128i keys[8] = {}; ///< by place: the least distance, above the index of that colour
};

template <>
inline bool nearestInCell<VectorLevel::Ssse3>(const ColorBlock* block, std::uint32_t cell,
                                              std::uint8_t* indices) {
    NearestInCell nearest(cell);
    for (bool more = true; more; ++block) {
        for (std::size_t place = 0; place < block->size; ++place)
            nearest.add(static_cast<std::uint32_t>(block->colors[place]), block->indices[place]);
        more = block->continues;
    }
    nearest.storeIndices(indices);
    return true;
}
#endif

} // namespace ovtrace::colorcell
