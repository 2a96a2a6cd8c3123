#include "means3.h"

#if defined(__SSE2__) || defined(_M_X64)

#include <array>
#include <cstdint>
#include <emmintrin.h>

namespace ovtrace {
namespace {

using Byte = signed char;

__m128i load(const Byte* bytes) {
    return _mm_loadu_si128(reinterpret_cast<const __m128i*>(bytes));
}

void store(Byte* bytes, __m128i value) {
    _mm_storeu_si128(reinterpret_cast<__m128i*>(bytes), value);
}

unsigned laneBits(__m128i mask) {
    return static_cast<unsigned>(_mm_movemask_epi8(mask));
}

constexpr unsigned AllLanes = 0xffff;

/// Eight of the bytes as 16-bit numbers, with their sign.
__m128i lowHalf(__m128i bytes) {
    return _mm_srai_epi16(_mm_unpacklo_epi8(bytes, bytes), 8);
}
__m128i highHalf(__m128i bytes) {
    return _mm_srai_epi16(_mm_unpackhi_epi8(bytes, bytes), 8);
}

struct Means {
    __m128i mean;   ///< before rounding takes anything off
    __m128i isEven; ///< where before + after = 2 center
};

Means eightMeans(__m128i before, __m128i center, __m128i after) {
    const __m128i u = _mm_sub_epi16(_mm_add_epi16(before, after), _mm_add_epi16(center, center));
    const __m128i share = _mm_mulhi_epi16(u, _mm_set1_epi16(Means3Weight));
    return {_mm_add_epi16(center, share), _mm_cmpeq_epi16(u, _mm_setzero_si128())};
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

/// What rounding takes off bytes whose neighbours are alike; remembers the last 16 of them.
class FlatMeans {
public:
    explicit FlatMeans(const Means3Drops& drops) : drops(drops) {
    }
    __m128i operator()(__m128i bytes) {
        if (laneBits(_mm_cmpeq_epi8(bytes, known)) != AllLanes) {
            alignas(16) Byte lanes[16];
            _mm_store_si128(reinterpret_cast<__m128i*>(lanes), bytes);
            for (Byte& lane : lanes)
                lane = static_cast<Byte>(lane - drops(lane, lane));
            means = _mm_load_si128(reinterpret_cast<const __m128i*>(lanes));
            known = bytes;
        }
        return means;
    }

private:
    const Means3Drops& drops;
    // Zero bytes lose nothing.
    __m128i known = _mm_setzero_si128();
    __m128i means = _mm_setzero_si128();
};

} // namespace

void means3Sse2(const Byte* before, const Byte* center, const Byte* after, Byte* means,
                qsizetype size, const Means3Drops& drops) {
    if (size < 16)
        return;
    FlatMeans flatMeans(drops);
    const __m128i belowDrops = _mm_set1_epi8(static_cast<char>(drops.lowestCenter() - 1));
    const __m128i aboveDrops = _mm_set1_epi8(static_cast<char>(drops.highestCenter() + 1));
    for (qsizetype i = 0; i < size; i += 16) {
        const __m128i a = load(before + i);
        const __m128i b = load(center + i);
        const __m128i c = load(after + i);
        if (laneBits(_mm_and_si128(_mm_cmpeq_epi8(a, b), _mm_cmpeq_epi8(b, c))) == AllLanes) {
            store(means + i, flatMeans(b));
            continue;
        }
        const Means low = eightMeans(lowHalf(a), lowHalf(b), lowHalf(c));
        const Means high = eightMeans(highHalf(a), highHalf(b), highHalf(c));
        const __m128i mean = _mm_packs_epi16(low.mean, high.mean);
        const __m128i mayDrop =
            _mm_and_si128(_mm_cmpgt_epi8(b, belowDrops), _mm_cmplt_epi8(b, aboveDrops));
        const __m128i open = _mm_and_si128(_mm_packs_epi16(low.isEven, high.isEven), mayDrop);
        if (laneBits(open) == 0)
            store(means + i, mean);
        else
            store(means + i, _mm_sub_epi8(mean, _mm_and_si128(open, allDrops(a, b, drops))));
    }
}

} // namespace ovtrace

#else

namespace ovtrace {

void means3Sse2(const signed char*, const signed char*, const signed char*, signed char*, qsizetype,
                const Means3Drops&) {
}

} // namespace ovtrace

#endif
