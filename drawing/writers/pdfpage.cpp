#include "pdfpage.h"

#include <QString>

#include <algorithm>
#include <stdexcept>
#include <string>

namespace {

constexpr double PointsPerMillimetre = 72.0 / 25.4;
constexpr double UsualPixelMillimetres = 25.4 / 96.0;

/// Sides of a page that readers accept, in points.
constexpr double LongestSide = 14400.0;
constexpr double ShortestSide = 0.01;

/// What the paper may be too small by: a hundredth of a point, to which pages are exact.
constexpr double Slack = 0.01;

QString inMillimetres(QSizeF points) {
    const auto length = [](double value) {
        return QString::number(value / PointsPerMillimetre, 'f', 1);
    };
    return length(points.width()) + " x " + length(points.height()) + " mm";
}

/// The paper turned as the drawing is, unless it was said which way.
QSizeF paperSize(const PaperChoice& paper, QSizeF drawing) {
    const QSizeF size = paper.millimetres * PointsPerMillimetre;
    const bool isTurned = (size.width() > size.height()) != (drawing.width() > drawing.height());
    return isTurned && !paper.isTurned ? size.transposed() : size;
}

PdfPage onPaper(const Drawing& drawing, const WriterOptions& options, QSizeF ownSize) {
    PdfPage page;
    page.size = paperSize(*options.paper, ownSize);
    const double margin = options.marginMillimetres * PointsPerMillimetre;
    const QSizeF room = page.size - QSizeF(2.0 * margin, 2.0 * margin);
    if (room.width() <= 0.0 || room.height() <= 0.0)
        throw std::runtime_error("the margins leave no room on the paper");
    const QSizeF pixels = drawing.size;
    page.pointsPerPixel = drawing.pixelMillimetres ? *drawing.pixelMillimetres * PointsPerMillimetre
                                                   : std::min(room.width() / pixels.width(),
                                                              room.height() / pixels.height());
    const QSizeF size = pixels * page.pointsPerPixel;
    if (size.width() > room.width() + Slack || size.height() > room.height() + Slack)
        throw std::runtime_error(QString("a drawing of %1 does not fit into the %2 within the "
                                         "margins of the paper")
                                     .arg(inMillimetres(size), inMillimetres(room))
                                     .toStdString());
    page.corner = {(page.size.width() - size.width()) / 2.0,
                   (page.size.height() - size.height()) / 2.0};
    return page;
}

/// Text of the file that takes the place of another, possibly of another length.
struct Change {
    qsizetype place;
    qsizetype length;
    QByteArray text;
};

void changeDate(const QByteArray& pdf, const QByteArray& key, QList<Change>& changes) {
    const qsizetype place = pdf.indexOf(key);
    const qsizetype end = pdf.indexOf(')', place);
    if (place >= 0 && end >= 0)
        changes.append({place, end - place, key + "20000101000000Z"});
}

qsizetype shifted(qsizetype offset, const QList<Change>& changes) {
    qsizetype shift = 0;
    for (const Change& change : changes) {
        if (change.place < offset)
            shift += change.text.size() - change.length;
    }
    return offset + shift;
}

/// The table of objects' places, which is at the end, after the changes before it.
void shiftTable(QByteArray& pdf, const QList<Change>& changes) {
    constexpr int EntrySize = 20;
    constexpr int Digits = 10;
    const qsizetype start = pdf.lastIndexOf("startxref");
    const qsizetype table = pdf.lastIndexOf("\nxref\n", start) + 1;
    const qsizetype trailer = pdf.indexOf("trailer", table);
    qsizetype entry = pdf.indexOf('\n', pdf.indexOf('\n', table) + 1) + 1;
    for (; entry + EntrySize <= trailer; entry += EntrySize) {
        const qsizetype offset = pdf.mid(entry, Digits).toLongLong();
        if (pdf[entry + EntrySize - 3] == 'n')
            pdf.replace(entry, Digits,
                        QByteArray::number(shifted(offset, changes)).rightJustified(Digits, '0'));
    }
    const qsizetype number = pdf.indexOf('\n', start) + 1;
    pdf.replace(number, pdf.indexOf('\n', number) - number, QByteArray::number(table));
}

} // namespace

PdfPage layOutPage(const Drawing& drawing, const WriterOptions& options) {
    PdfPage page;
    page.pointsPerPixel =
        drawing.pixelMillimetres.value_or(UsualPixelMillimetres) * PointsPerMillimetre;
    page.size = QSizeF(drawing.size) * page.pointsPerPixel;
    if (options.paper)
        page = onPaper(drawing, options, page.size);
    if (std::max(page.size.width(), page.size.height()) > LongestSide)
        throw std::runtime_error("a PDF page can be no longer than 5.08 m; choose a smaller size");
    if (std::min(page.size.width(), page.size.height()) < ShortestSide)
        throw std::runtime_error(
            "a PDF page can be no shorter than 0.004 mm; choose a larger size");
    return page;
}

QByteArray withExactPage(const QByteArray& pdf, QSizeF size) {
    QList<Change> changes;
    const QByteArray key = "/MediaBox [";
    const qsizetype place = pdf.indexOf(key);
    const qsizetype end = pdf.indexOf(']', place);
    const QList<QByteArray> box = pdf.mid(place + key.size(), end - place - key.size()).split(' ');
    if (place < 0 || box.size() != 4)
        throw std::runtime_error("the PDF library writes pages of another form");
    // Qt counts y down from the page's upper edge, which stays where it is.
    const double top = box[3].toDouble();
    const auto number = [](double value) { return QByteArray::number(value, 'f', 4); };
    changes.append({place, end - place,
                    key + "0 " + number(top - size.height()) + ' ' + number(size.width()) + ' ' +
                        number(top)});
    changeDate(pdf, "/CreationDate (D:", changes);
    changeDate(pdf, "/ModDate (D:", changes);
    std::sort(changes.begin(), changes.end(),
              [](const Change& a, const Change& b) { return a.place > b.place; });
    QByteArray changed = pdf;
    for (const Change& change : changes)
        changed.replace(change.place, change.length, change.text);
    shiftTable(changed, changes);
    return changed;
}
