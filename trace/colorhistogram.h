#pragma once

#include <cstdint>
#include <vector>

namespace ovtrace {

/// Counts how often each colour occurs and keeps a number for each.
///
/// Even a photograph has far fewer colours than pixels: what is worked out once a colour need not
/// be worked out again for every pixel. Colours are channelWord()s.
class ColorHistogram {
public:
    struct Entry {
        std::uint32_t color = 0;
        std::uint32_t count = 0; ///< occurrences; 0 marks an unused place
    };

    /// Holds up to `largestSize` colours.
    explicit ColorHistogram(std::size_t largestSize);

    /// Counts `count` more occurrences. False when there would be too many colours.
    bool add(std::uint32_t color, std::uint32_t count) {
        Entry& entry = places[placeOf(color)];
        if (entry.count != 0) {
            entry.count += count;
            return true;
        }
        return insert(entry, {color, count});
    }

    /// The distinct colours with their counts, in no particular order.
    std::vector<Entry> entries() const;

    /// Replaces the count of a colour that has been counted by a number of the caller's.
    void setValue(std::uint32_t color, std::uint32_t value) {
        places[placeOf(color)].count = value + 1; // still in use
    }

    /// Gives those numbers back. A small value of its own, which a loop can keep in registers
    /// while it writes bytes; valid until colours are added.
    class Values {
    public:
        std::uint32_t operator()(std::uint32_t color) const {
            return places[probe(places, mask, shift, color)].count - 1;
        }

    private:
        friend class ColorHistogram;
        Values(const Entry* places, std::size_t mask, unsigned shift)
            : places(places), mask(mask), shift(shift) {
        }

        const Entry* places;
        std::size_t mask;
        unsigned shift;
    };
    Values values() const {
        return {places.data(), places.size() - 1, shift};
    }

private:
    /// Spreads colours over the places: 2^32 divided by the golden ratio.
    static constexpr std::uint32_t Scatter = 0x9e3779b1U;

    /// Where the colour is, or the unused place where it belongs.
    static std::size_t probe(const Entry* places, std::size_t mask, unsigned shift,
                             std::uint32_t color) {
        std::size_t place = color * Scatter >> shift;
        while (places[place].count != 0 && places[place].color != color)
            place = (place + 1) & mask;
        return place;
    }
    std::size_t placeOf(std::uint32_t color) const {
        return probe(places.data(), places.size() - 1, shift, color);
    }
    bool insert(Entry& place, Entry entry);
    void grow();

    std::size_t largestSize;
    std::size_t size = 0;
    unsigned shift;
    std::vector<Entry> places; ///< a power of two of them, at most half in use
};

} // namespace ovtrace
