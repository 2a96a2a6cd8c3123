#include "statistics.h"

#include "files/filename.h"
#include "memory.h"
#include "raster/channels.h"
#include "raster/imagerows.h"
#include "writers/picture.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <QSet>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <new>

namespace {

/// How many pixels differ by how much.
using Differences = std::array<qint64, 256>;

/// Of the picture from the drawing's image, both on white.
Differences differencesFromImage(const QImage& picture, const Drawing& drawing) {
    constexpr QRgb White = 0xffffffff;
    Differences counts{};
    ImageRows image(drawing.image, drawing.size);
    for (int y = 0; y < picture.height(); ++y) {
        const auto* painted = reinterpret_cast<const QRgb*>(picture.constScanLine(y));
        const QRgb* traced = image.row(y);
        for (int x = 0; x < picture.width(); ++x) {
            const QRgb a = over(painted[x], White);
            const QRgb b = over(traced[x], White);
            const int difference =
                std::max({std::abs(qRed(a) - qRed(b)), std::abs(qGreen(a) - qGreen(b)),
                          std::abs(qBlue(a) - qBlue(b))});
            ++counts[static_cast<std::size_t>(difference)];
        }
    }
    return counts;
}

void compare(const Drawing& drawing, Statistics& statistics) {
    QImage picture(drawing.size, QImage::Format_ARGB32_Premultiplied);
    if (picture.isNull())
        throw std::bad_alloc();
    picture.fill(Qt::transparent);
    PicturePainter(picture, drawing, 1.0).paintFilled();
    const Differences counts = differencesFromImage(picture, drawing);
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
    for (const Stroke& stroke : drawing.strokes)
        colors.insert(stroke.color);
    return colors.size();
}

void countPieces(const Drawing& drawing, Statistics& statistics) {
    for (qsizetype i = 0; i < drawing.paths.size(); ++i) {
        for (const PathPiece& piece : drawing.paths.rawPieces(i)) {
            switch (piece.kind) {
            case PieceKind::Line:
                ++statistics.lines;
                break;
            case PieceKind::Arc:
                ++statistics.arcs;
                break;
            case PieceKind::Circle:
            case PieceKind::Ellipse:
                ++statistics.circles;
                break;
            case PieceKind::Quadratic:
            case PieceKind::Cubic:
                ++statistics.curves;
                break;
            }
        }
    }
}

} // namespace

Statistics measure(const QString& imageName, const Drawing& drawing, const Timings& timings) {
    Statistics statistics;
    statistics.image = imageName;
    statistics.size = drawing.size;
    statistics.colors = countColors(drawing);
    for (const Shape& shape : drawing.shapes) {
        ++(shape.kind == ShapeKind::Outline ? statistics.outlines : statistics.regions);
        statistics.holes += shape.ringCount - 1;
    }
    statistics.strokes = drawing.strokes.size();
    countPieces(drawing, statistics);
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
                           {"regions", s.regions},
                           {"holes", s.holes},
                           {"strokes", s.strokes},
                           {"lines", s.lines},
                           {"arcs", s.arcs},
                           {"circles", s.circles},
                           {"curves", s.curves},
                           {"nodes", countNodes(s)},
                           {"seconds", QJsonObject{{"reading", s.timings.reading},
                                                   {"tracing", s.timings.tracing},
                                                   {"writing", s.timings.writing}}},
                           {"peakMemory", s.peakMemory},
                           {"meanDifference", s.meanDifference},
                           {"difference99", s.highDifference}};
    return QJsonDocument(json).toJson(QJsonDocument::Compact) + '\n';
}

QByteArray tableHeading() {
    return "     size    colours  shapes  holes strokes   lines   arcs circles curves   nodes  "
           "read s "
           "trace s write s  MB  mean 99 %  image\n";
}

QByteArray toTableRow(const Statistics& s) {
    const auto number = [](double value, int digits) {
        return QString::number(value, 'f', digits);
    };
    QString row = QString("%1x%2").arg(s.size.width()).arg(s.size.height()).rightJustified(12);
    const QList<QPair<qsizetype, int>> counts{{s.colors, 7},     {s.outlines + s.regions, 7},
                                              {s.holes, 6},      {s.strokes, 7},
                                              {s.lines, 7},      {s.arcs, 6},
                                              {s.circles, 7},    {s.curves, 6},
                                              {countNodes(s), 7}};
    for (const auto& [count, width] : counts)
        row += QString(" %1").arg(count, width);
    for (const double seconds : {s.timings.reading, s.timings.tracing, s.timings.writing})
        row += QString(" %1").arg(number(seconds, 3), 7);
    row += QString(" %1 %2 %3  %4\n")
               .arg(number(s.peakMemory / 1e6, 0), 4)
               .arg(number(s.meanDifference, 1), 5)
               .arg(s.highDifference, 4)
               .arg(presentable(s.image));
    return row.toUtf8();
}
