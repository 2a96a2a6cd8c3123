// The window as a person uses it. What is written is compared with what the program writes.

#include "support/program.h"

#include <viewer/canvas.h>
#include <viewer/dragoutbutton.h>
#include <viewer/mainwindow.h>
#include <viewer/messagebar.h>
#include <viewer/palettepanel.h>

#include <drawing/settingvalue.h>

#include <QAbstractSlider>
#include <QApplication>
#include <QClipboard>
#include <QComboBox>
#include <QDir>
#include <QDragEnterEvent>
#include <QDropEvent>
#include <QFile>
#include <QLabel>
#include <QListWidget>
#include <QMimeData>
#include <QProcess>
#include <QSettings>
#include <QSignalSpy>
#include <QSpinBox>
#include <QTemporaryDir>
#include <QTest>
#include <QToolButton>

#include <memory>

namespace {

constexpr int Patience = 60000; ///< milliseconds, for sanitizers on a busy machine

/// A picture of two rectangles.
QImage smallPicture() {
    QImage picture(60, 40, QImage::Format_RGB32);
    picture.fill(Qt::white);
    for (int y = 10; y < 30; ++y) {
        for (int x = 10; x < 30; ++x) {
            picture.setPixel(x, y, qRgb(200, 30, 30));
            picture.setPixel(x + 20, y, qRgb(30, 30, 200));
        }
    }
    return picture;
}

} // namespace

class ViewerTest : public QObject {
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void opensAFile();
    void opensADroppedFile();
    void opensAPastedPicture();
    void opensARecentFile();
    void saysWhatCannotBeRead();
    void aDeletedImageIsSaidInTheWindow();
    void aBurstOfChangesEndsInTheLast();
    void aNewerChangeCancels();
    void undoAndRedo();
    void aSliderOnItsWayIsOneStep();
    void comparesWithTheLast();
    void picksAColorFromTheImage();
    void hidesAColor();
    void exportsWhatTheProgramWrites_data();
    void exportsWhatTheProgramWrites();
    void theCopiedCommandMakesTheSameFile();
    void copiesAsSvgAndPicture();
    void savedSettingsAreRead();
    void closesWhileTracing();
    void manyImagesDoNotGrow();
    void zoomsAtThePointer();
    void pansAndStaysInView();
    void marksTheOutlineBelowThePointer();
    void everyControlHasAName();

private:
    bool waitForResult();
    void openAndWait(const QString& fileName);
    QString messageShown() const {
        return window->findChild<MessageBar*>()->message();
    }
    template <typename Widget> Widget* find(const char* name) const {
        return window->findChild<Widget*>(QString::fromLatin1(name));
    }
    void set(const char* key, const QVariant& value);

    std::unique_ptr<QTemporaryDir> folder;
    std::unique_ptr<MainWindow> window;
};

void ViewerTest::init() {
    folder = std::make_unique<QTemporaryDir>();
    QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, folder->path());
    QSettings().clear();
    window = std::make_unique<MainWindow>();
    window->resize(1000, 700);
    window->show();
}

void ViewerTest::cleanup() {
    window.reset();
    folder.reset();
}

/// Waits until the newest settings have their result.
bool ViewerTest::waitForResult() {
    return QTest::qWaitFor([this] { return !window->document().isTracing(); }, Patience);
}

void ViewerTest::openAndWait(const QString& fileName) {
    window->open(fileName);
    QVERIFY(waitForResult());
    QVERIFY2(window->document().result(), qPrintable(messageShown()));
}

void ViewerTest::set(const char* key, const QVariant& value) {
    JobSettings settings = window->document().settings();
    settings.set(key, value);
    window->document().change(settings, key);
}

void ViewerTest::opensAFile() {
    openAndWait(sample("logo.png"));
    const auto result = window->document().result();
    QCOMPARE(result->drawing.size, QImage(sample("logo.png")).size());
    QVERIFY(!result->drawing.isEmpty());
    QCOMPARE(messageShown(), QString());
}

