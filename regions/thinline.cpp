#include "thinline.h"

#include <algorithm>
#include <cmath>

namespace ovtrace {
namespace {

/// By how much the first moment of the part of a pixel beyond an edge is off when that part is
/// taken to be in the pixel's middle, summed over places from 0 to `place`: the edge at r within a
/// pixel leaves 1 - r of it, whose middle is r / 2 farther.
double summedShift(double place) {
    const double whole = std::floor(place);
    const double r = place - whole;
    return whole / 12.0 + r * r * (0.25 - r / 6.0);
}

/// What lies before a place of the pixel from 0 to 1, summed over places.
double summedShare(double place) {
    const double within = std::clamp(place, 0.0, 1.0);
    return within * within / 2.0 + std::max(0.0, place - 1.0);
}

/// The mean over the places from `lean` / 2 before a place to as much behind, from sums over
/// places.
double meanAround(double place, double lean, double (*sum)(double)) {
    constexpr double Least = 1e-3;
    const double range = std::max(lean, Least);
    return (sum(place + range / 2.0) - sum(place - range / 2.0)) / range;
}

} // namespace

ThinLine::ThinLine(std::span<const double> shares, double lean, double doubt)
    : shares(shares), lean(lean) {
    double moment = 0.0;
    for (std::size_t i = 0; i < shares.size(); ++i) {
        width += shares[i];
        moment += shares[i] * (double(i) + 0.5);
    }
    // No shift is more than an eighth of a pixel.
    const double middle = moment / width;
    const double most = (0.125 + doubt) / width;
    const auto firstWith = [&](double wanted) {
        constexpr int Halvings = 16;
        double before = middle - most;
        double behind = middle + most;
        for (int i = 0; i < Halvings; ++i) {
            const double half = (before + behind) / 2.0;
            (momentAt(half) < wanted ? before : behind) = half;
        }
        return (before + behind) / 2.0;
    };
    const double first = firstWith(moment - doubt);
    const double last = firstWith(moment + doubt);
    at = (first + last) / 2.0;
    uncertainty = (last - first) / 2.0;
}

/// The moment that the line has with another centre; it never falls as the centre moves on.
double ThinLine::momentAt(double centre) const {
    return width * centre - meanAround(centre - width / 2.0, lean, summedShift) +
           meanAround(centre + width / 2.0, lean, summedShift);
}

double ThinLine::shareOf(std::size_t pixel) const {
    const double from = at - width / 2.0 - double(pixel);
    return meanAround(from + width, lean, summedShare) - meanAround(from, lean, summedShare);
}

double ThinLine::misfit() const {
    double worst = 0.0;
    for (std::size_t i = 0; i < shares.size(); ++i)
        worst = std::max(worst, std::abs(shares[i] - shareOf(i)));
    return worst;
}

} // namespace ovtrace
