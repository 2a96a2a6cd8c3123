#include "separation.h"

#include "contacts.h"
#include "ringcheck.h"
#include "twists.h"

#include "shapes/piece.h"

#include <algorithm>
#include <numeric>

namespace ovtrace {

Separation::Separation(const CrackMap& cracks)
    : cracks(cracks), patches(cracks.chains.size()), changed(cracks.chains.size(), false),
      pinned(cracks.junctions.size(), false), newlyPinned(cracks.junctions.size(), false),
      boxes(cracks.chains.size()), areas(cracks.chains.size()) {
}

bool Separation::search(std::span<const std::vector<Piece>> curves) {
    const std::vector<std::uint32_t> renewed = searches == 0 ? allChains() : changedChains();
    changed.assign(changed.size(), false);
    newlyPinned.assign(newlyPinned.size(), false);
    any = false;
    ++searches;
    for (const std::uint32_t chain : renewed)
        areas[chain] = areaOf(curves[chain]);
    noteUnsoundRings();
    std::unique_ptr<ChainSegments> looked = findMeetings(curves, renewed);
    places.clear();
    for (const Meeting& meeting : meetings)
        note(meeting);
    if (any || !places.empty()) {
        yieldAll();
        return any;
    }
    if (!looked || looked->chainCount < cracks.chains.size()) {
        looked.reset(); // before there are others
        looked = std::make_unique<ChainSegments>(cracks, curves, allChains());
    }
    searchNesting(*looked);
    return any;
}

/// Looks for what lies where it should not, when nothing meets.
void Separation::searchNesting(const ChainSegments& all) {
    const std::vector<Misplacement> misplaced = findMisplaced(cracks, all.grid);
    noteTwists(all.segments);
    noteMisplaced(misplaced, all.grid);
    yieldAll();
    for (const Misplacement& part : misplaced) {
        if (!any)
            forEachChainOf(part.area, [this](std::uint32_t chain) { yieldWhole(chain); });
    }
}

std::vector<std::uint32_t> Separation::allChains() const {
    std::vector<std::uint32_t> all(cracks.chains.size());
    std::iota(all.begin(), all.end(), 0U);
    return all;
}

/// The chains whose curves may be others than in the last search.
std::vector<std::uint32_t> Separation::changedChains() const {
    const auto hasMoved = [this](std::int32_t junction) {
        return junction >= 0 && newlyPinned[static_cast<std::size_t>(junction)];
    };
    std::vector<std::uint32_t> found;
    for (std::uint32_t i = 0; i < cracks.chains.size(); ++i) {
        const CrackChain& chain = cracks.chains[i];
        if (changed[i] || hasMoved(chain.from) || hasMoved(chain.to))
            found.push_back(i);
    }
    return found;
}

/// Brings the meetings up to date, `renewed` being the chains that are not as they were. Returns
/// the segments that were looked at.
std::unique_ptr<ChainSegments> Separation::findMeetings(std::span<const std::vector<Piece>> curves,
                                                        std::span<const std::uint32_t> renewed) {
    if (renewed.empty())
        return nullptr;
    std::vector<bool> isRenewed(cracks.chains.size(), false);
    for (const std::uint32_t chain : renewed)
        isRenewed[chain] = true;
    std::erase_if(meetings, [&](const Meeting& meeting) {
        return isRenewed[meeting.chain] || isRenewed[meeting.other];
    });
    auto looked = std::make_unique<ChainSegments>(cracks, curves, renewed);
    measure(looked->segments);
    if (renewed.size() < cracks.chains.size()) {
        looked.reset();
        looked = std::make_unique<ChainSegments>(cracks, curves, chainsNear(isRenewed));
    }
    for (const Contact& contact : findContacts(looked->grid)) {
        const EdgeSegment& one = looked->segments[contact.first];
        const EdgeSegment& other = looked->segments[contact.second];
        if (isRenewed[one.boundary] || isRenewed[other.boundary])
            meetings.push_back({one.boundary, other.boundary, contact.at, one.to - one.from,
                                other.to - other.from, contact.first == contact.second});
    }
    return looked;
}

/// Finds the boxes of chains, of which these are all segments.
void Separation::measure(std::span<const EdgeSegment> segments) {
    for (std::size_t i = 0; i < segments.size(); ++i) {
        const EdgeSegment& segment = segments[i];
        Box& box = boxes[segment.boundary];
        if (i == 0 || segments[i - 1].boundary != segment.boundary)
            box = {segment.from, segment.from};
        extend(box, segment.to);
    }
}

/// The renewed chains and all others that they may meet.
std::vector<std::uint32_t> Separation::chainsNear(const std::vector<bool>& isRenewed) const {
    Box all = boxes.front();
    for (const Box& box : boxes) {
        extend(all, box.least);
        extend(all, box.greatest);
    }
    BoxMarks marks(all);
    for (std::size_t i = 0; i < boxes.size(); ++i) {
        if (isRenewed[i])
            marks.mark(boxes[i]);
    }
    std::vector<std::uint32_t> found;
    for (std::uint32_t i = 0; i < boxes.size(); ++i) {
        if (isRenewed[i] || marks.isNear(boxes[i]))
            found.push_back(i);
    }
    return found;
}

/// The shorter chain gives way first: a long one is worth more as a curve.
bool Separation::isYielding(std::uint32_t chain, std::uint32_t other) const {
    constexpr std::size_t MuchLonger = 4;
    const std::size_t own = cracks.chains[chain].stepCount;
    return own <= MuchLonger * cracks.chains[other].stepCount ||
           patches[other].isWhole(cracks.chains[other].stepCount) || searches > 3;
}

void Separation::note(const Meeting& meeting) {
    if (isYielding(meeting.chain, meeting.other))
        places.push_back({meeting.chain, meeting.at, meeting.along});
    if (!meeting.ofOneSegment && isYielding(meeting.other, meeting.chain))
        places.push_back({meeting.other, meeting.at, meeting.otherAlong});
}

void Separation::noteTwists(std::span<const EdgeSegment> segments) {
    const std::vector<std::uint32_t> twists = findTwists(cracks, segments);
    if (twists.empty())
        return;
    for (std::uint32_t i = 0; i < cracks.chains.size(); ++i) {
        const CrackChain& chain = cracks.chains[i];
        for (const std::int32_t junction : {chain.from, chain.to}) {
            if (junction < 0 || !std::binary_search(twists.begin(), twists.end(),
                                                    static_cast<std::uint32_t>(junction)))
                continue;
            const GridPoint corner = cracks.junctions[static_cast<std::size_t>(junction)];
            places.push_back({i, {double(corner.x), double(corner.y)}, {}});
        }
    }
}

void Separation::noteMisplaced(std::span<const Misplacement> misplaced, const SegmentGrid& grid) {
    const auto add = [&](std::uint32_t index, Point at) {
        const EdgeSegment& segment = grid.all()[index];
        places.push_back({segment.boundary, at, segment.to - segment.from});
    };
    for (const Misplacement& part : misplaced) {
        const Point corner = grid.all()[part.segment].from;
        add(part.segment, corner);
        if (part.around)
            add(*part.around, part.at);
        // A curve that cuts off what the part lies in need not be what is seen from the part.
        forEachChainOf(part.area, [&](std::uint32_t chain) {
            places.push_back({chain, corner, {}, true});
        });
    }
}

template <typename Visit>
void Separation::forEachChainOf(std::int32_t region, const Visit& visit) const {
    const auto comesFirst = [](const CrackRing& ring, std::int32_t id) { return ring.region < id; };
    auto ring = std::lower_bound(cracks.rings.begin(), cracks.rings.end(), region, comesFirst);
    for (; ring != cracks.rings.end() && ring->region == region; ++ring) {
        for (std::size_t i = 0; i < ring->passCount; ++i)
            visit(cracks.passes[ring->firstPass + i].chain);
    }
}

void Separation::noteUnsoundRings() {
    for (const CrackRing& ring : cracks.rings) {
        const auto passes = std::span(cracks.passes).subspan(ring.firstPass, ring.passCount);
        double area = 0.0;
        for (const ChainPass pass : passes)
            area += pass.reversed ? -areas[pass.chain] : areas[pass.chain];
        if (standsForRing(area, double(ring.area)))
            continue;
        for (const ChainPass pass : passes)
            yieldWhole(pass.chain);
    }
}

void Separation::yieldAll() {
    std::stable_sort(places.begin(), places.end(),
                     [](const Place& a, const Place& b) { return a.chain < b.chain; });
    for (std::size_t i = 0; i < places.size();) {
        std::size_t end = i;
        while (end < places.size() && places[end].chain == places[i].chain)
            ++end;
        yield(std::span(places).subspan(i, end - i));
        i = end;
    }
}

void Separation::yield(std::span<const Place> ofChain) {
    // Widening triples a range: by then it holds thousands of steps.
    constexpr int MostSearches = 12;
    const std::uint32_t index = ofChain.front().chain;
    const CrackChain& chain = cracks.chains[index];
    if (searches > MostSearches) {
        yieldWhole(index);
        return;
    }
    const StepFinder finder(cracks, chain);
    std::vector<std::size_t> steps;
    for (const Place& place : ofChain) {
        const std::size_t step = finder.nearest(place.at, place.direction);
        if (step != StepFinder::None) {
            steps.push_back(step);
        } else if (!place.onlyNear) {
            yieldWhole(index);
            return;
        }
    }
    std::sort(steps.begin(), steps.end());
    steps.erase(std::unique(steps.begin(), steps.end()), steps.end());
    PatchedSteps wider = patches[index];
    wider.widen(std::move(steps), chain.stepCount, chain.from < 0);
    change(index, wider);
}

void Separation::yieldWhole(std::size_t chain) {
    PatchedSteps whole;
    whole.addWhole(cracks.chains[chain].stepCount);
    change(chain, whole);
}

void Separation::change(std::size_t index, const PatchedSteps& steps) {
    const CrackChain& chain = cracks.chains[index];
    if (!(steps == patches[index])) {
        patches[index] = steps;
        changed[index] = true;
        any = true;
    }
    if (steps.contains(0))
        pin(chain.from);
    if (steps.contains(chain.stepCount - 1))
        pin(chain.to);
}

void Separation::pin(std::int32_t junction) {
    if (junction < 0 || pinned[static_cast<std::size_t>(junction)])
        return;
    pinned[static_cast<std::size_t>(junction)] = true;
    newlyPinned[static_cast<std::size_t>(junction)] = true;
    any = true;
}

} // namespace ovtrace
