#include "shapes/weightedsamples.h"

#include <algorithm>

namespace ovtrace {

namespace {

constexpr double infinite = std::numeric_limits<double>::infinity();

Moments momentsOf(const Weighted& data, int first, int last) {
    Moments moments(data.at((first + last) / 2));
    for (int k = first; k <= last; ++k)
        if (data.weight(k) > 0.0)
            moments.add(data.at(k), data.weight(k));
    return moments;
}

std::span<const Sample> samplesOf(const Weighted& data, int first, int last) {
    return std::span(data.samples)
        .subspan(static_cast<std::size_t>(first), static_cast<std::size_t>(last - first) + 1);
}

} // namespace

bool Weighted::advances(int first, int last, double radius) const {
    constexpr double leastShare = 0.6;
    const double way =
        lengths[static_cast<std::size_t>(last)] - lengths[static_cast<std::size_t>(first)];
    return (radius > 0.0 && way > 2.0 * radius) ||
           distance(at(first), at(last)) >= leastShare * way;
}

bool Weighted::keepsToLine(Point on, Point direction, int first, int last) const {
    if (!(mostOff < infinite))
        return true;
    for (int k = first; k <= last; ++k)
        if (weight(k) > 0.0 && std::abs(cross(direction, at(k) - on)) > mostOff)
            return false;
    return true;
}

bool Weighted::keepsToCircle(Point centre, double radius, int first, int last) const {
    if (!(mostOff < infinite))
        return true;
    const double least = std::max(0.0, radius - mostOff);
    const double most = radius + mostOff;
    for (int k = first; k <= last; ++k) {
        const double square = lengthSquared(at(k) - centre);
        if (weight(k) > 0.0 && (square < least * least || square > most * most))
            return false;
        // The chain runs straight from sample to sample, not out and back.
        if (k > first && lengthSquared(middle(at(k - 1), at(k)) - centre) < least * least)
            return false;
    }
    return true;
}

bool Weighted::keepsTo(const Carrier& carrier) const {
    return carrier.isLine()
               ? keepsToLine(carrier.at, carrier.direction, carrier.first, carrier.last)
               : keepsToCircle(carrier.at, carrier.radius, carrier.first, carrier.last);
}

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

} // namespace ovtrace
