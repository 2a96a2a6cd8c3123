#include "merging.h"

#include "mergecandidates.h"
#include "pace.h"
#include "strokegrid.h"

#include <algorithm>
#include <cmath>
#include <optional>

namespace ovtrace {
namespace {

/// Ink along a gap, over the usual ink of the stroke, below which the stroke is broken.
constexpr double Continuous = 0.5;

/// What joining two strokes makes, with the ends that stay free.
struct Union {
    Carrier carrier;
    int freeA = 0; ///< the end of the first stroke that stays one
    int freeB = 0;
    bool closes = false;
};

double weightOf(const Stroke& stroke) {
    return stroke.carrier.support.weight();
}

/// The greatest ink within half a pixel across the stroke.
double inkBeside(const InkLevels& ink, Point at, Point direction) {
    const Point across = turnedQuarter(direction) * 0.5;
    return std::max({ink.sample(at.x, at.y), ink.sample(at.x + across.x, at.y + across.y),
                     ink.sample(at.x - across.x, at.y - across.y)});
}

/// The sum of squared distances of the stroke's samples from a carrier, in units of variances, and
/// their number.
struct Fit {
    double error = 0.0;
    int count = 0;
    double worst = 0.0; ///< greatest distance of a mean over neighbouring samples, in pixels
};

Fit fitOf(const Stroke& stroke, const Carrier& carrier) {
    Fit fit;
    double run = 0.0;
    int inRun = 0;
    for (const Sample& sample : stroke.samples) {
        if (sample.loose)
            continue;
        const double d = signedDistance(carrier, sample.at);
        fit.error += d * d / (sample.sigma * sample.sigma);
        ++fit.count;
        run += d;
        if (++inRun == 8) {
            fit.worst = std::max(fit.worst, std::abs(run) / 8.0);
            run = 0.0;
            inRun = 0;
        }
    }
    if (inRun > 0)
        fit.worst = std::max(fit.worst, std::abs(run) / inRun);
    return fit;
}

/// Whether both strokes' samples agree with the carrier within noise: sigma is what neighbours
/// leave, slower waves of scans and of rounding are as great again.
bool agrees(const Stroke& a, const Stroke& b, const Carrier& carrier, double sigma) {
    const Fit fa = fitOf(a, carrier);
    const Fit fb = fitOf(b, carrier);
    const double allowed = 2.0 * sigma + 0.15;
    return fa.worst <= allowed && fb.worst <= allowed &&
           (fa.count + fb.count == 0 ||
            (fa.error + fb.error) / (fa.count + fb.count) < allowed * allowed / (sigma * sigma));
}

std::optional<Carrier> commonLine(const Stroke& a, const Stroke& b) {
    Moments support = a.carrier.support;
    support.add(b.carrier.support);
    if (support.isEmpty())
        return std::nullopt;
    return lineCarrier(support, a.start(), a.finish());
}

std::optional<Carrier> commonCircle(const Stroke& a, const Stroke& b) {
    Moments support = a.carrier.support;
    support.add(b.carrier.support);
    std::vector<Sample> samples = a.samples;
    samples.insert(samples.end(), b.samples.begin(), b.samples.end());
    std::optional<Carrier> circle = circleCarrier(support, samples);
    if (circle)
        circle->turn = a.carrier.turn;
    return circle;
}

class Merger {
public:
    Merger(std::vector<Stroke>& strokes, const InkLevels& ink, const Measure& measure)
        : strokes(strokes), ink(ink), measure(measure), candidates(strokes, ink.width, ink.height) {
    }

    void run(Pace& pace) {
        // The longest first: they say most surely where others belong.
        std::vector<int> order;
        for (std::size_t i = 0; i < strokes.size(); ++i)
            order.push_back(static_cast<int>(i));
        std::vector<double> lengths;
        for (const Stroke& stroke : strokes)
            lengths.push_back(lengthOf(stroke));
        std::stable_sort(order.begin(), order.end(), [&](int a, int b) {
            return lengths[static_cast<std::size_t>(a)] > lengths[static_cast<std::size_t>(b)];
        });
        double done = 0.0;
        for (const int i : order) {
            grow(i);
            pace.step(done += 1.0, static_cast<double>(order.size()));
        }
    }

private:
    Stroke& at(int i) {
        return strokes[static_cast<std::size_t>(i)];
    }

