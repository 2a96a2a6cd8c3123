#pragma once

#include <QColor>
#include <QList>
#include <QWidget>

class QListWidget;
class QListWidgetItem;
class QToolButton;

/// A colour of the result.
struct PaletteEntry {
    QColor color;
    double share = 0.0; ///< of the drawing's area, 0 to 1
    int outlines = 0;
    bool isHidden = false;
};

/// The colours of the result: their shares, which of them are shown, and what they shall be.
///
/// Editing, adding, removing and ordering make a list of fixed colours of them.
class PalettePanel : public QWidget {
    Q_OBJECT

public:
    explicit PalettePanel(QWidget* parent = nullptr);

    /// Shows colours; `isFixed` says that they are given and not found. Emits nothing.
    void show(const QList<PaletteEntry>& entries, bool isFixed);
    void setPicking(bool picking);

    /// The colour of a row; what the list holds now, in its order.
    QList<QColor> colors() const;

signals:
    /// The row that is chosen; -1 for none.
    void selected(int row);
    void hiddenChanged(const QList<QColor>& hidden);
    /// These shall be the colours, in this order.
    void fixed(const QList<QColor>& colors);
    /// Colours shall be found again.
    void released();
    /// The next click into the image shall add its colour.
    void pickingAsked(bool on);

private:
    static QString nameOf(const QColor& color);
    void edit(QListWidgetItem* item);
    void removeSelected();
    void fixWith(const QList<QColor>& colors);

    QListWidget* list;
    QToolButton* add;
    QToolButton* remove;
    QToolButton* fix;
    bool isShowing = false;
};
