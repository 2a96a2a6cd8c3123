#include "strokeends.h"

#include "inkend.h"
#include "pace.h"
#include "strokecaps.h"
#include "strokegrid.h"

#include <algorithm>
#include <cmath>

namespace ovtrace {
namespace {

/// Cosine beyond which two lines count as parallel: 4 degrees.
constexpr double Parallel = 0.9976;
/// Cosines of the sharpest bends within a path that are none, between lines and where arcs take
/// part, and of the sharpest of a curve: 14, 25 and 60 degrees.
constexpr double Touching = 0.97;
constexpr double Smooth = 0.906;
constexpr double Curved = 0.5;
/// How far from where the ends of an arc and of another stroke seem to meet their curves may meet,
/// over the length of the shorter one.
constexpr double NearOfShorter = 0.25;

/// What is known of one end of a stroke while its place is sought.
struct EndState {
    double ink = 0.0;   ///< where its ink ends, in pixels beyond where the fit ended
    Point tip;          ///< that place
    bool ended = false; ///< its ink ends there; else it runs on for longer than was looked
    double back = 0.0;  ///< how far before it the fit may have overshot
    int partner = -1;
    Point target;
    bool through = false; ///< the partner runs on beyond the target
    int group = -1;
};

class EndJoiner {
public:
    EndJoiner(std::vector<Stroke>& strokes, const InkLevels& ink, const Measure& measure)
        : strokes(strokes), ink(ink), measured(measure), grid(strokes, ink.width, ink.height),
          states(strokes.size()), lengths(strokes.size(), 0.0) {
    }

    std::vector<Point> run(Pace& pace) {
        for (int i = 0; i < count(); ++i)
            if (isOpen(i)) {
                lengths[index(i)] = lengthOf(at(i));
                for (int e = 0; e < 2; ++e)
                    measure(i, e);
            }
        for (int i = 0; i < count(); ++i) {
            for (int e = 0; isOpen(i) && e < 2; ++e)
                choose(i, e);
            pace.step(i, count());
        }
        joinCurves();
        groupCorners();
        placeCorners();
        placeRest();
        for (int round = 0; round < 3; ++round)
            settle();
        return std::move(nodes);
    }

private:
    static std::size_t index(int i) {
        return static_cast<std::size_t>(i);
    }
    int count() const {
        return static_cast<int>(strokes.size());
    }
    Stroke& at(int i) {
        return strokes[index(i)];
    }
    EndState& state(int i, int e) {
        return states[index(i)][index(e)];
    }
    bool isOpen(int i) {
        return !at(i).dropped && !at(i).closed;
    }

    void measure(int i, int e) {
        Stroke& stroke = at(i);
        EndState& s = state(i, e);
        const double most = 4.0 * stroke.width + (stroke.ends[index(e)].solid ? 40.0 : 14.0);
        s.back = std::min(0.45 * lengths[index(i)], 1.5 * stroke.width + 4.0);
        s.ink = inkEnd(ink, stroke, e, std::min(s.back, 2.0), most);
        s.tip = beyond(stroke, e, s.ink);
        s.ended = s.ink < most - 0.5;
    }

    /// That of the pen, by the free ends.
    double roundness() {
        std::vector<CapSample> samples;
        for (int i = 0; i < count(); ++i)
            for (int e = 0; isOpen(i) && e < 2; ++e)
                if (isFree(i, e) && state(i, e).ended && lengths[index(i)] > 3.0 * at(i).width)
                    samples.push_back(capAt(ink, at(i), e, state(i, e).tip));
        return penRoundness(samples, measured);
    }

    /// Pixels beyond the end `e` of stroke `i` at which its carrier is closest to `p`.
    double offsetOf(int i, int e, Point p) {
        const Stroke& stroke = at(i);
        const double along = placeAlong(stroke, p);
        if (stroke.carrier.isLine())
            return e == 0 ? -along : along - lengths[index(i)];
        const double round = circumferenceOf(stroke);
        const double length = lengths[index(i)];
        // A place in the gap belongs to the nearer end.
        if (e == 1)
            return along > (round + length) / 2.0 ? along - round - length : along - length;
        return along > (round + length) / 2.0 ? round - along : -along;
    }