    void grow(int i) {
        bool again = !at(i).dropped;
        while (again && !at(i).closed) {
            again = false;
            for (const int j : candidates.of(i)) {
                again = j != i && !at(j).dropped && join(i, j);
                if (again)
                    break;
            }
            if (again)
                candidates.grew(i);
            else
                closeCircle(at(i));
        }
    }

    /// Makes `i` of both when they are one; the numbers of neighbours follow.
    bool join(int i, int j) {
        Stroke& a = at(i);
        Stroke& b = at(j);
        if (b.closed || a.carrier.isLine() != b.carrier.isLine())
            return false;
        return a.carrier.isLine() ? joinLines(i, j) : joinCircles(i, j);
    }

    bool joinLines(int i, int j) {
        Stroke& a = at(i);
        Stroke& b = at(j);
        // Cheap tests first: the shorter one lies about on the line of the longer one.
        const double la = lengthOf(a);
        const double lb = lengthOf(b);
        const Stroke& guide = lb > la ? b : a;
        const Stroke& other = lb > la ? a : b;
        const double away = std::abs(signedDistance(guide.carrier, other.start())) +
                            std::abs(signedDistance(guide.carrier, other.finish()));
        if (away > 2.0 * mergeReach(std::max(a.width, b.width)) || !likeWidths(a.width, b.width))
            return false;
        if (std::abs(dot(a.carrier.direction, b.carrier.direction)) < LineAgreement)
            return false;
        const bool along = dot(a.carrier.direction, b.carrier.direction) > 0.0;
        const double b0 = placeAlong(a, along ? b.start() : b.finish());
        const double b1 = placeAlong(a, along ? b.finish() : b.start());
        const bool after = b0 + b1 > la;
        const double gap = after ? b0 - la : -b1;
        // Side by side they are two strokes (or one is explained by the other).
        if (gap < -std::max(3.0, 0.5 * std::min(la, lb)) ||
            gap > mergeGap(a.width, b.width, la + lb))
            return false;
        const auto line = commonLine(a, b);
        if (!line || !agrees(a, b, *line, measure.sigma))
            return false;
        const Point from = projected(*line, after ? a.start() : (along ? b.start() : b.finish()));
        const Point to = projected(*line, after ? (along ? b.finish() : b.start()) : a.finish());
        const Point gapFrom = after ? a.finish() : (along ? b.finish() : b.start());
        const Point gapTo = after ? (along ? b.start() : b.finish()) : a.start();
        if (gap > 0.0 && !inkBetween(*line, projected(*line, gapFrom), projected(*line, gapTo),
                                     std::min(a.peak, b.peak)))
            return false;
        // What other ink takes part in says little of where a stroke lies: its own ink does.
        if (!inkBetween(*line, projected(*line, along ? b.start() : b.finish()),
                        projected(*line, along ? b.finish() : b.start()), std::min(a.peak, b.peak)))
            return false;
        const int freeA = after ? 0 : 1;
        const int freeB = after == along ? 1 : 0;
        unite(i, j, *line, freeA, freeB);
        at(i).ends[0].at = from;
        at(i).ends[1].at = to;
        return true;
    }

