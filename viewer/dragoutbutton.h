#pragma once

#include <QToolButton>

/// A button from which the drawing can be dragged into another program as a file.
class DragOutButton : public QToolButton {
    Q_OBJECT

public:
    explicit DragOutButton(QWidget* parent = nullptr);

    /// Begins the drag with a file that was asked for, if the button is still held.
    void startDrag(const QString& fileName);

signals:
    /// The button is held and moved: a file is wanted.
    void fileAsked();

protected:
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;

private:
    QPoint pressedAt;
    bool isHeld = false;
    bool isAsked = false;
};
