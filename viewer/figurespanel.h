#pragma once

#include <drawing/statistics.h>

#include <QWidget>

class QFormLayout;
class QLabel;

/// Figures about the result as it stands.
class FiguresPanel : public QWidget {
    Q_OBJECT

public:
    explicit FiguresPanel(QWidget* parent = nullptr);

    /// `fileSize` is that of the file in `format`, in bytes.
    void show(const Statistics& statistics, qint64 fileSize, const QString& format);
    /// The figures are not those of what is seen until show() comes.
    void setOutdated();

private:
    QLabel* addRow(const QString& name);

    QFormLayout* layout;
    QLabel* shapes;
    QLabel* nodes;
    QLabel* pieces;
    QLabel* fileSize;
    QLabel* difference;
    QLabel* seconds;
};
