#include "shapes/curveruns.h"

#include <algorithm>

namespace ovtrace {

/// Whether a carrier can be a part of a curve: lines whose direction is sure are lines.
bool CurveRuns::isCurved(std::size_t index) const {
    constexpr double sure = 0.02; // about a degree
    const Carrier& carrier = carriers_[index];
    return !carrier.isLine() || endDirectionSigma(carrier) > sure;
}

/// Whether two carriers that join smoothly do not quite: by more than the eye takes for smooth.
bool CurveRuns::hasKink(std::size_t joint) const {
    constexpr double visible = 0.02; // about a degree
    if (!joints_[joint].smooth)
        return false;
    const std::size_t count = carriers_.size();
    const Point at = joints_[joint].after;
    const Point before = directionAt(carriers_[(joint + count - 1) % count], at);
    const Point after = directionAt(carriers_[joint % count], at);
    return std::abs(cross(before, after)) > visible;
}

/// One past the last carrier of the smooth curve that begins with `first`.
std::size_t CurveRuns::endOf(std::size_t first) const {
    std::size_t end = first + 1;
    if (isCurved(first))
        while (end < carriers_.size() && joints_[end].smooth && isCurved(end))
            ++end;
    return end;
}

/// The place and direction where carrier `index` begins. Carriers that join smoothly agree on
/// it; a long line is right.
CurveEnd CurveRuns::beginning(std::size_t index) const {
    const std::size_t count = carriers_.size();
    const Point at = joints_[index].after;
    const Carrier& after = carriers_[index % count];
    const Point own = directionAt(after, at);
    if (!joints_[index].smooth)
        return {at, own};
    const std::size_t other = (index + count - 1) % count;
    const Point before = directionAt(carriers_[other], at);
    if (!isCurved(other))
        return {at, before};
    return {at, isCurved(index % count) ? unit(own + before) : own};
}

CurveEnd CurveRuns::ending(std::size_t index) const {
    if (joints_[index + 1].smooth)
        return beginning(index + 1);
    const Point at = joints_[index + 1].before;
    return {at, directionAt(carriers_[index], at)};
}

/// Where a curve is divided between two carriers, it goes by the samples on both sides: the
/// ends of arcs that only approach it have other directions.
CurveEnd CurveRuns::division(std::size_t index) const {
    constexpr int side = 6;
    const std::size_t count = carriers_.size();
    const Carrier& before = carriers_[(index + count - 1) % count];
    const Carrier& after = carriers_[index % count];
    const int first = std::max(before.first, before.last - side);
    const int last = std::min(after.last, after.first + side);
    const CurveEnd rough = beginning(index);
    const auto end = localEnd(chain_.between(first, last, spread_), rough.at, rough.tangent);
    // Nearly where the carriers meet, or the samples are no smooth curve.
    return end && distance(end->at, rough.at) < 1.0 && dot(end->tangent, rough.tangent) > 0.95
               ? *end
               : rough;
}

CurveEnd CurveRuns::place(std::size_t index, bool isEnd, const Run& run) const {
    if ((index > run.first && index < run.end) || run.wholeRing)
        return division(index);
    return isEnd ? ending(index - 1) : beginning(index);
}

/// One cubic over the carriers from `first` to before `end`.
std::optional<Piece> CurveRuns::curveOver(std::size_t first, std::size_t end,
                                          const Run& run) const {
    // As close as samples that were only noisy.
    constexpr double allowed = 1.5;
    return fittedCubic(place(first, false, run), place(end, true, run),
                       chain_.between(carriers_[first].first, carriers_[end - 1].last, spread_),
                       allowed);
}

/// The longest curve from `first` on: twice as many carriers until it fails, then halving.
std::pair<Piece, std::size_t> CurveRuns::longestCurve(std::size_t first, const Run& run) const {
    std::optional<Piece> best = curveOver(first, first + 1, run);
    std::size_t good = first + 1;
    std::size_t step = 1;
    while (best && good < run.end) {
        const std::size_t next = std::min(run.end, good + step);
        const auto curve = curveOver(first, next, run);
        if (!curve)
            break;
        best = curve;
        good = next;
        step *= 2;
    }
    for (; best && step > 0; step /= 2)
        if (good + step <= run.end)
            if (const auto curve = curveOver(first, good + step, run)) {
                best = curve;
                good += step;
            }
    return {best ? *best : Piece{}, best ? good : first};
}

bool CurveRuns::append(std::size_t first, std::size_t end, std::vector<Piece>& pieces) const {
    // One or two carriers that meet without a kink are simple enough.
    constexpr std::size_t simple = 2;
    const std::size_t length = end - first;
    bool kinked = false;
    for (std::size_t joint = first; joint <= end; ++joint)
        kinked = kinked || hasKink(joint);
    if (!kinked && length <= simple)
        return false;
    const Run run{first, end, closed_ && length == carriers_.size() && joints_[0].smooth};
    const std::size_t most = kinked ? length : length - 1;
    std::vector<Piece> curves;
    for (std::size_t k = first; k < end;) {
        const auto [curve, next] = longestCurve(k, run);
        if (next == k || curves.size() == most)
            return false;
        curves.push_back(curve);
        k = next;
    }
    pieces.insert(pieces.end(), curves.begin(), curves.end());
    return true;
}

} // namespace ovtrace
