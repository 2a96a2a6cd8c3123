#pragma once

#include "boxmarks.h"
#include "chainsegments.h"
#include "crackmap.h"
#include "nesting.h"
#include "patching.h"

#include "shapes/piecerecord.h"

#include <memory>
#include <span>
#include <vector>

namespace ovtrace {

/// Keeps the curves of chains apart, which were fitted without knowledge of each other.
///
/// Where curves cross, touch, turn an area over or put one into another, some steps of their chains
/// have to be drawn beside their pixels, more each time that is not enough, and junctions near the
/// corners of their pixels: what is drawn so never meets anything, so that the search ends.
class Separation {
public:
    explicit Separation(const CrackMap& cracks);

    /// Searches the curves (one a chain, each from junction to junction); returns whether any
    /// chain or junction has to change. Only curves that had to with the last search, and those
    /// that end in junctions pinned by it, may be others than then.
    bool search(std::span<const std::vector<Piece>> curves);

    /// What the chain's curve has to leave out.
    const PatchedSteps& stepsBeside(std::size_t chain) const {
        return patches[chain];
    }
    /// Whether that has changed with the last search.
    bool isChanged(std::size_t chain) const {
        return changed[chain];
    }
    /// Whether the junction has to lie near its corner.
    bool isPinned(std::size_t junction) const {
        return pinned[junction];
    }

private:
    /// Where a curve has to give way.
    struct Place {
        std::uint32_t chain = 0;
        Point at;
        Point direction;
        bool onlyNear = false; ///< nothing to the chain when it runs elsewhere
    };

    /// Where two chains meet, or one meets itself.
    struct Meeting {
        std::uint32_t chain = 0;
        std::uint32_t other = 0;
        Point at;
        Point along;
        Point otherAlong;
        bool ofOneSegment = false;
    };

    std::vector<std::uint32_t> allChains() const;
    std::vector<std::uint32_t> changedChains() const;
    std::vector<std::uint32_t> chainsNear(const std::vector<bool>& isRenewed) const;
    std::unique_ptr<ChainSegments> findMeetings(std::span<const std::vector<Piece>> curves,
                                                std::span<const std::uint32_t> renewed);
    void measure(std::span<const EdgeSegment> segments);
    void searchNesting(const ChainSegments& all);
    void note(const Meeting& meeting);
    void noteTwists(std::span<const EdgeSegment> segments);
    void noteMisplaced(std::span<const Misplacement> misplaced, const SegmentGrid& grid);
    template <typename Visit> void forEachChainOf(std::int32_t region, const Visit& visit) const;
    void noteUnsoundRings();
    bool isYielding(std::uint32_t chain, std::uint32_t other) const;
    void yieldAll();
    void yield(std::span<const Place> ofChain);
    void yieldWhole(std::size_t chain);
    void change(std::size_t chain, const PatchedSteps& steps);
    void pin(std::int32_t junction);

    const CrackMap& cracks;
    std::vector<PatchedSteps> patches;
    std::vector<bool> changed;
    std::vector<bool> pinned;
    std::vector<bool> newlyPinned; ///< with the last search
    std::vector<Meeting> meetings; ///< of the curves as they are
    std::vector<Box> boxes;        ///< of the chains' curves
    std::vector<double> areas;     ///< of each curve against the origin, see areaOf()
    std::vector<Place> places;
    int searches = 0;
    bool any = false; ///< found in this search
};

} // namespace ovtrace
