#include "shapes/joining.h"

#include "shapes/cubics.h"
#include "shapes/tangency.h"

#include <algorithm>

namespace ovtrace {

namespace {

/// Carriers that a curve may take the place of: two arcs are simple enough.
constexpr std::size_t leastRun = 3;

/// Where one carrier ends and the next begins; two places where a cap lies between.
struct Joint {
    Point before;
    Point after;
    bool smooth = false;
};

/// The samples of a chain by index, round its end when it is closed.
class Chain {
public:
    explicit Chain(std::span<const Sample> samples) : samples_(samples) {
    }

    [[nodiscard]] Point at(int index) const {
        return samples_[static_cast<std::size_t>(index) % samples_.size()].at;
    }

    /// The samples from `first` to `last` with the weights of the fit.
    [[nodiscard]] std::vector<Sample> between(int first, int last, double spread) const {
        std::vector<Sample> result;
        const int end = last >= first ? last : unwrapped(first, last);
        for (int k = first; k <= end; ++k) {
            Sample sample = samples_[static_cast<std::size_t>(k) % samples_.size()];
            sample.sigma = std::sqrt(sample.sigma * sample.sigma + spread);
            result.push_back(sample);
        }
        return result;
    }

    /// The sample after `last` up to `first`, unwrapped.
    [[nodiscard]] int unwrapped(int last, int first) const {
        const int count = static_cast<int>(samples_.size());
        return first > last ? first : first + (last - first) / count * count + count;
    }

private:
    std::span<const Sample> samples_;
};

class Joiner {
public:
    Joiner(const ChainModel& model, std::span<const Sample> samples, const FitOptions& options)
        : carriers_(model.carriers), closed_(model.closed), chain_(samples), options_(options) {
    }

    std::vector<Piece> run(Point start, Point end) {
        makeTangent();
        std::vector<Joint> joints;
        const std::size_t count = carriers_.size();
        joints.push_back(closed_ && count > 1 ? joint(count - 1, 0) : Joint{start, start, false});
        for (std::size_t k = 1; k < count; ++k)
            joints.push_back(joint(k - 1, k));
        joints.push_back(closed_ && count > 1 ? joints.front() : Joint{end, end, false});
        return assembled(joints);
    }

private:
    /// Where the chain is between the carriers: the middle of the samples on both sides of the
    /// break.
    [[nodiscard]] Point gap(const Carrier& a, const Carrier& b) const {
        return middle(chain_.at(a.last), chain_.at(b.first));
    }

    [[nodiscard]] bool isSmooth(const Carrier& a, const Carrier& b) const {
        const Point place = gap(a, b);
        const Point u = directionAt(a, place);
        const Point v = directionAt(b, place);
        return dot(u, v) > 0.0 && std::abs(cross(u, v)) < options_.smoothSine;
    }

    [[nodiscard]] const Carrier* smoothLine(std::size_t index, int step) const {
        const std::size_t count = carriers_.size();
        if (!closed_ && (step < 0 ? index == 0 : index + 1 == count))
            return nullptr;
        const std::size_t other = (step < 0 ? index + count - 1 : index + 1) % count;
        if (other == index || !carriers_[other].isLine())
            return nullptr;
        const bool smooth = step < 0 ? isSmooth(carriers_[other], carriers_[index])
                                     : isSmooth(carriers_[index], carriers_[other]);
        return smooth ? &carriers_[other] : nullptr;
    }

    /// Arcs between lines become tangent to them where the samples allow it: within three sigmas
    /// for each constraint.
    void makeTangent() {
        constexpr double allowed = 9.0;
        for (std::size_t k = 0; k < carriers_.size(); ++k) {
            if (carriers_[k].isLine())
                continue;
            const Carrier* before = smoothLine(k, -1);
            const Carrier* after = smoothLine(k, 1);
            if (!before && !after)
                continue;
            const std::vector<Sample> samples =
                chain_.between(carriers_[k].first, carriers_[k].last, spread());
            const double bound = (before ? allowed : 0.0) + (after ? allowed : 0.0);
            if (const auto circle = tangentCircle(carriers_[k], before, after, samples, bound))
                carriers_[k] = *circle;
        }
    }

