#include "edgeplaces.h"

#include <algorithm>
#include <cstdlib>

namespace ovtrace {
namespace {

/// Steps on either side that tell the direction of a chain.
constexpr std::int64_t DirectionReach = 4;
/// The same where it is measured.
constexpr std::int64_t LeanReach = 16;
/// The standard deviation, in pixels, of a place that is rounded to whole ones.
constexpr double RoundedSigma = 0.2887;

/// The steps of a chain by their place, going round where it is closed.
class ChainSteps {
public:
    ChainSteps(const CrackMap& cracks, const CrackChain& chain)
        : steps(cracks.steps.data() + chain.firstStep),
          count(static_cast<std::int64_t>(chain.stepCount)), closed(chain.from < 0) {
    }
    std::int64_t size() const {
        return count;
    }
    Step at(std::int64_t i) const {
        return steps[i];
    }
    /// Whether the chain runs more along x than along y around a step.
    bool isFlat(std::int64_t i) const {
        GridPoint way;
        for (std::int64_t k = i - DirectionReach; k <= i + DirectionReach; ++k) {
            if (closed)
                way = way + steps[(k % count + count) % count];
            else if (k >= 0 && k < count)
                way = way + steps[k];
        }
        if (std::abs(way.x) != std::abs(way.y))
            return std::abs(way.x) > std::abs(way.y);
        return steps[i] == Step::Right || steps[i] == Step::Left;
    }

    /// How many pixels the chain moves on across step i for each pixel along it, at most 1; not
    /// beyond where it turns back.
    double leanAt(std::int64_t i) const {
        int along = 1;
        int across = 0;
        for (const std::int64_t way : {-1, 1}) {
            for (std::int64_t k = 1; k <= LeanReach; ++k) {
                const std::int64_t next = i + way * k;
                if (!closed && (next < 0 || next >= count))
                    break;
                const Step step = steps[closed ? (next % count + count) % count : next];
                if (step == opposite(steps[i]))
                    break;
                along += step == steps[i] ? 1 : 0;
                across += step == turnedRight(steps[i]) ? 1 : step == turnedLeft(steps[i]) ? -1 : 0;
            }
        }
        return std::min(1.0, std::abs(double(across)) / along);
    }

private:
    const Step* steps;
    std::int64_t count;
    bool closed;
};

/// Tells chains of an image without anti-aliasing: where they step from one row to the next, the
/// pixels on both sides are pure. Only straight edges along the pixels look the same in others.
class SharpnessCount {
public:
    void add(const EdgePlace& place, bool flat, double across) {
        if (!place.sharp)
            ++mixed;
        else if (any && lastSharp && flat == lastFlat && across != lastAcross)
            ++steps;
        any = true;
        lastSharp = place.sharp;
        lastFlat = flat;
        lastAcross = across;
    }
    bool isSharp() const {
        return steps > mixed;
    }

private:
    int mixed = 0;
    int steps = 0;
    bool any = false;
    bool lastSharp = false;
    bool lastFlat = false;
    double lastAcross = 0.0;
};

/// Where places are doubtful one after the other, they are still all that is known of the edge.
void trustLongRuns(std::vector<Sample>& samples) {
    // Beside a corner, about two on each side are doubtful.
    constexpr std::size_t Shortest = 5;
    for (std::size_t i = 0; i < samples.size();) {
        std::size_t end = i;
        while (end < samples.size() && samples[end].loose)
            ++end;
        if (end - i >= Shortest) {
            for (std::size_t k = i; k < end; ++k)
                samples[k] = {samples[k].at, std::max(samples[k].sigma, RoundedSigma), false};
        }
        i = end + 1;
    }
}

} // namespace

/// The place of the edge in the row or column that the step between two corners crosses.
EdgePlace EdgePlaces::edgeAt(GridPoint from, GridPoint to,
                             const std::function<double()>& lean) const {
    const int across = from.y == to.y ? 1 : 0;
    const PixelLine line(image, labels, std::min(from.x, to.x), std::min(from.y, to.y), 1 - across,
                         across);
    return findEdge(line, options.noise, lean);
}

std::vector<Sample> EdgePlaces::placesOf(const CrackMap& cracks, const CrackChain& chain,
                                         double most) const {
    std::vector<Sample> samples;
    std::vector<Sample> everywhere;
    const ChainSteps steps(cracks, chain);
    SharpnessCount sharpness;
    GridPoint p = chain.start;
    for (std::int64_t i = 0; i < steps.size(); ++i) {
        const Step step = steps.at(i);
        const GridPoint here = p;
        p = p + step;
        const bool horizontal = step == Step::Right || step == Step::Left;
        const bool runsAlong = steps.isFlat(i) == horizontal;
        const EdgePlace place = edgeAt(here, p, [&] { return steps.leanAt(i); });
        const double off = std::clamp(place.at, -most, most);
        const int x = std::min(here.x, p.x);
        const int y = std::min(here.y, p.y);
        const Point at = horizontal ? Point{x + 0.5, y + off} : Point{x + off, y + 0.5};
        if (runsAlong || place.sharp)
            everywhere.push_back({at, std::max(place.sigma, RoundedSigma), place.loose});
        if (!runsAlong)
            continue;
        samples.push_back({at, place.sigma, place.loose});
        sharpness.add(place, horizontal, horizontal ? at.y : at.x);
    }
    // Coverage says nothing where the edge runs the other way. Without any, each step is as good as
    // the others, and what sticks out by a pixel has no place of its own but across.
    if (sharpness.isSharp())
        samples = std::move(everywhere);
    trustLongRuns(samples);
    return samples;
}

std::vector<Point> EdgePlaces::placesBeside(const CrackMap& cracks, const CrackChain& chain) const {
    std::vector<Point> places;
    const ChainSteps steps(cracks, chain);
    GridPoint p = chain.start;
    for (std::int64_t i = 0; i < steps.size(); ++i) {
        const GridPoint here = p;
        p = p + steps.at(i);
        const bool horizontal = here.y == p.y;
        // Where the chain runs the other way, the coverage tells nothing about this step.
        const double off =
            steps.isFlat(i) == horizontal
                ? std::clamp(edgeAt(here, p, [&] { return steps.leanAt(i); }).at, -Beside, Beside)
                : 0.0;
        const Point middle{(here.x + p.x) / 2.0, (here.y + p.y) / 2.0};
        places.push_back(horizontal ? Point{middle.x, middle.y + off}
                                    : Point{middle.x + off, middle.y});
    }
    return places;
}

} // namespace ovtrace
