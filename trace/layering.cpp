#include "layering.h"

#include "nodetypes.h"

namespace ovtrace {

int LayerSet::rows() const {
    return std::visit([](const auto& cells) { return cells.height + 2; }, image->indices);
}

int LayerSet::columns() const {
    return std::visit([](const auto& cells) { return cells.width + 2; }, image->indices);
}

int LayerSet::nodeType(int layer, int row, int column) const {
    if (row < 1 || column < 1)
        return 0;
    const auto typeIn = [=](const auto& cells) {
        const auto* above = cells.rowCells(row - 1) + column;
        const auto* below = cells.rowCells(row) + column;
        const auto bit = [=](auto cell, int value) {
            return static_cast<int>(cell) == layer ? value : 0;
        };
        return bit(above[-1], UpperLeft) | bit(above[0], UpperRight) | bit(below[0], LowerRight) |
               bit(below[-1], LowerLeft);
    };
    return std::visit(typeIn, image->indices);
}

} // namespace ovtrace
