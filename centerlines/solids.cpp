#include "solids.h"

#include "distance.h"
#include "pace.h"
#include "ridgemedian.h"

#include <algorithm>
#include <array>

namespace ovtrace {
namespace {

/// A filled area while it is looked at.
struct Candidate {
    std::vector<std::size_t> pixels;
    int left = 0;
    int top = 0;
    int right = 0;
    int bottom = 0;
    std::uint8_t deepest = 0;
};

/// The deepest pixels of a component tell how wide its strokes are: the median of its ridge.
std::uint8_t ridgeOf(const InkMask& mask, const std::vector<std::uint8_t>& distance,
                     const InkComponents& all, const InkComponent& component) {
    RidgeMedian median;
    for (std::uint32_t i = 0; i < component.runCount; ++i) {
        const InkRun& run = all.runs[component.firstRun + i];
        for (int x = run.begin; x < run.end; ++x)
            median.look(distance.data() + mask.indexOf(x, run.y), mask.stride);
    }
    return median.value();
}

/// Grows areas through ink from pixels that lie deep in it.
class AreaGrower {
public:
    AreaGrower(InkMask& mask, const std::vector<std::uint8_t>& distance)
        : mask(mask), distance(distance) {
    }

    /// The deep pixels that hang together with `start`, then what lies around them within `reach`.
    Candidate grow(std::size_t start, int deep, int reach) {
        Candidate area;
        area.left = area.right = mask.xOf(start);
        area.top = area.bottom = mask.yOf(start);
        take(area, start);
        for (std::size_t i = 0; i < area.pixels.size(); ++i)
            spread(area, area.pixels[i], true, deep);
        std::size_t begin = 0;
        for (int step = 0; step < reach; ++step) {
            const std::size_t end = area.pixels.size();
            // Straight and diagonal steps in turns go round in an octagon.
            for (std::size_t i = begin; i < end; ++i)
                spread(area, area.pixels[i], step % 2 == 1, 1);
            begin = end;
        }
        return area;
    }

    void mark(const Candidate& area, InkMask::Value value) {
        for (const std::size_t i : area.pixels)
            mask.values[i] = value;
    }

private:
    void take(Candidate& area, std::size_t i) {
        mask.values[i] = InkMask::Solid;
        area.pixels.push_back(i);
        area.deepest = std::max(area.deepest, distance[i]);
        area.left = std::min(area.left, mask.xOf(i));
        area.right = std::max(area.right, mask.xOf(i));
        area.top = std::min(area.top, mask.yOf(i));
        area.bottom = std::max(area.bottom, mask.yOf(i));
    }

    void spread(Candidate& area, std::size_t from, bool diagonally, int least) {
        const std::ptrdiff_t s = mask.stride;
        const std::array<std::ptrdiff_t, 8> steps{-s, 1, s, -1, -s - 1, -s + 1, s - 1, s + 1};
        for (std::size_t k = 0; k < (diagonally ? 8U : 4U); ++k) {
            const std::size_t i = from + static_cast<std::size_t>(steps[k]);
            if (mask.values[i] == InkMask::Ink && distance[i] >= least)
                take(area, i);
        }
    }

    InkMask& mask;
    const std::vector<std::uint8_t>& distance;
};

bool isStroke(const Candidate& area, const SolidRules& rules) {
    const double width = 2.0 * halfWidthAt(area.deepest);
    const double extent = std::max(area.right - area.left, area.bottom - area.top) + 1.0;
    return extent > rules.strokeLength * width &&
           static_cast<double>(area.pixels.size()) > rules.strokeLength * width * width;
}

} // namespace

void markSolids(InkMask& mask, const std::vector<std::uint8_t>& distance,
                const InkComponents& components, std::uint8_t medianRidge, const SolidRules& rules,
                Pace& pace) {
    AreaGrower grower(mask, distance);
    std::vector<Candidate> strokes;
    double done = 0.0;
    for (const InkComponent& component : components.components) {
        const int own = ridgeOf(mask, distance, components, component);
        // A blob by itself is no measure of strokes.
        const int ridge = std::min(own, medianRidge * 3 / 2);
        const double halfWidth = std::max(halfWidthAt(static_cast<std::uint8_t>(ridge)), 1.0);
        const int deep = static_cast<int>(3.0 * (rules.widerThanStrokes * halfWidth + 0.4));
        // Half again as far as the inscribed circle reaches: into the corners of squares.
        const int reach = deep / 2 + 1;
        for (std::uint32_t i = 0; i < component.runCount; ++i) {
            const InkRun& run = components.runs[component.firstRun + i];
            for (int x = run.begin; x < run.end; ++x) {
                const std::size_t at = mask.indexOf(x, run.y);
                if (distance[at] < deep || mask.values[at] != InkMask::Ink)
                    continue;
                // Ink a pixel less deep tells whether a pen ran on: the middle of a slanting stroke
                // is now that of an odd width and now of an even one.
                Candidate area = grower.grow(at, deep - 3, reach);
                if (isStroke(area, rules)) {
                    strokes.push_back(std::move(area)); // stays marked, so as not to be met again
                    continue;
                }
                grower.mark(area, InkMask::Ink);
                area = grower.grow(at, deep, reach);
                if (isStroke(area, rules))
                    strokes.push_back(std::move(area));
            }
        }
        pace.step(++done, static_cast<double>(components.components.size()));
    }
    for (const Candidate& stroke : strokes)
        grower.mark(stroke, InkMask::Ink);
}

} // namespace ovtrace
