#pragma once

#include "rasterpath.h"

#include <QColor>
#include <QImage>

#include <cstdint>

/// Which points are inside contours that overlap.
enum class FillRule {
    NonZero, ///< those that the contours go around, counting both directions
    EvenOdd  ///< those that they go around an odd number of times
};

/// Fills contours in a picture, with the exact share of each pixel that they cover, from the top
/// down: what is filled comes to lie below what has been filled before.
///
/// A scan line at a time: the signed areas between an edge and the right border add up to the
/// coverage, and only pixels that an edge passes are looked at one by one. Pixels that are opaque
/// already are passed over by 64, so that many areas on top of one another cost little more than
/// one. Where contours overlap within a pixel, the shares add up to all of it at most. Sums,
/// products and whole numbers alone: the same picture on every platform.
class RasterFill {
public:
    /// `picture` has the format ARGB32_Premultiplied, is transparent, and outlives the object.
    explicit RasterFill(QImage& picture);

    /// Paints the inside of the path, whose contours are closed by straight edges. Corners that are
    /// no numbers paint nothing.
    void fill(const RasterPath& path, FillRule rule, const QColor& color);

    /// Paints a row of pixels, as many as the picture is wide, premultiplied.
    void fillRow(int row, const QRgb* colors);

private:
    /// An edge that goes down; upward ones have been turned round.
    struct Edge {
        double top;    ///< y, pixels
        double bottom; ///< y, pixels
        double x;      ///< at the top, pixels
        double slope;  ///< dx / dy
        double sign;   ///< 1 for an edge that went down, -1 for one that went up
    };
    /// What the edges of a scan line add to a pixel.
    struct Cell {
        double area = 0.0;  ///< in the pixel itself
        double cover = 0.0; ///< in each of those to its right
    };

    void collectEdges(const RasterPath& path);
    void addEdge(QPointF from, QPointF to);
    void sortEdges();
    double dropEdgesAbove(int row);
    void accumulate(const Edge& edge, int row);
    void accumulateSpan(double x0, double x1, double rise);
    void touch(int column, double area, double cover);
    void paintRow(FillRule rule);
    void paintSpan(int from, int to, double coverage, FillRule rule);
    template <typename ColorAt> void paintOpen(int from, int to, ColorAt colorAt);
    void enterRow(int row);

    QImage& picture;
    const int width;
    const int height;
    const std::size_t words;           ///< of `opaque` and `touched`, a row
    std::vector<std::uint64_t> opaque; ///< a bit for each pixel of the picture
    QRgb source = 0;                   ///< premultiplied

    std::vector<Edge> edges;
    std::vector<Edge> sorted;           ///< by the row of their tops
    std::vector<std::uint32_t> rowEnds; ///< of `sorted`, by row from `firstRow` on
    std::vector<Edge> active;
    int firstRow = 0;
    int endRow = 0;

    // Of the scan line:
    QRgb* pixels = nullptr;
    std::uint64_t* opaqueWords = nullptr;
    std::vector<Cell> cells;            ///< one a pixel, one behind
    std::vector<std::uint64_t> touched; ///< a bit for each of them
    int firstWord = 0;                  ///< of `touched`, those that have bits
    int endWord = 0;
};
