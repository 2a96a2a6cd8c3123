#pragma once

#include "crackmap.h"

#include "shapes/piecerecord.h"

#include <span>
#include <vector>

namespace ovtrace {

/// Steps of a chain, from the first to the last of them.
struct StepRange {
    std::size_t first = 0;
    std::size_t last = 0;

    bool operator==(const StepRange&) const = default;
};

/// The steps of a chain that are drawn beside their pixels, because its curve meets another there.
class PatchedSteps {
public:
    bool empty() const {
        return ranges.empty();
    }
    std::span<const StepRange> all() const {
        return ranges;
    }
    bool isWhole(std::size_t stepCount) const {
        return !ranges.empty() && ranges.front() == StepRange{0, stepCount - 1};
    }
    bool contains(std::size_t step) const;
    void addWhole(std::size_t stepCount) {
        ranges = {{0, stepCount - 1}};
    }
    /// Adds the steps around each of `steps`; those that lie in a range, or at its end, make it
    /// three times as long. Closed chains go on beyond their last step.
    void widen(std::vector<std::size_t> steps, std::size_t stepCount, bool closed);

    bool operator==(const PatchedSteps&) const = default;

private:
    std::vector<StepRange> ranges; ///< in order, apart
};

/// Finds the steps of a chain by their places.
class StepFinder {
public:
    StepFinder(const CrackMap& cracks, const CrackChain& chain);

    static constexpr std::size_t None = std::size_t(0) - 1;
    /// The step nearest to `place`, of those that do not run against `direction`; None when all are
    /// some pixels away.
    std::size_t nearest(Point place, Point direction) const;

private:
    struct Entry {
        GridPoint pixel; ///< that the middle of the step lies in, or beside
        Point middle;
        Point along;
        std::size_t step = 0;
    };
    static bool comesFirst(const Entry& a, const Entry& b);

    std::vector<Entry> entries; ///< by pixel
};

/// The curve of a chain, with ranges of its steps replaced by the polygon through their `places`
/// (one a step). The ends of an open curve stay.
std::vector<Piece> patched(std::vector<Piece> pieces, std::span<const Point> places,
                           std::span<const StepRange> ranges, bool closed);

/// The curve led to other ends near its own: the rest stays.
std::vector<Piece> bentTo(std::vector<Piece> pieces, Point start, Point end);

} // namespace ovtrace
