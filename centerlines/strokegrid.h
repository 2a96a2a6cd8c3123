#pragma once

#include "stroke.h"

#include <algorithm>
#include <vector>

namespace ovtrace {

/// Which strokes pass near a place: a grid of square cells over the image.
class StrokeGrid {
public:
    static constexpr double Cell = 32.0;

    /// Strokes that are dropped do not count.
    StrokeGrid(const std::vector<Stroke>& strokes, int width, int height)
        : columns(static_cast<int>(width / Cell) + 3), rows(static_cast<int>(height / Cell) + 3),
          cells(static_cast<std::size_t>(columns) * static_cast<std::size_t>(rows)) {
        for (std::size_t i = 0; i < strokes.size(); ++i)
            if (!strokes[i].dropped)
                for (const Point& p : pointsAlong(strokes[i], Cell / 2.0))
                    add(static_cast<int>(i), p);
    }

    /// The strokes within `reach` (at most half a cell) of `p`, rising and each once.
    void near(Point p, double reach, std::vector<int>& found) const {
        found.clear();
        const double around = reach + Cell / 4.0;
        for (int y = row(p.y - around); y <= row(p.y + around); ++y)
            for (int x = column(p.x - around); x <= column(p.x + around); ++x) {
                const std::vector<int>& cell = cells[index(x, y)];
                found.insert(found.end(), cell.begin(), cell.end());
            }
        std::sort(found.begin(), found.end());
        found.erase(std::unique(found.begin(), found.end()), found.end());
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
    void add(int stroke, Point p) {
        std::vector<int>& cell = cells[index(column(p.x), row(p.y))];
        if (cell.empty() || cell.back() != stroke)
            cell.push_back(stroke);
    }

    int columns;
    int rows;
    std::vector<std::vector<int>> cells;
};

} // namespace ovtrace
