#include "means3.h"

#if OVTRACE_HAS_SSSE3

#include <array>
#include <cstdint>
#include <tmmintrin.h>

namespace ovtrace {
namespace {

using Byte = signed char;

__m128i load(const void* bytes) {
    return _mm_loadu_si128(static_cast<const __m128i*>(bytes));
}

void store(Byte* bytes, __m128i value) {
    _mm_storeu_si128(reinterpret_cast<__m128i*>(bytes), value);
}

unsigned laneBits(__m128i mask) {
    return static_cast<unsigned>(_mm_movemask_epi8(mask));
}

constexpr unsigned AllLanes = 0xffff;

struct Means {
    __m128i mean;   ///< before rounding takes anything off
    __m128i isEven; ///< where before + after = 2 center
};

/// Eight means as 16-bit numbers, from bytes before and after and bytes center twice, by turns.
Means eightMeans(__m128i beforeAfter, __m128i centers) {
    const __m128i ones = _mm_set1_epi8(1);
    const __m128i twice = _mm_maddubs_epi16(ones, centers);
    const __m128i u = _mm_sub_epi16(_mm_maddubs_epi16(ones, beforeAfter), twice);
    const __m128i share = _mm_mulhi_epi16(u, _mm_set1_epi16(Means3Weight));
    return {_mm_add_epi16(_mm_srai_epi16(twice, 1), share),
            _mm_cmpeq_epi16(u, _mm_setzero_si128())};
}

/// The table's entries for 16 pairs of bytes.
__m128i allDrops(__m128i before, __m128i center, const Means3Drops& drops) {
    alignas(16) std::array<std::uint16_t, 16> places{};
    auto* halves = reinterpret_cast<__m128i*>(places.data());
    _mm_store_si128(halves, _mm_unpacklo_epi8(center, before));
    _mm_store_si128(halves + 1, _mm_unpackhi_epi8(center, before));
    // Put together in words: bytes stored one by one could not be loaded as a vector at once.
    std::array<std::uint64_t, 2> words{};
    for (unsigned lane = 0; lane < 8; ++lane) {
        words[0] |= drops.at(places[lane]) << 8U * lane;
        words[1] |= drops.at(places[lane + 8]) << 8U * lane;
    }
    return _mm_set_epi64x(static_cast<long long>(words[1]), static_cast<long long>(words[0]));
}

/// Looks up which bytes lose something between neighbours that are evenly spaced by one step.
class StepDrops {
public:
    StepDrops(const Means3Drops& drops, int step)
        : step(_mm_set1_epi8(static_cast<char>(step))), low(load(drops.bits(step).data())),
          high(load(drops.bits(step).data() + 16)) {
    }
    /// Where the spacing is this step.
    __m128i applies(__m128i spacing) const {
        return _mm_cmpeq_epi8(spacing, step);
    }
    /// The bytes of the table at the places 0..31.
    __m128i bits(__m128i places) const {
        // A look-up gives 0 for a place whose top bit is set, else it takes the four lower bits.
        const __m128i inLow = _mm_shuffle_epi8(low, _mm_add_epi8(places, _mm_set1_epi8(0x70)));
        const __m128i inHigh = _mm_shuffle_epi8(high, _mm_sub_epi8(places, _mm_set1_epi8(16)));
        return _mm_or_si128(inLow, inHigh);
    }

private:
    __m128i step;
    __m128i low;
    __m128i high;
};

} // namespace

void means3Ssse3(const Byte* before, const Byte* center, const Byte* after, Byte* means,
                 qsizetype size, const Means3Drops& drops) {
    const StepDrops falling(drops, -1);
    const StepDrops flat(drops, 0);
    const StepDrops rising(drops, 1);
    const __m128i bitOfPlace = _mm_set1_epi64x(static_cast<long long>(0x8040201008040201U));
    const __m128i belowDrops = _mm_set1_epi8(static_cast<char>(drops.lowestCenter() - 1));
    const __m128i aboveDrops = _mm_set1_epi8(static_cast<char>(drops.highestCenter() + 1));
    for (qsizetype i = 0; i < size; i += 16) {
        const __m128i a = load(before + i);
        const __m128i b = load(center + i);
        const __m128i c = load(after + i);
        const __m128i places = _mm_and_si128(_mm_srli_epi16(b, 3), _mm_set1_epi8(31));
        const __m128i bit = _mm_shuffle_epi8(bitOfPlace, _mm_and_si128(b, _mm_set1_epi8(7)));
        if (laneBits(_mm_and_si128(_mm_cmpeq_epi8(a, b), _mm_cmpeq_epi8(b, c))) == AllLanes) {
            const __m128i loses = _mm_cmpeq_epi8(_mm_and_si128(flat.bits(places), bit), bit);
            store(means + i, _mm_add_epi8(b, loses)); // -1 where it loses
            continue;
        }
        const Means low = eightMeans(_mm_unpacklo_epi8(a, c), _mm_unpacklo_epi8(b, b));
        const Means high = eightMeans(_mm_unpackhi_epi8(a, c), _mm_unpackhi_epi8(b, b));
        __m128i mean = _mm_packs_epi16(low.mean, high.mean);
        const __m128i isEven = _mm_packs_epi16(low.isEven, high.isEven);
        const __m128i spacing = _mm_sub_epi8(b, a);
        const __m128i isFalling = falling.applies(spacing);
        const __m128i isFlat = flat.applies(spacing);
        const __m128i isRising = rising.applies(spacing);
        const __m128i bits =
            _mm_or_si128(_mm_or_si128(_mm_and_si128(isFalling, falling.bits(places)),
                                      _mm_and_si128(isFlat, flat.bits(places))),
                         _mm_and_si128(isRising, rising.bits(places)));
        const __m128i loses = _mm_cmpeq_epi8(_mm_and_si128(bits, bit), bit);
        mean = _mm_add_epi8(mean, _mm_and_si128(loses, isEven));
        const __m128i known = _mm_or_si128(_mm_or_si128(isFalling, isFlat), isRising);
        const __m128i mayLose =
            _mm_and_si128(_mm_cmpgt_epi8(b, belowDrops), _mm_cmplt_epi8(b, aboveDrops));
        const __m128i open = _mm_andnot_si128(known, _mm_and_si128(isEven, mayLose));
        if (laneBits(open) != 0)
            mean = _mm_sub_epi8(mean, _mm_and_si128(open, allDrops(a, b, drops)));
        store(means + i, mean);
    }
}

} // namespace ovtrace

#else

namespace ovtrace {

void means3Ssse3(const signed char*, const signed char*, const signed char*, signed char*,
                 qsizetype, const Means3Drops&) {
}

} // namespace ovtrace

#endif
