#include "arrowheads.h"

#include "steps.h"
#include "strokegrid.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <optional>

namespace ovtrace {
namespace {

/// Steps along and across a line, in pixels.
constexpr double Step = 0.5;
/// Longest head in widths of its line, and in pixels beyond that.
constexpr double LongestOfWidth = 12.0;
constexpr double LongestBeyond = 8.0;
/// A head is wider than its line by this factor and by these pixels, and at most so many times.
constexpr double WiderThanLine = 2.2;
constexpr double WiderBeyond = 1.5;
constexpr double WidestOfLine = 12.0;
/// Cosine of the least angle between a line and a mark on it: 80 degrees.
constexpr double Upright = 0.17;
/// The same for the width of the wedge that fits all of the head best, as a share of that.
constexpr double Fitted = 0.75;
/// Pixels from an edge at which its blur decides nothing.
constexpr double Beside = 0.5;
/// Share of a head's sides that is ink at least.
constexpr double Filled = 0.75;
/// Ink that is inside.
constexpr double Inside = 0.5;

/// The ink to both sides of a line at one place.
struct Across {
    double left = 0.0;
    double right = 0.0;

    double width() const {
        return left + right;
    }
};

class HeadFinder {
public:
    HeadFinder(const InkLevels& ink, const Stroke& line, int end)
        : ink(ink), line(line), end(end), across(turnedQuarter(line.carrier.direction)),
          widest(WidestOfLine * line.width + WiderBeyond) {
    }

    std::optional<InkArea> find() {
        const double most = std::min(LongestOfWidth * line.width + LongestBeyond,
                                     lengthOf(line) - 2.0 * line.width);
        const int last = stepsIn(most + 2.0 * line.width, Step);
        for (int k = 0; k <= last; ++k)
            profile.push_back(acrossAt(k * Step));
        const double base = baseOf(most);
        if (base <= 0.0 || !isWedge(base) || !isFilled(base, 1.0) || !isFilled(base, -1.0))
            return std::nullopt;
        return triangle(base);
    }

private:
    const Across& at(double d) const {
        const auto k = static_cast<std::size_t>((std::max(d, 0.0) + Step / 2.0) / Step);
        return profile[std::min(k, profile.size() - 1)];
    }

    Point placeAt(double d) const {
        return beyond(line, end, -d);
    }

    Across acrossAt(double d) const {
        const Point middle = placeAt(d);
        const auto reach = [&](Point direction) {
            double r = 0.0;
            while (r < widest) {
                const Point p = middle + direction * (r + Step);
                if (ink.sample(p.x, p.y) < Inside)
                    break;
                r += Step;
            }
            return r;
        };
        return {reach(-across), reach(across)};
    }

    double leastWidth() const {
        return WiderThanLine * line.width + WiderBeyond;
    }

    /// Where the widest place is after which the line is by itself again; 0 for none.
    double baseOf(double most) const {
        double best = 0.0;
        double width = leastWidth();
        for (int k = stepsIn(3.0, Step); k * Step <= most; ++k)
            if (at(k * Step).width() >= width) {
                width = at(k * Step).width();
                best = k * Step;
            }
        if (best <= 0.0 || width > widest)
            return 0.0;
        // The back of a head is straight: the width falls within little more than blur.
        const double half = (width + line.width) / 2.0;
        double d = best;
        while (d < best + 3.0 && at(d).width() > half)
            d += Step;
        const bool alone = at(d + 2.0).width() <= 1.5 * line.width + 1.0 &&
                           at(d + 1.5 * line.width).width() <= 1.5 * line.width + 1.0;
        return alone ? d : 0.0;
    }

    /// Whether the width grows evenly from the tip to the base, on both sides alike.
    bool isWedge(double base) const {
        const double width = 2.0 * slope(base) * base;
        if (width < Fitted * leastWidth() || base < 0.8 * width || base > 4.0 * width)
            return false;
        constexpr std::array<double, 4> Parts{0.35, 0.5, 0.65, 0.8};
        return std::ranges::all_of(Parts, [&](double part) {
            const Across& a = at(part * base);
            return std::abs(a.width() - std::max(part * width, line.width)) <= 0.15 * width + 1.5 &&
                   std::abs(a.left - a.right) <= 0.25 * width + 1.0;
        });
    }

    /// Whether ink fills the head on one side beside the line's own: bars that meet a line near its
    /// corner make its ink wider as well, and on one side alone.
    bool isFilled(double base, double side) const {
        const double grows = slope(base);
        int filled = 0;
        int all = 0;
        for (double d = Step; d < base - Beside; d += Step)
            for (double off = line.width / 2.0 + Beside; off <= grows * d - Beside; off += Step) {
                const Point p = placeAt(d) + across * (side * off);
                filled += ink.sample(p.x, p.y) >= Inside ? 1 : 0;
                ++all;
            }
        return filled >= Filled * all;
    }

