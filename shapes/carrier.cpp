#include "shapes/carrier.h"

#include <array>

namespace ovtrace {

namespace {

/// The sense in which the samples go round `centre`: the sign of the area that they sweep.
double turnAround(Point centre, std::span<const Sample> samples) {
    double area = 0.0;
    for (std::size_t i = 1; i < samples.size(); ++i)
        area += cross(samples[i - 1].at - centre, samples[i].at - centre);
    return area >= 0.0 ? 1.0 : -1.0;
}

double weightOf(const Sample& sample) {
    return sample.loose ? 0.0 : 1.0 / (sample.sigma * sample.sigma);
}

/// One Gauss-Newton step on the sum of squared distances from the circle; false when it leads
/// nowhere. The unknowns are the centre and the radius.
bool improve(Point& centre, double& radius, std::span<const Sample> samples) {
    // Normal equations of residual = d - r, with derivatives (-ux, -uy, -1).
    double xx = 0.0;
    double xy = 0.0;
    double yy = 0.0;
    double x = 0.0;
    double y = 0.0;
    double w = 0.0;
    double rx = 0.0;
    double ry = 0.0;
    double r = 0.0;
    for (const Sample& sample : samples) {
        const double weight = weightOf(sample);
        const Point out = sample.at - centre;
        const double size = length(out);
        if (!(size > 0.0))
            return false;
        const Point u = out / size;
        const double residual = size - radius;
        xx += weight * u.x * u.x;
        xy += weight * u.x * u.y;
        yy += weight * u.y * u.y;
        x += weight * u.x;
        y += weight * u.y;
        w += weight;
        rx += weight * u.x * residual;
        ry += weight * u.y * residual;
        r += weight * residual;
    }
    // The radius eliminated: it is the mean distance.
    const double a = xx - x * x / w;
    const double b = xy - x * y / w;
    const double c = yy - y * y / w;
    const double determinant = a * c - b * b;
    const double p = rx - x * r / w;
    const double q = ry - y * r / w;
    const Point step{(c * p - b * q) / determinant, (a * q - b * p) / determinant};
    const double wider = (r - x * step.x - y * step.y) / w;
    if (!isFinite(step) || !std::isfinite(wider) || length(step) > radius)
        return false;
    centre += step;
    radius += wider;
    return radius > 0.0;
}

double squaredError(Point centre, double radius, std::span<const Sample> samples) {
    double sum = 0.0;
    for (const Sample& sample : samples) {
        const double residual = distance(sample.at, centre) - radius;
        sum += weightOf(sample) * residual * residual;
    }
    return sum;
}

std::vector<Point> lineLine(const Carrier& a, const Carrier& b) {
    const double sine = cross(a.direction, b.direction);
    const Point place = a.at + a.direction * (cross(b.at - a.at, b.direction) / sine);
    if (sine == 0.0 || !isFinite(place))
        return {};
    return {place};
}

std::vector<Point> lineCircle(const Carrier& line, const Carrier& circle) {
    const Point foot = projected(line, circle.at);
    const double square = circle.radius * circle.radius - lengthSquared(foot - circle.at);
    if (!(square >= 0.0))
        return {};
    const Point along = line.direction * std::sqrt(square);
    return {foot - along, foot + along};
}

std::vector<Point> circleCircle(const Carrier& a, const Carrier& b) {
    const Point apart = b.at - a.at;
    const double d = length(apart);
    if (!(d > 0.0))
        return {};
    const double along = (d * d + (a.radius - b.radius) * (a.radius + b.radius)) / (2.0 * d);
    const double square = a.radius * a.radius - along * along;
    if (!(square >= 0.0))
        return {};
    const Point u = apart / d;
    const Point foot = a.at + u * along;
    const Point across = turnedQuarter(u) * std::sqrt(square);
    return {foot - across, foot + across};
}

} // namespace

Carrier lineCarrier(const Moments& support, Point from, Point to) {
    const LineFit fit(support);
    Carrier carrier;
    carrier.at = fit.at;
    carrier.direction = dot(fit.direction, to - from) < 0.0 ? -fit.direction : fit.direction;
    carrier.support = support;
    carrier.error = fit.error;
    return carrier;
}

std::optional<Carrier> circleCarrier(const Moments& support, std::span<const Sample> samples) {
    constexpr int steps = 3;
    const CircleFit fit(support);
    if (!fit.isValid())
        return std::nullopt;
    Carrier carrier;
    carrier.kind = Carrier::Kind::Circle;
    carrier.at = fit.centre;
    carrier.radius = fit.radius;
    carrier.support = support;
    carrier.error = squaredError(carrier.at, carrier.radius, samples);
    for (int k = 0; k < steps; ++k) {
        Point centre = carrier.at;
        double radius = carrier.radius;
        if (!improve(centre, radius, samples))
            break;
        const double error = squaredError(centre, radius, samples);
        if (!(error < carrier.error))
            break;
        carrier.at = centre;
        carrier.radius = radius;
        carrier.error = error;
    }
    carrier.turn = turnAround(carrier.at, samples);
    return carrier;
}

double signedDistance(const Carrier& carrier, Point point) {
    if (carrier.isLine())
        return cross(carrier.direction, point - carrier.at);
    return carrier.turn * (carrier.radius - distance(point, carrier.at));
}

Point projected(const Carrier& carrier, Point point) {
    if (carrier.isLine())
        return carrier.at + carrier.direction * dot(point - carrier.at, carrier.direction);
    const Point out = point - carrier.at;
    const double size = length(out);
    return size > 0.0 ? carrier.at + out * (carrier.radius / size)
                      : carrier.at + Point{carrier.radius, 0.0};
}

Point directionAt(const Carrier& carrier, Point point) {
    if (carrier.isLine())
        return carrier.direction;
    return unit(turnedQuarter(point - carrier.at)) * carrier.turn;
}

double endDirectionSigma(const Carrier& carrier) {
    if (carrier.support.isEmpty())
        return 0.0;
    const PowerMeans means = carrier.support.aboutMean();
    const double line = 1.0 / std::sqrt(carrier.support.weight() * (means.xx + means.yy));
    // The slope at the end of a fitted parabola varies 16 times as much as that of a line.
    return carrier.isLine() ? line : 4.0 * line;
}

std::vector<Point> meetings(const Carrier& a, const Carrier& b) {
    if (a.isLine())
        return b.isLine() ? lineLine(a, b) : lineCircle(a, b);
    return b.isLine() ? lineCircle(b, a) : circleCircle(a, b);
}

void appendPieces(const Carrier& carrier, Point from, Point to, std::vector<Piece>& pieces) {
    if (carrier.isLine()) {
        pieces.push_back(linePiece(from, to));
        return;
    }
    const double bulge = bulgeAround(from, to, carrier.at, carrier.turn);
    if (std::abs(bulge) <= 1.0) {
        pieces.push_back(arcPiece(from, to, bulge));
        return;
    }
    // The arc's middle is on the right of its chord where it turns from +x to +y.
    const Point chord = to - from;
    const Point side =
        from == to ? unit(carrier.at - from) : unit(turnedQuarter(chord)) * -carrier.turn;
    const Point half = carrier.at + side * carrier.radius;
    pieces.push_back(arcPiece(from, half, bulgeAround(from, half, carrier.at, carrier.turn)));
    pieces.push_back(arcPiece(half, to, bulgeAround(half, to, carrier.at, carrier.turn)));
}

} // namespace ovtrace
