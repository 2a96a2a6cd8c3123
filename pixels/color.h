#pragma once

#include <QList>

#include <bit>
#include <cstdint>
#include <cstring>
#include <vector>

namespace ovtrace {

/// A colour in stored bytes: each channel is its value 0..255 minus 128.
struct Color {
    signed char red = 0;
    signed char green = 0;
    signed char blue = 0;
    signed char alpha = 0;

    bool operator==(const Color&) const = default;
};

/// What is added to a stored byte to give the channel value.
inline constexpr int StoredOffset = 128;

/// A colour's channel values 0..255 in one word: red in the lowest byte, then green, blue, alpha.
inline std::uint32_t channelWord(Color color) {
    const auto value = [](signed char stored) {
        return static_cast<std::uint32_t>(static_cast<unsigned char>(stored)) ^ 128U;
    };
    return value(color.red) | value(color.green) << 8U | value(color.blue) << 16U |
           value(color.alpha) << 24U;
}

/// The same from the four stored bytes of a pixel in memory.
inline std::uint32_t channelWord(const char* pixel) {
    if constexpr (std::endian::native == std::endian::little) {
        std::uint32_t word = 0;
        std::memcpy(&word, pixel, sizeof word);
        return word ^ 0x80808080U;
    } else {
        Color color;
        std::memcpy(&color, pixel, sizeof color);
        return channelWord(color);
    }
}

/// The working form of a palette; a colour's position is its index.
using Palette = std::vector<Color>;

/// Palette entries need not have four bytes: those missing read as 0, those beyond are ignored.
Palette toPalette(const QList<QList<char>>& colors);
QList<QList<char>> toColorLists(const Palette& palette);

/// Writes the colours that differ from what toPalette() makes of `colors` back into `colors`.
void updateColorLists(const Palette& palette, QList<QList<char>>& colors);

} // namespace ovtrace
