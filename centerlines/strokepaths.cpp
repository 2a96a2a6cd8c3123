#include "strokepaths.h"

#include "pace.h"

#include "shapes/segmentation.h"

#include <algorithm>
#include <cmath>

namespace ovtrace {
namespace {

/// Pixels of a chain that tell in which direction it leaves a node.
constexpr std::size_t LookAhead = 14;
/// Cosine of the sharpest bend of a path through a node: 30 degrees.
constexpr double StraightOn = 0.866;
/// Ends at a node more than which are a tangle, as of a halftone, through which no stroke leads.
constexpr std::size_t MostOfNode = 64;

/// How much more than noise neighbours leave where it is their stroke that bends.
constexpr double Tight = 2.0;
/// Slope of a line of whole pixels below which it has no two steps within a few pixels, and the
/// share of bumps on such lines from which edges count as ragged.
constexpr double LevelSlope = 0.05;
constexpr double RaggedShare = 0.05;
/// Deviation of a middle from its neighbours in pixels that is a bump.
constexpr double Bump = 0.1;

/// Widths of a stroke differ by no more along it, in pixels, where nothing else takes part.
constexpr double SteadyWidth = 0.6;
/// Length over which a width has to be steady to be that of a pen: widths of it, and pixels.
constexpr double SteadyWidths = 2.0;
constexpr double SteadyLength = 6.0;

/// A chain's end at a node: which chain, which end, how it leaves.
struct Branch {
    int chain;
    int end;
    Point away;
    int partner = -1; ///< the branch it goes on in
};

/// A chain in a path, perhaps backward.
struct Link {
    int chain;
    bool backward;
};

struct Path {
    std::vector<Link> links;
    bool closed = false;
};

using Profiles = std::vector<std::vector<StrokePoint>>;

Point awayFrom(const Skeleton& skeleton, const std::vector<StrokePoint>& points, int node,
               bool atEnd) {
    const std::size_t n = points.size();
    const auto point = [&](std::size_t k) { return points[atEnd ? n - 1 - k : k]; };
    std::size_t first = 0;
    while (first < n && point(first).beside)
        ++first;
    const Point origin = skeleton.nodes[static_cast<std::size_t>(node)].at;
    if (first + 2 >= n)
        return unit(point(n - 1).at - origin);
    std::size_t last = first;
    while (last + 1 < n && last - first < LookAhead && !point(last + 1).beside)
        ++last;
    if (last - first < 3)
        return unit(point(last).at - origin);
    return unit(point(last).at - point(first).at);
}

class PathFinder {
public:
    PathFinder(const Skeleton& skeleton, const Profiles& profiles)
        : skeleton(skeleton), branchOf(skeleton.chains.size(), {-1, -1}) {
        std::vector<std::vector<int>> atNode(skeleton.nodes.size());
        for (std::size_t c = 0; c < skeleton.chains.size(); ++c)
            for (int end = 0; end < 2; ++end) {
                const int node = end == 0 ? skeleton.chains[c].from : skeleton.chains[c].to;
                if (node < 0)
                    continue;
                branchOf[c][static_cast<std::size_t>(end)] = static_cast<int>(branches.size());
                atNode[static_cast<std::size_t>(node)].push_back(static_cast<int>(branches.size()));
                branches.push_back(
                    {static_cast<int>(c), end, awayFrom(skeleton, profiles[c], node, end == 1)});
            }
        for (const std::vector<int>& around : atNode)
            pair(around);
    }

    std::vector<Path> paths() {
        std::vector<Path> result;
        std::vector<bool> used(skeleton.chains.size(), false);
        for (std::size_t c = 0; c < used.size(); ++c)
            if (!used[c])
                result.push_back(follow(static_cast<int>(c), used));
        return result;
    }

private:
    /// The straightest pair first.
    void pair(const std::vector<int>& around) {
        if (around.size() > MostOfNode)
            return;
        while (true) {
            double best = -StraightOn;
            int a = -1;
            int b = -1;
            for (std::size_t i = 0; i < around.size(); ++i)
                for (std::size_t j = i + 1; j < around.size(); ++j) {
                    const Branch& p = branch(around[i]);
                    const Branch& q = branch(around[j]);
                    const double bend = dot(p.away, q.away);
                    if (p.partner >= 0 || q.partner >= 0 || bend >= best)
                        continue;
                    best = bend;
                    a = around[i];
                    b = around[j];
                }
            if (a < 0)
                return;
            branch(a).partner = b;
            branch(b).partner = a;
        }
    }