    [[nodiscard]] Joint joint(std::size_t before, std::size_t after) const {
        const Carrier& a = carriers_[before];
        const Carrier& b = carriers_[after];
        const bool smooth = isSmooth(a, b);
        const Point place = gap(a, b);
        const double width = distance(chain_.at(a.last), chain_.at(b.first));
        if (smooth && a.isLine() != b.isLine())
            if (const auto touch = touching(a, b, place, width))
                return {*touch, *touch, true};
        if (const auto corner = meeting(a, b, place, width))
            return {*corner, *corner, smooth};
        if (!smooth && dot(directionAt(a, place), directionAt(b, place)) < 0.0)
            return cap(a, b);
        const Point between = middle(projected(a, place), projected(b, place));
        return {between, between, smooth};
    }

    /// Where a line touches a circle, when that is near the break.
    [[nodiscard]] static std::optional<Point> touching(const Carrier& a, const Carrier& b,
                                                       Point place, double width) {
        const Carrier& line = a.isLine() ? a : b;
        const Carrier& circle = a.isLine() ? b : a;
        const Point foot = projected(line, circle.at);
        const bool tangent = std::abs(distance(foot, circle.at) - circle.radius) <=
                             1e-9 * std::max(1.0, circle.radius);
        if (!tangent || distance(foot, place) > width + circle.radius / 2.0)
            return std::nullopt;
        return foot;
    }

    /// The meeting of two carriers that is near the break: a corner is cut over about a pixel, and
    /// lies farther out the sharper it is.
    [[nodiscard]] std::optional<Point> meeting(const Carrier& a, const Carrier& b, Point place,
                                               double width) const {
        constexpr double cut = 1.2;
        constexpr double farthest = 12.0;
        const double sine = std::abs(cross(directionAt(a, place), directionAt(b, place)));
        const double limit = 1.0 + width / 2.0 + std::min(farthest, sine > 0.0 ? cut / sine : 0.0);
        std::optional<Point> best;
        for (const Point& candidate : meetings(a, b))
            if (distance(candidate, place) < (best ? distance(*best, place) : limit))
                best = candidate;
        return best;
    }

    /// A line across the end of two sides that run back nearly parallel, as far out as the samples
    /// go.
    [[nodiscard]] Joint cap(const Carrier& a, const Carrier& b) const {
        const int end = chain_.unwrapped(a.last, b.first);
        const Point p = projected(a, chain_.at(a.last));
        const Point q = projected(b, chain_.at(b.first));
        const Point u = directionAt(a, p);
        const Point v = directionAt(b, q);
        const Point axis = unit(u - v);
        double extreme = dot(chain_.at(a.last), axis);
        for (int k = a.last + 1; k <= end; ++k)
            extreme = std::max(extreme, dot(chain_.at(k), axis));
        return {p + u * ((extreme - dot(p, axis)) / dot(u, axis)),
                q + v * ((extreme - dot(q, axis)) / dot(v, axis)), false};
    }

    [[nodiscard]] std::vector<Piece> assembled(const std::vector<Joint>& joints) const {
        std::vector<Piece> pieces;
        const std::size_t count = carriers_.size();
        for (std::size_t k = 0; k < count;) {
            const std::size_t end = options_.cubics ? runEnd(k, joints) : k + 1;
            const Run run{k, end, closed_ && end - k == count && joints[0].smooth};
            if (end - k < leastRun || !appendCurves(run, joints, pieces))
                for (std::size_t i = k; i < end; ++i)
                    append(carriers_[i], joints[i].after, joints[i + 1].before, pieces);
            if (joints[end].before != joints[end].after)
                pieces.push_back(linePiece(joints[end].before, joints[end].after));
            k = end;
        }
        return pieces;
    }

