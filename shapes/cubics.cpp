#include "shapes/cubics.h"

#include "shapes/linearsystem.h"

#include <algorithm>
#include <array>

namespace ovtrace {

namespace {

double weightOf(const Sample& sample) {
    return sample.loose ? 0.0 : 1.0 / (sample.sigma * sample.sigma);
}

/// Parameters from 0 to 1 by the length of the polygon through the samples.
std::vector<double> byLength(const CurveEnd& from, const CurveEnd& to,
                             std::span<const Sample> samples) {
    std::vector<double> parameters;
    parameters.reserve(samples.size());
    double sum = 0.0;
    Point before = from.at;
    for (const Sample& sample : samples) {
        sum += distance(before, sample.at);
        parameters.push_back(sum);
        before = sample.at;
    }
    const double whole = sum + distance(before, to.at);
    for (double& parameter : parameters)
        parameter = whole > 0.0 ? parameter / whole : 0.0;
    return parameters;
}

/// The lengths of the handles at both ends.
struct Handles {
    double first = 0.0;
    double second = 0.0;
};

struct HandleEquations {
    double aa = 0.0;
    double ab = 0.0;
    double bb = 0.0;
    double ar = 0.0;
    double br = 0.0;

    void add(double a, double b, double rest, double weight) {
        aa += weight * a * a;
        ab += weight * a * b;
        bb += weight * b * b;
        ar += weight * a * rest;
        br += weight * b * rest;
    }

    [[nodiscard]] Handles solution() const {
        const double determinant = aa * bb - ab * ab;
        return {(bb * ar - ab * br) / determinant, (aa * br - ab * ar) / determinant};
    }
};

Piece withHandles(const CurveEnd& from, const CurveEnd& to, Handles handles) {
    return cubicPiece(from.at, from.at + from.tangent * handles.first,
                      to.at - to.tangent * handles.second, to.at);
}

/// Handles turned back make a cusp, handles longer than the chord a loop.
Handles limited(const CurveEnd& from, const CurveEnd& to, Handles handles) {
    const double chord = distance(from.at, to.at);
    const double least = chord / 64.0;
    return {std::clamp(handles.first, least, chord), std::clamp(handles.second, least, chord)};
}

struct Derivatives {
    Point at;
    Point first;
    Point second;
};

Derivatives derivatives(const Piece& curve, double t) {
    const double s = 1.0 - t;
    const Point a = curve.control1 - curve.from;
    const Point b = curve.control2 - curve.control1;
    const Point c = curve.to - curve.control2;
    return {pointAt(curve, t), (a * (s * s) + b * (2.0 * s * t) + c * (t * t)) * 3.0,
            ((b - a) * s + (c - b) * t) * 6.0};
}

/// A Gauss-Newton step on the distances across the curve. Each parameter first goes towards the
/// foot of its sample by a Newton step.
Handles step(const CurveEnd& from, const CurveEnd& to, Handles handles,
             std::span<const Sample> samples, std::vector<double>& parameters) {
    const Piece curve = withHandles(from, to, handles);
    HandleEquations equations;
    // A shallow curve hardly tells its handles apart: each is a third of the chord, give or take a
    // quarter.
    const double chord = distance(from.at, to.at);
    const double held = 16.0 / (chord * chord);
    equations.add(1.0, 0.0, chord / 3.0 - handles.first, held);
    equations.add(0.0, 1.0, chord / 3.0 - handles.second, held);
    for (std::size_t k = 0; k < samples.size(); ++k) {
        const Derivatives before = derivatives(curve, parameters[k]);
        const Point off = before.at - samples[k].at;
        const double slope = dot(before.first, before.first) + dot(off, before.second);
        if (slope > 0.0)
            parameters[k] = std::clamp(parameters[k] - dot(off, before.first) / slope, 0.0, 1.0);
        const double t = parameters[k];
        const double s = 1.0 - t;
        const Derivatives here = derivatives(curve, t);
        const Point normal = unit(turnedQuarter(here.first));
        equations.add(3.0 * s * s * t * dot(from.tangent, normal),
                      -3.0 * s * t * t * dot(to.tangent, normal),
                      dot(samples[k].at - here.at, normal), weightOf(samples[k]));
    }
    const Handles change = equations.solution();
    return {handles.first + change.first, handles.second + change.second};
}

/// From the tangent at `t`: what a parameter is off along the curve does not matter.
double squaredDistance(const Piece& curve, double t, Point point) {
    const Derivatives here = derivatives(curve, t);
    const Point off = point - here.at;
    const double across = cross(unit(here.first), off);
    return t > 0.0 && t < 1.0 ? across * across : lengthSquared(off);
}

/// Whether the curve keeps to its samples.
bool isClose(const Piece& curve, std::span<const Sample> samples,
             const std::vector<double>& parameters, double allowed) {
    constexpr double farthest = 16.0; // four sigmas
    double sum = 0.0;
    int count = 0;
    for (std::size_t k = 0; k < samples.size(); ++k) {
        const double weight = weightOf(samples[k]);
        if (weight == 0.0)
            continue;
        const double square = weight * squaredDistance(curve, parameters[k], samples[k].at);
        if (square > farthest)
            return false;
        sum += square;
        ++count;
    }
    return sum <= allowed * count;
}

constexpr std::size_t degreeTerms = 4;

} // namespace

std::optional<CurveEnd> localEnd(std::span<const Sample> samples, Point around, Point along) {
    const Point across = turnedQuarter(along);
    LinearSystem<degreeTerms> rows{};
    std::size_t count = 0;
    for (const Sample& sample : samples) {
        const double weight = weightOf(sample);
        count += weight > 0.0 ? 1 : 0;
        const double x = dot(sample.at - around, along);
        const LinearSystem<degreeTerms>::value_type powers{1.0, x, x * x, x * x * x,
                                                           dot(sample.at - around, across)};
        for (std::size_t i = 0; i < degreeTerms; ++i)
            for (std::size_t j = 0; j <= degreeTerms; ++j)
                rows[i][j] += weight * powers[i] * powers[j];
    }
    if (count <= degreeTerms || !solve<degreeTerms>(rows))
        return std::nullopt;
    const CurveEnd end{around + across * rows[0][degreeTerms],
                       unit(along + across * rows[1][degreeTerms])};
    if (!isFinite(end.at) || !isFinite(end.tangent))
        return std::nullopt;
    return end;
}

std::optional<Piece> fittedCubic(const CurveEnd& from, const CurveEnd& to,
                                 std::span<const Sample> samples, double allowed) {
    constexpr int rounds = 8;
    std::vector<double> parameters = byLength(from, to, samples);
    const double third = distance(from.at, to.at) / 3.0;
    Handles handles{third, third};
    for (int round = 0; round < rounds; ++round) {
        const Handles next = step(from, to, handles, samples, parameters);
        if (!std::isfinite(next.first) || !std::isfinite(next.second))
            return std::nullopt;
        handles = limited(from, to, next);
    }
    const Piece curve = withHandles(from, to, handles);
    if (!isClose(curve, samples, parameters, allowed))
        return std::nullopt;
    return curve;
}

} // namespace ovtrace
