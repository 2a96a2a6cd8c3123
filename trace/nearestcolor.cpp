#include "nearestcolor.h"

#include <algorithm>
#include <cstdlib>
#include <numeric>

namespace ovtrace {
namespace {

constexpr int Channels = 4;

/// From this many colours on, boxes are worked out in two steps, from coarse to fine.
constexpr std::size_t LargePalette = 8;

int weight(int channel) {
    return channel == 3 ? 4 : 1;
}

int channelOf(std::uint32_t word, int channel) {
    return static_cast<int>(word >> (8 * channel) & 255U);
}

} // namespace

void NearestColor::setPalette(const Palette& newPalette) {
    palette.clear();
    for (const Color& color : newPalette)
        palette.push_back(channelWord(color));
    entries.assign(std::size_t(1) << (3 * FineBits + AlphaBits), Unknown);
    blocks.clear();
    known.clear();
    all.resize(newPalette.size());
    std::iota(all.begin(), all.end(), 0);
    coarse.clear();
    if (newPalette.size() >= LargePalette)
        coarse.resize(std::size_t(1) << (3 * CoarseBits + AlphaBits));
}

NearestColor::Box NearestColor::boundsOf(std::uint32_t pixel, unsigned boxBits) {
    Box box{};
    for (int c = 0; c < Channels; ++c) {
        const int size = 256 >> (c == 3 ? AlphaBits : boxBits);
        box.low[c] = channelOf(pixel, c) / size * size;
        box.high[c] = box.low[c] + size - 1;
    }
    return box;
}

/// Whether colour a is preferred to colour b for every pixel in the box. The difference of the
/// two distances is a sum over channels; each is largest at one of the channel's bounds.
bool NearestColor::beatsEverywhere(std::int32_t a, std::int32_t b, const Box& box) const {
    const std::uint32_t colorA = palette[static_cast<std::size_t>(a)];
    const std::uint32_t colorB = palette[static_cast<std::size_t>(b)];
    int largest = 0;
    for (int c = 0; c < Channels; ++c) {
        const int valueA = channelOf(colorA, c);
        const int valueB = channelOf(colorB, c);
        const auto excess = [=](int v) { return std::abs(v - valueA) - std::abs(v - valueB); };
        largest += weight(c) * std::max(excess(box.low[c]), excess(box.high[c]));
    }
    // Of equally distant colours the first is taken.
    return a < b ? largest <= 0 : largest < 0;
}

/// Whether some pixel in the box is so far from the colour that index 0 takes its place.
bool NearestColor::mayBeTooFar(std::int32_t color, const Box& box) const {
    unsigned farthest = 0;
    for (int c = 0; c < Channels; ++c) {
        const int v = channelOf(palette[static_cast<std::size_t>(color)], c);
        farthest += static_cast<unsigned>(
            weight(c) * std::max(std::abs(box.low[c] - v), std::abs(box.high[c] - v)));
    }
    return farthest >= DistanceBound;
}

/// Stores those of `among` (ascending) that some pixel in the box may prefer to the colour nearest
/// to the middle of the box.
void NearestColor::chooseCandidates(const Candidates& among, const Box& box,
                                    Candidates& found) const {
    const auto fromMiddle = [&](std::int32_t k) {
        const std::uint32_t color = palette[static_cast<std::size_t>(k)];
        int sum = 0;
        for (int c = 0; c < Channels; ++c)
            sum += weight(c) * std::abs(2 * channelOf(color, c) - box.low[c] - box.high[c]);
        return sum;
    };
    std::int32_t middle = among.front();
    int least = fromMiddle(middle);
    for (const std::int32_t k : among) {
        const int d = fromMiddle(k);
        if (d < least) {
            least = d;
            middle = k;
        }
    }
    found.clear();
    for (const std::int32_t k : among) {
        if (k == middle || !beatsEverywhere(middle, k, box))
            found.push_back(k);
    }
}

const NearestColor::Candidates& NearestColor::coarseCandidates(std::uint32_t pixel) {
    Candidates& found = coarse[boxOf<CoarseBits>(pixel)];
    if (found.empty())
        chooseCandidates(all, boundsOf(pixel, CoarseBits), found);
    return found;
}

std::int32_t NearestColor::appendBlocks(const Candidates& colors) {
    const auto first = static_cast<std::int32_t>(blocks.size());
    for (std::size_t i = 0; i < colors.size(); i += ColorBlock::Size) {
        ColorBlock block;
        for (std::size_t place = 0; place < ColorBlock::Size; ++place) {
            const std::int32_t k = colors[std::min(i + place, colors.size() - 1)];
            block.colors[place] = spreadColor(palette[static_cast<std::size_t>(k)]);
            block.indices[place] = k;
        }
        block.size = static_cast<std::uint32_t>(std::min(colors.size() - i, ColorBlock::Size));
        block.continues = i + ColorBlock::Size < colors.size();
        blocks.push_back(block);
    }
    return first;
}

std::int32_t NearestColor::fillBox(std::uint32_t pixel) {
    const Box box = boundsOf(pixel, FineBits);
    chooseCandidates(coarse.empty() ? all : coarseCandidates(pixel), box, chosen);
    std::int32_t& entry = entries[boxOf<FineBits>(pixel)];
    if (chosen.size() == 1 && !mayBeTooFar(chosen.front(), box)) {
        entry = chosen.front();
    } else {
        const auto [place, isNew] = known.try_emplace(chosen, 0);
        if (isNew)
            place->second = -FirstBlock - appendBlocks(chosen);
        entry = place->second;
    }
    return entry;
}

} // namespace ovtrace
