// The canvas: zoom, pan, marks, and pictures of its views beside kept ones.

#include "support/windowtest.h"

#include <viewer/canvas.h>

#include <QApplication>
#include <QDir>
#include <QLabel>
#include <QListWidget>
#include <QNativeGestureEvent>
#include <QPointingDevice>
#include <QSignalSpy>
#include <QStyle>
#include <QStyleFactory>

#include <algorithm>
#include <cmath>
#include <memory>

namespace {

constexpr int MostDifferent = 48;    ///< of a channel, in pixels that are alike
constexpr double MostUnlike = 0.002; ///< share of the pixels: edges are smoothed by the system's Qt
const QColor SelectionColor(0, 120, 255); ///< as the canvas marks a colour

int difference(QRgb a, QRgb b) {
    return std::max({std::abs(qRed(a) - qRed(b)), std::abs(qGreen(a) - qGreen(b)),
                     std::abs(qBlue(a) - qBlue(b))});
}

/// How large the share of pixels is that are not alike.
double shareOfUnlike(const QImage& a, const QImage& b) {
    if (a.size() != b.size())
        return 1.0;
    qint64 unlike = 0;
    for (int y = 0; y < a.height(); ++y) {
        for (int x = 0; x < a.width(); ++x)
            unlike += difference(a.pixel(x, y), b.pixel(x, y)) > MostDifferent ? 1 : 0;
    }
    return double(unlike) / (double(a.width()) * a.height());
}

int countPixels(const QImage& image, const QColor& color) {
    int count = 0;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x)
            count += difference(image.pixel(x, y), color.rgb()) < MostDifferent ? 1 : 0;
    }
    return count;
}

} // namespace

class ViewerCanvasTest : public WindowTest {
    Q_OBJECT

private slots:
    void zoomsAtThePointer();
    void pinchingZooms();
    void pansAndStaysInView();
    void theSpaceBarPans();
    void theDividerIsDragged();
    void marksTheOutlineBelowThePointer();
    void marksTheOutlinesOfAColor();
    void viewsLookAsTheyDid_data();
    void viewsLookAsTheyDid();

private:
    Canvas* canvas() const {
        return window->findChild<Canvas*>();
    }
    /// Where a place of the image is in the canvas.
    QPoint inCanvas(QPointF place) const {
        return ((place - canvas()->toImage({0, 0})) * canvas()->zoom()).toPoint();
    }
    QImage picture() {
        canvas()->grab(); // asks for what is missing
        if (!QTest::qWaitFor([this] { return canvas()->isComplete(); }, Patience))
            return {};
        return canvas()->grab().toImage();
    }
};

void ViewerCanvasTest::zoomsAtThePointer() {
    openAndWait(sample("logo.png"));
    const QPointF anchor(200, 150);
    const QPointF before = canvas()->toImage(anchor);
    canvas()->setZoom(canvas()->zoom() * 5.0, anchor);
    const QPointF after = canvas()->toImage(anchor);
    QVERIFY((before - after).manhattanLength() < 1e-9);
    canvas()->setZoom(1e9, anchor);
    QCOMPARE(canvas()->zoom(), 64.0);
    find<QAction>("zoom.fit")->trigger();
    QVERIFY(canvas()->zoom() * canvas()->scene()->size().width() <= canvas()->width());
}

void ViewerCanvasTest::pansAndStaysInView() {
    openAndWait(sample("logo.png"));
    canvas()->setZoom(8.0, QRectF(canvas()->rect()).center());
    const QPointF before = canvas()->toImage({0, 0});
    canvas()->panBy({-80, 0});
    QCOMPARE(canvas()->toImage({0, 0}).x(), before.x() + 10.0);
    canvas()->panBy({1e6, 1e6});
    const QPointF middle = canvas()->toImage(QRectF(canvas()->rect()).center());
    QVERIFY(QRectF(QPointF(0, 0), QSizeF(canvas()->scene()->size()))
                .adjusted(-1, -1, 1, 1)
                .contains(middle));
}

void ViewerCanvasTest::marksTheOutlineBelowThePointer() {
    const QString name = folder->filePath("picture.png");
    QVERIFY(smallPicture().save(name));
    set("method", "regions");
    openAndWait(name);
    QSignalSpy pointed(canvas(), &Canvas::pointed);
    QTest::mouseMove(canvas(), inCanvas({20, 20}));
    QTRY_VERIFY(!pointed.isEmpty());
    const int outline = pointed.last()[1].toInt();
    QVERIFY(outline >= 0);
    QCOMPARE(canvas()->scene()->outlines()[static_cast<std::size_t>(outline)].color,
             QColor(200, 30, 30));
    QVERIFY(find<QLabel>("pointer")->text().contains("#c81e1e"));
}