void ViewerTest::opensADroppedFile() {
    QMimeData data;
    data.setUrls({QUrl::fromLocalFile(sample("sprite.png"))});
    QDragEnterEvent enter(QPoint(100, 100), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(window.get(), &enter);
    QVERIFY(enter.isAccepted());
    QDropEvent drop(QPointF(100, 100), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(window.get(), &drop);
    QVERIFY(waitForResult());
    QVERIFY2(window->document().result(), qPrintable(messageShown()));
    QCOMPARE(window->document().result()->drawing.size, QImage(sample("sprite.png")).size());
}

void ViewerTest::opensAPastedPicture() {
    QApplication::clipboard()->setImage(smallPicture());
    find<QAction>("paste")->trigger();
    QVERIFY(waitForResult());
    QVERIFY2(window->document().result(), qPrintable(messageShown()));
    QCOMPARE(window->document().result()->drawing.size, QSize(60, 40));
}

void ViewerTest::opensARecentFile() {
    openAndWait(sample("sprite.png"));
    window->close();
    window = std::make_unique<MainWindow>();
    const auto actions = window->findChildren<QAction*>();
    const auto recent = std::find_if(actions.begin(), actions.end(), [](QAction* action) {
        return action->text().endsWith("sprite.png");
    });
    QVERIFY(recent != actions.end());
    (*recent)->trigger();
    QVERIFY(waitForResult());
    QVERIFY(window->document().result());
}

void ViewerTest::saysWhatCannotBeRead() {
    const QString broken = folder->filePath("broken.png");
    QFile file(broken);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write("no picture");
    file.close();
    window->open(broken);
    QVERIFY(waitForResult());
    QVERIFY(messageShown().contains("broken.png"));
    QCOMPARE(QApplication::activeModalWidget(), nullptr);
    openAndWait(sample("sprite.png"));
    QCOMPARE(messageShown(), QString());
}

void ViewerTest::aDeletedImageIsSaidInTheWindow() {
    const QString name = folder->filePath("soon gone.png");
    QVERIFY(smallPicture().save(name));
    openAndWait(name);
    QVERIFY(QFile::remove(name));
    set("background", "#00ff00"); // the file is read again
    QVERIFY(waitForResult());
    QVERIFY(messageShown().contains("soon gone.png"));
}

void ViewerTest::aBurstOfChangesEndsInTheLast() {
    openAndWait(sample("logo.png"));
    set("method", "outlines");
    for (int i = 0; i < 200; ++i) {
        set("numberofcolors", 2.0 + i % 30);
        QTest::qWait(10);
    }
    set("numberofcolors", 5.0);
    QVERIFY(waitForResult());
    const QString written = folder->filePath("window.svg");
    QSignalSpy done(&window->document(), &Document::written);
    window->exportTo(window->document().settings(), written);
    QVERIFY(done.wait(Patience));
    const QString expected = folder->filePath("program.svg");
    QCOMPARE(
        run({sample("logo.png"), "--method", "outlines", "--colors", "5", "-q", "-o", expected})
            .status,
        0);
    QCOMPARE(contents(written), contents(expected));
}

void ViewerTest::aNewerChangeCancels() {
    QImage noise(3000, 2000, QImage::Format_RGB32);
    quint32 state = 1;
    for (int y = 0; y < noise.height(); ++y) {
        for (int x = 0; x < noise.width(); ++x) {
            state = state * 1664525U + 1013904223U;
            noise.setPixel(x, y, state >> 8);
        }
    }
    const QString name = folder->filePath("noise.bmp");
    QVERIFY(noise.save(name));
    set("method", "outlines");
    QSignalSpy results(&window->document(), &Document::traced);
    window->open(name);
    QSignalSpy read(&window->document(), &Document::imageRead);
    QVERIFY(read.wait(Patience));
    openAndWait(sample("sprite.png"));
    QCOMPARE(results.count(), 1);
    QCOMPARE(window->document().result()->drawing.size, QImage(sample("sprite.png")).size());
}

void ViewerTest::undoAndRedo() {
    openAndWait(sample("sprite.png"));
    const JobSettings before = window->document().settings();
    set("pathomit", 5.0);
    const JobSettings after = window->document().settings();
    QVERIFY(!(before == after));
    find<QAction>("undo")->trigger();
    QVERIFY(window->document().settings() == before);
    find<QAction>("redo")->trigger();
    QVERIFY(window->document().settings() == after);
    QVERIFY(waitForResult());
}

void ViewerTest::aSliderOnItsWayIsOneStep() {
    openAndWait(sample("sprite.png"));
    Document& document = window->document();
    const int steps = document.undoStack().count();
    JobSettings settings = document.settings();
    for (int i = 1; i <= 5; ++i) {
        settings.set("pathomit", double(i));
        document.change(settings, "pathomit", i < 5);
    }
    QCOMPARE(document.undoStack().count(), steps + 1);
    QVERIFY(waitForResult());
}

void ViewerTest::comparesWithTheLast() {
    openAndWait(sample("sprite.png"));
    const JobSettings before = window->document().settings();
    set("pathomit", 5.0);
    find<QAction>("compare")->trigger();
    QVERIFY(window->document().settings() == before);
    QTest::keyRelease(window.get(), Qt::Key_B);
    QCOMPARE(window->document().settings().number("pathomit"), 5.0);
    QVERIFY(waitForResult());
}

void ViewerTest::picksAColorFromTheImage() {
    const QString name = folder->filePath("picture.png");
    QVERIFY(smallPicture().save(name));
    openAndWait(name);
    auto* canvas = window->findChild<Canvas*>();
    const int before = find<QListWidget>("palette")->count();
    find<QToolButton>("palette.pick")->click();
    QVERIFY(canvas->isPicking());
    // The middle of the blue rectangle.
    const QPointF origin = canvas->toImage({0, 0});
    const QPointF place((40 - origin.x()) * canvas->zoom(), (20 - origin.y()) * canvas->zoom());
    QTest::mouseClick(canvas, Qt::LeftButton, Qt::NoModifier, place.toPoint());
    QVERIFY(!canvas->isPicking());
    const QStringList palette = window->document().settings().value("palette").toStringList();
    QCOMPARE(palette.size(), before + 1);
    QCOMPARE(palette.last(), QStringLiteral("#1e1ec8"));
    QVERIFY(waitForResult());
}

void ViewerTest::hidesAColor() {
    const QString name = folder->filePath("picture.png");
    QVERIFY(smallPicture().save(name));
    openAndWait(name);
    auto* list = find<QListWidget>("palette");
    QVERIFY(list->count() >= 3);
    const QColor hidden = window->findChild<PalettePanel*>()->colors()[1];
    list->item(1)->setCheckState(Qt::Unchecked);
    QVERIFY(waitForResult());
    QSignalSpy done(&window->document(), &Document::written);
    const QString written = folder->filePath("hidden.svg");
    window->exportTo(window->document().settings(), written);
    QVERIFY(done.wait(Patience));
    QVERIFY(!contents(written).isEmpty());
    QVERIFY(!contents(written).contains(hidden.name().toLatin1()));
}

void ViewerTest::exportsWhatTheProgramWrites_data() {
    QTest::addColumn<QString>("format");
    QTest::addColumn<QString>("method");
    for (const char* method : {"outlines", "regions", "centerlines"}) {
        for (const char* format : {"svg", "dxf", "pdf", "png", "json", "geojson"})
            QTest::addRow("%s as %s", method, format) << format << method;
    }
}

void ViewerTest::exportsWhatTheProgramWrites() {
    QFETCH(QString, format);
    QFETCH(QString, method);
    openAndWait(sample("sprite.png"));
    JobSettings settings = window->document().settings();
    settings.set("method", method);
    settings.set("format", format);
    const QString written = folder->filePath("window." + format);
    QSignalSpy done(&window->document(), &Document::written);
    window->exportTo(settings, written);
    QVERIFY(done.wait(Patience));
    QVERIFY2(QFile::exists(written), qPrintable(messageShown()));
    const QString expected = folder->filePath("program." + format);
    const ProgramResult program =
        run({sample("sprite.png"), "--method", method, "-q", "-o", expected});
    QVERIFY2(QFile::exists(expected), program.errors.constData());
    QCOMPARE(contents(written), contents(expected));
}

void ViewerTest::theCopiedCommandMakesTheSameFile() {
    openAndWait(sample("logo.png"));
    JobSettings settings = window->document().settings();
    settings.set("preset", "logo");
    settings.set("width", "80mm");
    settings.set("format", "dxf");
    const QString written = folder->filePath("window.dxf");
    QSignalSpy done(&window->document(), &Document::written);
    window->exportTo(settings, written);
    QVERIFY(done.wait(Patience));
    find<QAction>("copy.command")->trigger();
    const QString line = QApplication::clipboard()->text();
    QStringList words = QProcess::splitCommand(QString(line).replace('\'', '"'));
    QCOMPARE(words.takeFirst(), QStringLiteral("ovtrace"));
    QVERIFY(QDir::setCurrent(folder->path()));
    const ProgramResult program = run(words + QStringList{"-q"});
    QVERIFY(QDir::setCurrent(QDir::rootPath()));
    QVERIFY2(program.status == 0, program.errors.constData());
    QCOMPARE(contents(folder->filePath("logo.dxf")), contents(written));
}

void ViewerTest::copiesAsSvgAndPicture() {
    openAndWait(sample("sprite.png"));
    QSignalSpy done(&window->document(), &Document::written);
    find<QAction>("copy.svg")->trigger();
    QVERIFY(done.wait(Patience));
    QVERIFY(QApplication::clipboard()->mimeData()->data("image/svg+xml").contains("<svg"));
    find<QAction>("copy.picture")->trigger();
    QVERIFY(done.wait(Patience));
    QCOMPARE(QApplication::clipboard()->image().size(), QImage(sample("sprite.png")).size());
}

void ViewerTest::savedSettingsAreRead() {
    openAndWait(sample("sprite.png"));
    set("pathomit", 7.0);
    window->close();
    QVERIFY(waitForResult());
    window = std::make_unique<MainWindow>();
    QCOMPARE(window->document().settings().number("pathomit"), 7.0);
    QVERIFY(!window->document().undoStack().canUndo());
}

void ViewerTest::closesWhileTracing() {
    window->open(sample("photo.png"));
    QTest::qWait(5);
    window->close();
    window.reset();
    QVERIFY(!window);
}

void ViewerTest::manyImagesDoNotGrow() {
    qsizetype levels = 0;
    for (int i = 0; i < 50; ++i) {
        openAndWait(sample(i % 2 == 0 ? "sprite.png" : "text.png"));
        levels = window->findChildren<QObject*>().size();
    }
    openAndWait(sample("sprite.png"));
    QVERIFY(window->findChildren<QObject*>().size() <= levels + 10);
}

void ViewerTest::zoomsAtThePointer() {
    openAndWait(sample("logo.png"));
    auto* canvas = window->findChild<Canvas*>();
    const QPointF anchor(200, 150);
    const QPointF before = canvas->toImage(anchor);
    canvas->setZoom(canvas->zoom() * 5.0, anchor);
    const QPointF after = canvas->toImage(anchor);
    QVERIFY((before - after).manhattanLength() < 1e-9);
    canvas->setZoom(1e9, anchor);
    QCOMPARE(canvas->zoom(), 64.0);
    find<QAction>("zoom.fit")->trigger();
    QVERIFY(canvas->zoom() * canvas->scene()->size().width() <= canvas->width());
}

void ViewerTest::pansAndStaysInView() {
    openAndWait(sample("logo.png"));
    auto* canvas = window->findChild<Canvas*>();
    canvas->setZoom(8.0, QRectF(canvas->rect()).center());
    const QPointF before = canvas->toImage({0, 0});
    canvas->panBy({-80, 0});
    QCOMPARE(canvas->toImage({0, 0}).x(), before.x() + 10.0);
    canvas->panBy({1e6, 1e6});
    const QPointF middle = canvas->toImage(QRectF(canvas->rect()).center());
    QVERIFY(QRectF(QPointF(0, 0), QSizeF(canvas->scene()->size()))
                .adjusted(-1, -1, 1, 1)
                .contains(middle));
}

void ViewerTest::marksTheOutlineBelowThePointer() {
    const QString name = folder->filePath("picture.png");
    QVERIFY(smallPicture().save(name));
    set("method", "regions");
    openAndWait(name);
    auto* canvas = window->findChild<Canvas*>();
    QSignalSpy pointed(canvas, &Canvas::pointed);
    const QPointF origin = canvas->toImage({0, 0});
    const QPointF place((20 - origin.x()) * canvas->zoom(), (20 - origin.y()) * canvas->zoom());
    QTest::mouseMove(canvas, place.toPoint());
    QTRY_VERIFY(!pointed.isEmpty());
    const int outline = pointed.last()[1].toInt();
    QVERIFY(outline >= 0);
    QCOMPARE(canvas->scene()->outlines()[static_cast<std::size_t>(outline)].color,
             QColor(200, 30, 30));
    QVERIFY(find<QLabel>("pointer")->text().contains("#c81e1e"));
}

void ViewerTest::everyControlHasAName() {
    for (const QWidget* widget : window->findChildren<QWidget*>()) {
        const bool takesFocus = widget->focusPolicy() != Qt::NoFocus && widget->isVisible();
        const bool isControl = qobject_cast<const QAbstractSlider*>(widget) != nullptr ||
                               qobject_cast<const QAbstractSpinBox*>(widget) != nullptr ||
                               qobject_cast<const QComboBox*>(widget) != nullptr ||
                               qobject_cast<const Canvas*>(widget) != nullptr;
        const QString internal = widget->objectName();
        if (takesFocus && isControl && !internal.startsWith("qt_"))
            QVERIFY2(!widget->accessibleName().isEmpty(), qPrintable(internal));
    }
}

QTEST_MAIN(ViewerTest)
#include "viewer_test.moc"
