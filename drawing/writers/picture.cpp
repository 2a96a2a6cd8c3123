#include "picture.h"

#include "../raster/channels.h"
#include "../raster/flatness.h"
#include "../raster/imagerows.h"
#include "../raster/stroke.h"
#include "filledareas.h"

#include <algorithm>

namespace {

constexpr std::uint32_t FadedOpacity = 89; ///< of the image below an overlay, of 255
constexpr double LineWidth = 1.2;          ///< of an overlay, in pixels of the picture
constexpr double NodeSide = 3.0;           ///< likewise, of the squares around nodes
constexpr double NodeShare = 1.6;          ///< how much larger those are where paths meet

} // namespace

PicturePainter::PicturePainter(QImage& picture, const Drawing& drawing, double scale)
    : picture(picture), drawing(drawing), scale(scale), raster(picture) {
}

/// The corners of pieces, curves replaced, in pixels of the picture.
void PicturePainter::toPicture(std::span<const PathPiece> pieces) {
    line.clear();
    for (const PathPiece& piece : pieces) {
        const PathPiece placed =
            transformed(piece, scale, true, QPointF(0, drawing.size.height() * scale));
        if (line.empty())
            line.push_back(placed.from);
        flatten(placed, Flatness, line);
    }
}

void PicturePainter::paintFilled(bool cutOut) {
    for (qsizetype i = drawing.strokes.size() - 1; i >= 0; --i)
        paintStroke(drawing.strokes[i]);
    const FilledAreas areas(drawing, cutOut);
    for (qsizetype i = areas.size() - 1; i >= 0; --i) {
        const FilledArea area = areas.at(i);
        contours.clear();
        for (const std::vector<PathPiece>& ring : area.rings) {
            toPicture(ring);
            contours.append(line);
        }
        raster.fill(contours, area.rule == Qt::WindingFill ? FillRule::NonZero : FillRule::EvenOdd,
                    area.color);
    }
}

void PicturePainter::paintStroke(const Stroke& stroke) {
    Pen pen{stroke.width * scale, stroke.dashPattern < 0};
    if (stroke.dashPattern >= 0) {
        for (const double each : drawing.dashPatterns[stroke.dashPattern])
            pen.dashes.append(each * scale);
    }
    toPicture(drawing.paths.pieces(stroke.path));
    contours.clear();
    appendStroke(line, pen, contours);
    raster.fill(contours, FillRule::NonZero, drawing.palette[stroke.color]);
}

void PicturePainter::paintOverlay() {
    paintMarks(drawing.nodes, NodeShare * NodeSide, QColor(0, 130, 60));
    std::vector<QPointF> ends;
    for (qsizetype i = drawing.paths.size() - 1; i >= 0; --i) {
        ends.clear();
        for (const PathPiece& piece : drawing.paths.pieces(i))
            ends.push_back(piece.to);
        paintMarks(ends, NodeSide, QColor(0, 70, 200));
    }
    for (qsizetype i = drawing.paths.size() - 1; i >= 0; --i)
        paintLine(i);
    paintFadedImage();
}

/// A square of that side, in pixels of the picture, around each point of the drawing.
void PicturePainter::paintMarks(std::span<const QPointF> points, double side, const QColor& color) {
    contours.clear();
    for (const QPointF& point : points) {
        const QRectF square(point.x() * scale - side / 2.0,
                            (drawing.size.height() - point.y()) * scale - side / 2.0, side, side);
        const QPointF corners[] = {square.topLeft(), square.topRight(), square.bottomRight(),
                                   square.bottomLeft()};
        contours.append(corners);
    }
    raster.fill(contours, FillRule::NonZero, color);
}

void PicturePainter::paintLine(qsizetype path) {
    toPicture(drawing.paths.pieces(path));
    // The tracer's outlines are closed without being told.
    if (drawing.method == Method::Outlines && !line.empty() && line.front() != line.back())
        line.push_back(line.front());
    contours.clear();
    appendStroke(line, {LineWidth}, contours);
    raster.fill(contours, FillRule::NonZero, QColor(200, 0, 60));
}

void PicturePainter::paintFadedImage() {
    constexpr QRgb White = 0xffffffff;
    ImageRows rows(drawing.image, picture.size());
    std::vector<QRgb> colors(static_cast<std::size_t>(picture.width()));
    for (int y = 0; y < picture.height(); ++y) {
        const QRgb* row = rows.row(y);
        std::transform(row, row + picture.width(), colors.begin(),
                       [&](QRgb pixel) { return over(scaled(pixel, FadedOpacity), White); });
        raster.fillRow(y, colors.data());
    }
}
