#include "shortbars.h"

#include "pace.h"

#include <algorithm>
#include <cmath>

namespace ovtrace {
namespace {

/// Share of the rectangle of its moments that a bar fills at least.
constexpr double BarFill = 0.8;

struct InkMoments {
    double mass = 0.0;
    Point mean;
    double xx = 0.0;
    double xy = 0.0;
    double yy = 0.0;
};

/// Over the component's pixels and the grey ones around its box that belong to nothing else.
template <typename Visit>
void forEachInk(const InkMask& mask, const InkLevels& ink, const InkComponent& c, Visit visit) {
    for (int y = std::max(0, c.top - 1); y < std::min(ink.height, c.bottom + 1); ++y)
        for (int x = std::max(0, c.left - 1); x < std::min(ink.width, c.right + 1); ++x)
            if (ink.at(x, y) > 16)
                visit(Point{x + 0.5, y + 0.5}, ink.at(x, y) / 255.0,
                      mask.values[mask.indexOf(x, y)]);
}

InkMoments momentsOf(const InkMask& mask, const InkLevels& ink, const InkComponent& component) {
    InkMoments m;
    forEachInk(mask, ink, component, [&](Point p, double level, std::uint8_t) {
        m.mass += level;
        m.mean += p * level;
    });
    m.mean = m.mean / m.mass;
    forEachInk(mask, ink, component, [&](Point p, double level, std::uint8_t) {
        const Point d = p - m.mean;
        m.xx += level * d.x * d.x;
        m.xy += level * d.x * d.y;
        m.yy += level * d.y * d.y;
    });
    m.xx /= m.mass;
    m.xy /= m.mass;
    m.yy /= m.mass;
    return m;
}

Stroke barOf(const InkMoments& m, double sigma) {
    const double half = (m.xx - m.yy) / 2.0;
    const double root = std::sqrt(half * half + m.xy * m.xy);
    const double along = (m.xx + m.yy) / 2.0 + root;
    const Point axis = half >= 0.0 ? Point{half + root, m.xy} : Point{m.xy, root - half};
    const Point direction = lengthSquared(axis) > 0.0 ? unit(axis) : Point{1.0, 0.0};
    const double length = std::sqrt(12.0 * along);
    Stroke stroke;
    stroke.width = m.mass / length;
    stroke.ends[0].at = m.mean - direction * (length / 2.0);
    stroke.ends[1].at = m.mean + direction * (length / 2.0);
    // The ends of a bar are known along it, not across: its middle counts most.
    Moments support(m.mean);
    for (const double t : {-0.3, 0.0, 0.3}) {
        const Sample sample{m.mean + direction * (t * length), 1.5 * sigma, false};
        stroke.samples.push_back(sample);
        support.add(sample.at, 1.0 / (sample.sigma * sample.sigma));
    }
    stroke.carrier = lineCarrier(support, stroke.start(), stroke.finish());
    return stroke;
}

bool isBar(const InkMoments& m) {
    const double sides = 12.0 * std::sqrt(std::max(m.xx * m.yy - m.xy * m.xy, 0.0));
    return m.mass >= BarFill * sides;
}

} // namespace

std::vector<Stroke> takeShortBars(InkMask& mask, const InkLevels& ink,
                                  const InkComponents& components, double longest, double sigma,
                                  Pace& pace) {
    std::vector<Stroke> bars;
    double done = 0.0;
    for (const InkComponent& c : components.components) {
        pace.step(done += 1.0, static_cast<double>(components.components.size()));
        const InkRun& first = components.runs[c.firstRun];
        if (std::max(c.width(), c.height()) > longest ||
            mask.values[mask.indexOf(first.begin, first.y)] != InkMask::Ink)
            continue;
        bool alone = true;
        int own = 0;
        forEachInk(mask, ink, c, [&](Point, double, std::uint8_t value) {
            alone = alone && (value == InkMask::Paper || value == InkMask::Ink);
            own += value == InkMask::Ink ? 1 : 0;
        });
        const InkMoments m = momentsOf(mask, ink, c);
        if (!alone || own != c.area || !isBar(m))
            continue;
        bars.push_back(barOf(m, sigma));
        for (std::uint32_t i = 0; i < c.runCount; ++i) {
            const InkRun& run = components.runs[c.firstRun + i];
            for (int x = run.begin; x < run.end; ++x)
                mask.values[mask.indexOf(x, run.y)] = InkMask::Bar;
        }
    }
    return bars;
}

} // namespace ovtrace
