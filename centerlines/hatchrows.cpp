#include "hatchrows.h"

#include "strokegrid.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace ovtrace {
namespace {

/// Cosine of the greatest angle between lines of one hatching: 1.5 degrees.
constexpr double Parallel = 0.99966;
/// Greatest distance between neighbours over their width.
constexpr double Widest = 15.0;
constexpr std::size_t Fewest = 4;
/// Pixels around a place in which neighbours are looked up.
constexpr double Look = 12.0;

/// The distance of `b` from `a` on the left hand of a's direction, below 0 on the right, where they
/// are neighbours of one hatching; 0 where they are none.
double stepTo(const Stroke& a, const Stroke& b) {
    if (std::abs(dot(a.carrier.direction, b.carrier.direction)) < Parallel)
        return 0.0;
    const double step = signedDistance(a.carrier, middle(b.start(), b.finish()));
    const double width = std::max(a.width, b.width);
    if (std::abs(step) < width || std::abs(step) > Widest * width ||
        width > 1.5 * std::min(a.width, b.width) + 0.5)
        return 0.0;
    const double p = placeAlong(a, b.start());
    const double q = placeAlong(a, b.finish());
    const double common = std::min(std::max(p, q), lengthOf(a)) - std::max(std::min(p, q), 0.0);
    return common > 0.25 * std::min(lengthOf(a), lengthOf(b)) ? step : 0.0;
}

bool isEven(double step, double before) {
    return std::abs(step - before) <= 0.15 * before + 0.3;
}

class RowFinder {
public:
    RowFinder(const std::vector<Stroke>& strokes, const std::vector<int>& lines, int width,
              int height)
        : strokes(strokes), grid(strokes, width, height), isLine(strokes.size(), false),
          isUsed(strokes.size(), false), beside(strokes.size()) {
        for (const int i : lines)
            isLine[static_cast<std::size_t>(i)] = true;
        for (const int i : lines)
            beside[static_cast<std::size_t>(i)] = neighboursOf(i);
    }

    /// As far as steps stay even, to the left and then to the right of a line.
    HatchRow rowFrom(int first) {
        if (isUsed[static_cast<std::size_t>(first)])
            return {};
        HatchRow row{first};
        isUsed[static_cast<std::size_t>(first)] = true;
        double step = 0.0;
        extend(row, step, 0);
        std::reverse(row.begin(), row.end());
        extend(row, step, 1);
        if (row.size() >= Fewest)
            return row;
        for (const int i : row)
            isUsed[static_cast<std::size_t>(i)] = false;
        return {};
    }

private:
    struct Neighbour {
        int line = -1;
        double step = 0.0; ///< above 0
    };
    using Neighbours = std::array<Neighbour, 2>; ///< on the left, on the right

    const Stroke& at(int i) const {
        return strokes[static_cast<std::size_t>(i)];
    }

    /// Beside three places of the line, as short neighbours lie beside a part of it only.
    Neighbours neighboursOf(int i) {
        const Stroke& line = at(i);
        const Point left = turnedQuarter(line.carrier.direction);
        const double widest = 1.5 * Widest * line.width;
        Neighbours nearest;
        for (const double part : {0.5, 0.2, 0.8}) {
            const Point from = line.start() + (line.finish() - line.start()) * part;
            double d = -widest;
            while (d <= widest) {
                look(i, from + left * d, nearest);
                d += 2.0 * Look;
            }
        }
        return nearest;
    }

    void look(int i, Point place, Neighbours& nearest) {
        grid.near(place, Look, around);
        for (const int j : around) {
            if (j == i || !isLine[static_cast<std::size_t>(j)])
                continue;
            const double step = stepTo(at(i), at(j));
            Neighbour& known = nearest[step > 0.0 ? 0 : 1];
            if (step != 0.0 && (known.line < 0 || std::abs(step) < known.step))
                known = {j, std::abs(step)};
        }
    }

    /// From the last line of the row on, to the given side of its first direction.
    void extend(HatchRow& row, double& step, std::size_t side) {
        int last = row.back();
        std::size_t hand = side;
        while (true) {
            const Neighbour& next = beside[static_cast<std::size_t>(last)][hand];
            if (next.line < 0 || isUsed[static_cast<std::size_t>(next.line)] ||
                (step > 0.0 && !isEven(next.step, step)))
                return;
            if (dot(at(last).carrier.direction, at(next.line).carrier.direction) < 0.0)
                hand = 1 - hand;
            step = next.step;
            last = next.line;
            isUsed[static_cast<std::size_t>(last)] = true;
            row.push_back(last);
        }
    }

    const std::vector<Stroke>& strokes;
    StrokeGrid grid;
    std::vector<bool> isLine;
    std::vector<bool> isUsed;
    std::vector<Neighbours> beside;
    std::vector<int> around;
};

} // namespace

std::vector<HatchRow> findHatchRows(const std::vector<Stroke>& strokes,
                                    const std::vector<int>& lines, int width, int height) {
    std::vector<HatchRow> rows;
    if (lines.size() < Fewest)
        return rows;
    RowFinder finder(strokes, lines, width, height);
    for (const int first : lines) {
        HatchRow row = finder.rowFrom(first);
        if (!row.empty())
            rows.push_back(std::move(row));
    }
    return rows;
}

} // namespace ovtrace
