#include "colorhistogram.h"

namespace ovtrace {
namespace {

constexpr unsigned FirstPlaceBits = 10;

} // namespace

ColorHistogram::ColorHistogram(std::size_t largestSize)
    : largestSize(largestSize), shift(32 - FirstPlaceBits),
      places(std::size_t(1) << FirstPlaceBits) {
}

std::vector<ColorHistogram::Entry> ColorHistogram::entries() const {
    std::vector<Entry> used;
    used.reserve(size);
    for (const Entry& entry : places) {
        if (entry.count != 0)
            used.push_back(entry);
    }
    return used;
}

bool ColorHistogram::insert(Entry& place, Entry entry) {
    if (size == largestSize)
        return false;
    ++size;
    place = entry;
    if (size * 2 > places.size())
        grow();
    return true;
}

void ColorHistogram::grow() {
    std::vector<Entry> smaller(places.size() * 2);
    smaller.swap(places);
    --shift;
    for (const Entry& entry : smaller) {
        if (entry.count != 0)
            places[placeOf(entry.color)] = entry;
    }
}

} // namespace ovtrace
