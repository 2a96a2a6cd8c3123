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
    const std::uint32_t cell = colorcell::cellOf(color);
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

template class ColorHistogram<Channels::Opaque>;
template class ColorHistogram<Channels::All>;

} // namespace ovtrace
