#pragma once

#include "stroke.h"

#include <algorithm>
#include <vector>

namespace ovtrace {

/// Which numbers were put near a place: a grid of square cells over the image.
class PointGrid {
public:
    static constexpr double Cell = 32.0;

    PointGrid(int width, int height)
        : columns(static_cast<int>(width / Cell) + 3), rows(static_cast<int>(height / Cell) + 3),
          cells(static_cast<std::size_t>(columns) * static_cast<std::size_t>(rows)) {
    }

    /// Places outside the image belong to its nearest cells.
    void add(int number, Point p) {
        std::vector<int>& cell = cells[index(column(p.x), row(p.y))];
        if (cell.empty() || cell.back() != number)
            cell.push_back(number);
    }

    /// Whether the place lies at most `margin` outside the cells of the image.
    bool holds(Point p, double margin) const {
        return p.x >= -margin && p.y >= -margin && p.x < columns * Cell + margin &&
               p.y < rows * Cell + margin;
    }

    /// Appends the numbers within `reach` of `p` and some that are farther.
    void collect(Point p, double reach, std::vector<int>& found) const {
        for (int y = row(p.y - reach); y <= row(p.y + reach); ++y)
            for (int x = column(p.x - reach); x <= column(p.x + reach); ++x) {
                const std::vector<int>& cell = cells[index(x, y)];
                found.insert(found.end(), cell.begin(), cell.end());
            }
    }

    /// Calls `visit` with each cell within `reach` of `p`, as the number of the cell and the list
    /// of those put there.
    template <typename Visit> void forEachCell(Point p, double reach, Visit visit) {
        for (int y = row(p.y - reach); y <= row(p.y + reach); ++y)
            for (int x = column(p.x - reach); x <= column(p.x + reach); ++x)
                visit(index(x, y), cells[index(x, y)]);
    }

    std::size_t cellCount() const {
        return cells.size();
    }

    /// Makes numbers rise and be there once.
    static void arrange(std::vector<int>& numbers) {
        std::sort(numbers.begin(), numbers.end());
        numbers.erase(std::unique(numbers.begin(), numbers.end()), numbers.end());
    }

private:
    int column(double x) const {
        return static_cast<int>(std::clamp(x / Cell + 1.0, 0.0, columns - 1.0));
    }
    int row(double y) const {
        return static_cast<int>(std::clamp(y / Cell + 1.0, 0.0, rows - 1.0));
    }
    std::size_t index(int x, int y) const {
        return static_cast<std::size_t>(y) * static_cast<std::size_t>(columns) +
               static_cast<std::size_t>(x);
    }

    int columns;
    int rows;
    std::vector<std::vector<int>> cells;
};

/// Which strokes pass near a place.
class StrokeGrid {
public:
    static constexpr double Cell = PointGrid::Cell;

    /// Strokes that are dropped do not count.
    StrokeGrid(const std::vector<Stroke>& strokes, int width, int height) : grid(width, height) {
        for (std::size_t i = 0; i < strokes.size(); ++i)
            if (!strokes[i].dropped)
                for (const Point& p : pointsAlong(strokes[i], Cell / 2.0))
                    grid.add(static_cast<int>(i), p);
    }

    /// The strokes within `reach` of `p` and some that are farther, rising and each once.
    void near(Point p, double reach, std::vector<int>& found) const {
        found.clear();
        grid.collect(p, reach + Cell / 4.0, found);
        PointGrid::arrange(found);
    }

private:
    PointGrid grid;
};

} // namespace ovtrace
