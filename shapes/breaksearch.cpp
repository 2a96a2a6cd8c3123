#include "shapes/breaksearch.h"

#include <algorithm>
#include <array>

namespace ovtrace {

namespace {

constexpr double infinite = std::numeric_limits<double>::infinity();
/// Samples that one candidate covers at most; longer shapes are put together afterwards.
constexpr int window = 400;

constexpr char noBreak = 0;
constexpr char plainBreak = 1;
constexpr char remarkableBreak = 2;

/// Where breaks may be, before each sample and after the last.
std::vector<char> breakCandidates(const Weighted& data) {
    constexpr double remarkable = 2.5;
    // Noise of half a pixel hides what is remarkable, and which sample it is at.
    const bool rounded = data.mostOff < infinite;
    const int stride = rounded ? breakStride / 2 : breakStride;
    const int edge = rounded ? 5 : 8;
    const int n = data.size();
    std::vector<char> candidates(static_cast<std::size_t>(n) + 1, noBreak);
    const bool few = n <= (rounded ? 24 : 64);
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
    int first = 0; ///< where the last shape begins
    bool isArc = false;
};

struct Skipped {
    double cost = infinite;
    int count = 0;
};

/// The dynamic programme over the breaks of an open chain.
class Search {
public:
    Search(const Weighted& data, const FitOptions& options, bool strict)
        : data_(data), candidates_(breakCandidates(data)), lineCost_(2.0 * options.parameterCost),
          arcCost_(3.0 * options.parameterCost), leastForArc_(strict ? 4 : 3) {
        if (!strict)
            doubtCost_ = options.parameterCost;
    }

    std::optional<BrokenChain> run();

private:
    [[nodiscard]] bool isCandidate(int first, int end) const;
    void extendTo(int end);
    void consider(const Moments& moments, int first, int end, Reached& best);
    void giveUp(double cost);
    void skipTo(int first);
    [[nodiscard]] BrokenChain broken() const;

    const Weighted& data_;
    std::vector<char> candidates_;
    std::vector<Reached> reached_;
    std::vector<Skipped> skipped_;
    double lineCost_;
    double arcCost_;
    double doubtCost_ = infinite;
    int leastForArc_;
    double leastError_ = 0.0;
    /// A beginning that the present end was tried with, and the least error from there.
    struct Looked {
        int first = 0;
        double error = 0.0;
    };
    std::vector<Looked> looked_;
    int oldest_ = 0; ///< the first break that may still begin a shape
    /// Of the arcs that begin at each break, to the farthest end that was looked at: more samples
    /// never fit better.
    std::vector<double> arcFloors_;
};

void Search::consider(const Moments& moments, int first, int end, Reached& best) {
    const double before = skipped_[static_cast<std::size_t>(first)].cost;
    const double lineError = LineFit::errorOf(moments);
    leastError_ = lineError;
    // Two samples are on a line whatever they are: no evidence for one.
    const double doubt = moments.count() < 3 ? doubtCost_ : 0.0;
    const double asLine = before + lineCost_ + doubt + lineError;
    if (asLine < best.cost && data_.advances(first, end - 1, 0.0)) {
        const LineFit line(moments);
        if (data_.keepsToLine(line.at, line.direction, first, end - 1))
            best = {asLine, first, false};
    }
    // An arc has to earn its third parameter.
    if (lineError <= arcCost_ - lineCost_ || moments.count() < leastForArc_)
        return;
    double& floor = arcFloors_[static_cast<std::size_t>(first)];
    leastError_ = std::min(lineError, floor);
    if (before + arcCost_ + floor >= best.cost)
        return;
    const double arcError = CircleFit::errorOf(moments);
    if (arcError < infinite)
        floor = std::max(floor, arcError);
    leastError_ = std::min(lineError, arcError);
    // Three samples are on a circle whatever they are.
    const double arcDoubt = moments.count() == 3 ? doubtCost_ : 0.0;
    const double asArc = before + arcCost_ + arcDoubt + arcError;
    if (asArc >= best.cost)
        return;
    const CircleFit circle(moments);
    if (data_.advances(first, end - 1, circle.radius) &&
        data_.keepsToCircle(circle.centre, circle.radius, first, end - 1))
        best = {asArc, first, true};
}

/// Far from the end, fewer of the breaks where nothing happens will do: the merging closes what
/// they leave.
bool Search::isCandidate(int first, int end) const {
    constexpr int near = 8 * breakStride;
    const char candidate = candidates_[static_cast<std::size_t>(first)];
    return candidate == remarkableBreak ||
           (candidate == plainBreak && (end - first <= near || first % (4 * breakStride) == 0));
}

void Search::extendTo(int end) {
    Reached best;
    Moments moments(data_.at(end - 1));
    looked_.clear();
    for (int first = end - 1; first >= std::max(oldest_, end - window); --first) {
        if (data_.weight(first) > 0.0)
            moments.add(data_.at(first), data_.weight(first));
        if (!isCandidate(first, end) || moments.count() < 2)
            continue;
        consider(moments, first, end, best);
        looked_.push_back({first, leastError_});
        // More samples never fit better: several shapes are cheaper from here on.
        if (leastError_ > 4.0 * arcCost_ + 2.0 * moments.count())
            break;
    }
    reached_[static_cast<std::size_t>(end)] = best;
    giveUp(best.cost);
}

/// A shape that already costs more than to break here, and to begin another one, will do so for all
/// that follows: its error grows by no less than the other's (R. Killick and others, "Optimal
/// detection of changepoints with a linear computational cost", J. Am. Stat. Assoc. 107 (2012)).
void Search::giveUp(double cost) {
    for (const Looked& look : looked_)
        if (skipped_[static_cast<std::size_t>(look.first)].cost + look.error >= cost + arcCost_)
            candidates_[static_cast<std::size_t>(look.first)] = noBreak;
    while (oldest_ < data_.size() && !candidates_[static_cast<std::size_t>(oldest_)])
        ++oldest_;
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

BrokenChain Search::broken() const {
    BrokenChain chain;
    chain.cost = skipped_.back().cost;
    int end = data_.size();
    while (true) {
        end -= skipped_[static_cast<std::size_t>(end)].count;
        if (end == 0)
            break;
        const Reached& reached = reached_[static_cast<std::size_t>(end)];
        chain.ranges.push_back({reached.first, end - 1, reached.isArc});
        end = reached.first;
    }
    std::reverse(chain.ranges.begin(), chain.ranges.end());
    return chain;
}

std::optional<BrokenChain> Search::run() {
    const int n = data_.size();
    const auto breaks = static_cast<std::size_t>(n) + 1;
    reached_.assign(breaks, {});
    skipped_.assign(breaks, {});
    arcFloors_.assign(breaks, 0.0);
    reached_[0].cost = 0.0;
    for (int k = 0; k <= n; ++k) {
        if (!candidates_[static_cast<std::size_t>(k)])
            continue;
        if (k > 0)
            extendTo(k);
        skipTo(k);
    }
    if (!(skipped_.back().cost < infinite))
        return std::nullopt;
    BrokenChain chain = broken();
    if (chain.ranges.empty())
        return std::nullopt;
    return chain;
}

} // namespace

std::optional<BrokenChain> searchBreaks(const Weighted& data, const FitOptions& options,
                                        bool strict) {
    return Search(data, options, strict).run();
}

} // namespace ovtrace
