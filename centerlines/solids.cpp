#include "solids.h"

#include "distance.h"
#include "pace.h"
#include "ridgemedian.h"

#include <algorithm>
#include <array>

namespace ovtrace {
namespace {

/// Square of the depth, in thirds of a pixel, over the pixels that an inscribed circle of that
/// depth leaves of a corner at most: of one of 30 degrees.
constexpr int CornerOfDepth = 4;

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

    /// The deep pixels that hang together with `start`, those around them within `reach` that no
    /// stroke has, and the circles inscribed there: strokes that run into the area stay outside.
    Candidate grow(std::size_t start, int deep, int slim, int reach) {
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
                spread(area, area.pixels[i], step % 2 == 1, slim);
            begin = end;
        }
        fillCircles(area);
        takeCorners(area, static_cast<std::size_t>(slim * slim / CornerOfDepth));
        return area;
    }

    void mark(const std::vector<std::size_t>& pixels, InkMask::Value value) {
        for (const std::size_t i : pixels)
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

    template <typename Visit> void forNeighbors(std::size_t from, bool diagonally, Visit visit) {
        const std::ptrdiff_t s = mask.stride;
        const std::array<std::ptrdiff_t, 8> steps{-s, 1, s, -1, -s - 1, -s + 1, s - 1, s + 1};
        for (std::size_t k = 0; k < (diagonally ? 8U : 4U); ++k) {
            const std::size_t i = from + static_cast<std::size_t>(steps[k]);
            if (mask.values[i] == InkMask::Ink)
                visit(i, k < 4 ? std::size_t{3} : std::size_t{4});
        }
    }

    void spread(Candidate& area, std::size_t from, bool diagonally, int least) {
        forNeighbors(from, diagonally, [&](std::size_t i, std::size_t) {
            if (distance[i] >= least)
                take(area, i);
        });
    }

    /// Takes what lies nearer to a pixel of the area than paper does, in the steps of the
    /// distances: first where most is left of a circle.
    void fillCircles(Candidate& area) {
        std::array<std::vector<std::size_t>, 256> left;
        std::array<std::size_t, 256> own{};
        for (const std::size_t i : area.pixels) {
            left[distance[i]].push_back(i);
            ++own[distance[i]];
        }
        for (std::size_t rest = left.size(); --rest > 0;)
            for (std::size_t n = 0; n < left[rest].size(); ++n) {
                const std::size_t from = left[rest][n];
                if (mask.values[from] == InkMask::Ink)
                    take(area, from);
                else if (n >= own[rest])
                    continue; // met from where more is left
                forNeighbors(from, true, [&](std::size_t i, std::size_t step) {
                    if (rest > step)
                        left[rest - step].push_back(i);
                });
            }
    }

    /// Takes what is left of ink beside the area where it is no more than a corner has: a stroke
    /// runs on.
    void takeCorners(Candidate& area, std::size_t most) {
        std::vector<std::size_t> corner;
        const std::size_t count = area.pixels.size();
        for (std::size_t n = 0; n < count; ++n)
            forNeighbors(area.pixels[n], true, [&](std::size_t i, std::size_t) {
                flood(i, most, corner);
                mark(corner, InkMask::Ink);
                if (corner.size() <= most)
                    for (const std::size_t k : corner)
                        take(area, k);
            });
    }

    /// Marks the ink that hangs together with `start` and holds it in `found`: all of it, or more
    /// than `most`.
    void flood(std::size_t start, std::size_t most, std::vector<std::size_t>& found) {
        found.assign(1, start);
        mask.values[start] = InkMask::Solid;
        for (std::size_t n = 0; n < found.size() && found.size() <= most; ++n)
            forNeighbors(found[n], true, [&](std::size_t i, std::size_t) {
                mask.values[i] = InkMask::Solid;
                found.push_back(i);
            });
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
        const int slim = std::min(deep, ridge + 4);
        for (std::uint32_t i = 0; i < component.runCount; ++i) {
            const InkRun& run = components.runs[component.firstRun + i];
            for (int x = run.begin; x < run.end; ++x) {
                const std::size_t at = mask.indexOf(x, run.y);
                if (distance[at] < deep || mask.values[at] != InkMask::Ink)
                    continue;
                // Ink a pixel less deep tells whether a pen ran on: the middle of a slanting stroke
                // is now that of an odd width and now of an even one.
                Candidate area = grower.grow(at, deep - 3, slim, reach);
                if (isStroke(area, rules))
                    strokes.push_back(std::move(area)); // stays marked, so as not to be met again
            }
        }
        pace.step(++done, static_cast<double>(components.components.size()));
    }
    for (const Candidate& stroke : strokes)
        grower.mark(stroke.pixels, InkMask::Ink);
}

} // namespace ovtrace
