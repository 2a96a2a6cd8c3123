#include "boxmarks.h"

#include "cellplace.h"

#include <algorithm>

namespace ovtrace {
namespace {

/// Pixels: about the size of what gives way.
constexpr double Side = 16.0;
/// Pixels: more than what counts as a contact.
constexpr double Room = 1e-3;

} // namespace

BoxMarks::BoxMarks(const Box& all)
    : origin(all.least),
      columns(static_cast<std::size_t>((all.greatest.x - all.least.x) / Side) + 1),
      rows(static_cast<std::size_t>((all.greatest.y - all.least.y) / Side) + 1),
      marks(columns * rows, false) {
}

BoxMarks::Cells BoxMarks::cellsOf(const Box& box) const {
    const Point least = (box.least - origin - Point{Room, Room}) / Side;
    const Point greatest = (box.greatest - origin + Point{Room, Room}) / Side;
    return {cellOf(least.x, columns), cellOf(least.y, rows), cellOf(greatest.x, columns),
            cellOf(greatest.y, rows)};
}

void BoxMarks::mark(const Box& box) {
    const Cells cells = cellsOf(box);
    for (std::size_t row = cells.top; row <= cells.bottom; ++row) {
        const auto start = marks.begin() + static_cast<std::ptrdiff_t>(row * columns);
        std::fill(start + static_cast<std::ptrdiff_t>(cells.left),
                  start + static_cast<std::ptrdiff_t>(cells.right + 1), true);
    }
}

bool BoxMarks::isNear(const Box& box) const {
    const Cells cells = cellsOf(box);
    for (std::size_t row = cells.top; row <= cells.bottom; ++row) {
        for (std::size_t column = cells.left; column <= cells.right; ++column) {
            if (marks[row * columns + column])
                return true;
        }
    }
    return false;
}

} // namespace ovtrace
