#pragma once

#include "means3.h"

#include <algorithm>
#include <bit>
#include <cstdint>

namespace ovtrace {

/// means3() on vectors: Bytes16 or Bytes32.
template <typename Bytes> class Means3Vector {
public:
    explicit Means3Vector(const Means3Drops& drops)
        : drops(drops), falling(drops, -1), flat(drops, 0), rising(drops, 1) {
    }

    /// For Bytes::Size bytes or more. The last vector may overlap the one before it.
    void operator()(const signed char* before, const signed char* center, const signed char* after,
                    signed char* means, qsizetype size) const {
        for (qsizetype next = 0; next < size; next += Bytes::Size) {
            const qsizetype i = std::min(next, size - Bytes::Size);
            const Vector a = Bytes::load(before + i);
            const Vector b = Bytes::load(center + i);
            const Vector c = Bytes::load(after + i);
            const Vector isFlat = Bytes::equal8(a, b);
            if (Bytes::topBits(Bytes::both(isFlat, Bytes::equal8(b, c))) == Bytes::AllBits) {
                const Place place(b);
                Bytes::store(means + i, Bytes::add8(b, place.hasBit(flat.bits(place))));
                continue;
            }
            std::uint32_t open = blend(a, b, c, means + i);
            for (; open != 0; open &= open - 1) {
                const qsizetype k = i + std::countr_zero(open);
                means[k] = static_cast<signed char>(means[k] - drops(before[k], center[k]));
            }
        }
    }

private:
    using Vector = typename Bytes::Vector;

    /// Where centers stand in the tables of bits.
    struct Place {
        explicit Place(Vector center)
            : byte(Bytes::eighth8(center)),
              bit(Bytes::lookUp(Bytes::all64(0x8040201008040201U),
                                Bytes::both(center, Bytes::all8(7)))) {
        }
        /// -1 where that bit of the table's byte is set, else 0.
        Vector hasBit(Vector bytes) const {
            return Bytes::equal8(Bytes::both(bytes, bit), bit);
        }
        Vector byte;
        Vector bit;
    };

    /// Which centers lose something between neighbours that are evenly spaced by one step.
    struct StepDrops {
        StepDrops(const Means3Drops& drops, int step)
            : step(Bytes::all8(step)), low(Bytes::loadTable(drops.bits(step).data())),
              high(Bytes::loadTable(drops.bits(step).data() + 16)) {
        }
        /// Where the spacing is this step.
        Vector applies(Vector spacing) const {
            return Bytes::equal8(spacing, step);
        }
        /// The bytes of the table, 32 of them, at these places.
        Vector bits(const Place& place) const {
            return Bytes::either(
                Bytes::lookUp(low, Bytes::add8(place.byte, Bytes::all8(0x70))),
                Bytes::lookUp(high, Bytes::subtract8(place.byte, Bytes::all8(16))));
        }
        Vector step;
        Vector low;
        Vector high;
    };

    /// Means as numbers of 16 bits, before rounding takes anything off.
    struct WideMeans {
        /// Of bytes before and after and bytes center twice, by turns.
        WideMeans(Vector beforeAfter, Vector centers) {
            const Vector twice = Bytes::pairSums(centers);
            const Vector u = Bytes::subtract16(Bytes::pairSums(beforeAfter), twice);
            mean = Bytes::add16(Bytes::halve16(twice),
                                Bytes::multiplyHigh16(u, Bytes::all16(Means3Weight)));
            isEven = Bytes::equal16(u, Bytes::all8(0));
        }
        Vector mean;
        Vector isEven; ///< where before + after = 2 center
    };

    /// Writes the means of one vector but for the bytes whose bits it returns: the table of all
    /// steps is to say what those lose.
    std::uint32_t blend(Vector a, Vector b, Vector c, signed char* means) const {
        const WideMeans lower(Bytes::mixLow(a, c), Bytes::mixLow(b, b));
        const WideMeans upper(Bytes::mixHigh(a, c), Bytes::mixHigh(b, b));
        const Vector isEven = Bytes::pack(lower.isEven, upper.isEven);
        const Vector spacing = Bytes::subtract8(b, a);
        const Vector isFalling = falling.applies(spacing);
        const Vector isFlat = flat.applies(spacing);
        const Vector isRising = rising.applies(spacing);
        const Place place(b);
        const Vector bits = Bytes::either(Bytes::either(Bytes::both(isFalling, falling.bits(place)),
                                                        Bytes::both(isFlat, flat.bits(place))),
                                          Bytes::both(isRising, rising.bits(place)));
        const Vector loses = Bytes::both(place.hasBit(bits), isEven);
        Bytes::store(means, Bytes::add8(Bytes::pack(lower.mean, upper.mean), loses));
        const Vector known = Bytes::either(Bytes::either(isFalling, isFlat), isRising);
        const Vector mayLose =
            Bytes::both(Bytes::greater8(b, Bytes::all8(drops.lowestCenter() - 1)),
                        Bytes::greater8(Bytes::all8(drops.highestCenter() + 1), b));
        return Bytes::topBits(Bytes::without(known, Bytes::both(isEven, mayLose)));
    }

    const Means3Drops& drops;
    StepDrops falling;
    StepDrops flat;
    StepDrops rising;
};

} // namespace ovtrace
