// What the window asks for: files to open and to write, and a page of several.

#include "support/imagefiles.h"
#include "support/windowtest.h"

#include <QApplication>
#include <QComboBox>
#include <QDir>
#include <QFile>
#include <QFileDialog>
#include <QFileInfo>
#include <QLineEdit>
#include <QMessageBox>
#include <QPointer>
#include <QSignalSpy>
#include <QSpinBox>
#include <QTimer>

#include <functional>

class ViewerDialogsTest : public WindowTest {
    Q_OBJECT

private slots:
    void initTestCase() {
        // Those of the system cannot be asked.
        QApplication::setAttribute(Qt::AA_DontUseNativeDialogs);
    }
    void opensAFileThatIsChosen();
    void whatIsNotChosenIsNotOpened();
    void exportsAsTheDialogSays();
    void aFileIsNotReplacedUnasked();
    void savesAndLoadsSettings();
    void showsAnotherPage();

private:
    /// Buttons of a dialog, once its own loop runs again.
    static void accept(QWidget* dialog) {
        QMetaObject::invokeMethod(dialog, "accept", Qt::QueuedConnection);
    }
    static void reject(QWidget* dialog) {
        QMetaObject::invokeMethod(dialog, "reject", Qt::QueuedConnection);
    }
    /// Triggers an action and answers the dialogs that it opens, one after the other.
    void trigger(const char* action, QList<std::function<void(QWidget*)>> answers) {
        QTimer timer;
        QPointer<QWidget> answered;
        connect(&timer, &QTimer::timeout, this, [&] {
            QWidget* dialog = QApplication::activeModalWidget();
            if (dialog == nullptr || dialog == answered || !dialog->isVisible() ||
                answers.isEmpty())
                return;
            answered = dialog;
            answers.takeFirst()(dialog);
        });
        timer.start(10);
        find<QAction>(action)->trigger();
        QCOMPARE(answers.size(), 0);
    }
    /// Types a name into a file dialog.
    static std::function<void(QWidget*)> named(const QString& fileName) {
        return [fileName](QWidget* dialog) {
            dialog->findChild<QLineEdit*>()->setText(QDir::toNativeSeparators(fileName));
            accept(dialog);
        };
    }
};

void ViewerDialogsTest::opensAFileThatIsChosen() {
    const QString name = folder->filePath("chosen.png");
    QVERIFY(smallPicture().save(name));
    trigger("open", {named(name)});
    QVERIFY(waitForResult());
    QVERIFY2(window->document().result(), qPrintable(messageShown()));
    QCOMPARE(QFileInfo(window->document().fileName()), QFileInfo(name));
}

void ViewerDialogsTest::whatIsNotChosenIsNotOpened() {
    trigger("open", {reject});
    QVERIFY(!window->document().isOpen());
    trigger("export", {}); // there is nothing to write
    QCOMPARE(messageShown(), QString());
}

/// A name without an ending gets the format's; format and folder are those of the next time.
void ViewerDialogsTest::exportsAsTheDialogSays() {
    openSmallPicture();
    QSignalSpy done(&window->document(), &Document::written);
    const auto chooseDxf = [](QWidget* dialog) {
        auto* format = dialog->findChild<QComboBox*>("export.format");
        format->setCurrentIndex(format->findData("dxf"));
        emit format->activated(format->currentIndex());
        accept(dialog);
    };
    trigger("export", {chooseDxf, named(folder->filePath("without ending"))});
    QVERIFY(done.count() > 0 || done.wait(Patience));
    const QString written = folder->filePath("without ending.dxf");
    QVERIFY2(QFile::exists(written), qPrintable(messageShown()));
    QVERIFY(contents(written).contains("ENTITIES"));
    QCOMPARE(window->document().settings().format(), QString("dxf"));
    QVERIFY(waitForResult());
    QString proposed;
    trigger("export", {accept, [&](QWidget* dialog) {
                           proposed = qobject_cast<QFileDialog*>(dialog)->selectedFiles().value(0);
                           reject(dialog);
                       }});
    QCOMPARE(QFileInfo(proposed), QFileInfo(folder->filePath("picture.dxf")));
}

/// The question comes for the name with its ending.
void ViewerDialogsTest::aFileIsNotReplacedUnasked() {
    openSmallPicture();
    const QString taken = folder->filePath("taken.svg");
    writeFile(taken, "another's");
    QString question;
    trigger("export", {accept, named(folder->filePath("taken")),
                       [&](QWidget* dialog) {
                           question = qobject_cast<QMessageBox*>(dialog)->text();
                           reject(dialog);
                       },
                       reject});
    QVERIFY2(question.contains("taken.svg"), qPrintable(question));
    QCOMPARE(contents(taken), QByteArray("another's"));
}

void ViewerDialogsTest::savesAndLoadsSettings() {
    openSmallPicture();
    const QString name = folder->filePath("kept.json");
    set("pathomit", 6.0);
    trigger("settings.save", {named(name)});
    QVERIFY2(QFile::exists(name), qPrintable(messageShown()));
    set("pathomit", 9.0);
    trigger("settings.load", {named(name)});
    QCOMPARE(window->document().settings().number("pathomit"), 6.0);
    QVERIFY(waitForResult());
}

void ViewerDialogsTest::showsAnotherPage() {
    QImage larger(90, 70, QImage::Format_RGB32);
    larger.fill(Qt::black);
    const QString name = folder->filePath("pages.tif");
    writeFile(name, tiffFile({smallPicture(), larger}));
    openAndWait(name);
    QCOMPARE(window->document().result()->drawing.size, QSize(60, 40));
    window->resize(1600, 700); // room for all tools
    auto* page = find<QSpinBox>("page");
    QVERIFY(page->isVisible());
    QCOMPARE(page->maximum(), 2);
    page->setValue(2);
    QVERIFY(waitForResult());
    QCOMPARE(window->document().result()->drawing.size, QSize(90, 70));
    openSmallPicture();
    QVERIFY(!page->isVisible());
}

QTEST_MAIN(ViewerDialogsTest)
#include "viewer_dialogs_test.moc"