    Branch& branch(int i) {
        return branches[static_cast<std::size_t>(i)];
    }

    int branchAt(int chain, int end) const {
        return branchOf[static_cast<std::size_t>(chain)][static_cast<std::size_t>(end)];
    }

    /// The link after the given one in its direction, or a chain of -1.
    Link next(Link link) {
        const int out = branchAt(link.chain, link.backward ? 0 : 1);
        if (out < 0 || branch(out).partner < 0)
            return {-1, false};
        const Branch& in = branch(branch(out).partner);
        return {in.chain, in.end == 1};
    }

    Path follow(int chain, std::vector<bool>& used) {
        // Back to where the path begins, then forward over all of it.
        Link first{chain, true};
        Path path;
        for (Link at = first;;) {
            const Link before = next(at);
            if (before.chain < 0)
                break;
            if (before.chain == chain) {
                path.closed = true;
                break;
            }
            at = first = before;
        }
        Link at = path.closed ? Link{chain, false} : Link{first.chain, !first.backward};
        while (at.chain >= 0 && !used[static_cast<std::size_t>(at.chain)]) {
            used[static_cast<std::size_t>(at.chain)] = true;
            path.links.push_back(at);
            at = next(at);
        }
        if (skeleton.chains[static_cast<std::size_t>(chain)].from < 0)
            path.closed = true;
        return path;
    }

