#pragma once

#include <indexgrid.h>

namespace ovtrace {

/// One grid of edge nodes per palette colour, as a view of the index grid.
///
/// Node (row, column) is the upper-left corner of cell (row, column), in image coordinates the
/// point (column - 1, row - 1). Its type in a layer is a mask of the four cells around it that
/// have the layer's colour: 1 upper left, 2 upper right, 4 lower right, 8 lower left. The types
/// follow from the cells, so that a layer costs no memory of its own.
class LayerSet {
public:
    /// Views `image`, which must outlive the view.
    explicit LayerSet(const QuantizedImage& image) : image(&image) {
    }

    int count() const {
        return image->colors;
    }
    const IndexGrid& indices() const {
        return image->indices;
    }
    /// Image height + 2, border included.
    int rows() const;
    /// Image width + 2, border included.
    int columns() const;
    /// The type of a node, 0 <= row < rows(), 0 <= column < columns(), 0 <= layer < count().
    int nodeType(int layer, int row, int column) const;

private:
    const QuantizedImage* image;
};

} // namespace ovtrace
