#include "canvas.h"

#include <QGestureEvent>
#include <QMouseEvent>
#include <QNativeGestureEvent>
#include <QPainter>
#include <QPinchGesture>
#include <QWheelEvent>
#include <QtMath>

#include <algorithm>
#include <cmath>

namespace {

constexpr double LargestZoom = 64.0;
constexpr double SmallestZoom = 1.0 / 256.0;
constexpr double ZoomStep = 1.25;           ///< of a key or a step of the wheel
constexpr double WheelStep = 120.0;         ///< eighths of a degree
constexpr double PixelGridFrom = 8.0;       ///< zoom
constexpr double DividerReach = 5.0;        ///< window pixels
constexpr double KeyPan = 64.0;             ///< window pixels
constexpr double ClickReach = 3.0;          ///< a shorter way is a click, not a drag
constexpr double FitMargin = 0.96;          ///< share of the widget that a whole image takes
constexpr qsizetype MostSmoothNodes = 5000; ///< of an outline that is marked smoothly
const QColor MarkColor(255, 120, 0);

Scene::Content contentOf(Canvas::View view) {
    switch (view) {
    case Canvas::View::Image:
        return Scene::Content::Image;
    case Canvas::View::Overlay:
        return Scene::Content::Overlay;
    default:
        return Scene::Content::Result;
    }
}

} // namespace

Canvas::Canvas(QWidget* parent) : QWidget(parent) {
    setMouseTracking(true);
    setFocusPolicy(Qt::StrongFocus);
    grabGesture(Qt::PinchGesture);
    setMinimumSize(160, 120);
    setAccessibleName(tr("Image and result"));
    connect(&tiles, &TileCache::updated, this, qOverload<>(&QWidget::update));
}

void Canvas::setScene(std::shared_ptr<const Scene> scene) {
    const bool sameSize = shown && scene && shown->size() == scene->size();
    shown = std::move(scene);
    tiles.setScene(shown);
    pointedOutline = -1;
    if (!sameSize)
        zoomToFit();
    update();
}

void Canvas::setView(View view) {
    if (currentView == view)
        return;
    currentView = view;
    update();
    emit viewChanged(view);
}

double Canvas::fitZoom() const {
    if (!shown || shown->size().isEmpty())
        return 1.0;
    return std::clamp(FitMargin * std::min(width() / double(shown->size().width()),
                                           height() / double(shown->size().height())),
                      SmallestZoom, LargestZoom);
}

void Canvas::setZoom(double zoom, QPointF anchor) {
    const double bounded = std::clamp(zoom, std::min(SmallestZoom, fitZoom()), LargestZoom);
    const QPointF kept = toImage(anchor);
    scale = bounded;
    origin = anchor - kept * scale;
    fits = false;
    keepInView();
    update();
    emit zoomChanged(scale);
}

void Canvas::zoomIn() {
    setZoom(scale * ZoomStep, QRectF(rect()).center());
}

void Canvas::zoomOut() {
    setZoom(scale / ZoomStep, QRectF(rect()).center());
}

void Canvas::zoomToActualSize() {
    setZoom(1.0 / devicePixelRatioF(), QRectF(rect()).center());
}

void Canvas::zoomToFit() {
    scale = fitZoom();
    const QSizeF size = shown ? QSizeF(shown->size()) * scale : QSizeF();
    origin = QPointF((width() - size.width()) / 2.0, (height() - size.height()) / 2.0);
    fits = true;
    update();
    emit zoomChanged(scale);
}

void Canvas::panBy(QPointF distance) {
    origin += distance;
    fits = false;
    keepInView();
    update();
}

/// The middle of the widget never leaves the image.
void Canvas::keepInView() {
    if (!shown)
        return;
    const QPointF middle = QRectF(rect()).center();
    const QPointF inside(std::clamp(toImage(middle).x(), 0.0, double(shown->size().width())),
                         std::clamp(toImage(middle).y(), 0.0, double(shown->size().height())));
    origin = middle - inside * scale;
}

void Canvas::selectColor(int colorIndex) {
    tiles.selectColor(colorIndex);
    update();
}

void Canvas::setPicking(bool on) {
    picking = on;
    updateCursor(mapFromGlobal(QCursor::pos()));
}

QPointF Canvas::toImage(QPointF place) const {
    return (place - origin) / scale;
}

QRectF Canvas::imageBox() const {
    return {origin, QSizeF(shown->size()) * scale};
}