    /// Whether a carrier can be a part of a curve: long lines are lines.
    [[nodiscard]] bool isCurved(std::size_t index) const {
        constexpr int shortLine = 8;
        const Carrier& carrier = carriers_[index];
        return !carrier.isLine() || carrier.last - carrier.first < shortLine;
    }

    /// One past the last carrier of the smooth curve that begins with `first`.
    [[nodiscard]] std::size_t runEnd(std::size_t first, const std::vector<Joint>& joints) const {
        std::size_t end = first + 1;
        if (isCurved(first))
            while (end < carriers_.size() && joints[end].smooth && isCurved(end))
                ++end;
        return end;
    }

    /// The place and direction where carrier `index` begins. Carriers that join smoothly agree on
    /// it; a long line is right.
    [[nodiscard]] CurveEnd beginning(std::size_t index, const std::vector<Joint>& joints) const {
        const std::size_t count = carriers_.size();
        const Point at = joints[index].after;
        const Carrier& after = carriers_[index % count];
        const Point own = directionAt(after, at);
        if (!joints[index].smooth)
            return {at, own};
        const std::size_t other = (index + count - 1) % count;
        const Point before = directionAt(carriers_[other], at);
        if (!isCurved(other))
            return {at, before};
        return {at, isCurved(index % count) ? unit(own + before) : own};
    }

    [[nodiscard]] CurveEnd ending(std::size_t index, const std::vector<Joint>& joints) const {
        if (joints[index + 1].smooth)
            return beginning(index + 1, joints);
        const Point at = joints[index + 1].before;
        return {at, directionAt(carriers_[index], at)};
    }

    /// Where a curve is divided between two carriers, it goes by the samples on both sides: the
    /// ends of arcs that only approach it have other directions.
    [[nodiscard]] CurveEnd division(std::size_t index, const std::vector<Joint>& joints) const {
        constexpr int side = 6;
        const std::size_t count = carriers_.size();
        const Carrier& before = carriers_[(index + count - 1) % count];
        const Carrier& after = carriers_[index % count];
        const int first = std::max(before.first, before.last - side);
        const int last = std::min(after.last, after.first + side);
        const CurveEnd rough = beginning(index, joints);
        const auto end = localEnd(chain_.between(first, last, spread()), rough.at, rough.tangent);
        // Nearly where the carriers meet, or the samples are no smooth curve.
        return end && distance(end->at, rough.at) < 1.0 && dot(end->tangent, rough.tangent) > 0.95
                   ? *end
                   : rough;
    }

    /// A smooth curve from carrier `first` to before `end`; it may be the whole of a closed chain.
    struct Run {
        std::size_t first = 0;
        std::size_t end = 0;
        bool wholeRing = false;
    };

    [[nodiscard]] CurveEnd place(std::size_t index, bool isEnd, const Run& run,
                                 const std::vector<Joint>& joints) const {
        if ((index > run.first && index < run.end) || run.wholeRing)
            return division(index, joints);
        return isEnd ? ending(index - 1, joints) : beginning(index, joints);
    }

    /// One cubic over the carriers from `first` to before `end`.
    [[nodiscard]] std::optional<Piece> curveOver(std::size_t first, std::size_t end, const Run& run,
                                                 const std::vector<Joint>& joints) const {
        // As close as samples that were only noisy.
        constexpr double allowed = 1.5;
        return fittedCubic(
            place(first, false, run, joints), place(end, true, run, joints),
            chain_.between(carriers_[first].first, carriers_[end - 1].last, spread()), allowed);
    }

    /// The longest curve from `first` on: twice as many carriers until it fails, then halving.
    [[nodiscard]] std::pair<Piece, std::size_t>
    longestCurve(std::size_t first, const Run& run, const std::vector<Joint>& joints) const {
        std::optional<Piece> best = curveOver(first, first + 1, run, joints);
        std::size_t good = first + 1;
        std::size_t step = 1;
        while (best && good < run.end) {
            const std::size_t next = std::min(run.end, good + step);
            const auto curve = curveOver(first, next, run, joints);
            if (!curve)
                break;
            best = curve;
            good = next;
            step *= 2;
        }
        for (; best && step > 0; step /= 2)
            if (good + step <= run.end)
                if (const auto curve = curveOver(first, good + step, run, joints)) {
                    best = curve;
                    good += step;
                }
        return {best ? *best : Piece{}, best ? good : first};
    }

