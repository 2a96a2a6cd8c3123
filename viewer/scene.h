#pragma once

#include <drawing/drawing.h>

#include <QColor>
#include <QImage>
#include <QPainterPath>
#include <QRectF>

#include <memory>
#include <vector>

class QPainter;
class Underlay;

/// An outline as the canvas shows it: in pixels of the image, y down.
struct SceneOutline {
    QPainterPath path; ///< holes as further subpaths
    QPainterPath fill; ///< what is painted for it: regions reach under those painted later
    QRectF box;
    QColor color;
    int colorIndex = 0;       ///< in the drawing's palette
    QList<QPointF> nodes;     ///< ends of pieces
    double area = 0.0;        ///< square pixels, without the holes
    double strokeWidth = 0.0; ///< of a stroke, in pixels; 0 for a filled area
    QList<double> dashes;     ///< of a stroke, in pixels; empty for a whole line
};

/// What a colour of the palette has of a result.
struct ColorShare {
    double area = 0.0; ///< square pixels
    int outlines = 0;
};

/// What the canvas shows of one trace: the image and its outlines with an index over the places.
///
/// Immutable after it is made, so threads share it freely.
class Scene {
public:
    enum class Content {
        Image,  ///< the image that was traced
        Result, ///< the outlines, filled
        Overlay ///< outlines and nodes over the faded image
    };

    /// The image alone.
    explicit Scene(QImage image);
    /// A result over the image of another scene.
    Scene(const Scene& image, const Drawing& drawing);

    const QImage& image() const {
        return source;
    }
    const std::vector<SceneOutline>& outlines() const {
        return all;
    }
    /// By colour of the drawing's palette.
    const std::vector<ColorShare>& colorShares() const {
        return shares;
    }
    /// The box around all outlines, in pixels of the image; empty without any.
    QRectF drawnBox() const;
    /// The size of what is shown, in pixels of the image.
    QSize size() const {
        return source.size();
    }

    /// Paints what lies in `part` of the image; one unit of the painter is a pixel of the image and
    /// `scale` device pixels.
    void paint(QPainter& painter, Content content, const QRectF& part, double scale) const;

    /// Draws lines of a colour along the outlines in `part` that have a colour of the palette; the
    /// painter as for paint().
    void paintSelection(QPainter& painter, int colorIndex, const QRectF& part, double scale) const;

    /// The topmost outline at a point; -1 where there is none.
    int outlineAt(QPointF point) const;

private:
    void addShape(const Drawing& drawing, const Underlay& underlay, qsizetype shape);
    void addStroke(const Drawing& drawing, const Stroke& stroke);
    void add(SceneOutline outline);
    void buildIndex();
    std::vector<int> outlinesIn(const QRectF& part) const;
    void paintImage(QPainter& painter, const QRectF& part, double scale) const;
    void paintResult(QPainter& painter, const QRectF& part, double scale) const;
    void paintOverlay(QPainter& painter, const QRectF& part, double scale) const;

    QImage source;
    std::vector<QImage> reduced;   ///< source at 1/2, 1/4, ... for small scales
    std::vector<SceneOutline> all; ///< in the order of painting
    std::vector<ColorShare> shares;
    int cellSide = 1; ///< of the index, in pixels
    int columns = 0;
    int rows = 0;
    std::vector<std::vector<int>> cells; ///< outlines by cell, in the order of painting
};