    /// Whether `p`, on its carrier, lies in the ink of stroke `j`.
    bool reaches(int j, Point p) {
        if (at(j).closed)
            return true;
        const double slack = 1.0 + 0.3 * at(j).width;
        return offsetOf(j, 0, p) <= std::max(state(j, 0).ink, 0.0) + slack &&
               offsetOf(j, 1, p) <= std::max(state(j, 1).ink, 0.0) + slack;
    }

    /// The end of stroke `j` that belongs to a corner at `p`, or -1 where it runs through.
    int endAt(int j, Point p) {
        if (at(j).closed)
            return -1;
        const std::array<double, 2> beyondEnd{offsetOf(j, 0, p), offsetOf(j, 1, p)};
        const int e = beyondEnd[0] > beyondEnd[1] ? 0 : 1;
        const EndState& s = state(j, e);
        // Where its ink runs on clearly past the place it is no end.
        const double past = std::max(s.ink, 0.0) - beyondEnd[index(e)];
        return beyondEnd[index(e)] > -s.back && past < 1.5 * at(j).width + 3.0 ? e : -1;
    }

    void choose(int i, int e) {
        const Stroke& stroke = at(i);
        EndState& s = state(i, e);
        std::vector<int> found;
        std::vector<int> nearTip;
        grid.near(stroke.ends[index(e)].at, 12.0, found);
        grid.near(s.tip, 12.0, nearTip);
        found.insert(found.end(), nearTip.begin(), nearTip.end());
        std::sort(found.begin(), found.end());
        found.erase(std::unique(found.begin(), found.end()), found.end());
        // Lines of a hatching stand on their frame, whose corners are its own.
        for (const bool hatch : {false, true}) {
            if (s.partner >= 0)
                break;
            double best = 1e9;
            for (const int j : found)
                if (j != i && !at(j).dropped && at(j).hatch == hatch)
                    consider(i, e, j, best);
        }
        // Lines that touch meet nowhere, or anywhere: neighbours of one path share the place
        // between. Where an arc is one of them its path says more than strokes that cross there.
        const int next = stroke.ends[index(e)].next;
        if (next < 0 || at(next).dropped)
            return;
        const bool isAlone = s.partner < 0 || s.partner == next;
        if (goesOn(i, e) ? s.partner < 0 || cosineAt(i, e) > Smooth
                         : std::abs(cosineAt(i, e)) > Touching && isAlone)
            joinSmoothly(i, e);
    }

    void consider(int i, int e, int j, double& best) {
        const Stroke& stroke = at(i);
        const Stroke& other = at(j);
        EndState& s = state(i, e);
        const bool linked = stroke.ends[index(e)].next == j;
        for (const Point& p : meetings(stroke.carrier, other.carrier)) {
            const double offset = offsetOf(i, e, p);
            if (offset < -s.back || offset > s.ink + 1.0 + 0.25 * other.width || !reaches(j, p))
                continue;
            const Point a = directionAt(stroke.carrier, p);
            const Point b = directionAt(other.carrier, p);
            if (std::abs(dot(a, b)) > Parallel && !linked)
                continue;
            // The ink of the end runs on through the other stroke to its far edge.
            const double sine = std::max(std::abs(cross(a, b)), 0.25);
            const double expected = offset + 0.5 * other.width / sine;
            if (sticksOut(i, e, expected))
                continue;
            // An arc meets its neighbour twice: the place is where their path says.
            if (linked && !(stroke.carrier.isLine() && other.carrier.isLine()) &&
                distance(p, breakAt(i, e)) > 2.0 * (stroke.width + other.width) + 2.0)
                continue;
            const bool onPath = linked && goesOn(i, e);
            const double miss = (onPath ? distance(p, breakAt(i, e)) : std::abs(s.ink - expected)) -
                                (linked ? 2.0 : 0.0);
            if (miss >= best)
                continue;
            best = miss;
            s.partner = j;
            s.target = p;
            s.through = !onPath && endAt(j, p) < 0;
        }
    }

