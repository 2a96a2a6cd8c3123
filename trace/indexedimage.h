#pragma once

#include "traceexport.h"

#include <QList>

/// A palette-indexed image with its traced outlines, as plain lists.
class OVTRACE_EXPORT IndexedImage {
public:
    IndexedImage();
    /// Takes both lists; the size follows from `array`, which has at least one row.
    IndexedImage(const QList<QList<int>>& array, const QList<QList<char>>& palette);

    int width = 0;  ///< pixels, without the border
    int height = 0; ///< pixels, without the border
    /// height + 2 rows of width + 2 palette indices, with a border of -1 all around.
    QList<QList<int>> array;
    /// Colours of four stored bytes: red, green, blue, alpha, each the channel value minus 128.
    QList<QList<char>> palette;
    /// Layers (one a colour) of paths of segments of seven numbers; y grows downwards.
    QList<QList<QList<QList<double>>>> tracedata;
};
