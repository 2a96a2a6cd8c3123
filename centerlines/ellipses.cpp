#include "ellipses.h"

#include "ellipse.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <optional>
#include <utility>

namespace ovtrace {
namespace {

/// Fewest arcs of which an ellipse consists, and most.
constexpr std::size_t FewestArcs = 3;
constexpr std::size_t MostArcs = 64;
/// Cosine of the sharpest bend within a run, 60 degrees: at the ends of narrow ellipses arcs are
/// short, and some are lines.
constexpr double Curved = 0.5;
/// Neighbouring samples of which a mean is taken.
constexpr int Neighbours = 8;
/// Share by which the arcs may be longer or shorter than the ellipse.
constexpr double MostOff = 0.1;

struct EndOf {
    int stroke = -1;
    int end = 0;
};

class EllipseFinder {
public:
    EllipseFinder(std::vector<Stroke>& strokes, std::vector<Point>& nodes, const Measure& measure)
        : strokes(strokes), nodes(nodes), measure(measure), endsAt(nodes.size()) {
        for (std::size_t i = 0; i < strokes.size(); ++i)
            for (int e = 0; isMember(strokes[i]) && e < 2; ++e) {
                const int node = strokes[i].ends[static_cast<std::size_t>(e)].node;
                if (node >= 0)
                    endsAt[static_cast<std::size_t>(node)].push_back({static_cast<int>(i), e});
            }
    }

    void run() {
        const auto count = static_cast<int>(strokes.size());
        for (int i = 0; i < count; ++i)
            if (isMember(at(i)) && !at(i).carrier.isLine())
                if (const std::vector<int> members = runFrom(i); members.size() >= FewestArcs)
                    replace(members);
        if (found)
            dropUnusedNodes();
    }

private:
    static bool isMember(const Stroke& stroke) {
        return !stroke.dropped && !stroke.closed && stroke.dashes.empty() && !stroke.hatch;
    }
    Stroke& at(int i) {
        return strokes[static_cast<std::size_t>(i)];
    }
    StrokeEnd& endAt(EndOf end) {
        return at(end.stroke).ends[static_cast<std::size_t>(end.end)];
    }

    /// The end at the same node with which the curve goes on most smoothly.
    EndOf next(EndOf from) {
        EndOf best;
        const int node = endAt(from).node;
        if (node < 0)
            return best;
        const Point ahead = outwardAt(at(from.stroke), from.end);
        double smoothest = Curved;
        for (const EndOf& to : endsAt[static_cast<std::size_t>(node)]) {
            const double cosine = -dot(ahead, outwardAt(at(to.stroke), to.end));
            if (to.stroke != from.stroke && isMember(at(to.stroke)) && cosine > smoothest) {
                smoothest = cosine;
                best = to;
            }
        }
        return best;
    }

    /// The strokes of the closed curve that begins with arc `first`; empty where it does not close.
    std::vector<int> runFrom(int first) {
        std::vector<int> members{first};
        EndOf end{first, 1};
        while (members.size() <= MostArcs) {
            const EndOf to = next(end);
            if (to.stroke < 0)
                return {};
            if (to.stroke == first)
                return to.end == 0 ? members : std::vector<int>{};
            members.push_back(to.stroke);
            end = {to.stroke, 1 - to.end};
        }
        return {};
    }

    void replace(const std::vector<int>& members) {
        std::vector<Sample> samples;
        for (const int i : members)
            samples.insert(samples.end(), at(i).samples.begin(), at(i).samples.end());
        const std::optional<Ellipse> ellipse = fitEllipse(samples);
        if (!ellipse ||
            !std::ranges::all_of(members, [&](int i) { return agrees(at(i), *ellipse); }))
            return;
        double length = 0.0;
        double widths = 0.0;
        double peaks = 0.0;
        for (const int i : members) {
            const double part = lengthOf(at(i));
            widths += part * at(i).width;
            peaks += part * at(i).peak;
            length += part;
        }
        // A turn more or less than one is another curve; ink without paper within is a blot.
        if (widths > ellipse->minor * length ||
            std::abs(length - circumferenceOf(*ellipse)) > MostOff * length)
            return;
        for (const int i : members)
            at(i).dropped = true;
        followEnds(*ellipse, widths / length);
        Stroke made;
        made.closed = true;
        made.ellipse = ellipse;
        made.carrier.at = ellipse->centre;
        made.carrier.radius = ellipse->major;
        made.width = widths / length;
        made.peak = peaks / length;
        strokes.push_back(std::move(made));
        found = true;
    }

    /// Whether the ellipse explains the samples of a stroke: sigma is what neighbours leave, slower
    /// waves of scans and of rounding are as great again.
    bool agrees(const Stroke& stroke, const Ellipse& ellipse) const {
        const double allowed = 2.0 * measure.sigma + 0.15;
        double run = 0.0;
        int inRun = 0;
        const auto isFar = [&] { return std::abs(run) > allowed * inRun; };
        for (const Sample& sample : stroke.samples) {
            if (sample.loose)
                continue;
            run += signedDistance(ellipse, sample.at);
            if (++inRun < Neighbours)
                continue;
            if (isFar())
                return false;
            run = 0.0;
            inRun = 0;
        }
        return !isFar();
    }

    /// Nodes in the ink of the ellipse stood on its arcs, or between them, and move on to it: those
    /// of a single line along that line.
    void followEnds(const Ellipse& ellipse, double width) {
        std::vector<std::vector<EndOf>> standing(nodes.size());
        for (std::size_t i = 0; i < strokes.size(); ++i)
            for (int e = 0; !strokes[i].dropped && !strokes[i].closed && e < 2; ++e) {
                const StrokeEnd& end = strokes[i].ends[static_cast<std::size_t>(e)];
                if (end.node >= 0 && std::abs(signedDistance(ellipse, end.at)) < width / 2.0)
                    standing[static_cast<std::size_t>(end.node)].push_back(
                        {static_cast<int>(i), e});
            }
        for (std::size_t n = 0; n < nodes.size(); ++n) {
            if (standing[n].empty())
                continue;
            const Stroke& first = at(standing[n].front().stroke);
            Point place = projected(ellipse, nodes[n]);
            if (standing[n].size() == 1 && first.carrier.isLine()) {
                const Point direction = unit(first.finish() - first.start());
                const Point slid = meetingNear(ellipse, direction, nodes[n]);
                if (distance(slid, nodes[n]) < 2.0 * width)
                    place = slid;
            }
            nodes[n] = place;
            for (const EndOf& end : standing[n])
                endAt(end).at = nodes[n];
        }
    }

    void dropUnusedNodes() {
        std::vector<int> numbers(nodes.size(), -1);
        std::vector<Point> used;
        for (Stroke& stroke : strokes)
            for (StrokeEnd& end : stroke.ends) {
                if (stroke.dropped || stroke.closed || end.node < 0)
                    continue;
                int& number = numbers[static_cast<std::size_t>(end.node)];
                if (number < 0) {
                    number = static_cast<int>(used.size());
                    used.push_back(nodes[static_cast<std::size_t>(end.node)]);
                }
                end.node = number;
            }
        nodes = std::move(used);
    }

    std::vector<Stroke>& strokes;
    std::vector<Point>& nodes;
    const Measure& measure;
    std::vector<std::vector<EndOf>> endsAt; ///< the ends at each node
    bool found = false;
};

} // namespace

void findEllipses(std::vector<Stroke>& strokes, std::vector<Point>& nodes, const Measure& measure) {
    EllipseFinder(strokes, nodes, measure).run();
}

} // namespace ovtrace
