#include "ellipse.h"

#include "shapes/linearsystem.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace ovtrace {
namespace {

constexpr double Pi = 3.14159265358979323846;
constexpr std::size_t Unknowns = 5;

/// A conic whose squares sum to 1: (1+g)/2 x^2 + b xy + (1-g)/2 y^2 + d x + e y + f = 0, which
/// every ellipse can be.
struct Conic {
    double a = 0.5;
    double b = 0.0;
    double c = 0.5;
    double d = 0.0;
    double e = 0.0;
    double f = 0.0;

    double value(Point p) const {
        return (a * p.x + b * p.y + d) * p.x + (c * p.y + e) * p.y + f;
    }
    Point gradient(Point p) const {
        return {2.0 * a * p.x + b * p.y + d, b * p.x + 2.0 * c * p.y + e};
    }
};

/// The conic with the least weighted squares of its values.
std::optional<Conic> leastSquares(const std::vector<Point>& points,
                                  const std::vector<double>& weights) {
    LinearSystem<Unknowns> rows{};
    for (std::size_t n = 0; n < points.size(); ++n) {
        const Point p = points[n];
        const LinearSystem<Unknowns>::value_type row{
            (p.x * p.x - p.y * p.y) / 2.0, p.x * p.y, p.x, p.y, 1.0,
            -(p.x * p.x + p.y * p.y) / 2.0};
        for (std::size_t i = 0; i < Unknowns; ++i)
            for (std::size_t j = 0; j <= Unknowns; ++j)
                rows[i][j] += weights[n] * row[i] * row[j];
    }
    for (auto& row : rows)
        for (double& v : row)
            v /= static_cast<double>(points.size());
    constexpr double Least = 1e-12; // of places about 1 from their middle
    if (!solve<Unknowns>(rows, Least))
        return std::nullopt;
    const double g = rows[0][Unknowns];
    return Conic{(1.0 + g) / 2.0,   rows[1][Unknowns], (1.0 - g) / 2.0,
                 rows[2][Unknowns], rows[3][Unknowns], rows[4][Unknowns]};
}

std::optional<Ellipse> ellipseOf(const Conic& conic) {
    const double determinant = 4.0 * conic.a * conic.c - conic.b * conic.b;
    if (!(determinant > 1e-9))
        return std::nullopt;
    Ellipse ellipse;
    ellipse.centre = {(conic.b * conic.e - 2.0 * conic.c * conic.d) / determinant,
                      (conic.b * conic.d - 2.0 * conic.a * conic.e) / determinant};
    const double level = -conic.f - (conic.d * ellipse.centre.x + conic.e * ellipse.centre.y) / 2.0;
    const double half = (conic.a - conic.c) / 2.0;
    const double root = std::sqrt(half * half + conic.b * conic.b / 4.0);
    const double least = 0.5 - root;
    if (!(level > 0.0) || !(least > 0.0))
        return std::nullopt;
    ellipse.major = std::sqrt(level / least);
    ellipse.minor = std::sqrt(level / (0.5 + root));
    // The direction of the smaller eigenvalue, by the form that does not cancel.
    const Point axis =
        half > 0.0 ? Point{conic.b / 2.0, -half - root} : Point{half - root, conic.b / 2.0};
    ellipse.axis = lengthSquared(axis) > 0.0 ? unit(axis) : Point{1.0, 0.0};
    return ellipse;
}

/// The place as seen from the centre along the axis and across it.
Point seenFrom(const Ellipse& ellipse, Point p) {
    const Point from = p - ellipse.centre;
    return {dot(from, ellipse.axis), dot(from, turnedQuarter(ellipse.axis))};
}

} // namespace

Point Ellipse::at(int quarter, double t) const {
    const double whole = 1.0 + t * t;
    const double along = (1.0 - t * t) / whole;
    const double across = 2.0 * t / whole;
    const std::array<Point, 4> turns{
        {{along, across}, {-across, along}, {-along, -across}, {across, -along}}};
    const Point place = turns[static_cast<std::size_t>(quarter)];
    return centre + axis * (major * place.x) + turnedQuarter(axis) * (minor * place.y);
}

std::optional<Ellipse> fitEllipse(const std::vector<Sample>& samples) {
    std::vector<Point> points;
    Point middle;
    for (const Sample& sample : samples)
        if (!sample.loose) {
            points.push_back(sample.at);
            middle += sample.at;
        }
    if (points.size() <= Unknowns)
        return std::nullopt;
    middle = middle / static_cast<double>(points.size());
    double size = 0.0;
    for (Point& p : points) {
        p = p - middle;
        size += lengthSquared(p);
    }
    size = std::sqrt(size / static_cast<double>(points.size()));
    if (!(size > 0.0))
        return std::nullopt;
    for (Point& p : points)
        p = p / size;
    // Values over gradients are distances to the first order: weights from the fit before.
    std::vector<double> weights(points.size(), 1.0);
    std::optional<Conic> conic;
    for (int round = 0; round < 4; ++round) {
        conic = leastSquares(points, weights);
        if (!conic)
            return std::nullopt;
        for (std::size_t n = 0; n < points.size(); ++n)
            weights[n] = 1.0 / std::max(lengthSquared(conic->gradient(points[n])), 1e-6);
    }
    std::optional<Ellipse> ellipse = ellipseOf(*conic);
    if (ellipse) {
        ellipse->centre = ellipse->centre * size + middle;
        ellipse->major *= size;
        ellipse->minor *= size;
    }
    return ellipse;
}

double signedDistance(const Ellipse& ellipse, Point p) {
    const Point q = seenFrom(ellipse, p);
    const Point scaled{q.x / ellipse.major, q.y / ellipse.minor};
    const Point slope{scaled.x / ellipse.major, scaled.y / ellipse.minor};
    const double steepness = 2.0 * length(slope);
    return steepness > 0.0 ? (lengthSquared(scaled) - 1.0) / steepness : -ellipse.minor;
}

Point projected(const Ellipse& ellipse, Point p) {
    for (int round = 0; round < 4; ++round) {
        const Point q = seenFrom(ellipse, p);
        const Point slope{q.x / (ellipse.major * ellipse.major),
                          q.y / (ellipse.minor * ellipse.minor)};
        if (!(lengthSquared(slope) > 0.0))
            break;
        const Point out = unit(slope);
        p = p - (ellipse.axis * out.x + turnedQuarter(ellipse.axis) * out.y) *
                    signedDistance(ellipse, p);
    }
    return p;
}

Point meetingNear(const Ellipse& ellipse, Point direction, Point p) {
    const Point q = seenFrom(ellipse, p);
    const Point d{dot(direction, ellipse.axis), dot(direction, turnedQuarter(ellipse.axis))};
    const Point from{q.x / ellipse.major, q.y / ellipse.minor};
    const Point way{d.x / ellipse.major, d.y / ellipse.minor};
    const double a = lengthSquared(way);
    const double b = dot(from, way);
    const double inside = b * b - a * (lengthSquared(from) - 1.0);
    if (!(inside >= 0.0) || !(a > 0.0))
        return p;
    const double root = std::sqrt(inside);
    const double near = (-b + root) / a;
    const double far = (-b - root) / a;
    return p + direction * (std::abs(near) < std::abs(far) ? near : far);
}

double circumferenceOf(const Ellipse& ellipse) {
    // Ramanujan's first approximation.
    const double a = ellipse.major;
    const double b = ellipse.minor;
    return Pi * (3.0 * (a + b) - std::sqrt((3.0 * a + b) * (a + 3.0 * b)));
}

} // namespace ovtrace
