#pragma once

#include <QRgb>

#include <cstddef>
#include <cstdint>
#include <vector>

namespace ovtrace {

/// How often colours occur, in the order in which they were met first.
class ColorCounts {
public:
    struct Entry {
        QRgb color;
        std::uint32_t count;
    };

    ColorCounts() : places(1024, Free) {
    }

    void add(QRgb color, std::uint32_t count = 1) {
        if (last < list.size() && list[last].color == color) {
            list[last].count += count;
            return;
        }
        std::uint32_t& place = placeOf(color);
        if (place == Free) {
            place = static_cast<std::uint32_t>(list.size());
            list.push_back({color, 0});
            last = place;
            list[last].count += count;
            if (list.size() * 2 > places.size())
                grow();
            return;
        }
        last = place;
        list[last].count += count;
    }
    /// The index of `color` among entries(), or their number if it was never met.
    std::size_t find(QRgb color) const {
        std::size_t i = hash(color);
        while (places[i] != Free && list[places[i]].color != color)
            i = (i + 1) & (places.size() - 1);
        return places[i] == Free ? list.size() : places[i];
    }
    /// How often `color` was met.
    std::uint32_t countOf(QRgb color) const {
        const std::size_t found = find(color);
        return found < list.size() ? list[found].count : 0;
    }
    const std::vector<Entry>& entries() const {
        return list;
    }

private:
    static constexpr std::uint32_t Free = 0xffffffffU;

    /// Spreads the bits by a product (Fibonacci hashing).
    std::size_t hash(QRgb color) const {
        return (color * 0x9e3779b1U >> 4) & (places.size() - 1);
    }
    std::uint32_t& placeOf(QRgb color) {
        std::size_t i = hash(color);
        while (places[i] != Free && list[places[i]].color != color)
            i = (i + 1) & (places.size() - 1);
        return places[i];
    }
    void grow() {
        places.assign(places.size() * 4, Free);
        for (std::uint32_t i = 0; i < list.size(); ++i)
            placeOf(list[i].color) = i;
    }

    std::vector<Entry> list;
    std::vector<std::uint32_t> places; ///< a power of two, half of them free at least
    std::size_t last = 0;
};

} // namespace ovtrace