    /// Whether the ink of an end runs on clearly past `expected`, the far edge of the stroke that
    /// it crosses, and ends there by itself: lines that cross near their ends are no corner.
    bool sticksOut(int i, int e, double expected) {
        const Stroke& stroke = at(i);
        const EndState& s = state(i, e);
        if (!s.ended || s.ink - expected < 0.5 + 0.2 * stroke.width)
            return false;
        const Point last = beyond(stroke, e, s.ink - 0.5);
        std::vector<int> around;
        grid.near(last, 4.0, around);
        return std::ranges::none_of(around, [&](int j) {
            const Stroke& other = at(j);
            return j != i && !other.dropped &&
                   std::abs(signedDistance(other.carrier, last)) < 0.5 * other.width + 0.3 &&
                   reaches(j, last);
        });
    }

    /// Where the fits of an end and of its neighbour on the path part.
    Point breakAt(int i, int e) {
        const StrokeEnd& end = at(i).ends[index(e)];
        return middle(end.at, at(end.next).ends[index(end.nextEnd)].at);
    }

    /// Cosine of the bend of the path between an end and its neighbour; below 0 where it turns
    /// back.
    double cosineAt(int i, int e) {
        const StrokeEnd& end = at(i).ends[index(e)];
        const Point p = breakAt(i, e);
        const double cosine =
            dot(directionAt(at(i).carrier, p), directionAt(at(end.next).carrier, p));
        return end.nextEnd == e ? -cosine : cosine;
    }

    /// Whether the end or its neighbour on the path is that of an arc.
    bool isOnCurve(int i, int e) {
        return !at(i).carrier.isLine() || !at(at(i).ends[index(e)].next).carrier.isLine();
    }

    /// Whether a curve goes on there: no cusp and no sharp corner.
    bool goesOn(int i, int e) {
        return isOnCurve(i, e) && cosineAt(i, e) > Curved;
    }

    void joinSmoothly(int i, int e) {
        const StrokeEnd& end = at(i).ends[index(e)];
        const int j = end.next;
        if (at(j).dropped || at(j).closed)
            return;
        const Point other = at(j).ends[index(end.nextEnd)].at;
        EndState& s = state(i, e);
        if (distance(end.at, other) > 4.0 * at(i).width + 8.0)
            return;
        s.partner = j;
        s.target = middle(projected(at(i).carrier, other), projected(at(j).carrier, end.at));
        s.through = false;
    }

    /// Ends of curves within a path that found no partner meet all the same, unless the path turned
    /// back in a cusp.
    void joinCurves() {
        for (int i = 0; i < count(); ++i)
            for (int e = 0; isOpen(i) && e < 2; ++e) {
                const StrokeEnd& end = at(i).ends[index(e)];
                if (end.next >= 0 && isOpen(end.next) && isOnCurve(i, e) &&
                    state(i, e).partner < 0 && state(end.next, end.nextEnd).partner < 0 &&
                    cosineAt(i, e) > -Curved) {
                    joinSmoothly(i, e);
                    joinSmoothly(end.next, end.nextEnd);
                }
            }
    }

    /// Corners of lines of a hatching come last: where others have made one the line stands beside
    /// it.
    void groupCorners() {
        for (const bool hatch : {false, true})
            for (int i = 0; i < count(); ++i)
                for (int e = 0; isOpen(i) && e < 2; ++e) {
                    const EndState& s = state(i, e);
                    if (s.partner < 0 || s.through || (at(i).hatch || at(s.partner).hatch) != hatch)
                        continue;
                    const StrokeEnd& end = at(i).ends[index(e)];
                    const bool onPath = s.partner == end.next && goesOn(i, e);
                    const int f = onPath ? end.nextEnd : endAt(s.partner, s.target);
                    if (f >= 0 && !(at(i).hatch && isFrameCorner(s.partner, f)))
                        unite(i, e, s.partner, f);
                }
    }

    /// Whether two strokes meet at the end that belong to no hatching.
    bool isFrameCorner(int i, int e) {
        const int group = state(i, e).group;
        return group >= 0 && std::ranges::count_if(groups[index(group)], [&](const auto& member) {
                                 return !at(member[0]).hatch;
                             }) >= 2;
    }

