#pragma once

#include <QRgb>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdlib>

namespace ovtrace {

/// A colour as four numbers 0 to 255: the opacity, and the channels times the opacity. A pixel that
/// two colours share has the mean of theirs in this form, transparent ones included.
struct MixColor {
    std::array<double, 4> channel{};

    double operator[](std::size_t i) const {
        return channel[i];
    }
};

inline MixColor mixColor(QRgb color) {
    const double alpha = qAlpha(color);
    const double share = alpha / 255.0;
    return {{qRed(color) * share, qGreen(color) * share, qBlue(color) * share, alpha}};
}

/// The difference of two colours in the channel where it is largest: 0 to 255.
inline int farthestChannel(QRgb a, QRgb b) {
    return std::max(std::max(std::abs(qRed(a) - qRed(b)), std::abs(qGreen(a) - qGreen(b))),
                    std::max(std::abs(qBlue(a) - qBlue(b)), std::abs(qAlpha(a) - qAlpha(b))));
}

/// The way from one colour to another, along which pixels that the two share lie.
class ColorAxis {
public:
    ColorAxis(QRgb from, QRgb to) : origin(mixColor(from)) {
        const MixColor end = mixColor(to);
        for (std::size_t i = 0; i < 4; ++i) {
            direction[i] = end[i] - origin[i];
            square += direction[i] * direction[i];
        }
    }

    /// The share of the second colour in a mix of the two: 0 to 1.
    double position(QRgb color) const {
        return std::clamp(rawPosition(mixColor(color)), 0.0, 1.0);
    }
    /// The same, not limited: ringing leads beyond the ends.
    double rawPosition(const MixColor& color) const {
        if (square == 0.0)
            return 0.0;
        double sum = 0.0;
        for (std::size_t i = 0; i < 4; ++i)
            sum += (color[i] - origin[i]) * direction[i];
        return sum / square;
    }
    /// How far `color` is, in its worst channel, from the mix of the two that is nearest to it;
    /// `overshoot` is how far beyond the two colours a mix may lie, as a share: sharpened edges do.
    double residual(const MixColor& color, double overshoot = 0.0) const {
        const double t = std::clamp(rawPosition(color), -overshoot, 1.0 + overshoot);
        double worst = 0.0;
        for (std::size_t i = 0; i < 4; ++i)
            worst = std::max(worst, std::fabs(color[i] - origin[i] - t * direction[i]));
        return worst;
    }
    /// The share that one step of the stored channels stands for.
    double step() const {
        return square > 0.0 ? 1.0 / std::sqrt(square) : 1.0;
    }
    double lengthSquared() const {
        return square;
    }

private:
    MixColor origin;
    std::array<double, 4> direction{};
    double square = 0.0;
};

} // namespace ovtrace
