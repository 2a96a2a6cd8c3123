#include "tangents.h"

#include "shapes/tangency.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <utility>

namespace ovtrace {
namespace {

/// Cosine of the sharpest bend between a line and an arc that may be none: 25 degrees.
constexpr double Smooth = 0.906;
/// Samples over which distances are averaged, and at least this many make an arc.
constexpr int Run = 6;
constexpr std::size_t FewestSamples = 8;

/// A line that goes on where an arc ends.
struct Neighbour {
    Stroke* line = nullptr;
    int end = 0;                 ///< the line's end there
    Carrier running = Carrier(); ///< its carrier in the direction of the arc
};

/// The greatest distance of a mean over neighbouring samples from the carrier.
double worstOf(const Carrier& carrier, const std::vector<Sample>& samples) {
    double worst = 0.0;
    double sum = 0.0;
    int count = 0;
    for (const Sample& sample : samples) {
        if (sample.loose)
            continue;
        sum += signedDistance(carrier, sample.at);
        if (++count == Run) {
            worst = std::max(worst, std::abs(sum) / Run);
            sum = 0.0;
            count = 0;
        }
    }
    return worst;
}

Neighbour neighbourOf(std::vector<Stroke>& strokes, const Stroke& arc, int e) {
    const Neighbour none{};
    const StrokeEnd& end = arc.ends[static_cast<std::size_t>(e)];
    if (end.next < 0)
        return none;
    Stroke& line = strokes[static_cast<std::size_t>(end.next)];
    if (line.dropped || !line.carrier.isLine() || !line.dashes.empty())
        return none;
    const Point there = line.ends[static_cast<std::size_t>(end.nextEnd)].at;
    if (distance(end.at, there) > 4.0 * arc.width + 8.0)
        return none;
    Neighbour found{&line, end.nextEnd, line.carrier};
    // Into the arc at its start, out of it at its end.
    if ((end.nextEnd == 1) != (e == 0))
        found.running.direction = -found.running.direction;
    if (dot(found.running.direction, directionAt(arc.carrier, end.at)) < Smooth)
        return none;
    return found;
}

/// What of the line's samples lies before it becomes the arc fits it again.
void trim(Stroke& line, int end, Point foot) {
    const Point outward = outwardAt(line, end);
    std::erase_if(line.samples, [&](const Sample& s) { return dot(s.at - foot, outward) > 0.0; });
    Moments support(foot);
    for (const Sample& s : line.samples)
        if (!s.loose)
            support.add(s.at, 1.0 / (s.sigma * s.sigma));
    line.ends[static_cast<std::size_t>(end)].at = foot;
    if (line.aligned || support.count() < static_cast<int>(FewestSamples))
        return;
    Carrier again = lineCarrier(support, line.start(), line.finish());
    if (dot(again.direction, line.carrier.direction) > 0.9999)
        line.carrier = again;
}

std::optional<Carrier> tangentOf(const Stroke& arc, const Neighbour& before, const Neighbour& after,
                                 double allowed) {
    // The lines may have taken samples of the arc; what bounds the change are means over runs.
    constexpr double Any = 1e18;
    std::optional<Carrier> found =
        tangentCircle(arc.carrier, before.line ? &before.running : nullptr,
                      after.line ? &after.running : nullptr, arc.samples, Any);
    if (found &&
        worstOf(*found, arc.samples) > std::max(allowed, worstOf(arc.carrier, arc.samples)))
        found.reset();
    return found;
}

void put(Stroke& arc, int e, const Neighbour& neighbour) {
    if (!neighbour.line)
        return;
    const Point foot = projected(neighbour.running, arc.carrier.at);
    arc.ends[static_cast<std::size_t>(e)].at = foot;
    trim(*neighbour.line, neighbour.end, foot);
}

/// Whether the foot of the arc's centre lies on the line: it keeps a part of its length.
bool keepsLine(const Carrier& circle, const Neighbour& neighbour) {
    if (!neighbour.line)
        return true;
    const Point foot = projected(neighbour.running, circle.at);
    const Point far = neighbour.line->ends[static_cast<std::size_t>(1 - neighbour.end)].at;
    return dot(foot - far, outwardAt(*neighbour.line, neighbour.end)) > neighbour.line->width;
}

void makeTangent(std::vector<Stroke>& strokes, Stroke& arc, double allowed) {
    const Neighbour before = neighbourOf(strokes, arc, 0);
    const Neighbour after = neighbourOf(strokes, arc, 1);
    const Neighbour none{};
    // Both at once where that can be, else one.
    const std::array<std::pair<Neighbour, Neighbour>, 3> choices{
        {{before, after}, {before, none}, {none, after}}};
    for (const auto& [first, last] : choices) {
        if (!first.line && !last.line)
            continue;
        const auto circle = tangentOf(arc, first, last, allowed);
        if (!circle || !keepsLine(*circle, first) || !keepsLine(*circle, last))
            continue;
        arc.carrier = *circle;
        arc.ends[0].at = projected(*circle, arc.start());
        arc.ends[1].at = projected(*circle, arc.finish());
        put(arc, 0, first);
        put(arc, 1, last);
        return;
    }
}

} // namespace

void makeTangent(std::vector<Stroke>& strokes, const Measure& measure) {
    const double allowed = measure.sigma + 0.15;
    for (int round = 0; round < 2; ++round)
        for (Stroke& arc : strokes)
            if (!arc.dropped && !arc.closed && !arc.carrier.isLine() && arc.dashes.empty() &&
                arc.samples.size() >= FewestSamples)
                makeTangent(strokes, arc, allowed);
}

} // namespace ovtrace