    /// Curves in place of the carriers of a run, where they are fewer.
    bool appendCurves(const Run& run, const std::vector<Joint>& joints,
                      std::vector<Piece>& pieces) const {
        const std::size_t length = run.end - run.first;
        std::vector<Piece> curves;
        for (std::size_t k = run.first; k < run.end;) {
            const auto [curve, next] = longestCurve(k, run, joints);
            if (next == k || curves.size() + 1 >= length)
                return false;
            curves.push_back(curve);
            k = next;
        }
        pieces.insert(pieces.end(), curves.begin(), curves.end());
        return true;
    }

    [[nodiscard]] double spread() const {
        return options_.tolerance * options_.tolerance / 3.0;
    }

    /// The carrier between two joints. Where the joints have passed each other it has shrunk to a
    /// straight piece.
    void append(const Carrier& carrier, Point from, Point to, std::vector<Piece>& pieces) const {
        if (from == to)
            return;
        const Point chord = chain_.at(carrier.last) - chain_.at(carrier.first);
        const bool short_ = !carrier.isLine() &&
                            std::abs(bulgeAround(from, to, carrier.at, carrier.turn)) > 1.0 &&
                            std::abs(bulgeAround(chain_.at(carrier.first), chain_.at(carrier.last),
                                                 carrier.at, carrier.turn)) < 0.5 &&
                            dot(chord, to - from) < 0.0;
        if (short_)
            pieces.push_back(linePiece(from, to));
        else
            appendPieces(carrier, from, to, pieces);
    }

    std::vector<Carrier> carriers_;
    bool closed_;
    Chain chain_;
    const FitOptions& options_;
};

bool isFinitePiece(const Piece& piece) {
    return isFinite(piece.from) && isFinite(piece.to) && std::isfinite(piece.bulge) &&
           isFinite(piece.control1) && isFinite(piece.control2);
}

} // namespace

std::vector<Piece> wholeCircle(const Carrier& circle) {
    const Point left = circle.at - Point{circle.radius, 0.0};
    const Point right = circle.at + Point{circle.radius, 0.0};
    return {arcPiece(left, right, circle.turn), arcPiece(right, left, circle.turn)};
}

std::vector<Piece> polygonThrough(std::span<const Sample> samples, bool closed,
                                  std::optional<Point> start, std::optional<Point> end) {
    std::vector<Point> points;
    if (start)
        points.push_back(*start);
    for (const Sample& sample : samples)
        points.push_back(sample.at);
    if (end)
        points.push_back(*end);
    if (closed && !points.empty())
        points.push_back(points.front());
    std::vector<Piece> pieces;
    for (std::size_t k = 1; k < points.size(); ++k)
        if (points[k] != points[k - 1])
            pieces.push_back(linePiece(points[k - 1], points[k]));
    return pieces;
}

std::vector<Piece> joinChain(const ChainModel& model, std::span<const Sample> samples,
                             const FitOptions& options, std::optional<Point> start,
                             std::optional<Point> end) {
    if (model.carriers.empty() || (model.closed && model.carriers.size() == 1 && !model.isCircle))
        return polygonThrough(samples, model.closed, start, end);
    const Point first = start ? *start : projected(model.carriers.front(), samples.front().at);
    const Point last = end ? *end : projected(model.carriers.back(), samples.back().at);
    const std::vector<Piece> pieces = model.isCircle
                                          ? wholeCircle(model.carriers.front())
                                          : Joiner(model, samples, options).run(first, last);
    // Coordinates beyond what fits can calculate with.
    return std::all_of(pieces.begin(), pieces.end(), isFinitePiece)
               ? pieces
               : polygonThrough(samples, model.closed, start, end);
}

} // namespace ovtrace
