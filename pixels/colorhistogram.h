#pragma once

#include "kernels/colorcell.h"
#include "pagearray.h"
#include "pixelimage.h"

#include <array>
#include <vector>

namespace ovtrace {

/// The colours of a cell (see colorcell) that occur.
struct CountedCell {
    std::uint32_t cell;          ///< its first colour
    const std::uint32_t* counts; ///< by place
    std::uint64_t used;          ///< the bits of the places that occur
};

/// Counts how often each colour occurs, then keeps a value for each.
///
/// Even a photograph has far fewer colours than pixels: what is worked out once a colour need not
/// be worked out again for every pixel. Colours are channelWord()s.
///
/// A cell of colours that occurs gets a block of counters, side by side: colours that are alike, as
/// those of neighbouring pixels are, are counted near each other in memory. The blocks of opaque
/// cells are found by a directory of all such cells, the others by a hash table.
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
        counters[block + colorcell::placeOf(color)] += count;
        return true;
    }

    /// Calls visit(CountedCell) for the cells that occur, in the order of their first colours.
    template <VectorLevel Level, typename Visit> void visitCells(const Visit& visit) const {
        for (std::size_t block = 1; block < cells.size(); ++block) {
            const std::uint32_t* counts = counters.data() + block * BlockSize;
            visit(CountedCell{cells[block], counts, colorcell::usedPlaces<Level>(counts)});
        }
    }

    /// Puts a value in place of each count: calls assign(CountedCell, values by place).
    template <VectorLevel Level, typename Value, typename Assign>
    void replaceCounts(const Assign& assign) {
        // Values are no larger than counts: they never reach the counters of later cells, nor,
        // as block 0 is not used, those of their own unless they have their size.
        static_assert(sizeof(Value) <= sizeof(std::uint32_t));
        auto* values = valuesAt<Value>(0);
        visitCells<Level>([&](const CountedCell& cell) { assign(cell, values += BlockSize); });
    }
    /// The value of a colour.
    template <typename Value> Value value(std::uint32_t color) const {
        return *valuesAt<Value>(blockOf(color) + colorcell::placeOf(color));
    }

private:
    static constexpr unsigned PlaceBits = colorcell::PlaceBits;
    static constexpr unsigned CellBits = 8 - PlaceBits;
    static constexpr std::uint32_t BlockSize = colorcell::Places;
    /// The first counter of no block: that of block 0, which is never used.
    static constexpr std::uint32_t NoBlock = 0;

    static std::uint32_t opaqueCell(std::uint32_t color) {
        constexpr std::uint32_t Mask = (1U << CellBits) - 1U;
        return (color >> PlaceBits & Mask) | (color >> 2U * PlaceBits & Mask << CellBits) |
               (color >> 3U * PlaceBits & Mask << 2U * CellBits);
    }
    /// The block's first counter, or NoBlock.
    std::uint32_t blockOf(std::uint32_t color) const {
        if (channels == Channels::All && color >> 24U != 255U)
            return hashed[hashedPlaceOf(colorcell::cellOf(color))].block;
        return opaque[opaqueCell(color)];
    }
    std::uint32_t addBlock(std::uint32_t color);
    template <typename Value> Value* valuesAt(std::size_t index) const {
        return reinterpret_cast<Value*>(counters.data()) + index;
    }

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
    PageArray<std::uint32_t> counters; ///< by block and place in the cell; later the values
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
    /// Each grey is visited as a cell of its own, its first colour.
    template <VectorLevel, typename Visit> void visitCells(const Visit& visit) const {
        for (std::uint32_t grey = 0; grey < numbers.size(); ++grey) {
            if (numbers[grey] != 0)
                visit(CountedCell{grey * 0x010101U | 0xff000000U, &numbers[grey], 1});
        }
    }
    template <VectorLevel Level, typename Value, typename Assign>
    void replaceCounts(const Assign& assign) {
        visitCells<Level>([&](const CountedCell& cell) {
            std::array<Value, colorcell::Places> values{};
            assign(cell, values.data());
            numbers[greyOf(cell.cell)] = static_cast<std::uint32_t>(values[0]);
        });
    }
    template <typename Value> Value value(std::uint32_t color) const {
        return static_cast<Value>(numbers[greyOf(color)]);
    }

private:
    static std::size_t greyOf(std::uint32_t color) {
        return color & 255U;
    }

    std::array<std::uint32_t, 256> numbers{};
};

} // namespace ovtrace
