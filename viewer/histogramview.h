#pragma once

#include <QList>
#include <QWidget>

/// The histogram of an image's lightness with a threshold in it that can be dragged.
class HistogramView : public QWidget {
    Q_OBJECT

public:
    explicit HistogramView(QWidget* parent = nullptr);

    /// How many pixels have each lightness, 0 to 255.
    void setCounts(const QList<qint64>& counts);
    void setThreshold(double threshold);

    QSize sizeHint() const override {
        return {256, 56};
    }

signals:
    void picked(double threshold, bool moving);

protected:
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;

private:
    double valueAt(double x) const;

    QList<qint64> counts;
    double threshold = 0.0;
};
