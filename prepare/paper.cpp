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

/// How much of the light the next cell has at least, in 256ths. Lamps fall off over the image, by
/// half at most over the third part of it; the rims of solid areas at once.
int leftOfLight(int width, int height) {
    constexpr int LostOverSide = 24; // pixels of the shorter side that each cell may lose
    return 256 - std::clamp(256 * LostOverSide / std::min(width, height), 8, 32);
}

/// Rows that are converted at a time, so that no second copy of a large image is needed.
constexpr int Strip = 32;

/// The values beyond a line's end: where it falls towards the end it goes on falling.
int beyond(const std::vector<int>& line, std::size_t end, std::size_t inside) {
    return std::clamp(2 * line[end] - line[inside], 0, line[end]);
}

/// The greatest value within reach of each, then the least of those.
void closeLine(std::vector<int>& line) {
    constexpr std::size_t Around = 2 * Reach;
    const std::size_t last = line.size() - 1;
    std::vector<int> wide;
    for (std::size_t i = Around; i > 0; --i)
        wide.push_back(beyond(line, 0, std::min(i, last)));
    wide.insert(wide.end(), line.begin(), line.end());
    for (std::size_t i = 1; i <= Around; ++i)
        wide.push_back(beyond(line, last, last - std::min(i, last)));
    std::vector<int> greatest;
    for (std::size_t i = 0; i + Around < wide.size(); ++i)
        greatest.push_back(
            *std::max_element(wide.begin() + static_cast<std::ptrdiff_t>(i),
                              wide.begin() + static_cast<std::ptrdiff_t>(i) + Around + 1));
    for (std::size_t i = 0; i < line.size(); ++i)
        line[i] = *std::min_element(greatest.begin() + static_cast<std::ptrdiff_t>(i),
                                    greatest.begin() + static_cast<std::ptrdiff_t>(i) + Around + 1);
}

/// Values of cells, row by row.
struct CellGrid {
    std::vector<std::uint8_t>& cells;
    int columns;
    int rows;

    std::uint8_t& at(int cx, int cy) const {
        return cells[static_cast<std::size_t>(cy) * static_cast<std::size_t>(columns) +
                     static_cast<std::size_t>(cx)];
    }

    /// Makes dark spots lighter that are narrower than the reach along rows or along columns;
    /// slopes stay as they are.
    void close() const {
        std::vector<int> line;
        for (int cy = 0; cy < rows; ++cy) {
            line.assign(&at(0, cy), &at(0, cy) + columns);
            closeLine(line);
            for (int cx = 0; cx < columns; ++cx)
                at(cx, cy) = static_cast<std::uint8_t>(line[static_cast<std::size_t>(cx)]);
        }
        for (int cx = 0; cx < columns; ++cx) {
            line.clear();
            for (int cy = 0; cy < rows; ++cy)
                line.push_back(at(cx, cy));
            closeLine(line);
            for (int cy = 0; cy < rows; ++cy)
                at(cx, cy) = static_cast<std::uint8_t>(line[static_cast<std::size_t>(cy)]);
        }
    }

    /// Takes what is darker than light can fall off for a solid area that the paper goes on under:
    /// down and to the right, then back, each cell gets what its neighbours leave it.
    void bridge(int leftOfLight) const {
        const auto lift = [this, leftOfLight](int cx, int cy, int fromX, int fromY) {
            if (fromX < 0 || fromY < 0 || fromX >= columns || fromY >= rows)
                return;
            const int left = at(fromX, fromY) * leftOfLight / 256;
            at(cx, cy) = static_cast<std::uint8_t>(std::max<int>(at(cx, cy), left));
        };
        for (int cy = 0; cy < rows; ++cy) {
            for (int cx = 0; cx < columns; ++cx) {
                lift(cx, cy, cx - 1, cy);
                for (int dx = -1; dx <= 1; ++dx)
                    lift(cx, cy, cx + dx, cy - 1);
            }
        }
        for (int cy = rows - 1; cy >= 0; --cy) {
            for (int cx = columns - 1; cx >= 0; --cx) {
                lift(cx, cy, cx + 1, cy);
                for (int dx = -1; dx <= 1; ++dx)
                    lift(cx, cy, cx + dx, cy + 1);
            }
        }
    }
};

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

} // namespace

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

std::uint8_t levelOfRank(const std::array<std::uint32_t, 256>& histogram, std::uint32_t rank) {
    std::uint32_t seen = 0;
    for (std::size_t i = 0; i < histogram.size(); ++i) {
        seen += histogram[i];
        if (seen > rank)
            return static_cast<std::uint8_t>(i);
    }
    return 255;
}

Paper::Paper(int width, int height, std::vector<std::uint8_t> cells)
    : width(width), columns(cellsAlong(width)), rows(cellsAlong(height)), cells(std::move(cells)) {
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

std::vector<std::uint8_t> cellMedians(const InkLevels& brightness, Pace& pace) {
    const int columns = Paper::cellsAlong(brightness.width);
    const int rows = Paper::cellsAlong(brightness.height);
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
            medians[cell(cx, cy)] = levelOfRank(histogram, count / 2);
        }
        pace.step(cy, 2.0 * rows);
    }
    return medians;
}

Paper paperOf(const InkLevels& brightness, Pace& pace) {
    const std::vector<std::uint8_t> medians = cellMedians(brightness, pace);
    const int columns = Paper::cellsAlong(brightness.width);
    const int rows = Paper::cellsAlong(brightness.height);
    const auto cell = [columns](int cx, int cy) {
        return static_cast<std::size_t>(cy) * static_cast<std::size_t>(columns) +
               static_cast<std::size_t>(cx);
    };
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
            smooth[cell(cx, cy)] = levelOfRank(histogram, count * 3 / 5);
        }
        pace.step(rows + cy, 2.0 * rows);
    }
    return {brightness.width, brightness.height, std::move(smooth)};
}

Paper evenPaper(int width, int height, std::vector<std::uint8_t> medians) {
    const CellGrid grid{medians, Paper::cellsAlong(width), Paper::cellsAlong(height)};
    grid.close();
    grid.bridge(leftOfLight(width, height));
    return {width, height, std::move(medians)};
}

} // namespace ovtrace
