#include "shapes/segmentation.h"

#include "shapes/breaksearch.h"
#include "shapes/carriermerging.h"

#include <algorithm>
#include <numbers>

namespace ovtrace {

namespace {

constexpr double infinite = std::numeric_limits<double>::infinity();

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
    const std::optional<BrokenChain> chain = searchBreaks(data, options, strict);
    if (!chain)
        return result;
    result.cost = chain->cost;
    for (const ShapeRange& range : chain->ranges)
        result.carriers.push_back(fitted(data, range.first, range.last, range.isArc));
    result.carriers = merged(data, options, result.carriers);
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

/// What carriers in order cost, with the samples that they leave out from `first` to `last`.
double costOf(const Weighted& data, const FitOptions& options, std::span<const Carrier> carriers,
              int first, int last) {
    double cost = 0.0;
    int next = first;
    const auto leaveOut = [&](int end) {
        for (int k = next; k < end; ++k)
            cost += data.skipCost(k % data.size());
    };
    for (const Carrier& carrier : carriers) {
        leaveOut(carrier.first);
        next = carrier.last + 1;
        cost += carrier.error + (carrier.isLine() ? 2.0 : 3.0) * options.parameterCost;
    }
    leaveOut(last + 1);
    return cost;
}

/// The beginning of a closed chain is a break by decree: explains the stretch around it once more,
/// two carriers on either side. Indices beyond the last sample go on with the first. False where
/// there are too few carriers to tell stretch and rest apart.
bool mendBeginning(std::span<const Sample> samples, int start, const FitOptions& options,
                   const Weighted& data, std::vector<Carrier>& carriers) {
    constexpr std::size_t side = 2;
    if (carriers.size() < 2 * side + 2)
        return false;
    const int count = data.size();
    std::vector<Carrier> around(carriers.end() - side, carriers.end());
    for (std::size_t k = 0; k < side; ++k) {
        around.push_back(carriers[k]);
        around.back().first += count;
        around.back().last += count;
    }
    const int first = around.front().first;
    const int last = around.back().last;
    std::vector<Sample> stretch;
    for (int k = first; k <= last; ++k)
        stretch.push_back(samples[static_cast<std::size_t>((start + k) % count)]);
    Weighted part = weighted(stretch, 0, false, options);
    std::vector<Carrier> found = explain(part, options).carriers;
    if (found.empty() ||
        costOf(part, options, found, 0, last - first) >= costOf(data, options, around, first, last))
        return true;
    for (Carrier& carrier : found) {
        carrier.first += first;
        carrier.last += first;
    }
    carriers.erase(carriers.end() - side, carriers.end());
    carriers.erase(carriers.begin(), carriers.begin() + side);
    carriers.insert(carriers.end(), found.begin(), found.end());
    return true;
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
    if (!best.carriers.empty() && !mendBeginning(samples, start, options, data, best.carriers)) {
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