    void unite(int i, int e, int j, int f) {
        EndState& a = state(i, e);
        EndState& b = state(j, f);
        if (a.group < 0 && b.group < 0) {
            a.group = b.group = static_cast<int>(groups.size());
            groups.push_back({{i, e}, {j, f}});
            return;
        }
        if (a.group == b.group)
            return;
        if (a.group < 0 || b.group < 0) {
            const int g = std::max(a.group, b.group);
            groups[index(g)].push_back(a.group < 0 ? std::array{i, e} : std::array{j, f});
            a.group = b.group = g;
            return;
        }
        const int kept = std::min(a.group, b.group);
        const int gone = std::max(a.group, b.group);
        for (const auto& [k, end] : groups[index(gone)]) {
            state(k, end).group = kept;
            groups[index(kept)].push_back({k, end});
        }
        groups[index(gone)].clear();
    }

    /// Where the two strokes of a corner that say it most surely meet: long ones at a great angle.
    /// `around` where none do.
    Point meetingOf(const std::vector<std::array<int, 2>>& members, Point around) {
        Point place = around;
        double best = 0.0;
        for (std::size_t a = 0; a < members.size(); ++a)
            for (std::size_t b = a + 1; b < members.size(); ++b) {
                const Stroke& p = at(members[a][0]);
                const Stroke& q = at(members[b][0]);
                const double sine =
                    std::abs(cross(directionAt(p.carrier, around), directionAt(q.carrier, around)));
                const double shorter =
                    std::min(lengths[index(members[a][0])], lengths[index(members[b][0])]);
                const double surety = sine * std::min(shorter, 60.0);
                // Arcs meet twice, and far off where they nearly touch: not a good part of one
                // away.
                const double widths = p.width + q.width;
                const double most = p.carrier.isLine() && q.carrier.isLine()
                                        ? 4.0 + 2.0 * widths
                                        : std::min(1.0 + widths, NearOfShorter * shorter);
                for (const Point& m : meetings(p.carrier, q.carrier))
                    if (surety > best && distance(m, around) < most) {
                        best = surety;
                        place = m;
                    }
            }
        return place;
    }

    void placeCorners() {
        for (std::vector<std::array<int, 2>>& group : groups) {
            if (group.size() < 2)
                continue;
            Point place = cornerOf(group);
            // Ends that belong elsewhere leave the corner; twice, as each moves it.
            for (int round = 0; round < 2; ++round) {
                const auto strays = [&](const std::array<int, 2>& member) {
                    const auto& [i, e] = member;
                    const double off = std::abs(signedDistance(at(i).carrier, place));
                    return off > 0.3 * at(i).width + 1.2;
                };
                const std::size_t before = group.size();
                std::erase_if(group, strays);
                if (group.size() == before || group.size() < 2)
                    break;
                place = cornerOf(group);
            }
            if (group.size() >= 2)
                addNode(group, place);
        }
    }

    Point cornerOf(const std::vector<std::array<int, 2>>& group) {
        Point mean;
        double weight = 0.0;
        for (const auto& [i, e] : group) {
            const EndState& s = state(i, e);
            const Point p = s.partner >= 0 ? s.target : at(i).ends[index(e)].at;
            const double w = s.partner >= 0 ? 1.0 : 0.01;
            mean += p * w;
            weight += w;
        }
        mean = mean / weight;
        bool touching = true;
        for (const auto& [i, e] : group)
            for (const auto& [j, f] : group)
                touching = touching && std::abs(dot(directionAt(at(i).carrier, mean),
                                                    directionAt(at(j).carrier, mean))) > 0.985;
        if (touching)
            return mean;
        return meetingOf(group, mean);
    }

    void addNode(const std::vector<std::array<int, 2>>& group, Point place) {
        for (const auto& [i, e] : group) {
            at(i).ends[index(e)].at = place;
            at(i).ends[index(e)].node = static_cast<int>(nodes.size());
        }
        nodes.push_back(place);
    }

    bool isFree(int i, int e) {
        return at(i).ends[index(e)].node < 0 && state(i, e).partner < 0 &&
               !at(i).ends[index(e)].solid;
    }

