#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <cstdlib>

namespace ovtrace {

/// A box of the colour space: its bounds, which belong to it, in channel values 0..255 for red,
/// green, blue and alpha.
struct ColorBox {
    static constexpr std::size_t Channels = 4;

    std::array<int, Channels> low{};
    std::array<int, Channels> high{};
};

/// How often a channel's difference counts in the distance of two colours.
inline constexpr std::array<int, ColorBox::Channels> ChannelWeights{1, 1, 1, 4};

/// A channel value of a channelWord().
inline int channelOf(std::uint32_t word, std::size_t channel) {
    return static_cast<int>(word >> (8 * channel) & 255U);
}

/// Twice the distance of a colour from the middle of the box.
inline int twiceFromMiddle(std::uint32_t color, const ColorBox& box) {
    int sum = 0;
    for (std::size_t c = 0; c < ColorBox::Channels; ++c)
        sum += ChannelWeights[c] * std::abs(2 * channelOf(color, c) - box.low[c] - box.high[c]);
    return sum;
}

/// How much farther a pixel in the box can be from colour a than from colour b, at most. The
/// difference of the two distances is a sum over channels; each is largest at one of the bounds.
inline int largestExcess(std::uint32_t a, std::uint32_t b, const ColorBox& box) {
    int sum = 0;
    for (std::size_t c = 0; c < ColorBox::Channels; ++c) {
        const int valueA = channelOf(a, c);
        const int valueB = channelOf(b, c);
        const auto excess = [=](int v) { return std::abs(v - valueA) - std::abs(v - valueB); };
        sum += ChannelWeights[c] * std::max(excess(box.low[c]), excess(box.high[c]));
    }
    return sum;
}

} // namespace ovtrace
