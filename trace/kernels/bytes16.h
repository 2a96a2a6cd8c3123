#pragma once

#include <cstdint>
#include <tmmintrin.h>

namespace ovtrace {

/// Sixteen bytes in a register, for processors with SSSE3. What works on numbers of 16 bits takes
/// and gives eight of them. Bytes32 has the same functions.
struct Bytes16 {
    using Vector = __m128i;
    static constexpr int Size = 16;

    static Vector load(const void* bytes) {
        return _mm_loadu_si128(static_cast<const Vector*>(bytes));
    }
    /// The 16 bytes from `bytes` on, in every 16 bytes of the register.
    static Vector loadTable(const void* bytes) {
        return load(bytes);
    }
    static void store(void* bytes, Vector a) {
        _mm_storeu_si128(static_cast<Vector*>(bytes), a);
    }
    static Vector all8(int value) {
        return _mm_set1_epi8(static_cast<char>(value));
    }
    static Vector all16(int value) {
        return _mm_set1_epi16(static_cast<short>(value));
    }
    static Vector all64(std::uint64_t value) {
        return _mm_set1_epi64x(static_cast<long long>(value));
    }
    static Vector both(Vector a, Vector b) {
        return _mm_and_si128(a, b);
    }
    static Vector either(Vector a, Vector b) {
        return _mm_or_si128(a, b);
    }
    /// b where a has no bits.
    static Vector without(Vector a, Vector b) {
        return _mm_andnot_si128(a, b);
    }
    static Vector add8(Vector a, Vector b) {
        return _mm_add_epi8(a, b);
    }
    static Vector subtract8(Vector a, Vector b) {
        return _mm_sub_epi8(a, b);
    }
    static Vector equal8(Vector a, Vector b) {
        return _mm_cmpeq_epi8(a, b);
    }
    static Vector greater8(Vector a, Vector b) {
        return _mm_cmpgt_epi8(a, b);
    }
    static Vector add16(Vector a, Vector b) {
        return _mm_add_epi16(a, b);
    }
    static Vector subtract16(Vector a, Vector b) {
        return _mm_sub_epi16(a, b);
    }
    static Vector equal16(Vector a, Vector b) {
        return _mm_cmpeq_epi16(a, b);
    }
    static Vector halve16(Vector a) {
        return _mm_srai_epi16(a, 1);
    }
    /// The upper halves of the products.
    static Vector multiplyHigh16(Vector a, Vector b) {
        return _mm_mulhi_epi16(a, b);
    }
    /// Every byte without its three lower bits, divided by eight; as an unsigned number.
    static Vector eighth8(Vector a) {
        return both(_mm_srli_epi16(a, 3), all8(31));
    }
    /// The sums of neighbouring bytes, two to a number of 16 bits.
    static Vector pairSums(Vector a) {
        return _mm_maddubs_epi16(all8(1), a);
    }
    /// a and b by turns, the first half of the bytes.
    static Vector mixLow(Vector a, Vector b) {
        return _mm_unpacklo_epi8(a, b);
    }
    /// The second half.
    static Vector mixHigh(Vector a, Vector b) {
        return _mm_unpackhi_epi8(a, b);
    }
    /// Bytes from the numbers of two halves.
    static Vector pack(Vector low, Vector high) {
        return _mm_packs_epi16(low, high);
    }
    /// The bytes of a table at the places 0..15; 0 for a place whose top bit is set. Of other
    /// places the four lower bits count.
    static Vector lookUp(Vector table, Vector places) {
        return _mm_shuffle_epi8(table, places);
    }
    /// The top bits of the bytes.
    static std::uint32_t topBits(Vector a) {
        return static_cast<std::uint32_t>(_mm_movemask_epi8(a));
    }
    static constexpr std::uint32_t AllBits = 0xffffU;
};

} // namespace ovtrace
