#include "scene.h"

#include <drawing/writers/painting.h>
#include <drawing/writers/underlay.h>

#include <QPainter>

#include <algorithm>
#include <cmath>

namespace {

constexpr int LargestGrid = 256;       ///< cells of the index along the longer side
constexpr int SmallestReduced = 512;   ///< pixels along the longer side
constexpr double FadedOpacity = 0.35;  ///< of the image below an overlay
constexpr double OverlayWidth = 1.2;   ///< device pixels
constexpr double NodeSide = 4.0;       ///< device pixels
constexpr double NodesFrom = 1.5;      ///< device pixels a pixel: nodes would hide what is smaller
constexpr double SmallestStroke = 1.0; ///< device pixels in which a stroke is still seen
constexpr double SelectionWidth = 2.0; ///< device pixels
const QColor SelectionColor(0, 120, 255);
const QColor OutlineColor(200, 0, 60);
const QColor NodeColor(0, 70, 200);

/// The image at half its size, by means of four pixels.
QImage halved(const QImage& image) {
    return image.scaled(std::max(1, image.width() / 2), std::max(1, image.height() / 2),
                        Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
}

QRectF widened(const QRectF& box, double by) {
    return box.adjusted(-by, -by, by, by);
}

void appendNodes(const std::vector<PathPiece>& pieces, int imageHeight, QList<QPointF>& nodes) {
    for (const PathPiece& piece : pieces)
        nodes.append(QPointF(piece.to.x(), imageHeight - piece.to.y()));
}

} // namespace

Scene::Scene(QImage image) : source(std::move(image)) {
    QImage smaller = source;
    while (std::max(smaller.width(), smaller.height()) > SmallestReduced) {
        smaller = halved(smaller);
        reduced.push_back(smaller);
    }
}

Scene::Scene(const Scene& image, const Drawing& drawing)
    : source(image.source), reduced(image.reduced) {
    shares.resize(static_cast<std::size_t>(drawing.palette.size()));
    all.reserve(static_cast<std::size_t>(drawing.shapes.size() + drawing.strokes.size()));
    const Underlay underlay(drawing);
    for (const qsizetype shape : underlay.order())
        addShape(drawing, underlay, shape);
    for (const Stroke& stroke : drawing.strokes)
        addStroke(drawing, stroke);
    buildIndex();
}

QRectF Scene::drawnBox() const {
    QRectF box;
    for (const SceneOutline& outline : all)
        box |= outline.box;
    return box;
}

void Scene::addShape(const Drawing& drawing, const Underlay& underlay, qsizetype index) {
    const Shape& shape = drawing.shapes[index];
    SceneOutline outline;
    outline.path = toPainterPath(drawing, shape);
    if (shape.kind == ShapeKind::Region) {
        outline.fill.setFillRule(Qt::WindingFill);
        for (const std::vector<PathPiece>& ring : underlay.rings(index))
            appendTo(outline.fill, ring, drawing.size.height());
    } else {
        outline.fill = outline.path;
    }
    outline.box = outline.fill.boundingRect();
    outline.color = drawing.palette[shape.color];
    outline.colorIndex = shape.color;
    // Holes run the other way; the tracer's own outlines have none.
    double area = 0.0;
    for (const Ring& ring : drawing.ringsOf(shape)) {
        const std::vector<PathPiece> pieces = drawing.piecesOf(ring);
        area += signedArea(pieces);
        appendNodes(pieces, drawing.size.height(), outline.nodes);
    }
    outline.area = std::abs(area);
    add(std::move(outline));
}

void Scene::addStroke(const Drawing& drawing, const Stroke& stroke) {
    SceneOutline outline;
    const std::vector<PathPiece> pieces = drawing.paths.pieces(stroke.path);
    appendTo(outline.path, pieces, drawing.size.height());
    outline.box = widened(outline.path.boundingRect(), stroke.width / 2.0);
    outline.color = drawing.palette[stroke.color];
    outline.colorIndex = stroke.color;
    outline.nodes.append(
        QPointF(pieces.front().from.x(), drawing.size.height() - pieces.front().from.y()));
    appendNodes(pieces, drawing.size.height(), outline.nodes);
    outline.area = outline.path.length() * stroke.width;
    outline.strokeWidth = stroke.width;
    if (stroke.dashPattern >= 0)
        outline.dashes = drawing.dashPatterns[stroke.dashPattern];
    add(std::move(outline));
}

void Scene::add(SceneOutline outline) {
    ColorShare& share = shares[static_cast<std::size_t>(outline.colorIndex)];
    share.area += outline.area;
    ++share.outlines;
    all.push_back(std::move(outline));
}

void Scene::buildIndex() {
    const int longer = std::max(source.width(), source.height());
    cellSide = std::max(1, (longer + LargestGrid - 1) / LargestGrid);
    columns = (source.width() + cellSide - 1) / cellSide;
    rows = (source.height() + cellSide - 1) / cellSide;
    cells.assign(static_cast<std::size_t>(columns) * static_cast<std::size_t>(rows), {});
    const auto cellOf = [&](double place, int count) {
        return std::clamp(static_cast<int>(std::floor(place / cellSide)), 0, count - 1);
    };
    for (std::size_t i = 0; i < all.size(); ++i) {
        const QRectF& box = all[i].box;
        for (int row = cellOf(box.top(), rows); row <= cellOf(box.bottom(), rows); ++row) {
            for (int column = cellOf(box.left(), columns); column <= cellOf(box.right(), columns);
                 ++column)
                cells[static_cast<std::size_t>(row) * static_cast<std::size_t>(columns) +
                      static_cast<std::size_t>(column)]
                    .push_back(static_cast<int>(i));
        }
    }
}

/// In the order of painting, each once.
std::vector<int> Scene::outlinesIn(const QRectF& part) const {
    std::vector<int> found;
    const auto first = [&](double place) {
        return std::max(0, static_cast<int>(std::floor(place / cellSide)));
    };
    const int right = std::min(columns - 1, first(part.right()));
    const int bottom = std::min(rows - 1, first(part.bottom()));
    for (int row = first(part.top()); row <= bottom; ++row) {
        for (int column = first(part.left()); column <= right; ++column) {
            const auto& cell =
                cells[static_cast<std::size_t>(row) * static_cast<std::size_t>(columns) +
                      static_cast<std::size_t>(column)];
            found.insert(found.end(), cell.begin(), cell.end());
        }
    }
    std::sort(found.begin(), found.end());
    found.erase(std::unique(found.begin(), found.end()), found.end());
    std::erase_if(found,
                  [&](int i) { return !all[static_cast<std::size_t>(i)].box.intersects(part); });
    return found;
}

void Scene::paint(QPainter& painter, Content content, const QRectF& part, double scale) const {
    painter.setRenderHint(QPainter::Antialiasing);
    switch (content) {
    case Content::Image:
        paintImage(painter, part, scale);
        break;
    case Content::Result:
        paintResult(painter, part, scale);
        break;
    case Content::Overlay:
        paintOverlay(painter, part, scale);
        break;
    }
}

/// Pixels are squares when they are enlarged; a smaller picture of the image is the start of
/// reducing, so that a tile costs what it shows.
void Scene::paintImage(QPainter& painter, const QRectF& part, double scale) const {
    painter.setRenderHint(QPainter::SmoothPixmapTransform, scale < 1.0);
    const QImage* picture = &source;
    for (std::size_t i = 0; i < reduced.size() && scale * (2 << i) <= 1.0; ++i)
        picture = &reduced[i];
    const QRectF inside = part.intersected(QRectF(source.rect()));
    const double x = picture->width() / double(source.width());
    const double y = picture->height() / double(source.height());
    painter.drawImage(
        inside, *picture,
        QRectF(inside.x() * x, inside.y() * y, inside.width() * x, inside.height() * y));
}

void Scene::paintResult(QPainter& painter, const QRectF& part, double scale) const {
    for (const int i : outlinesIn(part)) {
        const SceneOutline& outline = all[static_cast<std::size_t>(i)];
        if (outline.strokeWidth == 0.0) {
            painter.fillPath(outline.fill, outline.color);
            continue;
        }
        QPen pen(outline.color, std::max(outline.strokeWidth, SmallestStroke / scale));
        if (!outline.dashes.isEmpty()) {
            QList<double> dashes = outline.dashes; // in widths, as the painter wants them
            for (double& dash : dashes)
                dash /= pen.widthF();
            pen.setDashPattern(dashes);
        }
        pen.setCapStyle(Qt::FlatCap);
        painter.strokePath(outline.path, pen);
    }
}

void Scene::paintOverlay(QPainter& painter, const QRectF& part, double scale) const {
    painter.fillRect(part.intersected(QRectF(source.rect())), Qt::white);
    painter.setOpacity(FadedOpacity);
    paintImage(painter, part, scale);
    painter.setOpacity(1.0);
    const double side = NodeSide / scale;
    const std::vector<int> seen = outlinesIn(widened(part, side));
    const QPen pen(OutlineColor, OverlayWidth / scale);
    for (const int i : seen)
        painter.strokePath(all[static_cast<std::size_t>(i)].path, pen);
    if (scale < NodesFrom)
        return;
    for (const int i : seen) {
        for (const QPointF& node : all[static_cast<std::size_t>(i)].nodes) {
            if (widened(part, side).contains(node))
                painter.fillRect(QRectF(node.x() - side / 2.0, node.y() - side / 2.0, side, side),
                                 NodeColor);
        }
    }
}

void Scene::paintSelection(QPainter& painter, int colorIndex, const QRectF& part,
                           double scale) const {
    const double width = SelectionWidth / scale;
    const QPen pen(SelectionColor, width);
    for (const int i : outlinesIn(widened(part, width))) {
        const SceneOutline& outline = all[static_cast<std::size_t>(i)];
        if (outline.colorIndex == colorIndex)
            painter.strokePath(outline.path, pen);
    }
}

int Scene::outlineAt(QPointF point) const {
    if (all.empty() || !QRectF(source.rect()).contains(point))
        return -1;
    const auto column = static_cast<std::size_t>(point.x() / cellSide);
    const auto row = static_cast<std::size_t>(point.y() / cellSide);
    const auto index = row * static_cast<std::size_t>(columns) + column;
    if (index >= cells.size())
        return -1;
    const std::vector<int>& cell = cells[index];
    const auto found = std::find_if(cell.rbegin(), cell.rend(), [&](int i) {
        const SceneOutline& outline = all[static_cast<std::size_t>(i)];
        if (!outline.box.contains(point))
            return false;
        if (outline.strokeWidth == 0.0)
            return outline.path.contains(point);
        QPainterPathStroker stroker(QPen(Qt::black, outline.strokeWidth));
        return stroker.createStroke(outline.path).contains(point);
    });
    return found == cell.rend() ? -1 : *found;
}
