#include "dashes.h"

#include "inkend.h"
#include "pace.h"
#include "steps.h"
#include "strokegrid.h"

#include <algorithm>
#include <cmath>

namespace ovtrace {
namespace {

/// Longest dash over its width, beyond which a stroke is a line by itself.
constexpr double LongestDash = 28.0;
/// Gap over the longer of the dashes beside it.
constexpr double GapOfDash = 1.4;
constexpr std::size_t FewestDashes = 3;
/// Share of the samples of a row that may lie off its line.
constexpr double FewStrays = 0.06;
/// Longest part of a row that a filled area or a stroke which it crosses may hide, in pixels.
constexpr double LongestCover = 120.0;
/// Distance of the places at which candidates are looked for, and how far from each.
constexpr double Reach = 12.0;

/// Cosine of the least angle of a line that a dash ends on: 25 degrees; and how far before the edge
/// of that line's ink the fit of the dash ends, in pixels beyond half its width.
constexpr double Across = 0.906;
constexpr double BeforeNode = 2.0;

/// A dash in a row, and which of its ends comes first.
struct Dash {
    int stroke;
    int first;
};

class DashFinder {
public:
    DashFinder(std::vector<Stroke>& strokes, const InkLevels& ink, const Measure& measure)
        : strokes(strokes), ink(ink), measure(measure), grid(strokes, ink.width, ink.height) {
        for (Stroke& stroke : strokes)
            lengths.push_back(stroke.dropped || stroke.closed ? 0.0 : lengthOf(stroke));
        for (int i = 0; i < static_cast<int>(strokes.size()); ++i)
            if (isDash(i))
                findTips(i);
    }

    void run(Pace& pace) {
        // Long dashes first: dots and short ones do not say where to go.
        std::vector<int> order;
        for (int i = 0; i < static_cast<int>(strokes.size()); ++i)
            if (isDash(i))
                order.push_back(i);
        std::stable_sort(order.begin(), order.end(),
                         [this](int a, int b) { return length(a) > length(b); });
        double done = 0.0;
        for (const int i : order) {
            pace.step(done += 1.0, static_cast<double>(order.size()));
            if (at(i).dropped || !at(i).dashes.empty())
                continue;
            std::vector<Dash> row = rowOf(i);
            if (row.size() >= FewestDashes && isByItself(row))
                join(row);
        }
        for (int i = 0; i < static_cast<int>(strokes.size()); ++i)
            while (!at(i).dropped && !at(i).dashes.empty() && takeOn(i))
                pace.step(done, static_cast<double>(order.size()));
        for (int i = 0; i < static_cast<int>(strokes.size()); ++i)
            if (!at(i).dropped && !at(i).dashes.empty())
                absorb(i);
    }

private:
    Stroke& at(int i) {
        return strokes[static_cast<std::size_t>(i)];
    }
    double length(int i) const {
        return lengths[static_cast<std::size_t>(i)];
    }
    const StrokeEnd& end(const Dash& dash, bool last) {
        return at(dash.stroke).ends[static_cast<std::size_t>(last ? 1 - dash.first : dash.first)];
    }

    /// Fits end before the ink does: a dash is as long as its ink.
    void findTips(int i) {
        Stroke& stroke = at(i);
        const double inside = std::min(0.4 * length(i), 1.0);
        const double most = stroke.width + 3.0;
        std::array<Point, 2> tips;
        for (int e = 0; e < 2; ++e) {
            const double d = inkEnd(ink, stroke, e, inside, most);
            // Ink that runs on is another stroke's.
            tips[static_cast<std::size_t>(e)] = beyond(stroke, e, d < most - 0.5 ? d : 0.0);
        }
        for (std::size_t e = 0; e < 2; ++e)
            stroke.ends[e].at = tips[e];
        lengths[static_cast<std::size_t>(i)] = lengthOf(stroke);
    }

    /// Adds to a dashed stroke what goes on beyond a crossing that hid a gap or a dot, or beyond a
    /// filled area: another dashed stroke or a single dash, with at most a period and a half of
    /// paper between.
    bool takeOn(int i) {
        double period = 0.0;
        for (const double part : at(i).dashes)
            period += part;
        for (int e = 0; e < 2; ++e) {
            std::vector<int> found = candidatesAlong(i, e, LongestCover + 1.5 * period);
            // The nearest first: what is taken lies between the row and the next one.
            std::stable_sort(found.begin(), found.end(), [&](int a, int b) {
                return nearestAway(i, e, a) < nearestAway(i, e, b);
            });
            for (const int j : found)
                if (j != i && !at(j).dropped && !at(j).closed &&
                    (isDash(j) || !at(j).dashes.empty()) && isLike(at(i), at(j)) &&
                    takeIn(i, e, j, period))
                    return true;
        }
        return false;
    }

