#include "linelabels.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace ovtrace {
namespace {

/// The share from which on a pixel belongs to the second colour, of those from `least` to
/// `most` around it. Shares within `doubt` of one of the two are no line.
double middleOf(double least, double most, double doubt) {
    if (most < doubt || least > 1.0 - doubt)
        return 0.5;
    return (least + most) / 2.0;
}

} // namespace

std::uint16_t LineLabels::labelOf(const Mix& mix) const {
    if (mix.a == mix.b || mix.b == UnknownLabel)
        return mix.a;
    const ColorAxis way(palette[mix.a], palette[mix.b], options.light);
    auto least = static_cast<double>(mix.t);
    double most = least;
    bool isBesideOthers = false;
    // Blurred edges are wider.
    const std::size_t reach = options.noise > 0 ? Around.size() : 8;
    for (std::size_t i = 0; i < reach; ++i) {
        const PixelOffset offset = Around[i];
        const int x = mix.x + offset.x;
        const int y = mix.y + offset.y;
        if (x < 0 || y < 0 || x >= image.width || y >= image.height)
            continue;
        const MixColor color = mixColor(image.at(x, y), options.light);
        if (way.residual(color) > options.tolerance) {
            isBesideOthers = true;
            continue;
        }
        const double t = std::clamp(way.rawPosition(color), 0.0, 1.0);
        least = std::min(least, t);
        most = std::max(most, t);
    }
    // What is as faint as this beside a mix of other colours may be one of these, too.
    constexpr double Faint = 3.0;
    // Noise stands for the more the less the colours differ; ringing beside edges is a part of
    // their contrast, half of what sharpening adds to it.
    constexpr double Clear = 3.0;
    const double doubt =
        std::max(std::max(Clear * options.noise * way.stepOfAll(), options.overshoot / 2.0),
                 isBesideOthers ? Faint * options.tolerance * way.step() : 0.0);
    const double above = static_cast<double>(mix.t) - middleOf(least, most, doubt);
    if (options.noise == 0) {
        // Half of each along a row or a column is the rarer one's: thin parts hold together.
        // So do those that wider ones beside them outshine.
        if (std::fabs(above) <= way.step() && equalsNeighbour(mix.x, mix.y))
            return std::max(mix.a, mix.b);
        if (isRidge(mix, way, above <= 0.0))
            return above <= 0.0 ? mix.b : mix.a;
    }
    return above > 0.0 ? mix.b : mix.a;
}

bool LineLabels::equalsNeighbour(int x, int y) const {
    const QRgb color = image.at(x, y);
    return (x > 0 && image.at(x - 1, y) == color) ||
           (x + 1 < image.width && image.at(x + 1, y) == color) ||
           (y > 0 && image.at(x, y - 1) == color) ||
           (y + 1 < image.height && image.at(x, y + 1) == color);
}

/// Whether a line of the second colour, or of the first, passes through: across it the shares
/// fall to half of what this pixel has, along it they go on both ways.
bool LineLabels::isRidge(const Mix& mix, const ColorAxis& way, bool ofSecond) const {
    constexpr double Unrelated = -1.0;
    const auto share = [&](int dx, int dy) {
        const int x = mix.x + dx;
        const int y = mix.y + dy;
        if (x < 0 || y < 0 || x >= image.width || y >= image.height)
            return Unrelated;
        const MixColor color = mixColor(image.at(x, y), options.light);
        if (way.residual(color) > options.tolerance)
            return Unrelated;
        const double t = std::clamp(way.rawPosition(color), 0.0, 1.0);
        return ofSecond ? t : 1.0 - t;
    };
    constexpr double Faint = 0.1;
    const double here = share(0, 0);
    if (here < Faint)
        return false;
    const auto falls = [&](int dx, int dy) {
        const double next = share(dx, dy);
        const double beyond = share(2 * dx, 2 * dy);
        return next >= 0.0 && next <= here &&
               (next <= here / 2.0 || (beyond >= 0.0 && beyond <= here / 2.0));
    };
    const auto nextAlong = [&](int dx, int dy) {
        const bool isDiagonal = dx != 0 && dy != 0;
        return std::max({share(dx, dy), isDiagonal ? share(dx, 0) : share(dx + dy, dy + dx),
                         isDiagonal ? share(0, dy) : share(dx - dy, dy - dx)});
    };
    // Where it is much less than on both sides, two ends are near to each other.
    constexpr double Nearly = 0.75;
    const auto isAlong = [&](double one, double other) {
        return std::min(one, other) >= Nearly * here && std::min(one, other) <= 2.0 * here;
    };
    constexpr std::array<PixelOffset, 4> across{{{1, 0}, {0, 1}, {1, 1}, {1, -1}}};
    return std::any_of(across.begin(), across.end(), [&](PixelOffset n) {
        return falls(n.x, n.y) && falls(-n.x, -n.y) &&
               isAlong(nextAlong(-n.y, n.x), nextAlong(n.y, -n.x));
    });
}

} // namespace ovtrace
