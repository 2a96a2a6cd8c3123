#include "colorhistogram.h"

namespace ovtrace {
namespace {

constexpr unsigned FirstHashBits = 6;

} // namespace

template <Channels channels>
ColorHistogram<channels>::ColorHistogram(std::size_t largestCells)
    : largestCells(largestCells), cells{0}, counters((largestCells + 1) * BlockSize),
      opaque(std::size_t(1) << 3 * CellBits), hashed(std::size_t(1) << FirstHashBits),
      hashedShift(32 - FirstHashBits) {
}

template <Channels channels> std::uint32_t ColorHistogram<channels>::addBlock(std::uint32_t color) {
    const std::uint32_t cell = cellOf(color);
    const auto block = static_cast<std::uint32_t>(cells.size()) * BlockSize;
    cells.push_back(cell);
    if (color >> 24U == 255U) {
        opaque[opaqueCell(color)] = block;
        return block;
    }
    if (++hashedCells * 2 > hashed.size())
        growHashed();
    hashed[hashedPlaceOf(cell)] = {cell, block};
    return block;
}

template <Channels channels> void ColorHistogram<channels>::growHashed() {
    std::vector<HashedCell> smaller(hashed.size() * 2);
    smaller.swap(hashed);
    --hashedShift;
    for (const HashedCell& used : smaller) {
        if (used.block != NoBlock)
            hashed[hashedPlaceOf(used.cell)] = used;
    }
}

template <Channels channels> std::vector<CountedColor> ColorHistogram<channels>::entries() const {
    std::vector<CountedColor> used;
    std::array<CountedColor, BlockSize> found{};
    for (std::size_t block = 1; block < cells.size(); ++block) {
        // Every counter is written down, but the next one takes the place of one that is 0.
        std::size_t size = 0;
        for (std::uint32_t place = 0; place < BlockSize; ++place) {
            const std::uint32_t count = counters[block * BlockSize + place];
            found[size] = {cells[block] | colorInCell(place), count};
            size += count != 0 ? 1 : 0;
        }
        used.insert(used.end(), found.begin(), found.begin() + static_cast<std::ptrdiff_t>(size));
    }
    return used;
}

std::vector<CountedColor> ColorHistogram<Channels::Grey>::entries() const {
    std::vector<CountedColor> used;
    for (std::uint32_t grey = 0; grey < numbers.size(); ++grey) {
        if (numbers[grey] != 0)
            used.push_back({grey * 0x010101U | 0xff000000U, numbers[grey]});
    }
    return used;
}

template class ColorHistogram<Channels::Opaque>;
template class ColorHistogram<Channels::All>;

} // namespace ovtrace
