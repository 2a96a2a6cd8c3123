#pragma once

#include "scene.h"
#include "tilecache.h"

#include <QWidget>

class QGestureEvent;

/// The middle of the window: image, result, both over one another, or both beside a divider.
///
/// Zooms at the pointer (wheel, pinch, keys) from the whole image to 6400 %, pans by dragging with
/// the middle button, or with the left one and the space bar, or where nothing else wants the left
/// one.
class Canvas : public QWidget {
    Q_OBJECT

public:
    enum class View { Image, Result, Overlay, Split };
    Q_ENUM(View)

    explicit Canvas(QWidget* parent = nullptr);

    /// Shows another scene; the part in view stays when the size of the image does.
    void setScene(std::shared_ptr<const Scene> scene);
    std::shared_ptr<const Scene> scene() const {
        return shown;
    }

    View view() const {
        return currentView;
    }
    void setView(View view);

    /// Window pixels a pixel of the image.
    double zoom() const {
        return scale;
    }
    /// Sets the zoom; the image's point at `anchor` (a place in the widget) stays there.
    void setZoom(double zoom, QPointF anchor);
    void zoomIn();
    void zoomOut();
    void zoomToActualSize();
    void zoomToFit();
    /// Moves what is shown, in window pixels.
    void panBy(QPointF distance);

    /// Marks all outlines of a colour of the palette; -1 for none.
    void selectColor(int colorIndex);
    /// The next click gives the colour below it (colorPicked()).
    void setPicking(bool on);
    bool isPicking() const {
        return picking;
    }

    /// The place in the image below a place in the widget, in pixels, y down.
    QPointF toImage(QPointF place) const;
    /// Whether everything in view is painted as it should be.
    bool isComplete() const {
        return tiles.isComplete();
    }

signals:
    void zoomChanged(double zoom);
    void viewChanged(Canvas::View view);
    /// The pointer is at a place of the image, over an outline of the scene or -1.
    void pointed(QPointF place, int outline);
    void pointerLeft();
    void colorPicked(const QColor& color);
    void outlineClicked(int outline);

protected:
    bool event(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void leaveEvent(QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void keyReleaseEvent(QKeyEvent* event) override;

private:
    enum class Drag { None, Pan, Divider };

    bool gestureEvent(QGestureEvent* event);
    double fitZoom() const;
    void keepInView();
    void pointAt(QPointF place);
    void pickAt(QPointF place);
    double dividerPlace() const;
    bool isOverDivider(QPointF place) const;
    void updateCursor(QPointF place);
    void paintContent(QPainter& painter, Scene::Content content, const QRect& area);
    void paintMark(QPainter& painter);
    void paintPixelGrid(QPainter& painter);
    void paintDivider(QPainter& painter);
    QRectF imageBox() const;

    std::shared_ptr<const Scene> shown;
    TileCache tiles;
    View currentView = View::Result;
    double scale = 1.0;
    QPointF origin;       ///< of the image, in the widget
    bool fits = true;     ///< follows the size of the widget
    double divider = 0.5; ///< of the widget's width
    Drag drag = Drag::None;
    QPointF dragFrom;
    QPointF pressedAt;
    bool spaceIsDown = false;
    bool picking = false;
    int pointedOutline = -1;
};
