#include "shapes/joining.h"

#include "shapes/curveruns.h"
#include "shapes/tangency.h"

#include <algorithm>

namespace ovtrace {

namespace {

/// The sine up to which noise may explain a corner, beside `FitOptions::smoothSine`.
constexpr double mostDoubt = 0.35;

class Joiner {
public:
    Joiner(const ChainModel& model, std::span<const Sample> samples, const FitOptions& options)
        : carriers_(model.carriers), closed_(model.closed), chain_(samples), options_(options) {
    }

    std::vector<Piece> run(Point start, Point end) {
        removeKnobs();
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
        // Short carriers in noise do not know their directions: two sigmas.
        const double p = endDirectionSigma(a);
        const double q = endDirectionSigma(b);
        const double doubt = std::min(2.0 * std::sqrt(p * p + q * q), mostDoubt);
        return dot(u, v) > 0.0 && std::abs(cross(u, v)) < options_.smoothSine + doubt;
    }

    /// The carrier before (`step` -1) or after (1) another one when it is a line.
    [[nodiscard]] const Carrier* lineBeside(std::size_t index, int step) const {
        const std::size_t count = carriers_.size();
        if (!closed_ && (step < 0 ? index == 0 : index + 1 == count))
            return nullptr;
        const std::size_t other = (step < 0 ? index + count - 1 : index + 1) % count;
        return other != index && carriers_[other].isLine() ? &carriers_[other] : nullptr;
    }

    [[nodiscard]] const Carrier* smoothLine(std::size_t index, int step) const {
        const Carrier* line = lineBeside(index, step);
        if (!line)
            return nullptr;
        const bool smooth =
            step < 0 ? isSmooth(*line, carriers_[index]) : isSmooth(carriers_[index], *line);
        return smooth ? line : nullptr;
    }

    /// Leaves out circles round the ends of lines so thin that their samples do not tell a round
    /// end from a straight one; a cap takes their place.
    void removeKnobs() {
        for (std::size_t k = 0; k < carriers_.size();) {
            if (isKnob(k))
                carriers_.erase(carriers_.begin() + static_cast<std::ptrdiff_t>(k));
            else
                ++k;
        }
    }
    [[nodiscard]] bool isKnob(std::size_t index) const {
        constexpr double thin = 2.5; // pixels
        constexpr int few = 8;       // samples
        const Carrier& circle = carriers_[index];
        const Carrier* before = lineBeside(index, -1);
        const Carrier* after = lineBeside(index, 1);
        if (circle.isLine() || !before || !after || before == after)
            return false;
        const int last =
            circle.last >= circle.first ? circle.last : chain_.unwrapped(circle.first, circle.last);
        if (last - circle.first >= few)
            return false;
        const Point u = directionAt(*before, chain_.at(before->last));
        const Point v = directionAt(*after, chain_.at(after->first));
        constexpr double back = -0.9; // the cosine of lines that run back
        return dot(u, v) < back && std::abs(cross(v, chain_.at(before->last) - after->at)) < thin;
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
            const auto circle = tangentCircle(carriers_[k], before, after, samples, bound);
            if (circle && (!before || touchesNear(*before, *circle)) &&
                (!after || touchesNear(*circle, *after)))
                carriers_[k] = *circle;
        }
    }

    /// Whether a line and a circle tangent to it, one after the other, touch where they meet.
    [[nodiscard]] bool touchesNear(const Carrier& a, const Carrier& b) const {
        return touching(a, b, gap(a, b), width(a, b)).has_value();
    }

    /// The distance between the last sample of `a` and the first of `b`.
    [[nodiscard]] double width(const Carrier& a, const Carrier& b) const {
        return distance(chain_.at(a.last), chain_.at(b.first));
    }

