#include "pdfwriter.h"

#include "painting.h"
#include "visible.h"

#include <QBuffer>
#include <QPageSize>
#include <QPainter>
#include <QPdfWriter>

#include <algorithm>

namespace {

constexpr double PointsPerMillimetre = 72.0 / 25.4;
constexpr double UsualPixelMillimetres = 25.4 / 96.0;

/// Longest side of a page that readers accept, in points.
constexpr double LongestSide = 14400.0;

/// The same drawing gives the same file: the time of writing is left out.
void clearDate(QByteArray& pdf) {
    const QByteArray key = "/CreationDate (D:";
    const qsizetype place = pdf.indexOf(key);
    if (place < 0)
        return;
    const qsizetype start = place + key.size();
    const qsizetype end = pdf.indexOf(')', start);
    constexpr QByteArrayView Fixed = "20000101000000Z";
    // As long as it was, so that the offsets in the file stay right.
    for (qsizetype i = start; i < end; ++i)
        pdf[i] = i - start < Fixed.size() ? Fixed[i - start] : ' ';
}

} // namespace

void PdfWriter::write(const Drawing& drawing, QIODevice& device) const {
    const double points =
        drawing.pixelMillimetres.value_or(UsualPixelMillimetres) * PointsPerMillimetre;
    const QSizeF page = QSizeF(drawing.size) * points;
    if (std::max(page.width(), page.height()) > LongestSide)
        throw std::runtime_error("a PDF page can be no longer than 5.08 m; choose a smaller size");
    QByteArray pdf;
    QBuffer buffer(&pdf);
    buffer.open(QIODevice::WriteOnly);
    {
        QPdfWriter writer(&buffer);
        writer.setTitle(drawing.title);
        writer.setCreator("ovtrace");
        writer.setResolution(1200);
        writer.setPageSize(QPageSize(page, QPageSize::Point, QString(), QPageSize::ExactMatch));
        writer.setPageMargins(QMarginsF());
        QPainter painter(&writer);
        const double scale = points * writer.resolution() / 72.0;
        painter.scale(scale, scale);
        paintFilled(painter, visibleParts(drawing, options), options.cutOut);
    }
    clearDate(pdf);
    device.write(pdf);
}
