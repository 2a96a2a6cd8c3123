#include "figurespanel.h"

#include <QFormLayout>
#include <QLabel>
#include <QLocale>

FiguresPanel::FiguresPanel(QWidget* parent) : QWidget(parent), layout(new QFormLayout(this)) {
    shapes = addRow(tr("Outlines"));
    pieces = addRow(tr("Lines and curves"));
    nodes = addRow(tr("Nodes"));
    fileSize = addRow(tr("File"));
    difference = addRow(tr("Mean difference"));
    difference->setToolTip(tr("How far the painted result is from the image, 0 to 255."));
    seconds = addRow(tr("Seconds"));
}

QLabel* FiguresPanel::addRow(const QString& name) {
    auto* value = new QLabel(this);
    value->setAccessibleName(name);
    value->setTextInteractionFlags(Qt::TextSelectableByMouse);
    layout->addRow(name, value);
    return value;
}

void FiguresPanel::show(const Statistics& statistics, qint64 bytes, const QString& format) {
    setEnabled(true);
    const QLocale words = locale();
    const qsizetype all = statistics.outlines + statistics.regions + statistics.strokes;
    shapes->setText(tr("%1, %2 holes").arg(words.toString(all), words.toString(statistics.holes)));
    const qsizetype curves = statistics.arcs + statistics.circles + statistics.curves;
    pieces->setText(
        tr("%1 lines, %2 curves").arg(words.toString(statistics.lines), words.toString(curves)));
    nodes->setText(words.toString(countNodes(statistics)));
    fileSize->setText(
        tr("%1 as %2")
            .arg(words.formattedDataSize(bytes, 1, QLocale::DataSizeSIFormat), format.toUpper()));
    difference->setText(words.toString(statistics.meanDifference, 'f', 2));
    seconds->setText(words.toString(statistics.timings.tracing, 'f', 3));
}

void FiguresPanel::setOutdated() {
    setEnabled(false);
}
