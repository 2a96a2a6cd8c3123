#pragma once

#include <QImage>

#include <array>
#include <vector>

/// An image row by row, in another size: of a larger one the nearest pixels, of a smaller one the
/// means of the pixels that fall on each. Whole numbers alone.
class ImageRows {
public:
    /// `image` outlives the object; `size` has at least one pixel.
    ImageRows(const QImage& image, QSize size);

    /// The colours of a row, premultiplied; valid until the next call. 0 <= y < height of the size.
    const QRgb* row(int y);

private:
    struct Range {
        int first;
        int end;
    };
    /// The pixels of `from` that fall on one of `to`.
    static Range rangeOf(int index, int from, int to);
    QImage sourceRow(int y) const;
    void takeRow(int y);
    void averageRows(Range rows);
    void addRow(int y);

    const QImage& image;
    QSize size;
    std::vector<Range> columns;                     ///< of the image's, for each of the rows'
    std::vector<std::array<std::uint32_t, 4>> sums; ///< of the channels
    std::vector<QRgb> colors;
};
