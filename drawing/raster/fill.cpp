#include "fill.h"

#include "channels.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <utility>

namespace {

constexpr int WordBits = 64;

/// Coordinates beyond that are taken for that, in pixels: no picture is so large.
constexpr double Farthest = 1e9;

/// An edge that is less high adds less than a coverage step can show, in pixels.
constexpr double LeastHeight = 1e-9;

/// 0..255 of what the signed areas add up to.
std::uint32_t alphaOf(double coverage, FillRule rule) {
    double share = std::abs(coverage);
    if (rule == FillRule::EvenOdd) {
        share -= 2.0 * std::floor(share / 2.0);
        share = share > 1.0 ? 2.0 - share : share;
    }
    return static_cast<std::uint32_t>(std::min(share, 1.0) * 255.0 + 0.5);
}

/// The bits from..to - 1 of a word.
std::uint64_t bitsBetween(int from, int to) {
    return (~std::uint64_t(0) << from) & (~std::uint64_t(0) >> (WordBits - to));
}

QPointF within(QPointF point) {
    return {std::clamp(point.x(), -Farthest, Farthest), std::clamp(point.y(), -Farthest, Farthest)};
}

} // namespace

RasterFill::RasterFill(QImage& picture)
    : picture(picture), width(picture.width()), height(picture.height()),
      words(static_cast<std::size_t>(width) / WordBits + 1),
      opaque(words * static_cast<std::size_t>(height)), cells(static_cast<std::size_t>(width) + 1),
      touched(words) {
}

void RasterFill::fill(const RasterPath& path, FillRule rule, const QColor& color) {
    source = premultiplied(color.rgba());
    collectEdges(path);
    if (edges.empty() || source == 0)
        return;
    sortEdges();
    active.clear();
    double firstBottom = height; // of the active edges
    std::size_t next = 0;
    for (int row = firstRow; row < endRow; ++row) {
        if (firstBottom <= row)
            firstBottom = dropEdgesAbove(row);
        const std::size_t end = rowEnds[static_cast<std::size_t>(row - firstRow)];
        for (; next < end; ++next) {
            active.push_back(sorted[next]);
            firstBottom = std::min(firstBottom, sorted[next].bottom);
        }
        firstWord = static_cast<int>(words);
        endWord = 0;
        for (const Edge& edge : active)
            accumulate(edge, row);
        enterRow(row);
        paintRow(rule);
    }
}

void RasterFill::fillRow(int row, const QRgb* colors) {
    enterRow(row);
    paintOpen(0, width, [colors](int column) { return colors[column]; });
}

void RasterFill::enterRow(int row) {
    pixels = reinterpret_cast<QRgb*>(picture.scanLine(row));
    opaqueWords = opaque.data() + words * static_cast<std::size_t>(row);
}

void RasterFill::collectEdges(const RasterPath& path) {
    edges.clear();
    for (std::size_t c = 0; c < path.countContours(); ++c) {
        const std::span<const QPointF> corners = path.contour(c);
        for (std::size_t i = 0; i + 1 < corners.size(); ++i)
            addEdge(corners[i], corners[i + 1]);
        addEdge(corners.back(), corners.front());
    }
}

void RasterFill::addEdge(QPointF from, QPointF to) {
    if (!std::isfinite(from.x() + from.y()) || !std::isfinite(to.x() + to.y()))
        return;
    const double sign = from.y() < to.y() ? 1.0 : -1.0;
    if (from.y() > to.y())
        std::swap(from, to);
    from = within(from);
    to = within(to);
    if (to.y() - from.y() < LeastHeight || to.y() <= 0.0 || from.y() >= height)
        return;
    const double slope = (to.x() - from.x()) / (to.y() - from.y());
    const double top = std::max(from.y(), 0.0);
    edges.push_back({top, std::min(to.y(), static_cast<double>(height)),
                     from.x() + (top - from.y()) * slope, slope, sign});
}

/// By rows, each in the order in which they come: sums do not depend on the library's sort.
void RasterFill::sortEdges() {
    firstRow = height;
    endRow = 0;
    for (const Edge& edge : edges) {
        firstRow = std::min(firstRow, static_cast<int>(edge.top));
        endRow = std::max(endRow, static_cast<int>(std::ceil(edge.bottom)));
    }
    const auto place = [this](const Edge& edge) {
        return static_cast<std::size_t>(static_cast<int>(edge.top) - firstRow);
    };
    rowEnds.assign(static_cast<std::size_t>(endRow - firstRow) + 1, 0);
    for (const Edge& edge : edges)
        ++rowEnds[place(edge) + 1];
    for (std::size_t row = 1; row < rowEnds.size(); ++row)
        rowEnds[row] += rowEnds[row - 1];
    // What are starts here have become ends when the rows are full.
    sorted.resize(edges.size());
    for (const Edge& edge : edges)
        sorted[rowEnds[place(edge)]++] = edge;
}