    bool joinCircles(int i, int j) {
        Stroke& a = at(i);
        Stroke& b = at(j);
        if (!likeWidths(a.width, b.width))
            return false;
        const double reach = 3.0 * mergeReach(a.width);
        if (std::abs(signedDistance(a.carrier, b.start())) > reach ||
            std::abs(signedDistance(a.carrier, b.finish())) > reach)
            return false;
        const auto circle = commonCircle(a, b);
        if (!circle || !agrees(a, b, *circle, measure.sigma))
            return false;
        const bool along = a.carrier.turn == b.carrier.turn;
        // Where b begins and ends as seen along a.
        const int first = along ? 0 : 1;
        const Point bFrom = b.ends[static_cast<std::size_t>(first)].at;
        const Point bTo = b.ends[static_cast<std::size_t>(1 - first)].at;
        const double round = circumferenceOf(a);
        const double la = lengthOf(a);
        const double after = placeAlong(a, bFrom) - la;
        const double before = round - placeAlong(a, bTo);
        if (placeAlong(a, bFrom) < la - 3.0 && placeAlong(a, bTo) < la - 3.0)
            return false;
        const bool joinsAfter = after < before;
        const double gap = joinsAfter ? after : before;
        if (gap > mergeGap(a.width, b.width, la + lengthOf(b)))
            return false;
        const Point gapFrom = projected(*circle, joinsAfter ? a.finish() : bTo);
        const Point gapTo = projected(*circle, joinsAfter ? bFrom : a.start());
        if (gap > 0.0 && !inkBetween(*circle, gapFrom, gapTo, std::min(a.peak, b.peak)))
            return false;
        const Point from = projected(*circle, joinsAfter ? a.start() : bFrom);
        const Point to = projected(*circle, joinsAfter ? bTo : a.finish());
        unite(i, j, *circle, joinsAfter ? 0 : 1, joinsAfter ? 1 - first : first);
        at(i).ends[0].at = from;
        at(i).ends[1].at = to;
        return true;
    }

    bool inkBetween(const Carrier& carrier, Point from, Point to, double peak) const {
        Stroke gap;
        gap.carrier = carrier;
        gap.ends[0].at = from;
        gap.ends[1].at = to;
        if (carrier.isLine() && dot(to - from, carrier.direction) < 0.0)
            return true;
        return allAlong(gap, 0.5, [&](Point p) {
            return inkBeside(ink, p, directionAt(carrier, p)) >= Continuous * peak;
        });
    }

    void unite(int i, int j, const Carrier& carrier, int freeA, int freeB) {
        Stroke& a = at(i);
        Stroke& b = at(j);
        const double wa = weightOf(a);
        const double wb = weightOf(b);
        if (wa + wb > 0.0) {
            a.width = (a.width * wa + b.width * wb) / (wa + wb);
            a.peak = (a.peak * wa + b.peak * wb) / (wa + wb);
        }
        a.carrier = carrier;
        a.samples.insert(a.samples.end(), b.samples.begin(), b.samples.end());
        unlink(a.ends[static_cast<std::size_t>(1 - freeA)]);
        unlink(b.ends[static_cast<std::size_t>(1 - freeB)]);
        const std::array<StrokeEnd, 2> old{a.ends[static_cast<std::size_t>(freeA)],
                                           b.ends[static_cast<std::size_t>(freeB)]};
        a.ends[static_cast<std::size_t>(freeA)] = old[0];
        a.ends[static_cast<std::size_t>(1 - freeA)] = old[1];
        if (old[1].next >= 0) {
            StrokeEnd& neighbour = at(old[1].next).ends[static_cast<std::size_t>(old[1].nextEnd)];
            neighbour.next = i;
            neighbour.nextEnd = 1 - freeA;
        }
        b.dropped = true;
    }

    void unlink(StrokeEnd& end) {
        if (end.next >= 0)
            at(end.next).ends[static_cast<std::size_t>(end.nextEnd)].next = -1;
        end.next = -1;
    }

    /// A circle whose ends meet along ink is whole.
    void closeCircle(Stroke& stroke) {
        if (stroke.carrier.isLine() || stroke.closed)
            return;
        const double round = circumferenceOf(stroke);
        const double length = lengthOf(stroke);
        if (length < 0.6 * round)
            return;
        if (!inkBetween(stroke.carrier, stroke.finish(), stroke.start(), stroke.peak))
            return;
        unlink(stroke.ends[0]);
        unlink(stroke.ends[1]);
        stroke.closed = true;
    }

