#include "straighten.h"

#include "pace.h"
#include "paper.h"

#include <QImage>

#include <algorithm>
#include <array>
#include <cmath>
#include <new>

namespace ovtrace {
namespace {

constexpr int Taps = 4;
constexpr int Phases = 256;      ///< places between two pixels
constexpr int WholeWeight = 256; ///< the sum of the weights of a place, each way

/// Keys, IEEE Transactions on Acoustics, Speech and Signal Processing 29 (1981), a = -1/2: exact
/// for parabolas.
std::array<std::array<int, Taps>, Phases> cubicWeights() {
    std::array<std::array<int, Taps>, Phases> table{};
    for (int phase = 0; phase < Phases; ++phase) {
        const double t = static_cast<double>(phase) / Phases;
        const double before = ((-0.5 * t + 1.0) * t - 0.5) * t;
        const double first = (1.5 * t - 2.5) * t * t + 1.0;
        const double after = (0.5 * t - 0.5) * t * t;
        auto& weights = table[static_cast<std::size_t>(phase)];
        const auto whole = [](double weight) {
            return static_cast<int>(weight * WholeWeight + 1.5 * WholeWeight + 0.5) -
                   3 * WholeWeight / 2;
        };
        weights[0] = whole(before);
        weights[1] = whole(first);
        weights[3] = whole(after);
        weights[2] = WholeWeight - weights[0] - weights[1] - weights[3];
    }
    return table;
}

/// The middle of the rim's values in each channel, opacity among them.
QRgb rimColor(const QImage& image) {
    std::array<std::array<std::uint32_t, 256>, 4> histograms{};
    std::uint32_t count = 0;
    const auto add = [&](int x, int y) {
        const QRgb pixel = reinterpret_cast<const QRgb*>(image.constScanLine(y))[x];
        for (std::size_t i = 0; i < histograms.size(); ++i)
            ++histograms[i][pixel >> 8 * i & 255U];
        ++count;
    };
    for (int x = 0; x < image.width(); ++x) {
        add(x, 0);
        add(x, image.height() - 1);
    }
    for (int y = 0; y < image.height(); ++y) {
        add(0, y);
        add(image.width() - 1, y);
    }
    QRgb color = 0;
    for (std::size_t i = 0; i < histograms.size(); ++i)
        color |= static_cast<QRgb>(levelOfRank(histograms[i], count / 2)) << 8 * i;
    return color;
}

using Weights = std::array<int, Taps>;

/// Pixels of the image, the rim's colour around it.
struct Source {
    const QRgb* pixels;
    std::ptrdiff_t stride; ///< pixels
    int width;
    int height;
    QRgb around;

    QRgb at(int x, int y) const {
        return x < 0 || y < 0 || x >= width || y >= height ? around : pixels[y * stride + x];
    }
    /// The square of pixels of which this is the first, row by row.
    std::array<QRgb, Taps * Taps> square(int left, int top) const {
        std::array<QRgb, Taps * Taps> result{};
        const bool isInside = left >= 0 && top >= 0 && left + Taps <= width && top + Taps <= height;
        for (int j = 0; j < Taps; ++j) {
            for (int i = 0; i < Taps; ++i)
                result[static_cast<std::size_t>(j * Taps + i)] =
                    isInside ? pixels[(top + j) * stride + left + i] : at(left + i, top + j);
        }
        return result;
    }
};

/// The colour at a place in pixels, (0, 0) the middle of the first one. Premultiplied channels.
QRgb colorAt(const Source& source, double x, double y, const std::array<Weights, Phases>& weights) {
    const double left = std::floor(x);
    const double top = std::floor(y);
    const auto square = source.square(static_cast<int>(left) - 1, static_cast<int>(top) - 1);
    if (std::all_of(square.begin(), square.end(), [&](QRgb pixel) { return pixel == square[0]; }))
        return square[0]; // most of a page
    const Weights& across = weights[static_cast<std::size_t>((x - left) * Phases)];
    const Weights& down = weights[static_cast<std::size_t>((y - top) * Phases)];
    std::array<int, 4> sums{};
    for (std::size_t j = 0; j < Taps; ++j) {
        for (std::size_t i = 0; i < Taps; ++i) {
            const QRgb pixel = square[j * Taps + i];
            const int weight = across[i] * down[j];
            for (std::size_t c = 0; c < sums.size(); ++c)
                sums[c] += weight * static_cast<int>(pixel >> 8 * c & 255U);
        }
    }
    constexpr int Whole = WholeWeight * WholeWeight;
    const int opacity = std::clamp((sums[3] + Whole / 2) / Whole, 0, 255);
    QRgb color = static_cast<QRgb>(opacity) << 24;
    for (std::size_t c = 0; c < 3; ++c) // no channel is above what opacity allows
        color |= static_cast<QRgb>(std::clamp((sums[c] + Whole / 2) / Whole, 0, opacity)) << 8 * c;
    return color;
}

} // namespace

QImage straightened(const QImage& image, double slope, Pace& pace) {
    const bool hasAlpha = image.hasAlphaChannel();
    const QImage from = image.convertToFormat(hasAlpha ? QImage::Format_ARGB32_Premultiplied
                                                       : QImage::Format_RGB32);
    const double cosine = 1.0 / std::sqrt(1.0 + slope * slope);
    const double sine = slope * cosine;
    const auto grown = [&](int along, int across) {
        const double size = along * cosine + across * std::max(sine, -sine);
        return along + 2 * std::max(0, static_cast<int>(std::ceil((size - along) / 2.0)));
    };
    QImage turned(grown(from.width(), from.height()), grown(from.height(), from.width()),
                  from.format());
    if (turned.isNull())
        throw std::bad_alloc();
    const Source source{reinterpret_cast<const QRgb*>(from.constBits()),
                        from.bytesPerLine() / static_cast<qsizetype>(sizeof(QRgb)), from.width(),
                        from.height(), rimColor(from)};
    const auto weights = cubicWeights();
    for (int y = 0; y < turned.height(); ++y) {
        auto* row = reinterpret_cast<QRgb*>(turned.scanLine(y));
        const double down = y - (turned.height() - 1) / 2.0;
        for (int x = 0; x < turned.width(); ++x) {
            const double right = x - (turned.width() - 1) / 2.0;
            row[x] = colorAt(source, cosine * right - sine * down + (from.width() - 1) / 2.0,
                             sine * right + cosine * down + (from.height() - 1) / 2.0, weights);
        }
        pace.step(y, turned.height());
    }
    return hasAlpha ? turned.convertToFormat(QImage::Format_ARGB32) : turned;
}

} // namespace ovtrace