    std::vector<int> candidatesAlong(int i, int e, double most) {
        std::vector<int> all;
        std::vector<int> near;
        const int last = stepsIn(most, Reach);
        for (int k = 0; k <= last; ++k) {
            grid.near(beyond(at(i), e, k * Reach), Reach, near);
            all.insert(all.end(), near.begin(), near.end());
        }
        std::sort(all.begin(), all.end());
        all.erase(std::unique(all.begin(), all.end()), all.end());
        return all;
    }

    /// Pixels of paper along the stroke's carrier from its end for `distance` pixels.
    double paperAlong(int i, int e, double distance) {
        double paper = 0.0;
        for (int k = 0; k + 0.5 < distance; ++k) {
            const Point p = beyond(at(i), e, k + 0.5);
            paper += ink.sample(p.x, p.y) < 0.35 ? 1.0 : 0.0;
        }
        return paper;
    }

    bool takeIn(int i, int e, int j, double period) {
        const Stroke& row = at(i);
        const bool dashed = !at(j).dashes.empty();
        for (int f = 0; f < 2; ++f) {
            const Point near = at(j).ends[static_cast<std::size_t>(f)].at;
            const Point far = at(j).ends[static_cast<std::size_t>(1 - f)].at;
            const double along = awayFrom(row, e, near);
            const double slack = 0.3 * row.width + 0.5;
            if (along < -2.0 || awayFrom(row, e, far) < along ||
                std::abs(signedDistance(row.carrier, near)) > slack ||
                std::abs(signedDistance(row.carrier, far)) > slack + 0.1 * length(j))
                continue;
            const double paper = paperAlong(i, e, along);
            if (paper > (dashed ? 1.5 : 1.1) * period || along - paper > LongestCover)
                continue;
            const std::vector<double> pattern =
                dashed && lengthOf(at(j)) > lengthOf(row) ? at(j).dashes : row.dashes;
            if (join({{i, 1 - e}, {j, f}})) {
                at(i).dashes = pattern;
                lengths[static_cast<std::size_t>(i)] = lengthOf(at(i));
                return true;
            }
        }
        return false;
    }

    double nearestAway(int i, int e, int j) {
        return std::min(awayFrom(at(i), e, at(j).start()), awayFrom(at(i), e, at(j).finish()));
    }

    /// How far beyond the end of a stroke a place lies, along it; far off where it lies on the
    /// other side of an arc.
    static double awayFrom(const Stroke& stroke, int e, Point p) {
        const double place = placeAlong(stroke, p);
        if (stroke.carrier.isLine())
            return e == 0 ? -place : place - lengthOf(stroke);
        const double round = circumferenceOf(stroke);
        return e == 0 ? (place > 2.0 ? round - place : -place) : place - lengthOf(stroke);
    }

    /// Dashes and dots within the row, which a crossing kept from joining, are parts of it.
    void absorb(int i) {
        const Stroke& row = at(i);
        std::vector<int> near;
        const double longest = *std::max_element(row.dashes.begin(), row.dashes.end());
        for (const Point& p : pointsAlong(row, 12.0)) {
            grid.near(p, 12.0, near);
            for (const int j : near) {
                const bool dashed = !at(j).dropped && !at(j).dashes.empty();
                if (j == i || (!dashed && (!isDash(j) || length(j) > longest + 2.0)) ||
                    !isLike(row, at(j)))
                    continue;
                const double slack = 0.3 * row.width + 0.5;
                const bool within = std::ranges::all_of(at(j).ends, [&](const StrokeEnd& end) {
                    return std::abs(signedDistance(row.carrier, end.at)) < slack &&
                           covers(row, end.at, 0.0);
                });
                if (within)
                    drop(j);
            }
        }
    }

    bool isDash(int i) {
        return !at(i).dropped && !at(i).closed && at(i).dashes.empty() &&
               length(i) <= LongestDash * std::max(at(i).width, 1.0);
    }

    std::vector<Dash> rowOf(int seed) {
        std::vector<Dash> row{{seed, 0}};
        double gap = 0.0;
        extend(row, gap);
        std::reverse(row.begin(), row.end());
        for (Dash& dash : row)
            dash.first = 1 - dash.first;
        extend(row, gap);
        return row;
    }

