#pragma once

#include "shapes/point.h"

namespace ovtrace {

/// A point measured on a curve, in the order of the curve.
struct Sample {
    Point at;
    /// Standard deviation across the curve, in pixels.
    double sigma = 0.01;
    /// Known to be no good place (beside a corner, say): takes no part in fits and only shows where
    /// the curve runs.
    bool loose = false;
};

/// Means of powers about the mean point; z stands for x*x + y*y.
struct PowerMeans {
    double xx = 0.0;
    double xy = 0.0;
    double yy = 0.0;
    double xz = 0.0;
    double yz = 0.0;
    double zz = 0.0;
};

/// Weighted sums of powers of points, as far as lines and circles need them. They are taken about
/// an origin near the points: sums of fourth powers about a far one would cancel to nothing.
class Moments {
public:
    explicit Moments(Point origin = {}) : origin_(origin) {
    }

    void add(Point point, double weight) {
        const double x = point.x - origin_.x;
        const double y = point.y - origin_.y;
        const double z = x * x + y * y;
        count_ += 1;
        w_ += weight;
        x_ += weight * x;
        y_ += weight * y;
        xx_ += weight * x * x;
        xy_ += weight * x * y;
        yy_ += weight * y * y;
        xz_ += weight * x * z;
        yz_ += weight * y * z;
        zz_ += weight * z * z;
    }

    /// Adds the sums of `other`, whatever origin they have.
    void add(const Moments& other);

    /// How many points were added.
    [[nodiscard]] int count() const {
        return count_;
    }
    [[nodiscard]] double weight() const {
        return w_;
    }
    [[nodiscard]] bool isEmpty() const {
        return !(w_ > 0.0);
    }

    /// The weighted mean of the points.
    [[nodiscard]] Point mean() const;

    /// Means about the mean point; there is weight.
    [[nodiscard]] PowerMeans aboutMean() const;

    /// The same sums about another origin.
    [[nodiscard]] Moments about(Point origin) const;

    /// The weighted sum of squared distances from the line through `at` along `direction` (length
    /// 1).
    [[nodiscard]] double lineError(Point at, Point direction) const;

    /// The weighted sum of squared distances from a circle, to first order in them.
    [[nodiscard]] double circleError(Point centre, double radius) const;

private:
    friend struct LineFit;

    Point origin_;
    int count_ = 0;
    double w_ = 0.0;
    double x_ = 0.0;
    double y_ = 0.0;
    double xx_ = 0.0;
    double xy_ = 0.0;
    double yy_ = 0.0;
    // z stands for x*x + y*y.
    double xz_ = 0.0;
    double yz_ = 0.0;
    double zz_ = 0.0;
};

/// The line of least weighted squared distance (total least squares).
struct LineFit {
    Point at;        ///< the mean of the points
    Point direction; ///< of length 1, either way; (1, 0) where the points do not say
    double error = 0.0;

    explicit LineFit(const Moments& moments);

    /// The error alone, which is what a search compares.
    static double errorOf(const Moments& moments);
};

/// The circle by Taubin's algebraic distance, nearly free of bias on short arcs (G. Taubin, IEEE
/// PAMI 13 (1991) 1115-1138; the form by moments after N. Chernov, "Circular and linear
/// regression").
struct CircleFit {
    Point centre;
    double radius = 0.0;
    /// The weighted sum of squared distances; infinite where no circle is determined.
    double error = 0.0;

    explicit CircleFit(const Moments& moments);

    [[nodiscard]] bool isValid() const {
        return radius > 0.0 && std::isfinite(radius) && isFinite(centre);
    }

    static double errorOf(const Moments& moments);
};

} // namespace ovtrace
