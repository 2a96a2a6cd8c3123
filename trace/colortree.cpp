#include "colortree.h"

#include <utility>

namespace ovtrace {
namespace {

/// The ten bits of a number with three zeros before each.
std::uint64_t spreadBits(std::uint64_t bits) {
    bits = (bits | bits << 24U) & 0x000000ff000000ffU;
    bits = (bits | bits << 12U) & 0x000f000f000f000fU;
    bits = (bits | bits << 6U) & 0x0303030303030303U;
    return (bits | bits << 3U) & 0x1111111111111111U;
}

/// How far a value lies outside of [low, high].
int outside(int value, int low, int high) {
    return std::max({low - value, value - high, 0});
}

} // namespace

/// The bits of the channels in turns, the highest first, those of alpha by what they count.
std::uint64_t ColorTree::keyOf(std::uint32_t color) {
    static_assert(ChannelWeights[3] == 1 << 2);
    return spreadBits(color & 255U) | spreadBits(color >> 8U & 255U) << 1U |
           spreadBits(color >> 16U & 255U) << 2U | spreadBits((color >> 24U) << 2U) << 3U;
}

void ColorTree::setColors(const std::vector<std::uint32_t>& palette) {
    entries.clear();
    entries.reserve(palette.size());
    for (const std::uint32_t color : palette)
        entries.push_back({keyOf(color), color, static_cast<std::int32_t>(entries.size())});
    std::sort(entries.begin(), entries.end(), [](const Entry& a, const Entry& b) {
        return a.key != b.key ? a.key < b.key : a.index < b.index;
    });
    const auto sameColor = [](const Entry& a, const Entry& b) { return a.color == b.color; };
    entries.erase(std::unique(entries.begin(), entries.end(), sameColor), entries.end());
    levels.clear();
    do
        addLevel();
    while (levels.back().size() > 1);
}

/// Puts one node over each few entries, or over each few nodes of the last level.
void ColorTree::addLevel() {
    std::vector<Node> level;
    const auto add = [&](std::size_t child, const Node& bounds) {
        if (child % Branches == 0) {
            level.push_back(bounds);
            return;
        }
        Node& node = level.back();
        for (std::size_t c = 0; c < ColorBox::Channels; ++c) {
            node.low[c] = std::min(node.low[c], bounds.low[c]);
            node.high[c] = std::max(node.high[c], bounds.high[c]);
        }
    };
    if (levels.empty()) {
        for (std::size_t i = 0; i < entries.size(); ++i) {
            Node point;
            for (std::size_t c = 0; c < ColorBox::Channels; ++c)
                point.low[c] = static_cast<std::uint8_t>(channelOf(entries[i].color, c));
            point.high = point.low;
            add(i, point);
        }
    } else {
        for (std::size_t i = 0; i < levels.back().size(); ++i)
            add(i, levels.back()[i]);
    }
    levels.push_back(std::move(level));
}

/// What twiceFromMiddle() is for any colour of a node, at least.
int ColorTree::leastFromMiddle(const Node& node, const ColorBox& box) {
    int sum = 0;
    for (std::size_t c = 0; c < ColorBox::Channels; ++c)
        sum += ChannelWeights[c] *
               outside(box.low[c] + box.high[c], 2 * int(node.low[c]), 2 * int(node.high[c]));
    return sum;
}

/// What largestExcess() of a colour over any colour of a node is, at most.
int ColorTree::largestExcessOver(const Node& node, std::uint32_t color, const ColorBox& box) {
    int sum = 0;
    for (std::size_t c = 0; c < ColorBox::Channels; ++c) {
        const int value = channelOf(color, c);
        const auto excess = [&](int v) {
            return std::abs(v - value) - outside(v, node.low[c], node.high[c]);
        };
        sum += ChannelWeights[c] * std::max(excess(box.low[c]), excess(box.high[c]));
    }
    return sum;
}

/// Visits the entries below a node, in order, but those below nodes that prune() leaves out.
template <typename Prune, typename Visit>
void ColorTree::visit(std::size_t level, std::size_t node, const Prune& prune,
                      const Visit& visitEntry) const {
    if (prune(levels[level][node]))
        return;
    const std::size_t children = level == 0 ? entries.size() : levels[level - 1].size();
    const std::size_t first = node * Branches;
    const std::size_t end = std::min(first + Branches, children);
    for (std::size_t child = first; child < end; ++child) {
        if (level == 0)
            visitEntry(entries[child]);
        else
            visit(level - 1, child, prune, visitEntry);
    }
}

/// An entry that is probably not far from the colour.
const ColorTree::Entry& ColorTree::closeTo(std::uint32_t color) const {
    const auto before = [](const Entry& entry, std::uint64_t key) { return entry.key < key; };
    const auto at = std::lower_bound(entries.begin(), entries.end(), keyOf(color), before);
    return at == entries.end() ? entries.back() : *at;
}

ColorTree::Found ColorTree::nearestToMiddle(const ColorBox& box) const {
    std::uint32_t middle = 0;
    for (std::size_t c = ColorBox::Channels; c-- > 0;)
        middle = middle << 8U | static_cast<std::uint32_t>((box.low[c] + box.high[c]) / 2);
    // One that is near from the start lets most of the tree out.
    const Entry& start = closeTo(middle);
    Found found{twiceFromMiddle(start.color, box), start};
    visitAll([&](const Node& node) { return leastFromMiddle(node, box) > found.distance; },
             [&](const Entry& entry) {
                 const int distance = twiceFromMiddle(entry.color, box);
                 if (distance < found.distance ||
                     (distance == found.distance && entry.index < found.entry.index))
                     found = {distance, entry};
             });
    return found;
}

std::int32_t ColorTree::nearest(std::uint32_t pixel, int bound) const {
    ColorBox point;
    for (std::size_t c = 0; c < ColorBox::Channels; ++c)
        point.low[c] = point.high[c] = channelOf(pixel, c);
    const Found found = nearestToMiddle(point);
    return found.distance < 2 * bound ? found.entry.index : -1;
}

bool ColorTree::candidates(const ColorBox& box, std::size_t most,
                           std::vector<std::int32_t>& found) const {
    const Entry middle = nearestToMiddle(box).entry;
    found.clear();
    visitAll(
        [&](const Node& node) {
            return found.size() > most || largestExcessOver(node, middle.color, box) < 0;
        },
        [&](const Entry& entry) {
            const int excess = largestExcess(middle.color, entry.color, box);
            // Of equally distant colours the first is taken.
            if (excess > 0 || (excess == 0 && entry.index <= middle.index))
                found.push_back(entry.index);
        });
    std::sort(found.begin(), found.end());
    return found.size() <= most;
}

} // namespace ovtrace