/// Forgets active edges that end above the row; the end of the first of those that stay.
double RasterFill::dropEdgesAbove(int row) {
    std::erase_if(active, [row](const Edge& edge) { return edge.bottom <= row; });
    double first = height;
    for (const Edge& edge : active)
        first = std::min(first, edge.bottom);
    return first;
}

void RasterFill::accumulate(const Edge& edge, int row) {
    const double top = std::max(edge.top, static_cast<double>(row));
    const double bottom = std::min(edge.bottom, row + 1.0);
    const double x0 = edge.x + (top - edge.top) * edge.slope;
    const double x1 = edge.x + (bottom - edge.top) * edge.slope;
    const double rise = (bottom - top) * edge.sign;
    const double low = std::min(x0, x1);
    const double high = std::max(x0, x1);
    if (low >= width)
        return;
    if (high <= 0.0) {
        touch(0, rise, rise); // everything in the picture is to the right of it
        return;
    }
    if (low >= 0.0 && high < width) {
        accumulateSpan(low, high, rise);
        return;
    }
    // The part left of the picture counts as one along its border.
    const double perPixel = rise / (high - low);
    if (low < 0.0)
        touch(0, -low * perPixel, -low * perPixel);
    const double from = std::max(low, 0.0);
    const double to = std::min(high, static_cast<double>(width));
    accumulateSpan(from, to, (to - from) * perPixel);
}

/// A piece of an edge within a row, from x0 <= x1 on, which goes down by `rise` in all; which
/// way it leans does not matter.
void RasterFill::accumulateSpan(double x0, double x1, double rise) {
    const int first = static_cast<int>(x0);
    const int last = static_cast<int>(x1);
    if (first == last) {
        touch(first, rise * (1.0 - ((x0 + x1) / 2.0 - first)), rise);
        return;
    }
    const double perPixel = rise / (x1 - x0);
    const double inFirst = (first + 1.0 - x0) * perPixel;
    touch(first, inFirst * (first + 1.0 - x0) / 2.0, inFirst);
    for (int column = first + 1; column < last; ++column)
        touch(column, perPixel / 2.0, perPixel);
    const double inLast = (x1 - last) * perPixel;
    touch(last, inLast * (1.0 - (x1 - last) / 2.0), inLast);
}

void RasterFill::touch(int column, double area, double cover) {
    Cell& cell = cells[static_cast<std::size_t>(column)];
    cell.area += area;
    cell.cover += cover;
    const int word = column / WordBits;
    touched[static_cast<std::size_t>(word)] |= std::uint64_t(1) << (column % WordBits);
    firstWord = std::min(firstWord, word);
    endWord = std::max(endWord, word + 1);
}

void RasterFill::paintRow(FillRule rule) {
    double covered = 0.0;
    int next = 0; // the first pixel that has not been painted
    for (int word = firstWord; word < endWord; ++word) {
        std::uint64_t bits = std::exchange(touched[static_cast<std::size_t>(word)], 0);
        for (; bits != 0; bits &= bits - 1U) {
            const int column = word * WordBits + std::countr_zero(bits);
            const Cell cell = std::exchange(cells[static_cast<std::size_t>(column)], {});
            paintSpan(next, std::min(column, width), covered, rule);
            if (column < width)
                paintSpan(column, column + 1, covered + cell.area, rule);
            covered += cell.cover;
            next = column + 1;
        }
    }
    paintSpan(next, width, covered, rule);
}

void RasterFill::paintSpan(int from, int to, double coverage, FillRule rule) {
    if (from >= to)
        return;
    const std::uint32_t share = alphaOf(coverage, rule);
    if (share == 0)
        return;
    const QRgb color = scaled(source, share);
    paintOpen(from, to, [color](int) { return color; });
}

/// Paints those pixels of the scan line that are not opaque yet.
template <typename ColorAt> void RasterFill::paintOpen(int from, int to, ColorAt colorAt) {
    for (int word = from / WordBits; word * WordBits < to; ++word) {
        const int start = word * WordBits;
        std::uint64_t open = ~opaqueWords[word] &
                             bitsBetween(std::max(from - start, 0), std::min(to - start, WordBits));
        if (open == 0)
            continue;
        std::uint64_t filled = 0;
        for (; open != 0; open &= open - 1U) {
            const int bit = std::countr_zero(open);
            QRgb& pixel = pixels[start + bit];
            pixel = over(pixel, colorAt(start + bit));
            filled |= static_cast<std::uint64_t>(qAlpha(pixel) == 255) << bit;
        }
        opaqueWords[word] |= filled;
    }
}
