#pragma once

#include "colortree.h"
#include "kernels/colorblock.h"
#include "kernels/nearestincell.h"

#include <color.h>
#include <pixelimage.h>

#include <algorithm>
#include <cstdint>
#include <unordered_map>
#include <vector>

namespace ovtrace {

/// Finds the palette colour nearest to a pixel: the first of those with the smallest distance.
///
/// The distance is the sum of the absolute channel differences, alpha counting four times. A pixel
/// at a distance of 1024 or more from every colour gets index 0. The colour space is cut into
/// boxes; which colours can be the nearest somewhere in a box is worked out when the first pixel
/// falls into it. They are few, so that the size of the palette matters little; where they are not,
/// a tree of the colours is asked for each pixel.
class NearestColor {
public:
    /// For pixels of any alpha, or of alpha 255 alone.
    explicit NearestColor(Channels channels = Channels::All) : opaque(channels != Channels::All) {
    }

    /// Looks for the colours of this palette from now on.
    void setPalette(const Palette& newPalette);

    /// The index of the colour nearest to the pixel, a channelWord().
    template <VectorLevel Level> int find(std::uint32_t pixel) {
        return findNear<Level>(nearBy(pixel), pixel);
    }

    /// Stores the indices of the colours nearest to those of a cell (see colorcell), by place: to
    /// those whose bits are set in `places` at least.
    template <VectorLevel Level, typename Index>
    void findInCell(std::uint32_t cell, std::uint64_t places, Index* indices) {
        const std::int32_t entry = nearBy(cell);
        if (entry >= 0) {
            std::fill_n(indices, colorcell::Places, static_cast<Index>(entry));
            return;
        }
        if constexpr (sizeof(Index) == 1) {
            if (palette.size() <= colorcell::LargestIndex + 1 &&
                colorcell::nearestInCell<Level>(blocksOf(entry), cell, indices))
                return;
        }
        colorcell::visitPlaces(places, [&](std::uint32_t place) {
            indices[place] =
                static_cast<Index>(findNear<Level>(entry, colorcell::colorAt(cell, place)));
        });
    }

private:
    using Candidates = std::vector<std::int32_t>;

    struct CandidatesHash {
        std::size_t operator()(const Candidates& colors) const {
            std::size_t hash = colors.size();
            for (const std::int32_t k : colors)
                hash = hash * 31U + static_cast<std::size_t>(k);
            return hash;
        }
    };

    /// A colour this far away or farther is not considered; index 0 takes its place.
    static constexpr int DistanceBound = 1024;
    static constexpr std::int32_t Unknown = -1;
    static constexpr std::int32_t InTree = -2;
    /// What an entry for block 0 is below 0.
    static constexpr std::int32_t FirstBlock = 3;

    /// Boxes of 64 values of alpha and of 32 or 8 values of the other channels.
    static constexpr unsigned AlphaBits = 2;
    static constexpr unsigned CoarseBits = 3;
    static constexpr unsigned FineBits = 5;

    /// The entry of the pixel's box.
    std::int32_t nearBy(std::uint32_t pixel) {
        const std::int32_t entry = entries[boxOf<FineBits>(pixel)];
        return entry == Unknown ? fillBox(pixel) : entry;
    }
    const ColorBlock* blocksOf(std::int32_t entry) const {
        return blocks.data() - entry - FirstBlock;
    }
    /// find() for a pixel in a box with that entry.
    template <VectorLevel Level> int findNear(std::int32_t entry, std::uint32_t pixel) const {
        if (entry >= 0)
            return entry;
        if (entry == InTree) [[unlikely]]
            return std::max(tree.nearest(pixel, DistanceBound), 0);
        const std::uint64_t spread = spreadColor(pixel);
        const ColorBlock* block = blocksOf(entry);
        auto best = static_cast<unsigned>(DistanceBound);
        int index = 0;
        for (bool more = true; more; ++block) {
            const unsigned key = nearestInBlock<Level>(*block, spread);
            index = key >> 2U < best ? block->indices[key & 3U] : index;
            best = key >> 2U < best ? key >> 2U : best;
            more = block->continues;
        }
        return index;
    }

    /// The box that the pixel lies in when `Bits` of each of red, green and blue count.
    template <unsigned Bits> static std::size_t boxOf(std::uint32_t pixel) {
        constexpr unsigned Mask = (1U << Bits) - 1U;
        return (pixel >> (32U - AlphaBits) << 3U * Bits) |
               (pixel >> (8U - Bits) & Mask) << 2U * Bits | (pixel >> (16U - Bits) & Mask) << Bits |
               (pixel >> (24U - Bits) & Mask);
    }
    ColorBox boundsOf(std::uint32_t pixel, unsigned boxBits) const;
    std::int32_t fillBox(std::uint32_t pixel);
    std::int32_t appendBlocks(const Candidates& colors);
    const Candidates& coarseCandidates(std::uint32_t pixel);
    bool mayBeTooFar(std::int32_t color, const ColorBox& box) const;
    void chooseCandidates(const Candidates& among, const ColorBox& box, Candidates& found) const;

    bool opaque;
    std::vector<std::uint32_t> palette; ///< channelWord()s
    /// By box: Unknown, the index of the one colour that is the nearest everywhere in it, InTree
    /// where there are many, or -FirstBlock minus the first block of its colours.
    std::vector<std::int32_t> entries;
    std::vector<ColorBlock> blocks;
    /// What the entry is for each set of colours so far.
    std::unordered_map<Candidates, std::int32_t, CandidatesHash> known;
    Candidates chosen;              ///< for the box at hand
    Candidates all;                 ///< every colour, unless the tree has them
    std::vector<Candidates> coarse; ///< by larger box: what its boxes choose from
    ColorTree tree;                 ///< the colours of a large palette
    bool usesTree = false;
};

} // namespace ovtrace
