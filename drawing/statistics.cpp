#include "statistics.h"

#include "files/filename.h"
#include "memory.h"
#include "writers/painting.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <QPainter>
#include <QSet>

#include <algorithm>
#include <array>
#include <cstdlib>

namespace {

/// How many pixels differ by how much.
using Differences = std::array<qint64, 256>;

Differences differencesOf(const QImage& a, const QImage& b) {
    Differences counts{};
    for (int y = 0; y < a.height(); ++y) {
        const auto* rowA = reinterpret_cast<const QRgb*>(a.constScanLine(y));
        const auto* rowB = reinterpret_cast<const QRgb*>(b.constScanLine(y));
        for (int x = 0; x < a.width(); ++x) {
            const int difference = std::max({std::abs(qRed(rowA[x]) - qRed(rowB[x])),
                                             std::abs(qGreen(rowA[x]) - qGreen(rowB[x])),
                                             std::abs(qBlue(rowA[x]) - qBlue(rowB[x]))});
            ++counts[static_cast<std::size_t>(difference)];
        }
    }
    return counts;
}

void compare(const Drawing& drawing, Statistics& statistics) {
    QImage rendered(drawing.size, QImage::Format_RGB32);
    QImage image(drawing.size, QImage::Format_RGB32);
    for (QImage* each : {&rendered, &image})
        each->fill(Qt::white);
    QPainter onImage(&image);
    onImage.drawImage(0, 0, drawing.image);
    onImage.end();
    QPainter painter(&rendered);
    painter.setRenderHint(QPainter::Antialiasing);
    paintFilled(painter, drawing);
    painter.end();
    const Differences counts = differencesOf(rendered, image);
    const qint64 pixels = qint64(drawing.size.width()) * drawing.size.height();
    double sum = 0.0;
    qint64 within = 0;
    for (std::size_t difference = 0; difference < counts.size(); ++difference) {
        sum += static_cast<double>(counts[difference]) * static_cast<double>(difference);
        if (within * 100 < pixels * 99)
            statistics.highDifference = static_cast<int>(difference);
        within += counts[difference];
    }
    statistics.meanDifference = sum / static_cast<double>(pixels);
}

qsizetype countColors(const Drawing& drawing) {
    QSet<int> colors;
    for (const Shape& shape : drawing.shapes)
        colors.insert(shape.color);
    return colors.size();
}

} // namespace

Statistics measure(const QString& imageName, const Drawing& drawing, const Timings& timings) {
    Statistics statistics;
    statistics.image = imageName;
    statistics.size = drawing.size;
    statistics.colors = countColors(drawing);
    statistics.outlines = drawing.shapes.size();
    for (qsizetype i = 0; i < drawing.paths.size(); ++i) {
        for (const PathPiece& piece : drawing.paths.rawPieces(i))
            ++(piece.kind == PieceKind::Line ? statistics.lines : statistics.curves);
    }
    statistics.timings = timings;
    statistics.peakMemory = peakMemory();
    compare(drawing, statistics);
    return statistics;
}

QByteArray toJson(const Statistics& s) {
    const QJsonObject json{{"image", s.image},
                           {"width", s.size.width()},
                           {"height", s.size.height()},
                           {"colors", s.colors},
                           {"outlines", s.outlines},
                           {"lines", s.lines},
                           {"curves", s.curves},
                           {"nodes", s.lines + s.curves},
                           {"seconds", QJsonObject{{"reading", s.timings.reading},
                                                   {"tracing", s.timings.tracing},
                                                   {"writing", s.timings.writing}}},
                           {"peakMemory", s.peakMemory},
                           {"meanDifference", s.meanDifference},
                           {"difference99", s.highDifference}};
    return QJsonDocument(json).toJson(QJsonDocument::Compact) + '\n';
}

QByteArray tableHeading() {
    return "     size    colours outlines   lines  curves   nodes  read s trace s write s  MB  "
           "mean "
           "99 %  image\n";
}

QByteArray toTableRow(const Statistics& s) {
    const auto number = [](double value, int digits) {
        return QString::number(value, 'f', digits);
    };
    return QString("%1 %2 %3 %4 %5 %6 %7 %8 %9")
               .arg(QString("%1x%2").arg(s.size.width()).arg(s.size.height()), 12)
               .arg(s.colors, 7)
               .arg(s.outlines, 8)
               .arg(s.lines, 7)
               .arg(s.curves, 7)
               .arg(s.lines + s.curves, 7)
               .arg(number(s.timings.reading, 3), 7)
               .arg(number(s.timings.tracing, 3), 7)
               .arg(number(s.timings.writing, 3), 7)
               .toUtf8() +
           QString(" %1 %2 %3  %4\n")
               .arg(number(s.peakMemory / 1e6, 0), 4)
               .arg(number(s.meanDifference, 1), 5)
               .arg(s.highDifference, 4)
               .arg(presentable(s.image))
               .toUtf8();
}
