#include "dragoutbutton.h"

#include <QApplication>
#include <QDrag>
#include <QMimeData>
#include <QMouseEvent>
#include <QUrl>

DragOutButton::DragOutButton(QWidget* parent) : QToolButton(parent) {
    setText(tr("Drag out"));
    setToolTip(tr("Drag the drawing from here into another program."));
    setCursor(Qt::OpenHandCursor);
}

void DragOutButton::startDrag(const QString& fileName) {
    if (!isHeld)
        return;
    isHeld = false;
    setDown(false);
    auto* drag = new QDrag(this);
    auto* data = new QMimeData;
    data->setUrls({QUrl::fromLocalFile(fileName)});
    drag->setMimeData(data);
    drag->exec(Qt::CopyAction);
}

void DragOutButton::mousePressEvent(QMouseEvent* event) {
    QToolButton::mousePressEvent(event);
    pressedAt = event->pos();
    isHeld = event->button() == Qt::LeftButton;
    isAsked = false;
}

void DragOutButton::mouseMoveEvent(QMouseEvent* event) {
    const int way = (event->pos() - pressedAt).manhattanLength();
    if (!isHeld || isAsked || way < QApplication::startDragDistance())
        return;
    isAsked = true;
    emit fileAsked();
}

void DragOutButton::mouseReleaseEvent(QMouseEvent* event) {
    QToolButton::mouseReleaseEvent(event);
    isHeld = false;
}
