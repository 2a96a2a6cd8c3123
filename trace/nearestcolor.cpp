#include "nearestcolor.h"

#include <algorithm>
#include <cstdlib>
#include <numeric>

namespace ovtrace {
namespace {

constexpr int Channels = 4;

/// A colour this far away or farther is not considered; index 0 takes its place.
constexpr int DistanceBound = 1024;

/// Boxes of 32, 8 and 4 values a channel.
constexpr unsigned CoarseBits = 3;
constexpr unsigned MiddleBits = 5;
constexpr unsigned FineBits = 6;

/// From this many colours on, boxes are worked out in two steps, from coarse to fine.
constexpr std::size_t LargePalette = 32;

/// Small boxes pay only when many pixels are looked up.
unsigned bitsFor(std::int64_t pixels) {
    if (pixels < 20000)
        return CoarseBits;
    return pixels < 1000000 ? MiddleBits : FineBits;
}

int weight(int channel) {
    return channel == 3 ? 4 : 1;
}

int channelOf(const Color& color, int channel) {
    switch (channel) {
    case 0:
        return color.red + StoredOffset;
    case 1:
        return color.green + StoredOffset;
    case 2:
        return color.blue + StoredOffset;
    default:
        return color.alpha + StoredOffset;
    }
}

int distance(const Color& a, const Color& b) {
    return std::abs(a.red - b.red) + std::abs(a.green - b.green) + std::abs(a.blue - b.blue) +
           4 * std::abs(a.alpha - b.alpha);
}

} // namespace

NearestColor::NearestColor(std::int64_t pixels) : bits(bitsFor(pixels)) {}

void NearestColor::setPalette(const Palette& newPalette) {
    palette = &newPalette;
    entries.assign(std::size_t(1) << (3 * bits + AlphaBits), 0);
    lists.assign(1, 0); // no list begins at 0: its entry would look unknown
    all.resize(newPalette.size());
    std::iota(all.begin(), all.end(), 0);
    coarse.clear();
    if (bits > CoarseBits && newPalette.size() >= LargePalette)
        coarse.resize(std::size_t(1) << (3 * CoarseBits + AlphaBits));
}

NearestColor::Box NearestColor::boundsOf(Color pixel, unsigned boxBits) {
    Box box{};
    for (int c = 0; c < Channels; ++c) {
        const int size = 256 >> (c == 3 ? AlphaBits : static_cast<int>(boxBits));
        box.low[c] = channelOf(pixel, c) / size * size;
        box.high[c] = box.low[c] + size - 1;
    }
    return box;
}

/// Whether colour a is preferred to colour b for every pixel in the box. The difference of the
/// two distances is a sum over channels; each is largest at one of the channel's bounds.
bool NearestColor::beatsEverywhere(std::int32_t a, std::int32_t b, const Box& box) const {
    const Color& colorA = (*palette)[static_cast<std::size_t>(a)];
    const Color& colorB = (*palette)[static_cast<std::size_t>(b)];
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

/// Those of `among` (ascending) that some pixel in the box may prefer to the colour nearest to
/// the middle of the box.
NearestColor::Candidates NearestColor::candidates(const Candidates& among, const Box& box) const {
    const auto fromMiddle = [&](std::int32_t k) {
        int sum = 0;
        for (int c = 0; c < Channels; ++c)
            sum += weight(c) * std::abs(2 * channelOf((*palette)[static_cast<std::size_t>(k)], c) -
                                        box.low[c] - box.high[c]);
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
    Candidates found;
    for (const std::int32_t k : among) {
        if (k == middle || !beatsEverywhere(middle, k, box))
            found.push_back(k);
    }
    return found;
}

const NearestColor::Candidates& NearestColor::coarseCandidates(Color pixel) {
    Candidates& found = coarse[boxOf(pixel, CoarseBits)];
    if (found.empty())
        found = candidates(all, boundsOf(pixel, CoarseBits));
    return found;
}

void NearestColor::fillBox(Color pixel) {
    const Box box = boundsOf(pixel, bits);
    const Candidates found = candidates(coarse.empty() ? all : coarseCandidates(pixel), box);
    std::int32_t& entry = entries[boxOf(pixel, bits)];
    // A lone colour is the nearest everywhere in the box, if it is near enough.
    if (found.size() == 1 && !mayBeTooFar(found.front(), box)) {
        entry = found.front() + 1;
        return;
    }
    entry = -static_cast<std::int32_t>(lists.size());
    lists.push_back(static_cast<std::int32_t>(found.size()));
    lists.insert(lists.end(), found.begin(), found.end());
}

bool NearestColor::mayBeTooFar(std::int32_t color, const Box& box) const {
    int farthest = 0;
    for (int c = 0; c < Channels; ++c) {
        const int v = channelOf((*palette)[static_cast<std::size_t>(color)], c);
        farthest += weight(c) * std::max(std::abs(box.low[c] - v), std::abs(box.high[c] - v));
    }
    return farthest >= DistanceBound;
}

int NearestColor::findInBox(Color pixel) {
    std::int32_t& entry = entries[boxOf(pixel, bits)];
    if (entry == 0)
        fillBox(pixel);
    if (entry > 0)
        return entry - 1;
    const std::int32_t* list = &lists[static_cast<std::size_t>(-entry)];
    int best = DistanceBound;
    int index = 0;
    for (std::int32_t i = 1; i <= list[0]; ++i) {
        const int d = distance(pixel, (*palette)[static_cast<std::size_t>(list[i])]);
        if (d < best) {
            best = d;
            index = list[i];
        }
    }
    return index;
}

} // namespace ovtrace