void ViewerCanvasTest::pinchingZooms() {
    openAndWait(sample("logo.png"));
    const QPointF anchor(300, 200);
    const QPointF kept = canvas()->toImage(anchor);
    const double before = canvas()->zoom();
    QNativeGestureEvent pinch(Qt::ZoomNativeGesture, QPointingDevice::primaryPointingDevice(), 2,
                              anchor, anchor, anchor, 0.5, {});
    QApplication::sendEvent(canvas(), &pinch);
    QCOMPARE(canvas()->zoom(), before * 1.5);
    QVERIFY((canvas()->toImage(anchor) - kept).manhattanLength() < 1e-9);
}

void ViewerCanvasTest::theSpaceBarPans() {
    openAndWait(sample("logo.png"));
    canvas()->setZoom(8.0, QRectF(canvas()->rect()).center());
    const QPointF before = canvas()->toImage({0, 0});
    QTest::keyPress(canvas(), Qt::Key_Space);
    QTest::mousePress(canvas(), Qt::LeftButton, {}, {200, 200});
    QTest::mouseMove(canvas(), {160, 184});
    QTest::mouseRelease(canvas(), Qt::LeftButton, {}, {160, 184});
    QTest::keyRelease(canvas(), Qt::Key_Space);
    QCOMPARE(canvas()->toImage({0, 0}), before + QPointF(5.0, 2.0));
}

void ViewerCanvasTest::theDividerIsDragged() {
    openSmallPicture();
    set("method", "regions");
    set("palette", QStringList{"#ffffff", "#000000"}); // what was traced is seen by its colour
    QVERIFY(waitForResult());
    find<QAction>("view.split")->trigger();
    const QImage before = picture();
    const QPoint middle(canvas()->width() / 2, canvas()->height() / 2);
    QTest::mousePress(canvas(), Qt::LeftButton, {}, middle);
    QTest::mouseMove(canvas(), {2, middle.y()});
    QTest::mouseRelease(canvas(), Qt::LeftButton, {}, {2, middle.y()});
    const QImage after = picture();
    QVERIFY(countPixels(before, QColor(200, 30, 30)) > 0);
    QCOMPARE(countPixels(after, QColor(200, 30, 30)), 0);
    QVERIFY(countPixels(after, Qt::black) > countPixels(before, Qt::black));
}

void ViewerCanvasTest::marksTheOutlinesOfAColor() {
    set("method", "regions");
    openSmallPicture();
    QCOMPARE(countPixels(picture(), SelectionColor), 0);
    find<QListWidget>("palette")->setCurrentRow(1);
    QVERIFY(countPixels(picture(), SelectionColor) > 50);
    find<QListWidget>("palette")->setCurrentRow(-1);
    QCOMPARE(countPixels(picture(), SelectionColor), 0);
}

void ViewerCanvasTest::viewsLookAsTheyDid_data() {
    QTest::addColumn<QString>("view");
    for (const char* view : {"image", "result", "overlay", "split"})
        QTest::addRow("%s", view) << view;
}

/// The kept pictures are made anew with OVTRACE_UPDATE_GOLDEN set.
void ViewerCanvasTest::viewsLookAsTheyDid() {
    QFETCH(QString, view);
    // In the colours of one style, whatever the system's are.
    const std::unique_ptr<QStyle> style(QStyleFactory::create("Fusion"));
    QApplication::setPalette(style->standardPalette());
    set("method", "outlines");
    openAndWait(sample("sprite.png"));
    find<QAction>(qPrintable("view." + view))->trigger();
    canvas()->setFixedSize(360, 280);
    QTRY_COMPARE(canvas()->size(), QSize(360, 280));
    canvas()->zoomToFit();
    const QString name = QStringLiteral(OVTRACE_GOLDEN "/views/") + view + ".png";
    const QImage seen = picture().convertToFormat(QImage::Format_RGB32);
    if (qEnvironmentVariableIsSet("OVTRACE_UPDATE_GOLDEN"))
        QVERIFY(seen.save(name));
    const double unlike = shareOfUnlike(seen, QImage(name));
    QVERIFY2(unlike <= MostUnlike, qPrintable(QString::number(unlike)));
}

QTEST_MAIN(ViewerCanvasTest)
#include "viewer_canvas_test.moc"