bool Canvas::event(QEvent* event) {
    if (event->type() == QEvent::Gesture)
        return gestureEvent(static_cast<QGestureEvent*>(event));
    if (event->type() == QEvent::NativeGesture) {
        const auto* gesture = static_cast<QNativeGestureEvent*>(event);
        if (gesture->gestureType() == Qt::ZoomNativeGesture)
            setZoom(scale * (1.0 + gesture->value()), gesture->position());
        return true;
    }
    return QWidget::event(event);
}

bool Canvas::gestureEvent(QGestureEvent* event) {
    const auto* pinch = static_cast<QPinchGesture*>(event->gesture(Qt::PinchGesture));
    if (pinch == nullptr)
        return false;
    setZoom(scale * pinch->scaleFactor(), mapFromGlobal(pinch->centerPoint()));
    panBy(pinch->centerPoint() - pinch->lastCenterPoint());
    return true;
}

void Canvas::resizeEvent(QResizeEvent* event) {
    QWidget::resizeEvent(event);
    if (fits)
        zoomToFit();
    else
        keepInView();
}

void Canvas::wheelEvent(QWheelEvent* event) {
    if (event->modifiers().testFlag(Qt::ShiftModifier))
        panBy(event->angleDelta());
    else
        setZoom(scale * std::pow(ZoomStep, event->angleDelta().y() / WheelStep), event->position());
    event->accept();
}

double Canvas::dividerPlace() const {
    return divider * width();
}

bool Canvas::isOverDivider(QPointF place) const {
    return currentView == View::Split && std::abs(place.x() - dividerPlace()) <= DividerReach;
}

void Canvas::mousePressEvent(QMouseEvent* event) {
    const QPointF place = event->position();
    pressedAt = place;
    if (event->button() == Qt::MiddleButton || (event->button() == Qt::LeftButton && spaceIsDown))
        drag = Drag::Pan;
    else if (event->button() == Qt::LeftButton && !picking)
        drag = isOverDivider(place) ? Drag::Divider : Drag::Pan;
    dragFrom = place;
    updateCursor(place);
}

void Canvas::mouseMoveEvent(QMouseEvent* event) {
    const QPointF place = event->position();
    if (drag == Drag::Pan) {
        panBy(place - dragFrom);
        dragFrom = place;
    } else if (drag == Drag::Divider) {
        divider = std::clamp(place.x() / std::max(1, width()), 0.0, 1.0);
        update();
    }
    updateCursor(place);
    pointAt(place);
}

void Canvas::mouseReleaseEvent(QMouseEvent* event) {
    const QPointF place = event->position();
    const bool isClick = (place - pressedAt).manhattanLength() <= ClickReach;
    const bool wasPanning = drag == Drag::Pan;
    drag = Drag::None;
    if (event->button() == Qt::LeftButton && isClick && picking)
        pickAt(place);
    else if (event->button() == Qt::LeftButton && isClick && wasPanning && shown)
        emit outlineClicked(shown->outlineAt(toImage(place)));
    updateCursor(place);
}

void Canvas::pickAt(QPointF place) {
    if (!shown)
        return;
    const QPointF at = toImage(place);
    const QPoint pixel(static_cast<int>(std::floor(at.x())), static_cast<int>(std::floor(at.y())));
    if (!shown->image().rect().contains(pixel))
        return;
    setPicking(false);
    emit colorPicked(shown->image().pixelColor(pixel));
}

void Canvas::pointAt(QPointF place) {
    if (!shown)
        return;
    const QPointF at = toImage(place);
    const int outline = currentView == View::Image ? -1 : shown->outlineAt(at);
    if (outline != pointedOutline) {
        pointedOutline = outline;
        update();
    }
    emit pointed(at, outline);
}

void Canvas::leaveEvent(QEvent* event) {
    QWidget::leaveEvent(event);
    pointedOutline = -1;
    update();
    emit pointerLeft();
}

void Canvas::keyPressEvent(QKeyEvent* event) {
    switch (event->key()) {
    case Qt::Key_Space:
        spaceIsDown = true;
        break;
    case Qt::Key_Left:
        panBy({KeyPan, 0});
        break;
    case Qt::Key_Right:
        panBy({-KeyPan, 0});
        break;
    case Qt::Key_Up:
        panBy({0, KeyPan});
        break;
    case Qt::Key_Down:
        panBy({0, -KeyPan});
        break;
    case Qt::Key_Escape:
        setPicking(false);
        break;
    default:
        QWidget::keyPressEvent(event);
    }
    updateCursor(mapFromGlobal(QCursor::pos()));
}

