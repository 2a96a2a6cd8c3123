#include "shapes/segmentation.h"

#include <algorithm>
#include <array>
#include <limits>
#include <numbers>

namespace ovtrace {

namespace {

constexpr double infinite = std::numeric_limits<double>::infinity();
/// Samples that one candidate covers at most; longer shapes are put together afterwards.
constexpr int window = 400;
/// Samples at a break that belong to neither side: the corner of a pixel's area is cut over about
/// one pixel on each side, which three samples cover.
constexpr int mostSkipped = 3;
/// Where nothing happens, every so many samples may be a break; the place is refined afterwards.
constexpr int stride = 6;

/// The samples with the weights of the search.
struct Weighted {
    std::vector<Sample> samples;
    std::vector<double> weights;
    std::vector<double> skipCosts;
    /// The length of the polygon through the samples up to each.
    std::vector<double> lengths;
    bool closed = false;
    double mostOff = infinite;

    /// Whether a shape of this radius can run from sample to sample: a line or a shallow arc is not
    /// much shorter than the way there. What runs back beside itself is not one shape.
    [[nodiscard]] bool advances(int first, int last, double radius) const {
        constexpr double leastShare = 0.6;
        const double way =
            lengths[static_cast<std::size_t>(last)] - lengths[static_cast<std::size_t>(first)];
        return (radius > 0.0 && way > 2.0 * radius) ||
               distance(at(first), at(last)) >= leastShare * way;
    }

    /// Whether no sample from `first` to `last` is too far from the line or the circle.
    [[nodiscard]] bool keepsTo(const LineFit& line, int first, int last) const;
    [[nodiscard]] bool keepsTo(const CircleFit& circle, int first, int last) const;
    [[nodiscard]] bool keepsTo(const Carrier& carrier) const;

