#include "profile.h"

#include "thinline.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdlib>
#include <numeric>
#include <optional>
#include <vector>

namespace ovtrace {
namespace {

/// Pixels that a blurred edge may be wide on either side.
constexpr int Widest = 8;
/// The standard deviation of a place that is known to within a pixel.
constexpr double PixelSigma = 0.29;
/// What coverage is rounded to by those who draw, as a standard deviation of a pixel's share.
constexpr double DrawnSigma = 0.005;
/// Pixels: what roundings leave is no line.
constexpr double LeastWidth = 0.05;

bool isPure(QRgb color, QRgb palette, int noise) {
    return color == palette || (noise > 0 && farthestChannel(color, palette) <= noise);
}

/// A walk from the crack to the pure colour of one side.
struct Side {
    enum class End { Pure, Line, Lost };

    End end = End::Lost;
    int last = 0; ///< the last mixed pixel plus one step: the pure one, or the first beyond
};

class EdgeFinder {
public:
    EdgeFinder(const PixelLine& line, int noise, const std::function<double()>& lean)
        : line(line), noise(noise), lean(lean), first(line.label(-1)), second(line.label(0)),
          axis(line.paletteColor(first), line.paletteColor(second), line.light()) {
    }

    EdgePlace run() const {
        if (line.isGroup(first) || line.isGroup(second)) {
            // The colours run into each other: the edge is where they are half of each.
            EdgePlace place = halfWay();
            place.loose = false;
            return place;
        }
        const Side before = walk(-1);
        const Side after = walk(1);
        if (before.end == Side::End::Pure && after.end == Side::End::Pure)
            return noise > 0 ? noisy(before.last, after.last)
                             : twoColors(before.last + 1, after.last);
        if (before.end == Side::End::Pure && after.end == Side::End::Line)
            return lineBeyond(before.last, after.last, 1);
        if (before.end == Side::End::Line && after.end == Side::End::Pure)
            return lineBeyond(after.last, before.last, -1);
        return halfWay();
    }

private:
    /// Walks away from the crack: to pixels 0, 1, ... for `way` 1, to -1, -2, ... for -1.
    Side walk(int way) const {
        const std::uint16_t label = way > 0 ? second : first;
        const QRgb color = line.paletteColor(label);
        int k = way > 0 ? 0 : -1;
        for (int i = 0; i < Widest && line.contains(k); ++i, k += way) {
            if (line.label(k) != label)
                return {Side::End::Line, k};
            if (isPure(line.color(k), color, noise))
                return {Side::End::Pure, k};
        }
        return {Side::End::Lost, k};
    }

    double position(int k) const {
        return axis.position(line.color(k));
    }
    double uncertainty(int pixels) const {
        const double rounding = std::max(axis.step() * PixelSigma, DrawnSigma);
        return std::sqrt(double(std::max(pixels, 1))) * rounding;
    }
    /// Mixed pixels from `begin` to `end`, pure ones around them.
    EdgePlace twoColors(int begin, int end) const {
        EdgePlace place;
        double covered = 0.0;
        double worst = 0.0;
        for (int k = begin; k < end; ++k) {
            const double t = position(k);
            covered += t;
            worst = std::max(worst, axis.residual(line.mix(k)) * axis.step());
        }
        place.at = end - covered;
        place.sigma = uncertainty(end - begin);
        place.sharp = begin == end;
        spoil(place, worst);
        return place;
    }
    /// The same with noise between the pixels `begin` and `end` that seem pure: these may hold a
    /// little of the other colour, and so may the ones behind them.
    EdgePlace noisy(int begin, int end) const {
        const auto reaches = [this](int k, std::uint16_t label) {
            return line.contains(k) && line.label(k) == label;
        };
        begin -= int(reaches(begin - 1, first));
        end += int(reaches(end + 1, second));
        constexpr double Overshoot = 0.25;
        EdgePlace place;
        double covered = 0.0;
        for (int k = begin; k <= end; ++k)
            covered += std::clamp(axis.rawPosition(line.mix(k)), -Overshoot, 1.0 + Overshoot);
        place.at = end + 1 - covered;
        // The noise is a bound that few pixels reach: two standard deviations.
        place.sigma =
            std::sqrt(double(end - begin + 1)) * std::max(axis.step() * noise / 2.0, DrawnSigma);
        return place;
    }
    /// A third colour in the run leaves open which of the two sides it took its share from.
    static void spoil(EdgePlace& place, double residual) {
        constexpr double Explained = 0.04;
        if (residual <= Explained)
            return;
        place.sigma += residual / 2.0;
        place.loose = true;
    }