    /// Adds what follows the last of the row, as long as the gaps are alike.
    void extend(std::vector<Dash>& row, double& gap) {
        while (true) {
            double found = 0.0;
            const Dash next = follower(row, gap, found);
            if (next.stroke < 0)
                return;
            // The first gap sets the measure; the others keep it steady.
            gap = gap == 0.0 ? found : 0.7 * gap + 0.3 * found;
            row.push_back(next);
        }
    }

    /// Whether most gaps of a row are between ends of its own: lines that end on others, row after
    /// row, are boards behind posts or parts of frames.
    bool isByItself(const std::vector<Dash>& row) {
        std::size_t joined = 0;
        for (std::size_t k = 0; k < row.size(); ++k) {
            joined += k > 0 && endsOnOther(row, k, false) ? 1U : 0U;
            joined += k + 1 < row.size() && endsOnOther(row, k, true) ? 1U : 0U;
        }
        return joined < row.size();
    }

    bool endsOnOther(const std::vector<Dash>& row, std::size_t k, bool last) {
        const Point p = end(row[k], last).at;
        const Point direction = directionAt(at(row[k].stroke).carrier, p);
        std::vector<int> near;
        grid.near(p, 12.0, near);
        return std::ranges::any_of(near, [&](int j) {
            const Stroke& other = at(j);
            // The fit ends before the node, whose radius is about half of both widths.
            return !other.dropped && !isInRow(row, j) &&
                   std::abs(dot(direction, directionAt(other.carrier, p))) < Across &&
                   std::abs(signedDistance(other.carrier, p)) <
                       0.5 * (other.width + at(row[k].stroke).width) + BeforeNode &&
                   covers(other, p, 0.5 * other.width);
        });
    }

    /// Where a row goes on: its last end and direction, by the last dash that is long enough to
    /// tell, or by the last two.
    Point directionOf(const std::vector<Dash>& row) {
        const Dash& last = row.back();
        if (row.size() < 2 || length(last.stroke) > 4.0 * at(last.stroke).width)
            return outwardAt(at(last.stroke), 1 - last.first);
        const Dash& before = row[row.size() - 2];
        return unit(end(last, true).at - end(before, false).at);
    }

    Dash follower(const std::vector<Dash>& row, double gap, double& found) {
        const Dash& last = row.back();
        const Point from = end(last, true).at;
        const Point direction = directionOf(row);
        double longest = length(last.stroke);
        if (row.size() > 1)
            longest = std::max(longest, length(row[row.size() - 2].stroke));
        const double most = gap > 0.0 ? 1.4 * gap + 1.5 : GapOfDash * longest + 3.0;
        Dash best{-1, 0};
        double bestScore = 1e9;
        for (const int i : candidates(from, direction, most)) {
            if (!isDash(i) || isInRow(row, i) || !isLike(at(last.stroke), at(i)))
                continue;
            for (int e = 0; e < 2; ++e) {
                const Point to = at(i).ends[static_cast<std::size_t>(e)].at - from;
                const double along = dot(to, direction);
                const double aside = std::abs(cross(direction, to));
                if (along < 0.8 || along > most || (gap > 0.0 && along < 0.6 * gap - 1.5))
                    continue;
                const double score =
                    aside + (gap > 0.0 ? 0.3 * std::abs(along - gap) : 0.1 * along);
                if (aside > 0.35 * at(i).width + 0.5 + 0.16 * along || score >= bestScore ||
                    !continues(direction, i, e) || !isBroken(from, from + direction * along))
                    continue;
                bestScore = score;
                best = {i, e};
                found = along;
            }
        }
        return best;
    }

    std::vector<int> candidates(Point from, Point direction, double most) {
        std::vector<int> all;
        std::vector<int> near;
        const int last = stepsIn(most + Reach, Reach);
        for (int k = 0; k <= last; ++k) {
            const Point p = from + direction * (k * Reach);
            grid.near(p, Reach, near);
            all.insert(all.end(), near.begin(), near.end());
        }
        std::sort(all.begin(), all.end());
        all.erase(std::unique(all.begin(), all.end()), all.end());
        return all;
    }

    bool isInRow(const std::vector<Dash>& row, int i) const {
        return std::any_of(row.begin(), row.end(),
                           [i](const Dash& dash) { return dash.stroke == i; });
    }

    bool isLike(const Stroke& a, const Stroke& b) const {
        const double least = std::min(a.width, b.width);
        return std::max(a.width, b.width) < 1.5 * least + 0.8;
    }

    /// Whether a dash leads on in the direction of the row; a dot may point anywhere.
    bool continues(Point direction, int i, int e) {
        const double cosine = -dot(outwardAt(at(i), e), direction);
        return cosine > 0.94 || length(i) < 2.5 * at(i).width;
    }

