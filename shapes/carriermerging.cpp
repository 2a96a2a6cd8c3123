#include "shapes/carriermerging.h"

#include "shapes/breaksearch.h"

#include <algorithm>

namespace ovtrace {

namespace {

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
        const int least =
            std::max(before_.first + minimum(before_) - 1, before_.last - breakStride);
        const int greatest =
            std::min(after_.last - minimum(after_) + 1, after_.first + breakStride);
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

} // namespace

std::vector<Carrier> merged(const Weighted& data, const FitOptions& options,
                            const std::vector<Carrier>& carriers) {
    return Merging(data, options).merged(carriers);
}

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

} // namespace ovtrace