    /// Half the width over the distance from the tip.
    double slope(double base) const {
        double sum = 0.0;
        double squares = 0.0;
        double d = 0.4 * base;
        while (d <= 0.9 * base) {
            sum += d * at(d).width() / 2.0;
            squares += d * d;
            d += Step;
        }
        return squares > 0.0 ? sum / squares : 0.0;
    }

    InkArea triangle(double base) const {
        const Point tip = placeAt(0.0);
        const Point back = placeAt(base);
        const Point side = across * (slope(base) * base);
        InkArea head;
        head.kind = InkMask::Solid;
        std::vector<Point> ring{tip, back - side, back + side};
        // Clockwise with y down, as outlines of areas are.
        if (cross(ring[1] - ring[0], ring[2] - ring[0]) > 0.0)
            std::swap(ring[1], ring[2]);
        head.rings.push_back(ring);
        head.inside = placeAt(0.7 * base);
        return head;
    }

    const InkLevels& ink;
    const Stroke& line;
    int end;
    Point across;
    double widest;
    std::vector<Across> profile;
};

bool isSolid(const InkMask& mask, const InkLevels& ink, Point p) {
    const int x = std::clamp(static_cast<int>(p.x), 0, ink.width - 1);
    const int y = std::clamp(static_cast<int>(p.y), 0, ink.height - 1);
    return mask.values[mask.indexOf(x, y)] == InkMask::Solid;
}

/// Whether a head's corners are in the image, up to half a pixel.
bool isInImage(const InkArea& head, const InkLevels& ink) {
    return std::ranges::all_of(head.rings.front(), [&](Point p) {
        return p.x >= -0.5 && p.y >= -0.5 && p.x <= ink.width + 0.5 && p.y <= ink.height + 0.5;
    });
}

/// A part of a line without what it was measured from.
Stroke partOf(const Stroke& line, Point from, Point to) {
    Stroke part;
    part.carrier = line.carrier;
    part.ends[0].at = from;
    part.ends[1].at = to;
    part.width = line.width;
    return part;
}

/// Where other lines cross a line upright, away from its ends: rows of dimensions are one line with
/// the tips of two heads at each mark.
std::vector<Point> marksOn(const std::vector<Stroke>& strokes, const StrokeGrid& grid,
                           std::size_t number) {
    const Stroke& line = strokes[number];
    std::vector<Point> crossings;
    std::vector<int> found;
    std::vector<int> others;
    for (const Point& p : pointsAlong(line, StrokeGrid::Cell / 2.0)) {
        grid.near(p, StrokeGrid::Cell / 2.0, found);
        others.insert(others.end(), found.begin(), found.end());
    }
    std::ranges::sort(others);
    others.erase(std::unique(others.begin(), others.end()), others.end());
    const double margin = 3.0 * line.width;
    for (const int j : others) {
        const Stroke& other = strokes[static_cast<std::size_t>(j)];
        if (static_cast<std::size_t>(j) == number || other.dropped || !other.carrier.isLine() ||
            std::abs(dot(line.carrier.direction, other.carrier.direction)) > Upright)
            continue;
        for (const Point& p : meetings(line.carrier, other.carrier))
            if (covers(line, p, -margin) && covers(other, p, other.width))
                crossings.push_back(p);
    }
    return crossings;
}

} // namespace

std::vector<InkArea> findArrowHeads(const InkLevels& ink, const InkMask& mask,
                                    const std::vector<Stroke>& strokes) {
    const StrokeGrid grid(strokes, ink.width, ink.height);
    std::vector<InkArea> heads;
    const auto headAt = [&](const Stroke& line, int end) {
        auto head = HeadFinder(ink, line, end).find();
        if (head && (!isInImage(*head, ink) || isSolid(mask, ink, head->inside)))
            head.reset();
        return head;
    };
    for (std::size_t i = 0; i < strokes.size(); ++i) {
        const Stroke& stroke = strokes[i];
        if (stroke.dropped || stroke.closed || !stroke.carrier.isLine() || !stroke.dashes.empty() ||
            stroke.hatch)
            continue;
        for (int end = 0; end < 2; ++end) {
            if (stroke.ends[static_cast<std::size_t>(end)].solid)
                continue;
            if (const auto head = headAt(stroke, end))
                heads.push_back(*head);
        }
        for (const Point& tip : marksOn(strokes, grid, i)) {
            const auto before = headAt(partOf(stroke, stroke.start(), tip), 1);
            const auto after = headAt(partOf(stroke, tip, stroke.finish()), 0);
            if (before && after) {
                heads.push_back(*before);
                heads.push_back(*after);
            }
        }
    }
    return heads;
}

} // namespace ovtrace
