#include "linecolors.h"

#include <algorithm>
#include <array>
#include <numeric>

namespace ovtrace {
namespace {

/// Channels of colours of one pen differ by less than this: thin strokes mix with the paper.
constexpr int Alike = 56;

struct Pixel {
    int ink;
    QRgb color;
};

/// The mean of the inkier third of the pixels.
QRgb colorOf(std::vector<Pixel>& pixels) {
    if (pixels.empty())
        return qRgb(0, 0, 0);
    std::stable_sort(pixels.begin(), pixels.end(),
                     [](const Pixel& a, const Pixel& b) { return a.ink > b.ink; });
    const int count = static_cast<int>(pixels.size() + 2) / 3;
    std::array<int, 3> sum{};
    for (int k = 0; k < count; ++k) {
        const QRgb c = pixels[static_cast<std::size_t>(k)].color;
        sum[0] += qRed(c);
        sum[1] += qGreen(c);
        sum[2] += qBlue(c);
    }
    return qRgb(sum[0] / count, sum[1] / count, sum[2] / count);
}

/// Width in pixels below which no pixel of a stroke is without paper.
constexpr double Narrow = 2.0;

/// Whether two colours are of one pen; `mixed` where one of them may be half paper.
bool isAlike(QRgb a, QRgb b, bool mixed) {
    const std::array differences{qRed(a) - qRed(b), qGreen(a) - qGreen(b), qBlue(a) - qBlue(b)};
    const auto [least, greatest] = std::minmax_element(differences.begin(), differences.end());
    // Lighter and darker strokes of one hue are one pen: what counts is that channels differ alike.
    return *greatest - *least < Alike &&
           (mixed || (std::abs(*greatest) < 2 * Alike && std::abs(*least) < 2 * Alike));
}

Pixel pixelAt(const QImage& image, const InkLevels& ink, Point p) {
    const int x = std::clamp(static_cast<int>(p.x), 0, ink.width - 1);
    const int y = std::clamp(static_cast<int>(p.y), 0, ink.height - 1);
    return {ink.at(x, y), image.pixel(x, y)};
}

} // namespace

LineColors findColors(const QImage& image, const InkLevels& ink, const std::vector<Stroke>& strokes,
                      const std::vector<InkArea>& areas) {
    LineColors result;
    std::vector<double> used;
    const auto classOf = [&](QRgb color, double weight, bool mixed) {
        std::size_t k = 0;
        while (k < result.colors.size() && !isAlike(result.colors[k], color, mixed))
            ++k;
        if (k == result.colors.size()) {
            result.colors.push_back(color);
            used.push_back(0.0);
        }
        used[k] += weight;
        return static_cast<int>(k);
    };
    for (const Stroke& stroke : strokes) {
        std::vector<Pixel> pixels;
        if (!stroke.dropped)
            for (const Point& p : pointsAlong(stroke, 3.0))
                pixels.push_back(pixelAt(image, ink, p));
        result.ofStroke.push_back(stroke.dropped
                                      ? 0
                                      : classOf(colorOf(pixels), static_cast<double>(pixels.size()),
                                                stroke.width < Narrow));
    }
    for (const InkArea& area : areas) {
        std::vector<Pixel> pixels{pixelAt(image, ink, area.inside)};
        result.ofArea.push_back(classOf(colorOf(pixels), 1.0, area.kind == InkMask::Text));
    }
    if (result.colors.empty())
        result.colors.push_back(qRgb(0, 0, 0));
    used.resize(result.colors.size(), 0.0);
    // The most used first.
    std::vector<int> order(result.colors.size());
    std::iota(order.begin(), order.end(), 0);
    const auto at = [](auto& list, int i) -> auto& {
        return list[static_cast<std::size_t>(i)];
    };
    std::stable_sort(order.begin(), order.end(),
                     [&](int a, int b) { return at(used, a) > at(used, b); });
    std::vector<int> rank(order.size());
    std::vector<QRgb> sorted;
    for (std::size_t k = 0; k < order.size(); ++k) {
        at(rank, order[k]) = static_cast<int>(k);
        sorted.push_back(at(result.colors, order[k]));
    }
    result.colors = std::move(sorted);
    for (int& c : result.ofStroke)
        c = at(rank, c);
    for (int& c : result.ofArea)
        c = at(rank, c);
    return result;
}

} // namespace ovtrace