void Canvas::keyReleaseEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_Space && !event->isAutoRepeat())
        spaceIsDown = false;
    else
        QWidget::keyReleaseEvent(event);
    updateCursor(mapFromGlobal(QCursor::pos()));
}

void Canvas::updateCursor(QPointF place) {
    if (drag == Drag::Pan)
        setCursor(Qt::ClosedHandCursor);
    else if (picking)
        setCursor(Qt::CrossCursor);
    else if (drag == Drag::Divider || isOverDivider(place))
        setCursor(Qt::SplitHCursor);
    else if (spaceIsDown)
        setCursor(Qt::OpenHandCursor);
    else
        unsetCursor();
}

void Canvas::paintEvent(QPaintEvent* /*event*/) {
    QPainter painter(this);
    painter.fillRect(rect(), palette().color(QPalette::Mid));
    if (!shown) {
        painter.drawText(rect(), Qt::AlignCenter | Qt::TextWordWrap,
                         tr("Open an image (Ctrl+O), drop it here or paste it (Ctrl+V)."));
        return;
    }
    if (currentView == View::Split) {
        const int place = static_cast<int>(std::lround(dividerPlace()));
        paintContent(painter, Scene::Content::Image, QRect(0, 0, place, height()));
        paintContent(painter, Scene::Content::Result, QRect(place, 0, width() - place, height()));
    } else {
        paintContent(painter, contentOf(currentView), rect());
    }
    if (currentView != View::Image)
        paintMark(painter);
    if (scale >= PixelGridFrom)
        paintPixelGrid(painter);
    if (currentView == View::Split)
        paintDivider(painter);
}

/// Tiles are made of device pixels, whatever the window's own are.
void Canvas::paintContent(QPainter& painter, Scene::Content content, const QRect& area) {
    const double ratio = devicePixelRatioF();
    const QRectF inside = QRectF(area).intersected(imageBox());
    if (inside.isEmpty())
        return;
    painter.save();
    painter.setClipRect(inside);
    painter.scale(1.0 / ratio, 1.0 / ratio);
    const QPointF corner(std::round(origin.x() * ratio), std::round(origin.y() * ratio));
    tiles.paint(painter, content, QRectF(toImage(inside.topLeft()), toImage(inside.bottomRight())),
                scale * ratio, corner);
    painter.restore();
}

/// Marks the outline below the pointer. Very long ones are drawn in the way that costs least, so
/// that the pointer is never late.
void Canvas::paintMark(QPainter& painter) {
    const std::vector<SceneOutline>& outlines = shown->outlines();
    if (pointedOutline < 0 || pointedOutline >= static_cast<int>(outlines.size()))
        return;
    const SceneOutline& outline = outlines[static_cast<std::size_t>(pointedOutline)];
    const bool isLong = outline.nodes.size() > MostSmoothNodes;
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing, !isLong);
    painter.translate(origin);
    painter.scale(scale, scale);
    QPen pen(MarkColor, isLong ? 1.0 : 2.0);
    pen.setCosmetic(true);
    painter.strokePath(outline.path, pen);
    painter.restore();
}

void Canvas::paintPixelGrid(QPainter& painter) {
    const QRectF box = imageBox().intersected(QRectF(rect()));
    const QPointF first = toImage(box.topLeft());
    const QPointF last = toImage(box.bottomRight());
    QList<QLineF> lines;
    for (int x = qCeil(first.x()); x <= last.x(); ++x)
        lines.append({origin.x() + x * scale, box.top(), origin.x() + x * scale, box.bottom()});
    for (int y = qCeil(first.y()); y <= last.y(); ++y)
        lines.append({box.left(), origin.y() + y * scale, box.right(), origin.y() + y * scale});
    painter.setPen(QPen(QColor(128, 128, 128, 90), 0));
    painter.drawLines(lines);
}

void Canvas::paintDivider(QPainter& painter) {
    const double x = std::round(dividerPlace());
    painter.fillRect(QRectF(x - 1.0, 0, 2.0, height()), palette().color(QPalette::Highlight));
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setBrush(palette().color(QPalette::Highlight));
    painter.setPen(Qt::NoPen);
    painter.drawRoundedRect(QRectF(x - 4.0, height() / 2.0 - 16.0, 8.0, 32.0), 4.0, 4.0);
}
