#pragma once

#include "pagearray.h"
#include "pixelimage.h"

#include <array>
#include <vector>

namespace ovtrace {

/// A colour and how often it occurs.
struct CountedColor {
    std::uint32_t color; ///< a channelWord()
    std::uint32_t count; ///< at least 1
};

/// Counts how often each colour occurs and keeps a number for each.
///
/// Even a photograph has far fewer colours than pixels: what is worked out once a colour need not
/// be worked out again for every pixel. Colours are channelWord()s.
///
/// The colour space is cut into cells of 4 x 4 x 4 colours of one alpha. A cell that occurs gets a
/// block of counters, side by side: colours that are alike, as those of neighbouring pixels are,
/// are counted near each other in memory. The blocks of opaque cells are found by a directory of
/// all such cells, the others by a hash table.
template <Channels channels> class ColorHistogram {
public:
    /// Holds the colours of up to `largestCells` cells.
    explicit ColorHistogram(std::size_t largestCells);

    /// Counts `count` more occurrences of a colour, opaque unless the channels are all. False when
    /// there would be too many cells.
    bool add(std::uint32_t color, std::uint32_t count) {
        std::uint32_t block = blockOf(color);
        if (block == NoBlock) {
            if (cells.size() > largestCells)
                return false;
            block = addBlock(color);
        }
        counters[block + placeInCell(color)] += count;
        return true;
    }

    /// The distinct colours with their counts; those of a cell follow each other.
    std::vector<CountedColor> entries() const;
    /// Which cell a colour belongs to.
    static std::uint32_t cellOf(std::uint32_t color) {
        return color & ~PlaceMask;
    }

    /// Replaces the count of a colour that has been counted by a number of the caller's.
    void setValue(std::uint32_t color, std::uint32_t value) {
        counters[blockOf(color) + placeInCell(color)] = value;
    }
    /// Gives that number back.
    std::uint32_t value(std::uint32_t color) const {
        return counters[blockOf(color) + placeInCell(color)];
    }

private:
    static constexpr unsigned PlaceBits = 2; ///< of each colour channel, within a cell
    static constexpr unsigned CellBits = 8 - PlaceBits;
    static constexpr std::uint32_t BlockSize = 1U << 3 * PlaceBits;
    /// The first counter of no block: that of block 0, which is never used.
    static constexpr std::uint32_t NoBlock = 0;
    static constexpr std::uint32_t PlaceMask = ((1U << PlaceBits) - 1U) * 0x010101U;

    static std::uint32_t placeInCell(std::uint32_t color) {
        const std::uint32_t low = color & PlaceMask;
        return (low | low >> (8U - PlaceBits) | low >> 2U * (8U - PlaceBits)) & (BlockSize - 1U);
    }
    /// The channel bits of the colour at that place.
    static std::uint32_t colorInCell(std::uint32_t place) {
        return (place | place << (8U - PlaceBits) | place << 2U * (8U - PlaceBits)) & PlaceMask;
    }
    static std::uint32_t opaqueCell(std::uint32_t color) {
        constexpr std::uint32_t Mask = (1U << CellBits) - 1U;
        return (color >> PlaceBits & Mask) | (color >> 2U * PlaceBits & Mask << CellBits) |
               (color >> 3U * PlaceBits & Mask << 2U * CellBits);
    }
    /// The block's first counter, or NoBlock.
    std::uint32_t blockOf(std::uint32_t color) const {
        if (channels == Channels::All && color >> 24U != 255U)
            return hashed[hashedPlaceOf(cellOf(color))].block;
        return opaque[opaqueCell(color)];
    }
    std::uint32_t addBlock(std::uint32_t color);

    /// A place of the hash table, unused with no block.
    struct HashedCell {
        std::uint32_t cell = 0;
        std::uint32_t block = NoBlock;
    };
    /// Where the cell is, or the unused place where it belongs.
    std::size_t hashedPlaceOf(std::uint32_t cell) const {
        constexpr std::uint32_t Scatter = 0x9e3779b1U; // 2^32 divided by the golden ratio
        std::size_t place = cell * Scatter >> hashedShift;
        while (hashed[place].block != NoBlock && hashed[place].cell != cell)
            place = (place + 1) & (hashed.size() - 1);
        return place;
    }
    void growHashed();

    std::size_t largestCells;
    std::vector<std::uint32_t> cells;  ///< by block: the first colour of its cell
    PageArray<std::uint32_t> counters; ///< by block and place in the cell
    PageArray<std::uint32_t> opaque;   ///< by cell: its block
    std::vector<HashedCell> hashed;    ///< a power of two of places, at most half in use
    unsigned hashedShift;
    std::size_t hashedCells = 0;
};

/// The 256 greys have a counter each.
template <> class ColorHistogram<Channels::Grey> {
public:
    /// They always fit.
    explicit ColorHistogram(std::size_t) {
    }
    bool add(std::uint32_t color, std::uint32_t count) {
        numbers[greyOf(color)] += count;
        return true;
    }
    std::vector<CountedColor> entries() const;
    static std::uint32_t cellOf(std::uint32_t color) {
        return color;
    }
    void setValue(std::uint32_t color, std::uint32_t value) {
        numbers[greyOf(color)] = value;
    }
    std::uint32_t value(std::uint32_t color) const {
        return numbers[greyOf(color)];
    }

private:
    static std::size_t greyOf(std::uint32_t color) {
        return color & 255U;
    }

    std::array<std::uint32_t, 256> numbers{};
};

} // namespace ovtrace