    const Skeleton& skeleton;
    std::vector<Branch> branches;
    std::vector<std::array<int, 2>> branchOf;
};

double medianOf(std::vector<double>& values) {
    if (values.empty())
        return 0.0;
    const auto half = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
    std::nth_element(values.begin(), half, values.end());
    return *half;
}

/// Points of a path, in its order.
std::vector<StrokePoint> pointsOf(const Path& path, const Profiles& profiles) {
    std::vector<StrokePoint> points;
    for (const Link& link : path.links) {
        const std::vector<StrokePoint>& chain = profiles[static_cast<std::size_t>(link.chain)];
        if (link.backward)
            points.insert(points.end(), chain.rbegin(), chain.rend());
        else
            points.insert(points.end(), chain.begin(), chain.end());
    }
    return points;
}

/// Which points have the width of a pen, though perhaps not the usual one of their path: it stays
/// the same for some length, which that of strokes that run together does not.
std::vector<bool> steadyPoints(const std::vector<StrokePoint>& points) {
    std::vector<bool> steady(points.size(), false);
    std::vector<std::size_t> run;
    double least = 0.0;
    double most = 0.0;
    const auto finish = [&] {
        if (static_cast<double>(run.size()) >= SteadyWidths * most + SteadyLength)
            for (const std::size_t i : run)
                steady[i] = true;
        run.clear();
    };
    for (std::size_t i = 0; i < points.size(); ++i) {
        if (points[i].beside)
            continue;
        const auto width = static_cast<double>(points[i].width);
        if (!run.empty() && std::max(most, width) - std::min(least, width) > SteadyWidth)
            finish();
        least = run.empty() ? width : std::min(least, width);
        most = run.empty() ? width : std::max(most, width);
        run.push_back(i);
    }
    finish();
    return steady;
}

std::vector<Sample> samplesOf(const std::vector<StrokePoint>& points, double sigma,
                              double usualWidth) {
    const std::vector<bool> steady = steadyPoints(points);
    std::vector<Sample> samples;
    samples.reserve(points.size());
    for (std::size_t i = 0; i < points.size(); ++i) {
        const auto width = static_cast<double>(points[i].width);
        // Other ink takes part where the stroke is much wider than usual.
        const bool odd = width > 1.35 * usualWidth + 0.7 || width < 0.5 * usualWidth - 0.3;
        samples.push_back({points[i].at, sigma, points[i].beside || (odd && !steady[i])});
    }
    return samples;
}

/// Whether means over neighbouring samples keep within `allowed` pixels of the carrier.
bool keepsTo(const Carrier& carrier, const std::vector<Sample>& samples, double allowed) {
    double run = 0.0;
    int inRun = 0;
    for (const Sample& sample : samples) {
        if (sample.loose)
            continue;
        run += signedDistance(carrier, sample.at);
        if (++inRun < 6)
            continue;
        if (std::abs(run) > allowed * inRun)
            return false;
        run = 0.0;
        inRun = 0;
    }
    return inRun == 0 || std::abs(run) <= allowed * inRun;
}

void toLine(Stroke& stroke) {
    Carrier line = lineCarrier(stroke.carrier.support, stroke.start(), stroke.finish());
    line.first = stroke.carrier.first;
    line.last = stroke.carrier.last;
    stroke.carrier = line;
    stroke.ends[0].at = projected(line, stroke.start());
    stroke.ends[1].at = projected(line, stroke.finish());
}

/// An arc that a line explains as well is a line: the waves of a scan are no arcs.
void straighten(Stroke& stroke, double sigma) {
    if (stroke.carrier.isLine() || stroke.closed)
        return;
    const Carrier line = lineCarrier(stroke.carrier.support, stroke.start(), stroke.finish());
    if (keepsTo(line, stroke.samples, sigma + 0.1))
        toLine(stroke);
}

Stroke strokeOf(const Carrier& carrier, const std::vector<StrokePoint>& points,
                const std::vector<Sample>& samples, bool isCircle) {
    Stroke stroke;
    stroke.carrier = carrier;
    stroke.closed = isCircle;
    std::vector<double> widths;
    std::vector<double> peaks;
    const auto count = static_cast<int>(samples.size());
    for (int i = carrier.first; i <= carrier.last; ++i) {
        const auto k = static_cast<std::size_t>(i % count);
        stroke.samples.push_back(samples[k]);
        if (samples[k].loose)
            continue;
        widths.push_back(static_cast<double>(points[k].width));
        peaks.push_back(static_cast<double>(points[k].peak));
    }
    stroke.width = medianOf(widths);
    stroke.peak = medianOf(peaks);
    stroke.ends[0].at = projected(carrier, stroke.samples.front().at);
    stroke.ends[1].at = projected(carrier, stroke.samples.back().at);
    return stroke;
}

/// Neighbours along a path know each other.
void chainUp(std::vector<Stroke>& strokes, std::size_t first, bool closed) {
    const std::size_t count = strokes.size() - first;
    for (std::size_t i = 0; i + (closed ? 0U : 1U) < count && count > 1; ++i) {
        const std::size_t a = first + i;
        const std::size_t b = first + (i + 1) % count;
        strokes[a].ends[1].next = static_cast<int>(b);
        strokes[a].ends[1].nextEnd = 0;
        strokes[b].ends[0].next = static_cast<int>(a);
        strokes[b].ends[0].nextEnd = 1;
    }
}

/// How far four points at equal distances are off any arc through them, across the way: it is
/// sqrt(20) times the deviation of each.
double thirdDifference(const StrokePoint& a, const StrokePoint& b, const StrokePoint& c,
                       const StrokePoint& d) {
    return cross(unit(c.at - b.at), (d.at - a.at) - (c.at - b.at) * 3.0);
}

} // namespace

Measure measureNoise(const std::vector<std::vector<StrokePoint>>& profiles, const Raster& raster) {
    // The middle of three points 3 pixels apart leaves the other two by sqrt(3/2) sigma.
    const std::size_t apart = 3 * static_cast<std::size_t>(raster.scale);
    std::vector<double> residuals;
    std::vector<double> ofCurves;
    std::size_t level = 0;
    std::size_t bumps = 0;
    for (const std::vector<StrokePoint>& points : profiles)
        for (std::size_t i = apart; i + apart < points.size(); ++i) {
            const StrokePoint& a = points[i - apart];
            const StrokePoint& b = points[i + apart];
            if (a.beside || b.beside || points[i].beside)
                continue;
            const Point along = unit(b.at - a.at);
            residuals.push_back(std::abs(cross(along, points[i].at - middle(a.at, b.at))));
            if (std::min(std::abs(along.x), std::abs(along.y)) < LevelSlope) {
                ++level;
                bumps += residuals.back() > raster.scale * Bump ? 1U : 0U;
            }
            if (i + 2 * apart < points.size() && !points[i + 2 * apart].beside)
                ofCurves.push_back(
                    std::abs(thirdDifference(a, points[i], b, points[i + 2 * apart])));
        }
    // 0.6745 sigma is the median of the absolute values of normal noise.
    constexpr double MedianOfNormal = 0.6745;
    double sigma = medianOf(residuals) / (MedianOfNormal * 1.2247);
    // Tight curves leave more than the noise does, where there is little else.
    const double ofTight = medianOf(ofCurves) / (MedianOfNormal * 4.4721);
    if (!ofCurves.empty() && ofTight * Tight < sigma)
        sigma = ofTight;
    return {std::max(sigma, raster.scale * (raster.twoLevels ? 0.25 : 0.06)), raster.twoLevels,
            raster.twoLevels &&
                static_cast<double>(bumps) > RaggedShare * static_cast<double>(level)};
}

std::vector<Stroke> fitStrokes(const Skeleton& skeleton, const Profiles& profiles,
                               const Measure& measure, Pace& pace) {
    std::vector<Stroke> strokes;
    double done = 0.0;
    FitOptions options;
    options.tolerance = 0.05;
    options.parameterCost = 14.0; // neighbouring samples share ink: they count for half
    options.cubics = false;
    for (const Path& path : PathFinder(skeleton, profiles).paths()) {
        const std::vector<StrokePoint> points = pointsOf(path, profiles);
        std::vector<double> widths;
        for (const StrokePoint& point : points)
            if (!point.beside)
                widths.push_back(static_cast<double>(point.width));
        if (widths.size() < 2)
            continue;
        const std::vector<Sample> samples = samplesOf(points, measure.sigma, medianOf(widths));
        const ChainModel model = segmentChain(samples, path.closed, options);
        const std::size_t first = strokes.size();
        for (const Carrier& carrier : model.carriers) {
            strokes.push_back(strokeOf(carrier, points, samples, model.isCircle));
            straighten(strokes.back(), measure.sigma);
        }
        chainUp(strokes, first, path.closed);
        const auto isSolid = [&](const Link& link, bool atEnd) {
            const SkeletonChain& c = skeleton.chains[static_cast<std::size_t>(link.chain)];
            const int node = link.backward == atEnd ? c.from : c.to;
            return node >= 0 && skeleton.nodes[static_cast<std::size_t>(node)].solid;
        };
        if (!path.closed && strokes.size() > first) {
            strokes[first].ends[0].solid = isSolid(path.links.front(), false);
            strokes.back().ends[1].solid = isSolid(path.links.back(), true);
        }
        pace.step(done += static_cast<double>(points.size()),
                  static_cast<double>(skeleton.pixels.size()));
    }
    return strokes;
}

bool straightenFlat(std::vector<Stroke>& strokes, const Measure& measure) {
    // Slow waves are several times what neighbours leave.
    const double most = 0.35 + 1.5 * measure.sigma;
    bool any = false;
    for (Stroke& stroke : strokes) {
        if (stroke.dropped || stroke.closed || stroke.carrier.isLine())
            continue;
        const double length = lengthOf(stroke);
        if (length * length > 8.0 * most * stroke.carrier.radius || !(length > 0.0))
            continue;
        toLine(stroke);
        any = true;
    }
    return any;
}

} // namespace ovtrace
