#pragma once

#include "colorbox.h"

#include <cstdint>
#include <vector>

namespace ovtrace {

/// The colours of a large palette, sorted into boxes within boxes: to find the few that matter
/// somewhere in the colour space takes about the logarithm of their number.
class ColorTree {
public:
    /// Takes the place of all colours so far: channelWord()s, at least one. Of equal ones the
    /// first counts alone.
    void setColors(const std::vector<std::uint32_t>& palette);

    /// The index of the colour nearest to the pixel, the first of those; -1 when all are at
    /// `bound` or farther.
    std::int32_t nearest(std::uint32_t pixel, int bound) const;

    /// Stores the indices, ascending, of all colours that some pixel in the box may prefer to the
    /// colour nearest to the middle of the box. False when they are more than `most`.
    bool candidates(const ColorBox& box, std::size_t most, std::vector<std::int32_t>& found) const;

private:
    /// The bounds of the colours below a node.
    struct Node {
        std::array<std::uint8_t, ColorBox::Channels> low{};
        std::array<std::uint8_t, ColorBox::Channels> high{};
    };
    struct Entry {
        std::uint64_t key = 0; ///< what the entries are sorted by; close ones are alike
        std::uint32_t color = 0;
        std::int32_t index = 0;
    };
    /// What is the least so far, and the entry that has it.
    struct Found {
        int distance = 0; ///< twice the distance to the middle of a box
        Entry entry;
    };

    /// Colours of a leaf, and children of any other node; the last of a level may have fewer.
    static constexpr std::size_t Branches = 8;

    static std::uint64_t keyOf(std::uint32_t color);
    void addLevel();
    const Entry& closeTo(std::uint32_t color) const;
    Found nearestToMiddle(const ColorBox& box) const;
    template <typename Prune, typename Visit>
    void visit(std::size_t level, std::size_t node, const Prune& prune,
               const Visit& visitEntry) const;
    template <typename Prune, typename Visit>
    void visitAll(const Prune& prune, const Visit& visitEntry) const {
        visit(levels.size() - 1, 0, prune, visitEntry);
    }

    static int leastFromMiddle(const Node& node, const ColorBox& box);
    static int largestExcessOver(const Node& node, std::uint32_t color, const ColorBox& box);

    std::vector<Entry> entries;
    /// levels[0] has a node for each Branches entries, any other one for each Branches nodes of
    /// the level before; the last has one node.
    std::vector<std::vector<Node>> levels;
};

} // namespace ovtrace
