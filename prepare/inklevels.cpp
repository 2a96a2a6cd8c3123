#include "inklevels.h"

#include "otsu.h"
#include "pace.h"
#include "paper.h"

#include <QImage>

#include <algorithm>
#include <array>

namespace ovtrace {
namespace {

/// Pixels are compared with the paper in whole 1/512ths of it.
constexpr int RatioSteps = 512;

/// Brightness as a fraction of the paper's at which ink is full: what the darker part of the dark
/// pixels reaches. Thin strokes never do, so a low quantile and not a mean.
int fullInkRatio(const std::array<std::uint32_t, RatioSteps + 1>& histogram) {
    const int split = otsuSplit(histogram);
    double darkCount = 0.0;
    for (int i = 0; i <= split; ++i)
        darkCount += histogram[static_cast<std::size_t>(i)];
    double seen = 0.0;
    for (int i = 0; i <= RatioSteps; ++i) {
        seen += histogram[static_cast<std::size_t>(i)];
        if (seen > 0.0 && seen >= 0.15 * darkCount)
            return std::min(i, RatioSteps * 3 / 4);
    }
    return 0;
}

int ratioOf(int value, int paper) {
    return std::min(RatioSteps, value * RatioSteps / std::max(paper, 1));
}

} // namespace

double InkLevels::sample(double x, double y) const {
    const double u = x - 0.5;
    const double v = y - 0.5;
    if (!(u > -1.0 && v > -1.0 && u < width && v < height))
        return 0.0;
    const int left = static_cast<int>(u + 1.0) - 1;
    const int top = static_cast<int>(v + 1.0) - 1;
    const double fx = u - left;
    const double fy = v - top;
    const auto level = [this](int px, int py) {
        return px < 0 || py < 0 || px >= width || py >= height ? 0.0
                                                               : static_cast<double>(at(px, py));
    };
    const double upper = level(left, top) * (1.0 - fx) + level(left + 1, top) * fx;
    const double lower = level(left, top + 1) * (1.0 - fx) + level(left + 1, top + 1) * fx;
    return (upper * (1.0 - fy) + lower * fy) / 255.0;
}

InkLevels inkLevels(const QImage& image, Pace& pace) {
    InkLevels ink = brightness(image, pace);
    const Paper paper = paperOf(ink, pace);
    std::vector<std::uint8_t> paperRow(static_cast<std::size_t>(ink.width));
    std::array<std::uint32_t, RatioSteps + 1> histogram{};
    for (int y = 0; y < ink.height; ++y) {
        paper.row(y, paperRow);
        const std::uint8_t* row = ink.levels.data() + ink.indexOf(0, y);
        for (std::size_t x = 0; x < paperRow.size(); ++x)
            ++histogram[static_cast<std::size_t>(ratioOf(row[x], paperRow[x]))];
        pace.step(y, 2.0 * ink.height);
    }
    const int full = fullInkRatio(histogram);
    std::array<std::uint8_t, RatioSteps + 1> levelOf{};
    for (int i = 0; i <= RatioSteps; ++i) {
        const int level = (RatioSteps - i) * 255 / (RatioSteps - full);
        levelOf[static_cast<std::size_t>(i)] = static_cast<std::uint8_t>(std::min(level, 255));
    }
    for (int y = 0; y < ink.height; ++y) {
        paper.row(y, paperRow);
        std::uint8_t* row = ink.levels.data() + ink.indexOf(0, y);
        for (std::size_t x = 0; x < paperRow.size(); ++x)
            row[x] = levelOf[static_cast<std::size_t>(ratioOf(row[x], paperRow[x]))];
        pace.step(ink.height + y, 2.0 * ink.height);
    }
    return ink;
}

} // namespace ovtrace
