#include "paper.h"

#include "pace.h"

#include <QImage>

#include <algorithm>
#include <array>

namespace ovtrace {
namespace {

/// Cells each way whose median is the paper of the one between: 16 * 9 pixels across, wider than
/// any solid area that the paper is to be seen around.
constexpr int Reach = 4;

/// Rows that are converted at a time, so that no second copy of a large image is needed.
constexpr int Strip = 32;

struct Channels {
    int least;
    int greatest;
};

Channels channelsOf(QRgb pixel) {
    const int alpha = qAlpha(pixel);
    const auto over = [alpha](int channel) {
        return (channel * alpha + 255 * (255 - alpha) + 127) / 255;
    };
    const int r = over(qRed(pixel));
    const int g = over(qGreen(pixel));
    const int b = over(qBlue(pixel));
    return {std::min({r, g, b}), std::max({r, g, b})};
}

bool isDark(const QImage& image) {
    // Every 97th pixel tells what most of them are.
    std::uint64_t dark = 0;
    std::uint64_t all = 0;
    const std::int64_t pixels = std::int64_t(image.width()) * image.height();
    for (std::int64_t i = 0; i < pixels; i += 97) {
        const Channels c = channelsOf(
            image.pixel(static_cast<int>(i % image.width()), static_cast<int>(i / image.width())));
        dark += c.least + c.greatest < 255 ? 1 : 0;
        ++all;
    }
    return dark * 2 > all;
}

/// The value below which `part` of the counted ones lie.
std::uint8_t quantile(const std::array<std::uint32_t, 256>& histogram, std::uint32_t rank) {
    std::uint32_t seen = 0;
    for (std::size_t i = 0; i < histogram.size(); ++i) {
        seen += histogram[i];
        if (seen > rank)
            return static_cast<std::uint8_t>(i);
    }
    return 255;
}

} // namespace

Paper::Paper(int width, int height, std::vector<std::uint8_t> cells)
    : width(width), columns((width + Cell - 1) / Cell), rows((height + Cell - 1) / Cell),
      cells(std::move(cells)) {
}

void Paper::row(int y, std::vector<std::uint8_t>& out) const {
    // Positions in 32nds of a cell, from the middle of the first cell on.
    const auto place = [](int pixel, int count, int& first, int& second) {
        const int at = std::clamp(2 * pixel + 1 - Cell, 0, 2 * Cell * (count - 1));
        first = at / (2 * Cell);
        second = std::min(first + 1, count - 1);
        return at % (2 * Cell);
    };
    int top = 0;
    int bottom = 0;
    const int fy = place(y, rows, top, bottom);
    const std::uint8_t* upper = cells.data() + static_cast<std::ptrdiff_t>(top) * columns;
    const std::uint8_t* lower = cells.data() + static_cast<std::ptrdiff_t>(bottom) * columns;
    constexpr int Whole = 2 * Cell;
    for (int x = 0; x < width; ++x) {
        int left = 0;
        int right = 0;
        const int fx = place(x, columns, left, right);
        const int sum = (upper[left] * (Whole - fx) + upper[right] * fx) * (Whole - fy) +
                        (lower[left] * (Whole - fx) + lower[right] * fx) * fy;
        out[static_cast<std::size_t>(x)] =
            static_cast<std::uint8_t>((sum + Whole * Whole / 2) / (Whole * Whole));
    }
}

InkLevels brightness(const QImage& image, Pace& pace) {
    InkLevels out{image.width(), image.height(), {}};
    out.levels.resize(static_cast<std::size_t>(out.width) * static_cast<std::size_t>(out.height));
    const bool dark = isDark(image);
    for (int top = 0; top < out.height; top += Strip) {
        const int count = std::min(Strip, out.height - top);
        const QImage strip =
            image.copy(0, top, out.width, count).convertToFormat(QImage::Format_ARGB32);
        for (int y = 0; y < count; ++y) {
            const auto* pixels = reinterpret_cast<const QRgb*>(strip.constScanLine(y));
            std::uint8_t* row = out.levels.data() + out.indexOf(0, top + y);
            for (int x = 0; x < out.width; ++x) {
                const Channels c = channelsOf(pixels[x]);
                row[x] = static_cast<std::uint8_t>(dark ? 255 - c.greatest : c.least);
            }
        }
        pace.step(top, out.height);
    }
    return out;
}

Paper paperOf(const InkLevels& brightness, Pace& pace) {
    const int columns = (brightness.width + Paper::Cell - 1) / Paper::Cell;
    const int rows = (brightness.height + Paper::Cell - 1) / Paper::Cell;
    std::vector<std::uint8_t> medians(static_cast<std::size_t>(columns) *
                                      static_cast<std::size_t>(rows));
    const auto cell = [columns](int cx, int cy) {
        return static_cast<std::size_t>(cy) * static_cast<std::size_t>(columns) +
               static_cast<std::size_t>(cx);
    };
    for (int cy = 0; cy < rows; ++cy) {
        for (int cx = 0; cx < columns; ++cx) {
            std::array<std::uint32_t, 256> histogram{};
            std::uint32_t count = 0;
            for (int y = cy * Paper::Cell; y < std::min((cy + 1) * Paper::Cell, brightness.height);
                 ++y)
                for (int x = cx * Paper::Cell;
                     x < std::min((cx + 1) * Paper::Cell, brightness.width); ++x, ++count)
                    ++histogram[brightness.at(x, y)];
            medians[cell(cx, cy)] = quantile(histogram, count / 2);
        }
        pace.step(cy, 2.0 * rows);
    }
    // Cells that are mostly ink are the darker ones: the upper middle of the neighbourhood, not the
    // median, is paper wherever two fifths of it are.
    std::vector<std::uint8_t> smooth(medians.size());
    for (int cy = 0; cy < rows; ++cy) {
        for (int cx = 0; cx < columns; ++cx) {
            std::array<std::uint32_t, 256> histogram{};
            std::uint32_t count = 0;
            for (int y = std::max(0, cy - Reach); y <= std::min(rows - 1, cy + Reach); ++y)
                for (int x = std::max(0, cx - Reach); x <= std::min(columns - 1, cx + Reach);
                     ++x, ++count)
                    ++histogram[medians[cell(x, y)]];
            smooth[cell(cx, cy)] = quantile(histogram, count * 3 / 5);
        }
        pace.step(rows + cy, 2.0 * rows);
    }
    return {brightness.width, brightness.height, std::move(smooth)};
}

} // namespace ovtrace
