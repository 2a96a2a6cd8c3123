#pragma once

#include "color.h"

#include <cstdint>
#include <vector>

namespace ovtrace {

/// Finds the palette colour nearest to a pixel: the first of those with the smallest distance.
///
/// The distance is the sum of the absolute channel differences, alpha counting four times. A pixel
/// at a distance of 1024 or more from every colour gets index 0. The colour space is cut into
/// small boxes; what colours can be the nearest somewhere in a box is worked out when the first
/// pixel falls into it, and often only one can. So the size of the palette matters little.
class NearestColor {
public:
    /// For about `pixels` look-ups; few of them make larger boxes.
    explicit NearestColor(std::int64_t pixels);

    /// Uses `palette`, which must stay as it is until the next call.
    void setPalette(const Palette& palette);

    /// The index of the colour nearest to the pixel, given as its four stored bytes in memory.
    int find(Color pixel) {
        const std::int32_t entry = entries[boxOf(pixel, bits)];
        return entry > 0 ? entry - 1 : findInBox(pixel);
    }

private:
    using Candidates = std::vector<std::int32_t>;

    /// A box's bounds in channel values 0..255, for red, green, blue and alpha.
    struct Box {
        int low[4];
        int high[4];
    };

    static constexpr int AlphaBits = 2;

    /// The channel value of a stored byte.
    static unsigned value(signed char stored) {
        return static_cast<unsigned char>(stored) ^ 128U;
    }
    /// The box that the pixel lies in when `boxBits` of each of red, green and blue count.
    static std::size_t boxOf(Color pixel, unsigned boxBits) {
        const unsigned shift = 8U - boxBits;
        return (value(pixel.alpha) >> (8U - AlphaBits) << 3U * boxBits) |
               (value(pixel.red) >> shift << 2U * boxBits) |
               (value(pixel.green) >> shift << boxBits) | (value(pixel.blue) >> shift);
    }
    static Box boundsOf(Color pixel, unsigned boxBits);
    int findInBox(Color pixel);
    void fillBox(Color pixel);
    const Candidates& coarseCandidates(Color pixel);
    bool beatsEverywhere(std::int32_t a, std::int32_t b, const Box& box) const;
    bool mayBeTooFar(std::int32_t color, const Box& box) const;
    Candidates candidates(const Candidates& among, const Box& box) const;

    unsigned bits; ///< of each of red, green and blue that tell boxes apart
    const Palette* palette = nullptr;
    /// By box: 0 when nothing is known, the index + 1 when only one colour can be the nearest,
    /// else minus the place in `lists` of a count and as many indices.
    std::vector<std::int32_t> entries;
    std::vector<std::int32_t> lists;
    Candidates all;                 ///< every colour
    std::vector<Candidates> coarse; ///< by larger box, where large palettes are halved first
};

} // namespace ovtrace