    std::vector<Stroke>& strokes;
    const InkLevels& ink;
    const Measure& measure;
    MergeCandidates candidates;
};

/// Whether `p`, on a stroke of `width`, lies in the ink of the other stroke.
bool liesIn(Point p, double width, const Stroke& other) {
    return std::abs(signedDistance(other.carrier, p)) <= 0.5 * other.width + 0.35 + 0.1 * width &&
           covers(other, p, 0.5 * other.width + 1.0);
}

/// Drops strokes of which `mayGo` is true where longer ones explain their ink, the shortest first,
/// and returns which.
template <typename Predicate>
std::vector<int> dropWhereExplained(std::vector<Stroke>& strokes, Pace& pace, Predicate mayGo) {
    std::vector<std::pair<double, int>> order;
    int right = 1;
    int bottom = 1;
    for (std::size_t i = 0; i < strokes.size(); ++i) {
        if (strokes[i].dropped)
            continue;
        order.emplace_back(lengthOf(strokes[i]), static_cast<int>(i));
        for (const Point& p : pointsAlong(strokes[i], 8.0)) {
            right = std::max(right, static_cast<int>(std::min(p.x, 1e6)));
            bottom = std::max(bottom, static_cast<int>(std::min(p.y, 1e6)));
        }
    }
    std::stable_sort(order.begin(), order.end());
    const StrokeGrid grid(strokes, right, bottom);
    std::vector<int> near;
    std::vector<int> gone;
    double done = 0.0;
    for (const std::pair<double, int>& entry : order) {
        const double length = entry.first;
        const int i = entry.second;
        pace.step(done += 1.0, static_cast<double>(order.size()));
        Stroke& stroke = strokes[static_cast<std::size_t>(i)];
        if (!mayGo(stroke))
            continue;
        stroke.dropped = allAlong(stroke, 1.0, [&](Point place) {
            grid.near(place, stroke.width, near);
            return std::ranges::any_of(near, [&](int j) {
                const Stroke& other = strokes[static_cast<std::size_t>(j)];
                return j != i && !other.dropped && lengthOf(other) > length &&
                       liesIn(place, stroke.width, other);
            });
        });
        if (stroke.dropped)
            gone.push_back(i);
    }
    return gone;
}

} // namespace

bool inkRunsOn(const InkLevels& ink, const Stroke& stroke, int end, double distance) {
    for (int k = 0; 0.5 * k <= distance; ++k) {
        const Point p = beyond(stroke, end, 0.5 * k);
        if (inkBeside(ink, p, directionAt(stroke.carrier, p)) < Continuous * stroke.peak)
            return false;
    }
    return true;
}

void mergeStrokes(std::vector<Stroke>& strokes, const InkLevels& ink, const Measure& measure,
                  Pace& pace) {
    Merger(strokes, ink, measure).run(pace);
}

bool liesInStrokes(const std::vector<Point>& points, const std::vector<Stroke>& strokes,
                   double slack) {
    return std::all_of(points.begin(), points.end(), [&](Point p) {
        return std::any_of(strokes.begin(), strokes.end(), [&](const Stroke& s) {
            // Where strokes meet in a corner their ink goes on by half a width.
            const double off =
                s.ellipse ? signedDistance(*s.ellipse, p) : signedDistance(s.carrier, p);
            return !s.dropped && std::abs(off) <= 0.5 * s.width + slack &&
                   covers(s, p, 0.5 * s.width + slack);
        });
    });
}

void dropExplained(std::vector<Stroke>& strokes, Pace& pace) {
    dropWhereExplained(strokes, pace, [](const Stroke& stroke) { return !stroke.closed; });
}

std::vector<int> dropExplainedStubs(std::vector<Stroke>& strokes, Pace& pace) {
    return dropWhereExplained(strokes, pace, [](const Stroke& stroke) {
        const auto isFree = [](const StrokeEnd& end) { return end.node < 0 && !end.solid; };
        return !stroke.closed && stroke.dashes.empty() && std::ranges::any_of(stroke.ends, isFree);
    });
}

} // namespace ovtrace