    [[nodiscard]] int size() const {
        return static_cast<int>(samples.size());
    }
    [[nodiscard]] Point at(int index) const {
        return samples[static_cast<std::size_t>(index)].at;
    }
    [[nodiscard]] double weight(int index) const {
        return weights[static_cast<std::size_t>(index)];
    }
    [[nodiscard]] double skipCost(int index) const {
        return skipCosts[static_cast<std::size_t>(index)];
    }
};

bool Weighted::keepsTo(const LineFit& line, int first, int last) const {
    if (!(mostOff < infinite))
        return true;
    for (int k = first; k <= last; ++k)
        if (weight(k) > 0.0 && std::abs(cross(line.direction, at(k) - line.at)) > mostOff)
            return false;
    return true;
}

bool Weighted::keepsTo(const CircleFit& circle, int first, int last) const {
    if (!(mostOff < infinite))
        return true;
    const double least = std::max(0.0, circle.radius - mostOff);
    const double most = circle.radius + mostOff;
    for (int k = first; k <= last; ++k) {
        const double square = lengthSquared(at(k) - circle.centre);
        if (weight(k) > 0.0 && (square < least * least || square > most * most))
            return false;
    }
    return true;
}

bool Weighted::keepsTo(const Carrier& carrier) const {
    if (!(mostOff < infinite))
        return true;
    for (int k = carrier.first; k <= carrier.last; ++k)
        if (weight(k) > 0.0 && std::abs(signedDistance(carrier, at(k))) > mostOff)
            return false;
    return true;
}

/// Rotated so that sample `start` comes first. Sigmas hold the tolerance's share from here on.
Weighted weighted(std::span<const Sample> samples, int start, bool closed,
                  const FitOptions& options) {
    Weighted result;
    result.closed = closed;
    result.mostOff = options.mostOff;
    result.samples.reserve(samples.size());
    const auto middle = samples.begin() + start;
    result.samples.insert(result.samples.end(), middle, samples.end());
    result.samples.insert(result.samples.end(), samples.begin(), middle);
    // A tolerance is a bound; taken as an error spread evenly below it, a third of its square. No
    // sigma is smaller than what a double can tell from the place.
    const double spread = std::max(options.tolerance * options.tolerance / 3.0, 1e-12);
    Point before;
    for (Sample& sample : result.samples) {
        const double variance = sample.sigma * sample.sigma + spread;
        sample.sigma = std::sqrt(variance);
        result.weights.push_back(sample.loose ? 0.0 : 1.0 / variance);
        result.skipCosts.push_back(sample.loose ? 0.0 : options.skipCost);
        const double step = result.lengths.empty() ? 0.0 : distance(before, sample.at);
        result.lengths.push_back(result.lengths.empty() ? 0.0 : result.lengths.back() + step);
        before = sample.at;
    }
    return result;
}

Moments momentsOf(const Weighted& data, int first, int last) {
    Moments moments(data.at((first + last) / 2));
    for (int k = first; k <= last; ++k)
        if (data.weight(k) > 0.0)
            moments.add(data.at(k), data.weight(k));
    return moments;
}

/// How much the curve changes at a sample, in sigmas: the third difference across the curve, which
/// is 0 on lines and nearly 0 on circles.
double change(const Weighted& data, int index, bool closed) {
    constexpr int reach = 4;
    const int n = data.size();
    const auto sample = [&](int k) { return data.at(closed ? (k % n + n) % n : k); };
    const Point a = sample(index - reach - 1);
    const Point b = sample(index - 2);
    const Point c = sample(index + 1);
    const Point d = sample(index + reach);
    const Point third = (d - a) - (c - b) * 3.0;
    const double sigma = data.samples[static_cast<std::size_t>(index)].sigma;
    // The variance of d - 3c + 3b - a.
    const double spread = sigma * std::sqrt(20.0);
    return std::abs(cross(unit(d - a), third)) / spread;
}

constexpr char noBreak = 0;
constexpr char plainBreak = 1;
constexpr char remarkableBreak = 2;

/// Where breaks may be, before each sample and after the last.
std::vector<char> breakCandidates(const Weighted& data) {
    constexpr int edge = 8;
    constexpr double remarkable = 2.5;
    const int n = data.size();
    std::vector<char> candidates(static_cast<std::size_t>(n) + 1, noBreak);
    const bool few = n <= 64;
    for (int k = 0; k <= n; ++k) {
        const bool near = few || k < edge || k > n - edge;
        if (near || change(data, k, false) > remarkable)
            candidates[static_cast<std::size_t>(k)] = remarkableBreak;
        else if (k % stride == 0)
            candidates[static_cast<std::size_t>(k)] = plainBreak;
    }
    return candidates;
}

/// The cheapest explanation of the samples before a break.
struct Reached {
    double cost = infinite;
    int first = 0; ///< where the last carrier begins
    bool isArc = false;
};

struct Skipped {
    double cost = infinite;
    int count = 0;
};

/// The dynamic programme over the breaks of an open chain.
class Search {
public:
    /// `strict`: a shape needs one sample more than determine it.
    Search(const Weighted& data, const FitOptions& options, bool strict)
        : data_(data), candidates_(breakCandidates(data)), lineCost_(2.0 * options.parameterCost),
          arcCost_(3.0 * options.parameterCost), leastForArc_(strict ? 4 : 3) {
        if (!strict)
            doubtCost_ = options.parameterCost;
    }

    /// The ranges of carriers, in order; false when there is no explanation.
    bool run(std::vector<Reached>& ranges, std::vector<int>& ends, double& cost);

private:
    [[nodiscard]] bool isCandidate(int first, int end) const;
    void extendTo(int end);
    void consider(const Moments& moments, int first, int end, Reached& best) const;
    void skipTo(int first);

