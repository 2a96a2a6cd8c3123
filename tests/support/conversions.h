#pragma once

#include <color.h>
#include <indexgrid.h>
#include <pixelimage.h>
#include <tracerecords.h>

#include <QImage>
#include <QList>

// The engine's records as the nested lists of numbers that the reference uses, and back.

/// Every cell of the grid, border included, with -1 for the border.
QList<QList<int>> toLists(const ovtrace::IndexGrid& grid);
QList<QList<int>> toLists(const ovtrace::Path& path);
QList<QList<double>> toLists(const ovtrace::InternodePath& nodes);
QList<QList<double>> toLists(const ovtrace::TracedPath& segments);

/// The image whose pixels are the given indices, row by row, and whose palette has `colors`.
ovtrace::QuantizedImage quantizedImage(const QList<QList<int>>& rows, int colors);

ovtrace::Path toPath(const QList<QList<int>>& points);
ovtrace::InternodePath toNodes(const QList<QList<double>>& nodes);

/// An image of the given stored pixels (four bytes each), row by row, with all channels.
ovtrace::PixelImage imageOf(int width, int height, const QList<QList<char>>& pixels);
/// The same from the bytes one after another.
ovtrace::PixelImage toPixels(int width, int height, const QList<char>& bytes);
/// Four stored bytes for every pixel.
QList<char> toBytes(const ovtrace::PixelImage& image);