    /// A line of the colour on one side of the crack, narrower than a pixel is sharp: `pure` is the
    /// pure pixel on the other side, `beyond` the first pixel that belongs to what lies beyond the
    /// line. `way` is that from the pure pixel to the line.
    EdgePlace lineBeyond(int pure, int beyond, int way) const {
        const std::uint16_t ground = way > 0 ? first : second;
        const std::uint16_t ridge = way > 0 ? second : first;
        const std::uint16_t other = line.label(beyond);
        const QRgb otherColor = line.paletteColor(other);
        int end = beyond;
        for (int i = 0;; ++i, end += way) {
            if (i == Widest || !line.contains(end) || line.label(end) != other)
                return halfWay();
            if (isPure(line.color(end), otherColor, noise))
                break;
        }
        return betweenPure(pure, end, way,
                           {line.paletteColor(ground), line.paletteColor(ridge), otherColor});
    }

    /// Ground, line and what lies beyond between two pure pixels: the line's area and its first
    /// moment give both of its edges.
    EdgePlace betweenPure(int pure, int end, int way, const std::array<QRgb, 3>& colors) const {
        const Light light = line.light();
        const ColorTriangle triangle(mixColor(colors[0], light), mixColor(colors[1], light),
                                     mixColor(colors[2], light), light);
        if (!triangle.isFlat())
            return byShares(pure, end, way, triangle);
        const ColorAxis toLine(colors[0], colors[1], light);
        if (colors[0] == colors[2])
            return lineOnGround(pure, end, way, toLine);
        const double beyond = toLine.rawPosition(mixColor(colors[2], light));
        const int count = std::abs(end - pure) - 1;
        double sum = 0.0;
        double moment = 0.0;
        for (int i = 0; i < count; ++i) {
            const double t = toLine.rawPosition(line.mix(pure + (i + 1) * way));
            sum += t;
            moment += t * (i + 0.5);
        }
        const auto edge = nearEdge(sum, moment, beyond, count);
        if (!edge)
            return halfWay();
        EdgePlace place;
        // From the far side of the pure pixel, along `way`.
        place.at = way > 0 ? pure + 1 + *edge : pure - *edge;
        const double contrast = std::fabs(1.0 - beyond);
        place.sigma = 1.5 * uncertainty(count) * std::max(toLine.step() / axis.step(), 1.0) /
                      std::max(contrast, 0.1);
        return place;
    }
    /// The same where the colour is that of the ground again beyond the line.
    EdgePlace lineOnGround(int pure, int end, int way, const ColorAxis& toLine) const {
        std::vector<double> shares;
        double worst = 0.0;
        for (int k = pure + way; k != end; k += way) {
            const MixColor color = line.mix(k);
            shares.push_back(toLine.rawPosition(color));
            worst = std::max(worst, toLine.residual(color) * toLine.step());
        }
        const double width = std::accumulate(shares.begin(), shares.end(), 0.0);
        if (width < LeastWidth)
            return halfWay();
        const double doubt = uncertainty(static_cast<int>(shares.size())) *
                             std::max(toLine.step() / axis.step(), 1.0);
        const ThinLine found(shares, lean(), doubt);
        const double edge = found.centre() - width / 2.0;
        EdgePlace place;
        // From the far side of the pure pixel, along `way`.
        place.at = way > 0 ? pure + 1 + edge : pure - edge;
        place.sigma = std::min(PixelSigma, found.sigma() + doubt / 2.0);
        spoil(place, worst);
        // Where the line ends, or meets another, it covers less than it is wide.
        constexpr double Odd = 0.12;
        place.loose = place.loose || found.misfit() > Odd;
        return place;
    }
    /// The same where each of the three colours has its share in every pixel. The line's own is
    /// what can be trusted: a line painted over the edge of an area lets the colours on both sides
    /// shine through, wherever that edge is. In the first pixel that it touches what is not the
    /// line lies before it, in the last one behind it; in one alone both are.
    EdgePlace byShares(int pure, int end, int way, const ColorTriangle& triangle) const {
        constexpr double Touched = 0.05; // what roundings leave is no line
        const int count = std::abs(end - pure) - 1;
        double width = 0.0;
        double worst = 0.0;
        double near = -1.0;
        double far = 0.0;
        int first = -1;
        for (int i = 0; i < count; ++i) {
            const MixColor color = line.mix(pure + (i + 1) * way);
            const auto shares = triangle.sharesOf(color);
            worst = std::max(worst, triangle.residual(color, shares) * axis.step());
            const double share = std::clamp(shares[1], 0.0, 1.0);
            width += share;
            if (share < Touched)
                continue;
            if (first < 0) {
                first = i;
                near = i + 1.0 - share;
                const double before = std::max(shares[0], 0.0);
                const double behind = std::max(shares[2], 0.0);
                far = i + 1.0 -
                      (before + behind > 0.0 ? (1.0 - share) * behind / (before + behind) : 0.0);
                continue;
            }
            far = i + share;
        }
        if (first < 0)
            return halfWay();
        const bool isInOne = far <= first + 1.0;
        const double edge = isInOne ? far - width : (near + far - width) / 2.0;
        EdgePlace place;
        place.at = way > 0 ? pure + 1 + edge : pure - edge;
        place.sigma = uncertainty(count);
        spoil(place, worst);
        return place;
    }
    /// The nearer edge e of a line from e to f in a run of `count` pixels whose values are 0 before
    /// it, 1 on it and `beyond` behind it, from the sum of the values and their first moment:
    /// f - e + beyond (count - f) = sum, (f^2 - e^2 + beyond (count^2 - f^2)) / 2 = moment.
    static std::optional<double> nearEdge(double sum, double moment, double beyond, double count) {
        const double rest = 1.0 - beyond;
        if (std::fabs(rest) < 0.05)
            return std::nullopt;
        // With s = sum - beyond count and m = 2 moment - beyond count^2: rest f - e = s and
        // rest f^2 - e^2 = m, so e = rest f - s and rest (1 - rest) f^2 + 2 rest s f - s^2 - m = 0.
        const double s = sum - beyond * count;
        const double m = 2.0 * moment - beyond * count * count;
        const double a = rest * beyond;
        const double b = rest * s;
        const double c = -(s * s) - m;
        double f = 0.0;
        if (std::fabs(a) < 1e-9) {
            if (std::fabs(b) < 1e-9)
                return std::nullopt;
            f = -c / (2.0 * b);
        } else {
            const double root = b * b - a * c;
            if (root < 0.0)
                return std::nullopt;
            // The one of both that makes a line of positive width within the run.
            const double square = std::sqrt(root);
            f = (-b + square) / a;
            const double other = (-b - square) / a;
            const auto fits = [&](double g) {
                const double e = rest * g - s;
                return g >= e && e > -0.5 && g < count + 0.5;
            };
            if (!fits(f) ||
                (fits(other) && std::fabs(other - count / 2) < std::fabs(f - count / 2)))
                f = other;
            if (!fits(f))
                return std::nullopt;
        }
        const double e = rest * f - s;
        if (!(f >= e) || e < -1.0 || f > count + 1.0)
            return std::nullopt;
        return e;
    }

    /// Where the two pixels at the crack are mixed half and half, in between: a last resort.
    EdgePlace halfWay() const {
        EdgePlace place;
        const double a = position(-1);
        const double b = position(0);
        if (b > a)
            place.at = std::clamp(0.5 - (b - 0.5) / (b - a), -0.5, 0.5);
        place.sigma = PixelSigma;
        place.loose = true;
        return place;
    }

    const PixelLine& line;
    int noise;
    const std::function<double()>& lean;
    std::uint16_t first;
    std::uint16_t second;
    ColorAxis axis;
};

} // namespace

EdgePlace findEdge(const PixelLine& line, int noise, const std::function<double()>& lean) {
    return EdgeFinder(line, noise, lean).run();
}

} // namespace ovtrace