    [[nodiscard]] Joint joint(std::size_t before, std::size_t after) const {
        const Carrier& a = carriers_[before];
        const Carrier& b = carriers_[after];
        const bool smooth = isSmooth(a, b);
        const Point place = gap(a, b);
        const double apart = width(a, b);
        if (smooth && a.isLine() != b.isLine())
            if (const auto touch = touching(a, b, place, apart))
                return {*touch, *touch, true};
        if (const auto corner = meeting(a, b, place, apart))
            return {*corner, *corner, smooth};
        if (!smooth && dot(directionAt(a, place), directionAt(b, place)) < 0.0)
            return cap(a, b);
        const Point onA = projected(a, place);
        const Point onB = projected(b, place);
        // Farther apart, a common end would turn both.
        constexpr double widestGap = 0.7;
        if (distance(onA, onB) > widestGap)
            return {projected(a, chain_.at(a.last)), projected(b, chain_.at(b.first)), false};
        const Point between = middle(onA, onB);
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

    /// The distance between the ends of what a carrier was fitted to.
    [[nodiscard]] double chord(const Carrier& carrier) const {
        return distance(chain_.at(carrier.first), chain_.at(carrier.last));
    }

    /// The meeting of two carriers that is near the break: a corner is cut over about a pixel, and
    /// lies farther out the sharper it is.
    [[nodiscard]] std::optional<Point> meeting(const Carrier& a, const Carrier& b, Point place,
                                               double width) const {
        constexpr double farthest = 6.0;
        const Point u = directionAt(a, place);
        const Point v = directionAt(b, place);
        // The tip is narrower than a pixel from half the tangent of half the turn on. Places that
        // are rounded to pixels end there; others lack as much again.
        const double forward = 1.0 + dot(u, v);
        // Sides that noise does not tell from parallel have no tip.
        const double sine = std::abs(cross(u, v));
        const double doubt = 3.0 * std::max(endDirectionSigma(a), endDirectionSigma(b));
        if (dot(u, v) < 0.0 && sine < doubt)
            return std::nullopt;
        const double tip = forward > 0.0 ? sine / forward : farthest;
        // Sides that are short themselves do not lead far.
        const double reach = std::min(farthest, std::min(chord(a), chord(b)) / 2.0);
        const double lacking = isRounded() ? 0.5 : 1.0;
        const double limit = lacking + width / 2.0 + std::min(lacking * tip, reach);
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
        const CurveRuns curves(carriers_, joints, chain_, spread(), closed_);
        std::vector<Piece> pieces;
        const std::size_t count = carriers_.size();
        for (std::size_t k = 0; k < count;) {
            const std::size_t end = options_.cubics ? curves.endOf(k) : k + 1;
            if (!options_.cubics || !curves.append(k, end, pieces))
                for (std::size_t i = k; i < end; ++i)
                    append(carriers_[i], joints[i].after, joints[i + 1].before, pieces);
            if (joints[end].before != joints[end].after)
                pieces.push_back(linePiece(joints[end].before, joints[end].after));
            k = end;
        }
        return pieces;
    }

    [[nodiscard]] bool isRounded() const {
        return std::isfinite(options_.mostOff);
    }

    [[nodiscard]] double spread() const {
        return options_.tolerance * options_.tolerance / 3.0;
    }

    /// The carrier between two joints. Where the joints have passed each other it has shrunk to a
    /// straight piece.
    void append(const Carrier& carrier, Point from, Point to, std::vector<Piece>& pieces) const {
        if (from == to)
            return;
        const bool short_ = !carrier.isLine() &&
                            std::abs(bulgeAround(from, to, carrier.at, carrier.turn)) > 1.0 &&
                            std::abs(bulgeAround(chain_.at(carrier.first), chain_.at(carrier.last),
                                                 carrier.at, carrier.turn)) < 0.5;
        if (short_)
            pieces.push_back(linePiece(from, to));
        else
            appendPieces(carrier, from, to, pieces);
    }

    std::vector<Carrier> carriers_;
    bool closed_;
    ChainView chain_;
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
