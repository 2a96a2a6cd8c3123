// The window as a person uses it. What is written is compared with what the program writes.

#include "support/windowtest.h"

#include <viewer/background.h>
#include <viewer/canvas.h>
#include <viewer/dragoutbutton.h>
#include <viewer/palettepanel.h>

#include <drawing/settingvalue.h>

#include <QAbstractSlider>
#include <QApplication>
#include <QClipboard>
#include <QComboBox>
#include <QDir>
#include <QDoubleSpinBox>
#include <QDragEnterEvent>
#include <QDropEvent>
#include <QFile>
#include <QFileInfo>
#include <QLabel>
#include <QListWidget>
#include <QMimeData>
#include <QProcess>
#include <QSignalSpy>
#include <QSpinBox>
#include <QToolButton>

namespace {

/// What the process has in memory; 0 where the system does not say it so, and under sanitizers,
/// which keep what was freed.
qint64 residentBytes() {
#ifdef OVTRACE_SANITIZED
    return 0;
#else
    QFile file("/proc/self/statm");
    constexpr qint64 PageBytes = 4096;
    return file.open(QIODevice::ReadOnly)
               ? file.readAll().split(' ').value(1).toLongLong() * PageBytes
               : 0;
#endif
}

} // namespace

class ViewerTest : public WindowTest {
    Q_OBJECT

private slots:
    void anEmptyWindowSaysWhatToDo();
    void saysHowLargeTheDrawingIs();
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
    void draggingAColorChangesTheOrder();
    void theProgramStarts();
    void everyControlHasAName();
};

void ViewerTest::anEmptyWindowSaysWhatToDo() {
    const QImage canvas = window->findChild<Canvas*>()->grab().toImage();
    const QRgb ground = canvas.pixel(1, 1);
    qint64 marked = 0;
    for (int y = 0; y < canvas.height(); ++y) {
        for (int x = 0; x < canvas.width(); ++x)
            marked += canvas.pixel(x, y) != ground ? 1 : 0;
    }
    QVERIFY2(marked > 200, qPrintable(QString::number(marked)));
    // What the program finds out by itself is no strange number.
    QCOMPARE(find<QDoubleSpinBox>("setting.speck")->text(), QString("automatic"));
    MainWindow first;
    QVERIFY(first.width() > 600 && first.height() > 450);
}

/// The logo has transparent margins: the image is 80 mm wide, what is drawn is less.
void ViewerTest::saysHowLargeTheDrawingIs() {
    openAndWait(sample("logo.png"));
    set("width", "80mm");
    QVERIFY(waitForResult());
    const QString text = find<QLabel>("size")->text();
    QVERIFY2(text.contains(QString::fromUtf8("80.00 \u00d7 60.00 mm, drawn: 69.")),
             qPrintable(text));
    // The full text of a step stands in the menu, and the bar keeps its buttons in their places.
    QVERIFY(find<QAction>("undo")->text().size() > QString("Undo").size());
    QCOMPARE(find<QAction>("undo")->iconText(), QString("Undo"));
    QCOMPARE(find<QListWidget>("palette")->item(1)->text().section(' ', 0, 0),
             QString("transparent"));
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
    openSmallPicture();
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
    openSmallPicture();
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
    openAndWait(QFileInfo(sample("logo.png")).absoluteFilePath());
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
    const ProgramResult program = run(words + QStringList{"-q"}, {}, folder->path());
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
    const auto openMany = [this](int count) {
        for (int i = 0; i < count; ++i)
            openAndWait(sample(i % 2 == 0 ? "sprite.png" : "text.png"));
        backgroundThread().wait(); // old results are taken apart there
    };
    openMany(10);
    const qsizetype objects = window->findChildren<QObject*>().size();
    const qint64 bytes = residentBytes();
    openMany(40);
    QVERIFY(window->findChildren<QObject*>().size() <= objects + 10);
    QVERIFY2(residentBytes() - bytes < 16 << 20,
             qPrintable(QString::number(residentBytes() - bytes)));
}

void ViewerTest::draggingAColorChangesTheOrder() {
    set("method", "regions");
    openSmallPicture();
    auto* list = find<QListWidget>("palette");
    QList<QColor> colors = window->findChild<PalettePanel*>()->colors();
    QVERIFY(colors.size() >= 3);
    QVERIFY(list->model()->moveRow({}, 0, {}, 2));
    colors.move(0, 1);
    QStringList words;
    for (const QColor& color : colors)
        words.append(colorWord(color));
    QCOMPARE(window->document().settings().value("palette").toStringList(), words);
    QVERIFY(waitForResult());
    QCOMPARE(window->document().result()->drawing.palette.first().rgb(), colors.first().rgb());
}

void ViewerTest::theProgramStarts() {
    const QString program =
        QFileInfo(QCoreApplication::applicationFilePath()).dir().filePath("ovtraceview");
    const ProgramResult result = runProgram(program, {"--version"});
    QCOMPARE(result.status, 0);
    QVERIFY(result.output.startsWith("ovtraceview "));
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
