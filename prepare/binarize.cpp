#include "binarize.h"

#include "inklevels.h"
#include "otsu.h"
#include "pace.h"
#include "paper.h"

#include <QImage>

#include <algorithm>
#include <array>
#include <cmath>
#include <new>

namespace ovtrace {
namespace {

// Sauvola and Pietikainen, Pattern Recognition 33 (2000): a pixel is ink up to
// mean * (1 + Weight * (deviation / FullDeviation - 1)).
constexpr double Weight = 0.2;
constexpr double FullDeviation = 128.0;

/// Brightness, with paper 255, up to which a pixel is ink whatever lies around it: within a solid
/// area there is no paper to compare with.
constexpr double SurelyInk = 102.0;

/// Pixels around one that are looked at: more than a stroke is wide, less than a page.
int localRadius(const InkLevels& brightness) {
    return std::clamp(std::min(brightness.width, brightness.height) / 32, 8, 64);
}

std::array<std::uint32_t, 256> histogramOf(const InkLevels& brightness) {
    std::array<std::uint32_t, 256> histogram{};
    for (const std::uint8_t level : brightness.levels)
        ++histogram[level];
    return histogram;
}

/// Divides by the paper around, whose brightness becomes 255.
void evenLight(InkLevels& brightness, Pace& pace) {
    const Paper paper =
        evenPaper(brightness.width, brightness.height, cellMedians(brightness, pace));
    std::vector<std::uint8_t> paperRow(static_cast<std::size_t>(brightness.width));
    for (int y = 0; y < brightness.height; ++y) {
        paper.row(y, paperRow);
        std::uint8_t* row = brightness.levels.data() + brightness.indexOf(0, y);
        for (std::size_t x = 0; x < paperRow.size(); ++x) {
            const int white = std::max<int>(paperRow[x], 1);
            row[x] = static_cast<std::uint8_t>(std::min(255, row[x] * 255 / white));
        }
        pace.step(y, brightness.height);
    }
}

/// Sums of each column over a band of rows.
struct ColumnSums {
    std::vector<std::uint32_t> values;
    std::vector<std::uint32_t> squares;

    explicit ColumnSums(int width)
        : values(static_cast<std::size_t>(width)), squares(static_cast<std::size_t>(width)) {
    }
    void add(const std::uint8_t* row) {
        for (std::size_t x = 0; x < values.size(); ++x) {
            values[x] += row[x];
            squares[x] += static_cast<std::uint32_t>(row[x]) * row[x];
        }
    }
    void remove(const std::uint8_t* row) {
        for (std::size_t x = 0; x < values.size(); ++x) {
            values[x] -= row[x];
            squares[x] -= static_cast<std::uint32_t>(row[x]) * row[x];
        }
    }
};

double localThreshold(double sum, double squares, double count) {
    const double mean = sum / count;
    const double variance = squares / count - mean * mean;
    const double deviation = variance > 0.0 ? std::sqrt(variance) : 0.0;
    return std::max(SurelyInk, mean * (1.0 + Weight * (deviation / FullDeviation - 1.0)));
}

QImage blankPage(const InkLevels& brightness) {
    QImage page(brightness.width, brightness.height, QImage::Format_Mono);
    if (page.isNull())
        throw std::bad_alloc();
    page.setColorTable({qRgb(0, 0, 0), qRgb(255, 255, 255)});
    page.fill(1);
    return page;
}

void setBlack(uchar* row, std::size_t x) {
    row[x / 8] = static_cast<uchar>(row[x / 8] & ~(0x80U >> x % 8));
}

QImage globallyBinarized(const InkLevels& brightness, int level) {
    QImage page = blankPage(brightness);
    for (int y = 0; y < brightness.height; ++y) {
        const std::uint8_t* row = brightness.levels.data() + brightness.indexOf(0, y);
        uchar* bits = page.scanLine(y);
        for (std::size_t x = 0; x < static_cast<std::size_t>(brightness.width); ++x) {
            if (row[x] <= level)
                setBlack(bits, x);
        }
    }
    return page;
}

} // namespace

QImage locallyBinarized(const InkLevels& brightness, int radius, Pace& pace) {
    QImage page = blankPage(brightness);
    const auto rowAt = [&brightness](int y) {
        return brightness.levels.data() + brightness.indexOf(0, y);
    };
    const auto width = static_cast<std::size_t>(brightness.width);
    const auto reach = static_cast<std::size_t>(radius);
    ColumnSums columns(brightness.width);
    for (int y = 0; y < std::min(radius, brightness.height); ++y)
        columns.add(rowAt(y));
    for (int y = 0; y < brightness.height; ++y) {
        if (y + radius < brightness.height)
            columns.add(rowAt(y + radius));
        if (y - radius > 0)
            columns.remove(rowAt(y - radius - 1));
        const int rows = std::min(y + radius, brightness.height - 1) - std::max(y - radius, 0) + 1;
        const std::uint8_t* row = rowAt(y);
        uchar* bits = page.scanLine(y);
        std::uint64_t sum = 0;
        std::uint64_t squares = 0;
        std::size_t left = 0;
        std::size_t right = 0; // the columns from left to before right are in the sums
        for (std::size_t x = 0; x < width; ++x) {
            for (; right < std::min(x + reach + 1, width); ++right) {
                sum += columns.values[right];
                squares += columns.squares[right];
            }
            for (; left + reach < x; ++left) {
                sum -= columns.values[left];
                squares -= columns.squares[left];
            }
            const double count = static_cast<double>(rows) * static_cast<double>(right - left);
            if (row[x] <=
                localThreshold(static_cast<double>(sum), static_cast<double>(squares), count))
                setBlack(bits, x);
        }
        pace.step(y, brightness.height);
    }
    return page;
}

QImage binarized(const QImage& image, ThresholdKind kind, int level, Pace& pace) {
    if (image.isNull())
        return {};
    const bool dark = isDark(image);
    InkLevels levels = brightness(image, pace);
    QImage page;
    if (kind == ThresholdKind::Local) {
        evenLight(levels, pace);
        page = locallyBinarized(levels, localRadius(levels), pace);
    } else if (kind == ThresholdKind::Auto) {
        page = globallyBinarized(levels, otsuSplit(histogramOf(levels)));
    } else {
        // Of a dark image brightness is upside down: light from 255 - level on is the ink.
        page = globallyBinarized(levels, dark ? 254 - level : level);
    }
    if (dark)
        page.invertPixels();
    return page;
}

} // namespace ovtrace