    /// Where a free end lies: the pen stopped before its ink ends.
    Point freeEnd(int i, int e, double cap) {
        const double depth = std::min(capDepth(cap, at(i).width), 0.4 * lengths[index(i)]);
        return beyond(at(i), e, state(i, e).ink - depth);
    }

    /// Free ends at one place are a node, whatever their directions: the cusps of a coil, whose
    /// arcs touch and do not meet.
    void joinTips(double cap) {
        std::vector<int> around;
        for (int i = 0; i < count(); ++i)
            for (int e = 0; isOpen(i) && e < 2; ++e) {
                if (!isFree(i, e) || !state(i, e).ended)
                    continue;
                std::vector<std::array<int, 2>> group{{i, e}};
                Point sum = freeEnd(i, e, cap);
                grid.near(state(i, e).tip, 8.0, around);
                for (const int j : around)
                    for (int f = 0; j > i && isOpen(j) && f < 2; ++f)
                        if (isFree(j, f) && state(j, f).ended && isOneTip(i, e, j, f)) {
                            group.push_back({j, f});
                            sum += freeEnd(j, f, cap);
                        }
                if (group.size() > 1)
                    addNode(group, sum / static_cast<double>(group.size()));
            }
    }

    bool isOneTip(int i, int e, int j, int f) {
        const double near = 0.25 * (at(i).width + at(j).width) + 0.3;
        return distance(state(i, e).tip, state(j, f).tip) < near;
    }

    /// Ends of T joints and free ends.
    void placeRest() {
        const double cap = roundness();
        joinTips(cap);
        for (int i = 0; i < count(); ++i)
            for (int e = 0; isOpen(i) && e < 2; ++e) {
                StrokeEnd& end = at(i).ends[index(e)];
                const EndState& s = state(i, e);
                if (end.node >= 0)
                    continue;
                if (s.partner >= 0) {
                    addNode({{i, e}}, s.target);
                    standing.push_back({i, e});
                    continue;
                }
                if (!end.solid)
                    end.at = freeEnd(i, e, cap);
            }
    }

    /// Strokes whose ends were moved to corners have left their carriers by a little: the ends that
    /// stand on them follow.
    void settle() {
        for (const auto& [i, e] : standing) {
            const Stroke& base = at(state(i, e).partner);
            StrokeEnd& end = at(i).ends[index(e)];
            if (base.dropped || base.closed)
                continue;
            const Point p = onShape(base, end.at);
            end.at = p;
            nodes[index(end.node)] = p;
        }
    }

    /// The point next to `p` on the line or the arc between the stroke's ends.
    static Point onShape(const Stroke& stroke, Point p) {
        const Point chord = stroke.finish() - stroke.start();
        if (!(lengthSquared(chord) > 0.0))
            return p;
        if (stroke.carrier.isLine()) {
            const double t = dot(p - stroke.start(), chord) / lengthSquared(chord);
            return stroke.start() + chord * std::clamp(t, 0.0, 1.0);
        }
        const double bulge =
            bulgeAround(stroke.start(), stroke.finish(), stroke.carrier.at, stroke.carrier.turn);
        if (bulge == 0.0)
            return p;
        const Circle circle = circleOf(arcPiece(stroke.start(), stroke.finish(), bulge));
        const Point out = p - circle.centre;
        return length(out) > 0.0 ? circle.centre + unit(out) * circle.radius : p;
    }

    std::vector<Stroke>& strokes;
    const InkLevels& ink;
    const Measure& measured;
    StrokeGrid grid;
    std::vector<std::array<int, 2>> standing; ///< ends that stand on the line of a partner
    std::vector<std::array<EndState, 2>> states;
    std::vector<double> lengths;
    std::vector<std::vector<std::array<int, 2>>> groups;
    std::vector<Point> nodes;
};

} // namespace

std::vector<Point> joinEnds(std::vector<Stroke>& strokes, const InkLevels& ink,
                            const Measure& measure, Pace& pace) {
    return EndJoiner(strokes, ink, measure).run(pace);
}

} // namespace ovtrace
