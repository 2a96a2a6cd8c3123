#include "separation.h"

#include "ringcheck.h"
#include "twists.h"

#include "shapes/flatten.h"

#include <algorithm>

namespace ovtrace {
namespace {

/// Pixels: finer than what is written, so that curves that are apart here are apart in files.
constexpr double Flatness = 0.01;

/// Appends a ring as chords.
void appendRing(const CrackMap& cracks, const CrackRing& ring,
                std::span<const std::vector<Piece>> curves, std::vector<Chord>& chords) {
    for (std::size_t i = 0; i < ring.passCount; ++i) {
        const ChainPass pass = cracks.passes[ring.firstPass + i];
        const std::vector<Piece>& pieces = curves[pass.chain];
        for (std::size_t k = 0; k < pieces.size(); ++k)
            appendChords(pieces[pass.reversed ? pieces.size() - 1 - k : k], pass.reversed,
                         pass.chain, chords);
    }
}

} // namespace

Separation::Separation(const CrackMap& cracks)
    : cracks(cracks), patches(cracks.chains.size()), changed(cracks.chains.size(), false),
      pinned(cracks.junctions.size(), false) {
}

bool Separation::search(std::span<const std::vector<Piece>> curves) {
    changed.assign(changed.size(), false);
    any = false;
    ++searches;
    noteUnsoundRings(curves);
    const std::vector<EdgeSegment> segments = segmentsOf(curves);
    const SegmentGrid grid(segments);
    places.clear();
    for (const Contact& contact : findContacts(grid))
        note(contact, segments);
    if (!any && places.empty()) {
        const std::vector<Misplacement> misplaced = findMisplaced(cracks, grid);
        noteTwists(segments);
        noteMisplaced(misplaced, grid);
        yieldAll();
        for (const Misplacement& part : misplaced) {
            if (!any)
                forEachChainOf(part.area, [this](std::uint32_t chain) { yieldWhole(chain); });
        }
    } else {
        yieldAll();
    }
    return any;
}

std::vector<EdgeSegment> Separation::segmentsOf(std::span<const std::vector<Piece>> curves) const {
    std::vector<EdgeSegment> segments;
    auto corner = static_cast<std::uint32_t>(cracks.junctions.size());
    std::vector<Point> points;
    for (std::uint32_t i = 0; i < curves.size(); ++i) {
        const CrackChain& chain = cracks.chains[i];
        points.assign(1, curves[i].front().from);
        for (const Piece& piece : curves[i])
            flatten(piece, Flatness, points);
        const std::uint32_t first =
            chain.from >= 0 ? static_cast<std::uint32_t>(chain.from) : corner++;
        const std::uint32_t last = chain.from >= 0 ? static_cast<std::uint32_t>(chain.to) : first;
        std::uint32_t start = first;
        for (std::size_t k = 1; k < points.size(); ++k) {
            const std::uint32_t end = k + 1 == points.size() ? last : corner++;
            segments.push_back({points[k - 1], points[k], i, start, end});
            start = end;
        }
    }
    return segments;
}

/// The shorter chain gives way first: a long one is worth more as a curve.
bool Separation::isYielding(std::uint32_t chain, std::uint32_t other) const {
    constexpr std::size_t MuchLonger = 4;
    const std::size_t own = cracks.chains[chain].stepCount;
    return own <= MuchLonger * cracks.chains[other].stepCount ||
           patches[other].isWhole(cracks.chains[other].stepCount) || searches > 3;
}

void Separation::note(const Contact& contact, std::span<const EdgeSegment> segments) {
    const EdgeSegment& one = segments[contact.first];
    const EdgeSegment& other = segments[contact.second];
    if (isYielding(one.boundary, other.boundary))
        places.push_back({one.boundary, contact.at, one.to - one.from});
    if (contact.first != contact.second && isYielding(other.boundary, one.boundary))
        places.push_back({other.boundary, contact.at, other.to - other.from});
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

void Separation::noteUnsoundRings(std::span<const std::vector<Piece>> curves) {
    std::vector<Chord> chords;
    for (const CrackRing& ring : cracks.rings) {
        chords.clear();
        appendRing(cracks, ring, curves, chords);
        if (hasAreaOf(chords, double(ring.area)))
            continue;
        for (std::size_t i = 0; i < ring.passCount; ++i)
            yieldWhole(cracks.passes[ring.firstPass + i].chain);
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
    any = true;
}

} // namespace ovtrace
