#pragma once

#include "shapes/piece.h"

#include <vector>

namespace ovtrace {

/// Tells what is near some boxes: marks in a grid of square cells.
class BoxMarks {
public:
    /// For boxes within `all`.
    explicit BoxMarks(const Box& all);

    void mark(const Box& box);
    /// Whether a marked box may meet this one; never false when it does.
    bool isNear(const Box& box) const;

private:
    struct Cells {
        std::size_t left = 0;
        std::size_t top = 0;
        std::size_t right = 0;
        std::size_t bottom = 0;
    };
    Cells cellsOf(const Box& box) const;

    Point origin;
    std::size_t columns = 0;
    std::size_t rows = 0;
    std::vector<bool> marks;
};

} // namespace ovtrace
