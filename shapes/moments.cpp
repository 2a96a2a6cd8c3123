#include "shapes/moments.h"

#include <algorithm>
#include <limits>

namespace ovtrace {

namespace {

constexpr double infinite = std::numeric_limits<double>::infinity();

/// The smallest root of Taubin's characteristic polynomial: the mean squared distance. Newton's
/// method from 0 comes up to it from below.
double taubinRoot(const PowerMeans& m) {
    constexpr int steps = 12;
    const double z = m.xx + m.yy;
    const double covariance = m.xx * m.yy - m.xy * m.xy;
    const double variance = m.zz - z * z;
    const double a3 = 4.0 * z;
    const double a2 = -3.0 * z * z - m.zz;
    const double a1 = variance * z + 4.0 * covariance * z - m.xz * m.xz - m.yz * m.yz;
    const double a0 = m.xz * (m.xz * m.yy - m.yz * m.xy) + m.yz * (m.yz * m.xx - m.xz * m.xy) -
                      variance * covariance;
    double root = 0.0;
    double value = a0;
    for (int k = 0; k < steps; ++k) {
        const double slope = a1 + root * (2.0 * a2 + 3.0 * a3 * root);
        const double next = root - value / slope;
        if (!std::isfinite(next) || next == root)
            break;
        const double nextValue = a0 + next * (a1 + next * (a2 + next * a3));
        if (std::abs(nextValue) >= std::abs(value))
            break;
        const bool settled = std::abs(next - root) <= 1e-9 * std::abs(next);
        root = next;
        value = nextValue;
        if (settled)
            break;
    }
    return std::max(root, 0.0);
}

/// Whether a fit can divide by these powers: enough points, no two directions alike.
bool determinesCircle(const PowerMeans& m) {
    return m.xx * m.yy - m.xy * m.xy > 0.0 && std::isfinite(m.zz);
}

} // namespace

void Moments::add(const Moments& other) {
    const Moments moved = other.about(origin_);
    count_ += moved.count_;
    w_ += moved.w_;
    x_ += moved.x_;
    y_ += moved.y_;
    xx_ += moved.xx_;
    xy_ += moved.xy_;
    yy_ += moved.yy_;
    xz_ += moved.xz_;
    yz_ += moved.yz_;
    zz_ += moved.zz_;
}

Point Moments::mean() const {
    return w_ > 0.0 ? origin_ + Point{x_ / w_, y_ / w_} : origin_;
}

Moments Moments::about(Point origin) const {
    const double a = origin.x - origin_.x;
    const double b = origin.y - origin_.y;
    // With x' = x - a, y' = y - b: z' = z - 2ax - 2by + c.
    const double c = a * a + b * b;
    const double z = xx_ + yy_;
    Moments moved(origin);
    moved.count_ = count_;
    moved.w_ = w_;
    moved.x_ = x_ - a * w_;
    moved.y_ = y_ - b * w_;
    moved.xx_ = xx_ - 2.0 * a * x_ + a * a * w_;
    moved.xy_ = xy_ - a * y_ - b * x_ + a * b * w_;
    moved.yy_ = yy_ - 2.0 * b * y_ + b * b * w_;
    const double movedZ = z - 2.0 * a * x_ - 2.0 * b * y_ + c * w_;
    moved.xz_ = xz_ - 2.0 * a * xx_ - 2.0 * b * xy_ + c * x_ - a * movedZ;
    moved.yz_ = yz_ - 2.0 * a * xy_ - 2.0 * b * yy_ + c * y_ - b * movedZ;
    moved.zz_ = zz_ + 4.0 * a * a * xx_ + 4.0 * b * b * yy_ + c * c * w_ + 8.0 * a * b * xy_ -
                4.0 * a * xz_ - 4.0 * b * yz_ + 2.0 * c * z - 4.0 * a * c * x_ - 4.0 * b * c * y_;
    return moved;
}

PowerMeans Moments::aboutMean() const {
    const Moments centred = about(mean());
    return {centred.xx_ / w_, centred.xy_ / w_, centred.yy_ / w_,
            centred.xz_ / w_, centred.yz_ / w_, centred.zz_ / w_};
}

double Moments::lineError(Point at, Point direction) const {
    const Point normal = turnedQuarter(direction);
    const double c = dot(at - origin_, normal);
    const double squares =
        normal.x * normal.x * xx_ + 2.0 * normal.x * normal.y * xy_ + normal.y * normal.y * yy_;
    const double sum = normal.x * x_ + normal.y * y_;
    return std::max(0.0, squares - 2.0 * c * sum + c * c * w_);
}

double Moments::circleError(Point centre, double radius) const {
    const double a = centre.x - origin_.x;
    const double b = centre.y - origin_.y;
    // (z - 2ax - 2by + k)^2 / (4 r^2), summed.
    const double k = a * a + b * b - radius * radius;
    const double sum = zz_ + 4.0 * a * a * xx_ + 4.0 * b * b * yy_ + k * k * w_ +
                       8.0 * a * b * xy_ - 4.0 * a * xz_ - 4.0 * b * yz_ + 2.0 * k * (xx_ + yy_) -
                       4.0 * a * k * x_ - 4.0 * b * k * y_;
    return std::max(0.0, sum / (4.0 * radius * radius));
}

LineFit::LineFit(const Moments& moments) : at(moments.mean()), direction{1.0, 0.0} {
    if (moments.isEmpty())
        return;
    const Moments& m = moments;
    const double xx = m.xx_ - m.x_ * m.x_ / m.w_;
    const double xy = m.xy_ - m.x_ * m.y_ / m.w_;
    const double yy = m.yy_ - m.y_ * m.y_ / m.w_;
    const double half = (xx - yy) / 2.0;
    const double root = std::sqrt(half * half + xy * xy);
    // The form of the eigenvector that does not cancel.
    const Point along = half >= 0.0 ? Point{half + root, xy} : Point{xy, root - half};
    if (lengthSquared(along) > 0.0)
        direction = unit(along);
    error = errorOf(moments);
}

double LineFit::errorOf(const Moments& m) {
    if (!(m.w_ > 0.0))
        return 0.0;
    const double xx = m.xx_ - m.x_ * m.x_ / m.w_;
    const double xy = m.xy_ - m.x_ * m.y_ / m.w_;
    const double yy = m.yy_ - m.y_ * m.y_ / m.w_;
    const double half = (xx - yy) / 2.0;
    const double greater = (xx + yy) / 2.0 + std::sqrt(half * half + xy * xy);
    // The smaller eigenvalue by the product of both.
    return greater > 0.0 ? std::max(0.0, (xx * yy - xy * xy) / greater) : 0.0;
}

CircleFit::CircleFit(const Moments& moments) : error(infinite) {
    if (moments.isEmpty() || moments.count() < 3)
        return;
    const PowerMeans centred = moments.aboutMean();
    if (!determinesCircle(centred))
        return;
    const double root = taubinRoot(centred);
    const double z = centred.xx + centred.yy;
    const double determinant =
        root * root - root * z + (centred.xx * centred.yy - centred.xy * centred.xy);
    const Point offset{(centred.xz * (centred.yy - root) - centred.yz * centred.xy) / 2.0,
                       (centred.yz * (centred.xx - root) - centred.xz * centred.xy) / 2.0};
    const Point fromMean = offset / determinant;
    centre = moments.mean() + fromMean;
    radius = std::sqrt(lengthSquared(fromMean) + z);
    error = isValid() ? root * moments.weight() : infinite;
}

double CircleFit::errorOf(const Moments& moments) {
    if (moments.isEmpty() || moments.count() < 3)
        return infinite;
    const PowerMeans centred = moments.aboutMean();
    return determinesCircle(centred) ? taubinRoot(centred) * moments.weight() : infinite;
}

} // namespace ovtrace
