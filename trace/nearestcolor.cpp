#include "nearestcolor.h"

#include <algorithm>
#include <numeric>

namespace ovtrace {
namespace {

/// From this many colours on, boxes are worked out in two steps, from coarse to fine.
constexpr std::size_t SmallestInSteps = 8;
/// From this many colours on, a tree gives those of each box.
constexpr std::size_t SmallestTree = 8192;
/// Of more colours in a box the tree finds the nearest faster than a look at them all.
constexpr std::size_t MostInBox = 64;

} // namespace

void NearestColor::setPalette(const Palette& newPalette) {
    palette.clear();
    for (const Color& color : newPalette)
        palette.push_back(channelWord(color));
    entries.assign(std::size_t(1) << (3 * FineBits + AlphaBits), Unknown);
    blocks.clear();
    known.clear();
    coarse.clear();
    usesTree = palette.size() >= SmallestTree;
    if (usesTree) {
        tree.setColors(palette);
        return;
    }
    all.resize(palette.size());
    std::iota(all.begin(), all.end(), 0);
    if (palette.size() >= SmallestInSteps)
        coarse.resize(std::size_t(1) << (3 * CoarseBits + AlphaBits));
}

ColorBox NearestColor::boundsOf(std::uint32_t pixel, unsigned boxBits) const {
    ColorBox box;
    for (std::size_t c = 0; c < ColorBox::Channels; ++c) {
        const int size = 256 >> (c == 3 ? AlphaBits : boxBits);
        box.low[c] = channelOf(pixel, c) / size * size;
        box.high[c] = box.low[c] + size - 1;
    }
    if (opaque)
        box.low[3] = box.high[3];
    return box;
}

/// Whether some pixel in the box is so far from the colour that index 0 takes its place.
bool NearestColor::mayBeTooFar(std::int32_t color, const ColorBox& box) const {
    unsigned farthest = 0;
    for (std::size_t c = 0; c < ColorBox::Channels; ++c) {
        const int v = channelOf(palette[static_cast<std::size_t>(color)], c);
        farthest += static_cast<unsigned>(
            ChannelWeights[c] * std::max(std::abs(box.low[c] - v), std::abs(box.high[c] - v)));
    }
    return farthest >= DistanceBound;
}

/// Stores those of `among` (ascending) that some pixel in the box may prefer to the colour nearest
/// to the middle of the box.
void NearestColor::chooseCandidates(const Candidates& among, const ColorBox& box,
                                    Candidates& found) const {
    const auto colorAt = [&](std::int32_t k) { return palette[static_cast<std::size_t>(k)]; };
    std::int32_t middle = among.front();
    int least = twiceFromMiddle(colorAt(middle), box);
    for (const std::int32_t k : among) {
        const int d = twiceFromMiddle(colorAt(k), box);
        if (d < least) {
            least = d;
            middle = k;
        }
    }
    found.clear();
    for (const std::int32_t k : among) {
        const int excess = largestExcess(colorAt(middle), colorAt(k), box);
        // Of equally distant colours the first is taken.
        if (excess > 0 || (excess == 0 && k <= middle))
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
    const ColorBox box = boundsOf(pixel, FineBits);
    std::int32_t& entry = entries[boxOf<FineBits>(pixel)];
    if (!usesTree) {
        chooseCandidates(coarse.empty() ? all : coarseCandidates(pixel), box, chosen);
    } else if (!tree.candidates(box, MostInBox, chosen)) {
        entry = InTree;
        return InTree;
    }
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