    const Weighted& data_;
    std::vector<char> candidates_;
    std::vector<Reached> reached_;
    std::vector<Skipped> skipped_;
    double lineCost_;
    double arcCost_;
    double doubtCost_ = infinite;
    int leastForArc_;
    mutable double leastError_ = 0.0;
};

void Search::consider(const Moments& moments, int first, int end, Reached& best) const {
    const double before = skipped_[static_cast<std::size_t>(first)].cost;
    const double lineError = LineFit::errorOf(moments);
    leastError_ = lineError;
    // Two samples are on a line whatever they are: no evidence for one.
    const double doubt = moments.count() < 3 ? doubtCost_ : 0.0;
    if (before + lineCost_ + doubt + lineError < best.cost && data_.advances(first, end - 1, 0.0) &&
        data_.keepsTo(LineFit(moments), first, end - 1))
        best = {before + lineCost_ + doubt + lineError, first, false};
    // An arc has to earn its third parameter.
    if (lineError <= arcCost_ - lineCost_ || moments.count() < leastForArc_)
        return;
    const double arcError = CircleFit::errorOf(moments);
    leastError_ = std::min(lineError, arcError);
    if (before + arcCost_ + arcError >= best.cost)
        return;
    const CircleFit circle(moments);
    if (data_.advances(first, end - 1, circle.radius) && data_.keepsTo(circle, first, end - 1))
        best = {before + arcCost_ + arcError, first, true};
}

/// Far from the end, fewer of the breaks where nothing happens will do: the merging closes what
/// they leave.
bool Search::isCandidate(int first, int end) const {
    constexpr int near = 8 * stride;
    const char candidate = candidates_[static_cast<std::size_t>(first)];
    return candidate == remarkableBreak ||
           (candidate == plainBreak && (end - first <= near || first % (4 * stride) == 0));
}

void Search::extendTo(int end) {
    Reached best;
    Moments moments(data_.at(end - 1));
    const int least = std::max(0, end - window);
    for (int first = end - 1; first >= least; --first) {
        if (data_.weight(first) > 0.0)
            moments.add(data_.at(first), data_.weight(first));
        if (!isCandidate(first, end) || moments.count() < 2)
            continue;
        consider(moments, first, end, best);
        // More samples never fit better: several shapes are cheaper from here on.
        if (leastError_ > 4.0 * arcCost_ + 2.0 * moments.count())
            break;
    }
    reached_[static_cast<std::size_t>(end)] = best;
}

void Search::skipTo(int first) {
    // Beside a corner one sample on each side is cut; a third one needs a better reason.
    constexpr std::array<double, mostSkipped + 1> factors{0.0, 1.0, 1.5, 4.0};
    Skipped best;
    double cost = 0.0;
    std::size_t counted = 0;
    for (int count = 0; count <= std::min(mostSkipped, first); ++count) {
        if (count > 0 && data_.skipCost(first - count) > 0.0)
            cost += data_.skipCost(first - count) * factors[++counted];
        const double total = reached_[static_cast<std::size_t>(first - count)].cost + cost;
        if (total < best.cost)
            best = {total, count};
    }
    skipped_[static_cast<std::size_t>(first)] = best;
}

bool Search::run(std::vector<Reached>& ranges, std::vector<int>& ends, double& cost) {
    const int n = data_.size();
    reached_.assign(static_cast<std::size_t>(n) + 1, {});
    skipped_.assign(static_cast<std::size_t>(n) + 1, {});
    reached_[0].cost = 0.0;
    for (int k = 0; k <= n; ++k) {
        if (!candidates_[static_cast<std::size_t>(k)])
            continue;
        if (k > 0)
            extendTo(k);
        skipTo(k);
    }
    cost = skipped_.back().cost;
    if (!(cost < infinite))
        return false;
    int end = n;
    while (true) {
        end -= skipped_[static_cast<std::size_t>(end)].count;
        if (end == 0)
            break;
        ranges.push_back(reached_[static_cast<std::size_t>(end)]);
        ends.push_back(end);
        end = ranges.back().first;
    }
    std::reverse(ranges.begin(), ranges.end());
    std::reverse(ends.begin(), ends.end());
    return !ranges.empty();
}

std::span<const Sample> samplesOf(const Weighted& data, int first, int last) {
    return std::span(data.samples)
        .subspan(static_cast<std::size_t>(first), static_cast<std::size_t>(last - first) + 1);
}

Carrier fitted(const Weighted& data, int first, int last, bool isArc) {
    const Moments moments = momentsOf(data, first, last);
    Carrier carrier = lineCarrier(moments, data.at(first), data.at(last));
    if (isArc)
        if (const auto circle = circleCarrier(moments, samplesOf(data, first, last)))
            carrier = *circle;
    carrier.first = first;
    carrier.last = last;
    return carrier;
}

/// Puts neighbours together that one shape explains for less: the window and the sparse candidates
/// have cut them.
class Merging {
public:
    Merging(const Weighted& data, const FitOptions& options)
        : data_(data), lineCost_(2.0 * options.parameterCost),
          arcCost_(3.0 * options.parameterCost) {
    }

