#include "shapes/tangency.h"

namespace ovtrace {

namespace {

constexpr int steps = 8;

/// The signed distance of a line from the origin, along its left normal.
double offsetOf(const Carrier& line) {
    return dot(turnedQuarter(line.direction), line.at);
}

double weightOf(const Sample& sample) {
    return sample.loose ? 0.0 : 1.0 / (sample.sigma * sample.sigma);
}

/// Gauss-Newton over one unknown s: the centre moves by `slope` and the radius by `growth` for each
/// unit of s. False when it leaves the place.
bool fitAlong(Carrier& circle, Point slope, double growth, std::span<const Sample> samples) {
    for (int k = 0; k < steps; ++k) {
        double squares = 0.0;
        double sum = 0.0;
        for (const Sample& sample : samples) {
            const Point out = unit(sample.at - circle.at);
            const double derivative = dot(out, slope) + growth;
            const double residual = distance(sample.at, circle.at) - circle.radius;
            squares += weightOf(sample) * derivative * derivative;
            sum += weightOf(sample) * derivative * residual;
        }
        const double step = sum / squares;
        circle.at += slope * step;
        circle.radius += growth * step;
        if (!std::isfinite(step) || !(circle.radius > 0.0))
            return false;
    }
    return true;
}

/// Tangent to both: the centre lies on the line that keeps the same distance from each.
bool tangentToBoth(Carrier& circle, const Carrier& before, const Carrier& after,
                   std::span<const Sample> samples) {
    constexpr double parallel = 1e-9;
    const Point n = turnedQuarter(before.direction);
    const Point m = turnedQuarter(after.direction);
    const double h = offsetOf(before);
    const double k = offsetOf(after);
    const double determinant = cross(n, m);
    if (std::abs(determinant) < parallel) {
        // The end of a slot: the radius is half its width, the centre slides.
        circle.radius = -(h + k) / (2.0 * circle.turn);
        circle.at += n * (h + circle.turn * circle.radius - dot(n, circle.at));
        return circle.radius > 0.0 && dot(n, m) < 0.0 &&
               fitAlong(circle, before.direction, 0.0, samples);
    }
    const auto solved = [&](double p, double q) {
        return Point{p * m.y - q * n.y, q * n.x - p * m.x} / determinant;
    };
    const Point origin = solved(h, k);
    const Point slope = solved(circle.turn, circle.turn);
    const double radius = dot(circle.at - origin, slope) / lengthSquared(slope);
    circle.at = origin + slope * radius;
    circle.radius = radius;
    return radius > 0.0 && fitAlong(circle, slope, 1.0, samples);
}

/// Tangent to one line: the centre's place along it and the radius are free.
bool tangentToOne(Carrier& circle, const Carrier& line, std::span<const Sample> samples) {
    const Point normal = turnedQuarter(line.direction) * circle.turn;
    circle.at = projected(line, circle.at) + normal * circle.radius;
    for (int k = 0; k < steps; ++k) {
        double aa = 0.0;
        double ab = 0.0;
        double bb = 0.0;
        double ar = 0.0;
        double br = 0.0;
        for (const Sample& sample : samples) {
            const Point out = unit(sample.at - circle.at);
            const double a = dot(out, line.direction);
            const double b = dot(out, normal) + 1.0;
            const double residual = distance(sample.at, circle.at) - circle.radius;
            const double weight = weightOf(sample);
            aa += weight * a * a;
            ab += weight * a * b;
            bb += weight * b * b;
            ar += weight * a * residual;
            br += weight * b * residual;
        }
        const double determinant = aa * bb - ab * ab;
        const double along = (bb * ar - ab * br) / determinant;
        const double wider = (aa * br - ab * ar) / determinant;
        circle.at += line.direction * along + normal * wider;
        circle.radius += wider;
        if (!isFinite(circle.at) || !(circle.radius > 0.0) || !std::isfinite(circle.radius))
            return false;
    }
    return true;
}

} // namespace

double chiSquare(const Carrier& carrier, std::span<const Sample> samples) {
    double sum = 0.0;
    for (const Sample& sample : samples) {
        const double d = signedDistance(carrier, sample.at);
        sum += weightOf(sample) * d * d;
    }
    return sum;
}

std::optional<Carrier> tangentCircle(const Carrier& circle, const Carrier* before,
                                     const Carrier* after, std::span<const Sample> samples,
                                     double allowed) {
    Carrier result = circle;
    bool found = false;
    if (before && after)
        found = tangentToBoth(result, *before, *after, samples);
    else if (before || after)
        found = tangentToOne(result, before ? *before : *after, samples);
    if (!found)
        return std::nullopt;
    result.error = chiSquare(result, samples);
    if (!(result.error <= circle.error + allowed))
        return std::nullopt;
    return result;
}

} // namespace ovtrace
