#include "paintorder.h"

#include <algorithm>
#include <array>

namespace {

constexpr int Cells = 128; ///< of the raster, along each side

/// The cells of a raster that a range of coordinates touches, first and last.
struct CellRange {
    int first;
    int last;
};

CellRange cellsOf(double low, double high, int size) {
    const auto cell = [size](double value) {
        return static_cast<int>(std::clamp(value / size * Cells, 0.0, Cells - 1.0));
    };
    return {cell(low), cell(high)};
}

} // namespace

std::optional<QList<int>> layerOrder(const Drawing& drawing) {
    QList<int> order;
    QList<int> ranks(drawing.palette.size(), -1);
    // By cell, the highest rank of the layers that have been painted there.
    std::array<std::array<int, Cells>, Cells> highest{};
    for (qsizetype i = 0; i < drawing.shapes.size(); ++i) {
        const Shape& shape = drawing.shapes[i];
        int& rank = ranks[shape.color];
        if (rank < 0) {
            rank = static_cast<int>(order.size());
            order.append(shape.color);
        }
        const QRectF box = boundingBox(drawing.piecesOf(drawing.outerRing(shape)));
        const CellRange columns = cellsOf(box.left(), box.right(), drawing.size.width());
        const CellRange rows = cellsOf(box.top(), box.bottom(), drawing.size.height());
        for (int row = rows.first; row <= rows.last; ++row) {
            for (int column = columns.first; column <= columns.last; ++column) {
                int& cell =
                    highest[static_cast<std::size_t>(row)][static_cast<std::size_t>(column)];
                if (cell > rank)
                    return std::nullopt; // this outline would slip below another one
                cell = rank;
            }
        }
    }
    return order;
}