    [[nodiscard]] std::vector<Carrier> merged(const std::vector<Carrier>& carriers) const {
        std::vector<Carrier> result;
        for (const Carrier& carrier : carriers) {
            result.push_back(carrier);
            while (result.size() > 1 && mergeLast(result)) {
            }
        }
        return result;
    }

private:
    [[nodiscard]] double costOf(const Carrier& carrier) const {
        return carrier.error + (carrier.isLine() ? lineCost_ : arcCost_);
    }

    bool mergeLast(std::vector<Carrier>& carriers) const {
        const Carrier& a = carriers[carriers.size() - 2];
        const Carrier& b = carriers.back();
        Moments moments = a.support;
        double apart = costOf(a) + costOf(b);
        for (int k = a.last + 1; k < b.first; ++k) {
            apart += data_.skipCost(k);
            if (data_.weight(k) > 0.0)
                moments.add(data_.at(k), data_.weight(k));
        }
        moments.add(b.support);
        const double asLine = LineFit::errorOf(moments) + lineCost_;
        const double asArc = CircleFit::errorOf(moments) + arcCost_;
        if (std::min(asLine, asArc) >= apart)
            return false;
        const Carrier merged = fitted(data_, a.first, b.last, asArc < asLine);
        if (costOf(merged) >= apart || !data_.advances(a.first, b.last, merged.radius) ||
            !data_.keepsTo(merged))
            return false;
        carriers.pop_back();
        carriers.back() = merged;
        return true;
    }

    const Weighted& data_;
    double lineCost_;
    double arcCost_;
};

/// Moves the break between two carriers to where their errors are least.
class BreakRefinement {
public:
    BreakRefinement(const Weighted& data, Carrier& before, Carrier& after)
        : data_(data), before_(before), after_(after) {
    }

    /// Whether it moved.
    bool run() {
        const int least = std::max(before_.first + minimum(before_) - 1, before_.last - stride);
        const int greatest = std::min(after_.last - minimum(after_) + 1, after_.first + stride);
        if (least >= greatest)
            return false;
        measure(least, greatest);
        int bestLast = before_.last;
        int bestFirst = after_.first;
        double best = errorOf(bestLast, bestFirst);
        for (int last = least; last < greatest; ++last)
            for (int first = last + 1; first <= std::min(greatest, last + 1 + mostSkipped);
                 ++first) {
                const double error = errorOf(last, first);
                if (error < best * (1.0 - 1e-9)) {
                    best = error;
                    bestLast = last;
                    bestFirst = first;
                }
            }
        if (bestLast == before_.last && bestFirst == after_.first)
            return false;
        before_.last = bestLast;
        after_.first = bestFirst;
        return true;
    }

private:
    static int minimum(const Carrier& carrier) {
        return carrier.isLine() ? 2 : 3;
    }

    /// What the samples cost on either carrier, summed from the first on.
    void measure(int least, int greatest) {
        least_ = least;
        sums_.assign(1, {});
        for (int k = least; k <= greatest; ++k) {
            const double b = signedDistance(before_, data_.at(k));
            const double a = signedDistance(after_, data_.at(k));
            const double weight = data_.weight(k);
            const Costs& sum = sums_.back();
            sums_.push_back({sum.before + b * b * weight, sum.after + a * a * weight});
        }
    }

    [[nodiscard]] double errorOf(int last, int first) const {
        double error = sums_[static_cast<std::size_t>(last + 1 - least_)].before +
                       (sums_.back().after - sums_[static_cast<std::size_t>(first - least_)].after);
        for (int k = last + 1; k < first; ++k)
            error += data_.skipCost(k);
        return error;
    }

    struct Costs {
        double before = 0.0;
        double after = 0.0;
    };