    bool isBroken(Point from, Point to) const {
        double least = 1.0;
        for (int k = 1; k < 8; ++k) {
            const Point p = from + (to - from) * (k / 8.0);
            least = std::min(least, ink.sample(p.x, p.y));
        }
        return least < 0.35;
    }

    bool join(const std::vector<Dash>& row) {
        Moments support(end(row.front(), false).at);
        std::vector<Sample> samples;
        for (const Dash& dash : row) {
            const Stroke& stroke = at(dash.stroke);
            if (dash.first == 0)
                samples.insert(samples.end(), stroke.samples.begin(), stroke.samples.end());
            else
                samples.insert(samples.end(), stroke.samples.rbegin(), stroke.samples.rend());
        }
        for (const Sample& sample : samples)
            if (!sample.loose)
                support.add(sample.at, 1.0 / (sample.sigma * sample.sigma));
        if (support.count() < 3)
            return false;
        const Point from = end(row.front(), false).at;
        const Point to = end(row.back(), true).at;
        Carrier carrier = lineCarrier(support, from, to);
        if (!keeps(carrier, samples)) {
            const auto circle = circleCarrier(support, samples);
            if (!circle || !keeps(*circle, samples))
                return false;
            carrier = *circle;
        }
        Stroke made = at(row.front().stroke);
        made.carrier = carrier;
        made.samples = samples;
        made.dashes = patternOf(row);
        made.width = widthOf(row);
        made.ends = {};
        made.ends[0].at = projected(carrier, from);
        made.ends[1].at = projected(carrier, to);
        for (const Dash& dash : row)
            drop(dash.stroke);
        at(row.front().stroke) = made;
        return true;
    }

    void drop(int i) {
        for (StrokeEnd& e : at(i).ends) {
            if (e.next >= 0)
                at(e.next).ends[static_cast<std::size_t>(e.nextEnd)].next = -1;
            e.next = -1;
        }
        at(i).dropped = true;
    }

    /// Whether the samples lie along the carrier: but for a few, which are another stroke's.
    bool keeps(const Carrier& carrier, const std::vector<Sample>& samples) const {
        const double allowed = 3.0 * measure.sigma + 0.4;
        std::size_t counted = 0;
        std::size_t off = 0;
        for (const Sample& s : samples) {
            if (s.loose)
                continue;
            const double d = std::abs(signedDistance(carrier, s.at));
            if (d > 3.0 * allowed)
                return false;
            ++counted;
            off += d > allowed ? 1 : 0;
        }
        return static_cast<double>(off) <= FewStrays * static_cast<double>(counted);
    }

    double widthOf(const std::vector<Dash>& row) {
        double sum = 0.0;
        double weight = 0.0;
        for (const Dash& dash : row) {
            sum += at(dash.stroke).width * length(dash.stroke);
            weight += length(dash.stroke);
        }
        return sum / weight;
    }

    static double medianOf(std::vector<double> values) {
        std::sort(values.begin(), values.end());
        return values.empty() ? 0.0 : values[values.size() / 2];
    }

    /// Dash and gap, or long dash, gap, short dash, gap where two lengths take turns.
    std::vector<double> patternOf(const std::vector<Dash>& row) {
        std::vector<double> even;
        std::vector<double> odd;
        std::vector<double> gaps;
        // The first and the last may be cut.
        for (std::size_t k = 0; k < row.size(); ++k) {
            if (k > 0)
                gaps.push_back(distance(end(row[k - 1], true).at, end(row[k], false).at));
            if (k > 0 && k + 1 < row.size())
                (k % 2 == 0 ? even : odd).push_back(length(row[k].stroke));
        }
        const double gap = medianOf(gaps);
        double a = medianOf(even);
        double b = medianOf(odd);
        if (a == 0.0)
            a = std::max(length(row.front().stroke), length(row.back().stroke));
        if (b == 0.0)
            b = a;
        const double long_ = std::max(a, b);
        const double short_ = std::min(a, b);
        if (long_ > 1.6 * short_ + 1.0)
            return {long_, gap, short_, gap};
        return {(a + b) / 2.0, gap};
    }

    std::vector<Stroke>& strokes;
    const InkLevels& ink;
    const Measure& measure;
    StrokeGrid grid;
    std::vector<double> lengths;
};

} // namespace

void joinDashes(std::vector<Stroke>& strokes, const InkLevels& ink, const Measure& measure,
                Pace& pace) {
    DashFinder(strokes, ink, measure).run(pace);
}

} // namespace ovtrace
