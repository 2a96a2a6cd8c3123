#include "outlines.h"

#include "pace.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace ovtrace {
namespace {

constexpr double HalfInk = 127.5;
/// Greatest distance of a dropped point from the simplified outline, in pixels.
constexpr double Simplified = 0.12;

/// The levels of one area alone, with a border of paper.
struct Patch {
    int left;
    int top;
    int width;
    int height;
    std::vector<std::uint8_t> levels;

    double level(int x, int y) const {
        return levels[static_cast<std::size_t>(y) * static_cast<std::size_t>(width) +
                      static_cast<std::size_t>(x)];
    }
    bool isInk(int x, int y) const {
        return level(x, y) > HalfInk;
    }
};

Patch patchOf(const InkLevels& ink, const InkMask& mask, const InkComponents& all,
              const InkComponent& component) {
    constexpr int Border = 2;
    Patch patch{component.left - Border,
                component.top - Border,
                component.width() + 2 * Border,
                component.height() + 2 * Border,
                {}};
    patch.levels.resize(static_cast<std::size_t>(patch.width) *
                        static_cast<std::size_t>(patch.height));
    const auto put = [&](int x, int y, bool own) {
        if (x < 0 || y < 0 || x >= ink.width || y >= ink.height)
            return;
        std::uint8_t& at = patch.levels[static_cast<std::size_t>(y - patch.top) *
                                            static_cast<std::size_t>(patch.width) +
                                        static_cast<std::size_t>(x - patch.left)];
        // Its own pixels are ink and those around it are not, whatever their grey.
        if (own)
            at = std::max<std::uint8_t>(ink.at(x, y), 128);
        else if (at < 128 && mask.values[mask.indexOf(x, y)] == InkMask::Paper)
            at = std::min<std::uint8_t>(ink.at(x, y), 127);
    };
    for (std::uint32_t i = 0; i < component.runCount; ++i) {
        const InkRun& run = all.runs[component.firstRun + i];
        for (int x = run.begin - 1; x <= run.end; ++x)
            for (int y = run.y - 1; y <= run.y + 1; ++y)
                put(x, y, y == run.y && x >= run.begin && x < run.end);
    }
    return patch;
}

/// Walks the outlines of a patch between ink and paper pixels, ink on the right hand.
class OutlineWalk {
public:
    explicit OutlineWalk(const Patch& patch) : patch(patch), seen(patch.levels.size(), false) {
    }

    std::vector<std::vector<Point>> rings() {
        std::vector<std::vector<Point>> result;
        for (int y = 1; y + 1 < patch.height; ++y)
            for (int x = 1; x + 1 < patch.width; ++x)
                // Each outline has a place where paper lies above ink.
                if (patch.isInk(x, y) && !patch.isInk(x, y - 1) && !seenAt(x, y)) {
                    std::vector<Point> ring = follow(x, y);
                    if (ring.size() >= 3)
                        result.push_back(std::move(ring));
                }
        return result;
    }

private:
    static constexpr std::array<std::array<int, 2>, 4> Out{{{0, -1}, {1, 0}, {0, 1}, {-1, 0}}};

    std::vector<bool>::reference seenAt(int x, int y) {
        return seen[static_cast<std::size_t>(y) * static_cast<std::size_t>(patch.width) +
                    static_cast<std::size_t>(x)];
    }

    /// The place between the ink pixel and the paper on its side `out` where ink is half.
    Point crossing(int x, int y, std::size_t out) const {
        const double a = patch.level(x, y);
        const double b = patch.level(x + Out[out][0], y + Out[out][1]);
        const double t = std::clamp((a - HalfInk) / (a - b), 0.0, 1.0);
        return {patch.left + x + 0.5 + t * Out[out][0], patch.top + y + 0.5 + t * Out[out][1]};
    }

    std::vector<Point> follow(int startX, int startY) {
        std::vector<Point> ring;
        int x = startX;
        int y = startY;
        std::size_t out = 0; // paper lies on this side; the walk goes clockwise around ink
        do {
            if (out == 0)
                seenAt(x, y) = true;
            ring.push_back(crossing(x, y, out));
            const auto& ahead = Out[(out + 1) % 4];
            const int ax = x + ahead[0];
            const int ay = y + ahead[1];
            const int dx = ax + Out[out][0];
            const int dy = ay + Out[out][1];
            if (patch.isInk(dx, dy)) { // diagonally ahead: ink hangs together at corners
                x = dx;
                y = dy;
                out = (out + 3) % 4;
            } else if (patch.isInk(ax, ay)) {
                x = ax;
                y = ay;
            } else {
                out = (out + 1) % 4;
            }
        } while (x != startX || y != startY || out != 0);
        return ring;
    }

    const Patch& patch;
    std::vector<bool> seen;
};

/// Drops points as long as all that were dropped stay close to the chord (Reumann and Witkam's
/// idea with a check of each point).
std::vector<Point> simplified(const std::vector<Point>& ring) {
    std::vector<Point> result;
    std::size_t anchor = 0;
    result.push_back(ring[0]);
    for (std::size_t k = 2; k <= ring.size(); ++k) {
        const Point to = ring[k % ring.size()];
        const Point chord = to - ring[anchor];
        const double size = length(chord);
        bool fits = k - anchor < 64 && size > 0.0;
        for (std::size_t m = anchor + 1; m < k && fits; ++m)
            fits = std::abs(cross(chord, ring[m] - ring[anchor])) <= Simplified * size;
        if (!fits) {
            anchor = k - 1;
            result.push_back(ring[anchor]);
        }
    }
    return result.size() >= 3 ? result : ring;
}

} // namespace

std::vector<InkArea> outlineAreas(const InkLevels& ink, const InkMask& mask, InkMask::Value kind,
                                  Pace& pace) {
    const InkComponents components = findComponents(mask, kind, pace);
    std::vector<InkArea> areas;
    double done = 0.0;
    for (const InkComponent& component : components.components) {
        const Patch patch = patchOf(ink, mask, components, component);
        InkArea area;
        area.kind = kind;
        const InkRun& run = components.runs[component.firstRun];
        const int middle = (run.begin + run.end) / 2;
        area.inside = {middle + 0.5, run.y + 0.5};
        for (const std::vector<Point>& ring : OutlineWalk(patch).rings())
            area.rings.push_back(simplified(ring));
        if (!area.rings.empty())
            areas.push_back(std::move(area));
        pace.step(++done, static_cast<double>(components.components.size()));
    }
    return areas;
}

} // namespace ovtrace
