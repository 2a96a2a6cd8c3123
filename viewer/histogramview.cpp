#include "histogramview.h"

#include <QMouseEvent>
#include <QPainter>

#include <algorithm>
#include <cmath>

namespace {

constexpr int Levels = 256;

} // namespace

HistogramView::HistogramView(QWidget* parent) : QWidget(parent) {
    setAccessibleName(tr("Histogram of lightness"));
    setMinimumHeight(40);
    setCursor(Qt::SplitHCursor);
}

void HistogramView::setCounts(const QList<qint64>& newCounts) {
    counts = newCounts;
    update();
}

void HistogramView::setThreshold(double newThreshold) {
    threshold = newThreshold;
    update();
}

double HistogramView::valueAt(double x) const {
    return std::clamp(std::floor(x / std::max(1, width()) * Levels), 0.0, double(Levels - 1));
}

void HistogramView::mousePressEvent(QMouseEvent* event) {
    emit picked(valueAt(event->position().x()), true);
}

void HistogramView::mouseMoveEvent(QMouseEvent* event) {
    if (event->buttons().testFlag(Qt::LeftButton))
        emit picked(valueAt(event->position().x()), true);
}

void HistogramView::mouseReleaseEvent(QMouseEvent* event) {
    emit picked(valueAt(event->position().x()), false);
}

/// Heights are square roots, so that a few dark pixels show beside much paper.
void HistogramView::paintEvent(QPaintEvent* /*event*/) {
    QPainter painter(this);
    painter.fillRect(rect(), palette().color(QPalette::Base));
    if (counts.size() == Levels) {
        const double highest =
            std::sqrt(double(std::max(qint64(1), *std::max_element(counts.begin(), counts.end()))));
        const double step = width() / double(Levels);
        for (int level = 0; level < Levels; ++level) {
            const double share = std::sqrt(double(counts[level])) / highest;
            painter.fillRect(QRectF(level * step, height() * (1.0 - share), step, height() * share),
                             palette().color(level > threshold ? QPalette::Mid : QPalette::Text));
        }
    }
    const double x = (threshold + 1.0) / Levels * width();
    painter.fillRect(QRectF(x - 1.0, 0, 2.0, height()), palette().color(QPalette::Highlight));
}
