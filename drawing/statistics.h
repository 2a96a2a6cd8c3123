#pragma once

#include "drawing.h"
#include "settings.h"

#include <QByteArray>

/// Seconds spent on an image.
struct Timings {
    double reading = 0.0;
    double tracing = 0.0;
    double writing = 0.0;
};

/// Figures about one result.
struct Statistics {
    QString image;
    QSize size;
    qsizetype colors = 0;   ///< that shapes and strokes have
    qsizetype outlines = 0; ///< of the engine
    qsizetype regions = 0;  ///< or areas beside strokes
    qsizetype holes = 0;
    qsizetype strokes = 0;
    // Pieces, each counted once however many regions share it.
    qsizetype lines = 0;
    qsizetype arcs = 0;
    qsizetype circles = 0; ///< and ellipses
    qsizetype curves = 0;  ///< of Bézier
    Timings timings;
    double peakMemory = 0.0; ///< bytes, of the process
    /// Differences between the rendered result and the image that was traced: of a pixel's red,
    /// green and blue the largest, 0 to 255.
    double meanDifference = 0.0;
    int highDifference = 0; ///< 99 of 100 pixels differ by no more
};

/// All pieces: as many as there are nodes, but for the free ends of strokes.
constexpr qsizetype countNodes(const Statistics& s) {
    return s.lines + s.arcs + s.circles + s.curves;
}

/// Counts, renders and compares.
Statistics measure(const QString& imageName, const Drawing& drawing, const Timings& timings);

/// One line of JSON, or a table's row; the table's heading comes before the first.
QByteArray toJson(const Statistics& statistics);
QByteArray toTableRow(const Statistics& statistics);
QByteArray tableHeading();
