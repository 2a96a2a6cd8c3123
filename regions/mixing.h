#pragma once

#include "light.h"

#include <QRgb>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdlib>

namespace ovtrace {

/// A colour as four numbers 0 to 255: the opacity, and the channels, or their light, times the
/// opacity. A pixel that two colours share has the mean of theirs in this form, transparent ones
/// included.
struct MixColor {
    std::array<double, 4> channel{};

    double operator[](std::size_t i) const {
        return channel[i];
    }
};

inline MixColor mixColor(QRgb color, Light light = Light::Stored) {
    const double alpha = qAlpha(color);
    const double share = alpha / 255.0;
    if (light == Light::Linear)
        return {{linearLevel(qRed(color)) * share, linearLevel(qGreen(color)) * share,
                 linearLevel(qBlue(color)) * share, alpha}};
    return {{qRed(color) * share, qGreen(color) * share, qBlue(color) * share, alpha}};
}

/// The difference of two colours in the channel where it is largest: 0 to 255.
inline int farthestChannel(QRgb a, QRgb b) {
    return std::max(std::max(std::abs(qRed(a) - qRed(b)), std::abs(qGreen(a) - qGreen(b))),
                    std::max(std::abs(qBlue(a) - qBlue(b)), std::abs(qAlpha(a) - qAlpha(b))));
}

/// How far channel `i` of a colour is, in steps of what is stored, from that of another one which
/// is `off` below it.
inline double storedDistance(double channel, double off, std::size_t i, Light light) {
    constexpr std::size_t Opacity = 3;
    return light == Light::Stored || i == Opacity
               ? std::fabs(off)
               : std::fabs(storedLevel(channel) - storedLevel(channel - off));
}

/// The way from one colour to another, along which pixels that the two share lie.
class ColorAxis {
public:
    ColorAxis(QRgb from, QRgb to, Light light = Light::Stored)
        : light(light), origin(mixColor(from, light)) {
        const MixColor end = mixColor(to, light);
        for (std::size_t i = 0; i < 4; ++i) {
            direction[i] = end[i] - origin[i];
            square += direction[i] * direction[i];
        }
        if (light == Light::Linear)
            oneStep = std::max({linearStep(std::max(qRed(from), qRed(to))),
                                linearStep(std::max(qGreen(from), qGreen(to))),
                                linearStep(std::max(qBlue(from), qBlue(to)))});
    }

    /// The share of the second colour in a mix of the two: 0 to 1.
    double position(QRgb color) const {
        return std::clamp(rawPosition(mixColor(color, light)), 0.0, 1.0);
    }
    /// The same, not limited: ringing leads beyond the ends. Colours are of the axis' light.
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
            worst = std::max(
                worst, storedDistance(color[i], color[i] - origin[i] - t * direction[i], i, light));
        return worst;
    }
    /// The share that one step of the stored channels stands for.
    double step() const {
        return square > 0.0 ? oneStep / std::sqrt(square) : 1.0;
    }
    /// The share that one step in each of the channels stands for, where these change together as
    /// the lightness of compressed images does.
    double stepOfAll() const {
        double sum = 0.0;
        for (const double way : direction)
            sum += std::fabs(way);
        return square > 0.0 ? oneStep * sum / square : 1.0;
    }
    double lengthSquared() const {
        return square;
    }

private:
    Light light;
    MixColor origin;
    std::array<double, 4> direction{};
    double square = 0.0;
    double oneStep = 1.0; ///< of the stored channels, where it changes most
};

/// Three colours, and the mixes that pixels which they share have.
class ColorTriangle {
public:
    ColorTriangle(const MixColor& a, const MixColor& b, const MixColor& c,
                  Light light = Light::Stored)
        : light(light), origin(a) {
        for (std::size_t i = 0; i < 4; ++i) {
            u[i] = b[i] - a[i];
            v[i] = c[i] - a[i];
            uu += u[i] * u[i];
            uv += u[i] * v[i];
            vv += v[i] * v[i];
        }
        determinant = uu * vv - uv * uv;
    }

    /// Whether the colours lie on one line, or nearly, two equal ones among them: mixes then say
    /// nothing about their shares.
    bool isFlat() const {
        return determinant <= uu * vv * 1e-3;
    }
    /// The shares of the three in the mix that is nearest to `color`; their sum is 1, and some are
    /// negative outside the triangle. The triangle must not be flat.
    std::array<double, 3> sharesOf(const MixColor& color) const {
        double uw = 0.0;
        double vw = 0.0;
        for (std::size_t i = 0; i < 4; ++i) {
            uw += u[i] * (color[i] - origin[i]);
            vw += v[i] * (color[i] - origin[i]);
        }
        const double b = (uw * vv - vw * uv) / determinant;
        const double c = (vw * uu - uw * uv) / determinant;
        return {1.0 - b - c, b, c};
    }
    /// How far `color` is, in its worst channel, from the mix of these shares.
    double residual(const MixColor& color, const std::array<double, 3>& shares) const {
        double worst = 0.0;
        for (std::size_t i = 0; i < 4; ++i)
            worst = std::max(
                worst,
                storedDistance(color[i], color[i] - origin[i] - shares[1] * u[i] - shares[2] * v[i],
                               i, light));
        return worst;
    }

private:
    Light light;
    MixColor origin;
    std::array<double, 4> u{}; ///< from the first colour to the second
    std::array<double, 4> v{}; ///< from the first colour to the third
    double uu = 0.0;
    double uv = 0.0;
    double vv = 0.0;
    double determinant = 0.0;
};

} // namespace ovtrace
