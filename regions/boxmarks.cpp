#include "boxmarks.h"

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

std::size_t BoxMarks::limited(double place, std::size_t count) {
    return place <= 0.0 ? 0 : std::min(static_cast<std::size_t>(place), count - 1);
}

BoxMarks::Cells BoxMarks::cellsOf(const Box& box) const {
    const Point least = (box.least - origin - Point{Room, Room}) / Side;
    const Point greatest = (box.greatest - origin + Point{Room, Room}) / Side;
    return {limited(least.x, columns), limited(least.y, rows), limited(greatest.x, columns),
            limited(greatest.y, rows)};
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
