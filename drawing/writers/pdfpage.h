#pragma once

#include "../drawing.h"
#include "writeroptions.h"

#include <QByteArray>
#include <QPointF>
#include <QSizeF>

/// A page and the place of the drawing on it, in points.
struct PdfPage {
    QSizeF size;
    double pointsPerPixel = 0.0;
    QPointF corner; ///< the drawing's upper left one, from the page's, y down
};

/// The page that fits the drawing, or the paper that was asked for with the drawing in its middle:
/// in its true size when it has one, otherwise as large as the margins leave. Throws
/// std::runtime_error for a page that readers refuse and for a drawing that the paper cannot hold.
PdfPage layOutPage(const Drawing& drawing, const WriterOptions& options);

/// A PDF file of one page, as Qt writes it, with exactly that page in place of one of whole points
/// whose upper left corner is the same, and without anything that depends on when and where it was
/// written.
QByteArray withExactPage(const QByteArray& pdf, QSizeF size);
