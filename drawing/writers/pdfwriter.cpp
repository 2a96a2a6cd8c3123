#include "pdfwriter.h"

#include "painting.h"
#include "pdfpage.h"
#include "visible.h"

#include <QBuffer>
#include <QPageSize>
#include <QPainter>
#include <QPdfWriter>

#include <cmath>

void PdfWriter::write(const Drawing& drawing, QIODevice& device) const {
    const PdfPage page = layOutPage(drawing, options);
    QByteArray pdf;
    QBuffer buffer(&pdf);
    buffer.open(QIODevice::WriteOnly);
    {
        QPdfWriter writer(&buffer);
        writer.setTitle(drawing.title);
        writer.setCreator("ovtrace");
        writer.setResolution(1200);
        // Qt's pages have whole points: one that holds the true page, which then takes its place.
        const QSizeF whole(std::ceil(page.size.width()) + 1.0, std::ceil(page.size.height()) + 1.0);
        writer.setPageSize(QPageSize(whole, QPageSize::Point, QString(), QPageSize::ExactMatch));
        writer.setPageMargins(QMarginsF());
        QPainter painter(&writer);
        const double dots = writer.resolution() / 72.0;
        painter.scale(dots, dots);
        painter.translate(page.corner);
        painter.scale(page.pointsPerPixel, page.pointsPerPixel);
        paintFilled(painter, visibleParts(drawing, options), options.cutOut);
    }
    device.write(withExactPage(pdf, page.size));
}