    const Weighted& data_;
    Carrier& before_;
    Carrier& after_;
    int least_ = 0;
    std::vector<Costs> sums_;
};

void refineBreaks(const Weighted& data, std::vector<Carrier>& carriers) {
    constexpr int rounds = 3;
    for (int round = 0; round < rounds; ++round) {
        std::vector<char> moved(carriers.size(), 0);
        for (std::size_t k = 0; k + 1 < carriers.size(); ++k)
            if (BreakRefinement(data, carriers[k], carriers[k + 1]).run())
                moved[k] = moved[k + 1] = 1;
        for (std::size_t k = 0; k < carriers.size(); ++k)
            if (moved[k])
                carriers[k] =
                    fitted(data, carriers[k].first, carriers[k].last, !carriers[k].isLine());
        if (std::find(moved.begin(), moved.end(), 1) == moved.end())
            break;
    }
}

struct Explanation {
    std::vector<Carrier> carriers;
    double cost = infinite;
};

/// Whether a sample left out at a break has no reason to be wrong: a corner cuts the mean of the
/// pixels that it lies in, thus of samples within a diagonal of its tip, farther the sharper it is.
bool isImplausible(const Weighted& data, int index, const Carrier& before, const Carrier& after) {
    constexpr double diagonal = 1.2;
    const Point place = data.at(index);
    const double off =
        std::min(std::abs(signedDistance(before, place)), std::abs(signedDistance(after, place)));
    const double noise = 4.0 * data.samples[static_cast<std::size_t>(index)].sigma;
    if (off <= noise)
        return false;
    const double cosine = dot(directionAt(before, place), directionAt(after, place));
    const double halfSine = std::sqrt(std::max(0.0, (1.0 + cosine) / 2.0));
    double nearest = infinite;
    for (const Point& tip : meetings(before, after))
        nearest = std::min(nearest, distance(tip, place));
    return nearest * halfSine > diagonal + noise || off > 0.75 + noise;
}

/// Forbids to leave out what may not be left out between two carriers; whether that is new.
bool forbidBetween(Weighted& data, const Carrier& before, const Carrier& after) {
    const int n = data.size();
    const int end = after.first > before.last ? after.first : after.first + n;
    bool found = false;
    for (int k = before.last + 1; k < end; ++k) {
        double& cost = data.skipCosts[static_cast<std::size_t>(k % n)];
        if (cost > 0.0 && cost < infinite && isImplausible(data, k % n, before, after)) {
            cost = infinite;
            found = true;
        }
    }
    return found;
}

/// How many breaks have such samples.
int forbidImplausible(Weighted& data, const std::vector<Carrier>& carriers) {
    int found = 0;
    for (std::size_t k = 1; k < carriers.size(); ++k)
        found += forbidBetween(data, carriers[k - 1], carriers[k]) ? 1 : 0;
    if (data.closed && carriers.size() > 1)
        found += forbidBetween(data, carriers.back(), carriers.front()) ? 1 : 0;
    return found;
}

Explanation explainOnce(const Weighted& data, const FitOptions& options, bool strict) {
    Explanation result;
    std::vector<Reached> ranges;
    std::vector<int> ends;
    if (!Search(data, options, strict).run(ranges, ends, result.cost))
        return result;
    for (std::size_t k = 0; k < ranges.size(); ++k)
        result.carriers.push_back(fitted(data, ranges[k].first, ends[k] - 1, ranges[k].isArc));
    result.carriers = Merging(data, options).merged(result.carriers);
    refineBreaks(data, result.carriers);
    return result;
}

Explanation explain(Weighted& data, const FitOptions& options) {
    Explanation result = explainOnce(data, options, false);
    const int forbidden = forbidImplausible(data, result.carriers);
    if (forbidden == 0)
        return result;
    // A small arc in place of a corner, but nothing that costs more than that.
    Explanation other = explainOnce(data, options, true);
    const double bound = result.cost + 3.0 * options.parameterCost * forbidden;
    return other.cost <= bound ? other : result;
}

/// The sample where a closed chain changes most: a good place to begin.
int strongestChange(std::span<const Sample> samples, const FitOptions& options) {
    const Weighted data = weighted(samples, 0, true, options);
    int best = 0;
    double greatest = -1.0;
    for (int k = 0; k < data.size(); ++k) {
        const double value = change(data, k, true);
        if (value > greatest) {
            greatest = value;
            best = k;
        }
    }
    return best;
}

/// The break that is least in doubt, as the first sample after it; that is where the directions on
/// both sides differ most.
int sharpestBreak(const Weighted& data, const std::vector<Carrier>& carriers) {
    int best = 0;
    double least = infinite;
    for (std::size_t k = 0; k < carriers.size(); ++k) {
        const Carrier& before = carriers[(k + carriers.size() - 1) % carriers.size()];
        const double cosine = dot(directionAt(before, data.at(before.last)),
                                  directionAt(carriers[k], data.at(carriers[k].first)));
        if (cosine < least) {
            least = cosine;
            best = carriers[k].first;
        }
    }
    return best;
}

/// Indices back to those of the samples as they were given.
void unrotate(std::vector<Carrier>& carriers, int start, int count) {
    for (Carrier& carrier : carriers) {
        const int length = carrier.last - carrier.first;
        carrier.first = (carrier.first + start) % count;
        carrier.last = carrier.first + length;
    }
}

/// Whether the samples go once round a circle, enclosing most of its area. Those on both sides of a
/// thin shape lie near many a wide circle.
bool goesRound(const Carrier& circle, const Weighted& data) {
    constexpr double leastShare = 0.6;
    if (circle.isLine())
        return false;
    double area = 0.0;
    for (int k = 0; k < data.size(); ++k)
        area += cross(data.at(k) - circle.at, data.at((k + 1) % data.size()) - circle.at) / 2.0;
    return std::abs(area) >= leastShare * std::numbers::pi * circle.radius * circle.radius;
}

/// A closed chain that one circle explains as well as its noise allows.
bool fitsWholeCircle(const Weighted& data, Carrier& circle) {
    constexpr int least = 6;
    if (data.size() < least)
        return false;
    circle = fitted(data, 0, data.size() - 1, true);
    return goesRound(circle, data) && circle.error < 1.5 * data.size() && data.keepsTo(circle);
}

ChainModel closedModel(std::span<const Sample> samples, const FitOptions& options) {
    ChainModel model;
    model.closed = true;
    const int count = static_cast<int>(samples.size());
    Carrier circle;
    const Weighted plain = weighted(samples, 0, true, options);
    if (fitsWholeCircle(plain, circle)) {
        model.carriers = {circle};
        model.isCircle = true;
        return model;
    }
    int start = strongestChange(samples, options);
    Weighted data = weighted(samples, start, true, options);
    Explanation best = explain(data, options);
    if (!best.carriers.empty()) {
        const int again = sharpestBreak(data, best.carriers);
        // Begun on a smooth place: once more from a better one.
        if (again != best.carriers.front().first) {
            const int other = (start + again) % count;
            data = weighted(samples, other, true, options);
            Explanation second = explain(data, options);
            if (second.cost < best.cost) {
                best = std::move(second);
                start = other;
            }
        }
    }
    if (goesRound(circle, plain) && plain.keepsTo(circle) &&
        circle.error + 3.0 * options.parameterCost < best.cost) {
        model.carriers = {circle};
        model.isCircle = true;
        return model;
    }
    unrotate(best.carriers, start, count);
    model.carriers = std::move(best.carriers);
    return model;
}

ChainModel modelOf(std::span<const Sample> samples, bool closed, const FitOptions& options) {
    if (closed)
        return closedModel(samples, options);
    ChainModel model;
    Weighted data = weighted(samples, 0, false, options);
    model.carriers = explain(data, options).carriers;
    return model;
}

/// The samples with what loose ones are worth where there are no others: half a pixel.
std::vector<Sample> tightened(std::span<const Sample> samples) {
    constexpr double doubtful = 0.5;
    std::vector<Sample> result(samples.begin(), samples.end());
    for (Sample& sample : result)
        if (sample.loose)
            sample = {sample.at, std::max(sample.sigma, doubtful), false};
    return result;
}

} // namespace

ChainModel segmentChain(std::span<const Sample> samples, bool closed, const FitOptions& options) {
    if (samples.size() < 2)
        return {};
    ChainModel model = modelOf(samples, closed, options);
    const bool anyLoose = std::any_of(samples.begin(), samples.end(),
                                      [](const Sample& sample) { return sample.loose; });
    return model.carriers.empty() && anyLoose ? modelOf(tightened(samples), closed, options)
                                              : model;
}

} // namespace ovtrace
