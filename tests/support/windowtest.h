#pragma once

#include "program.h"

#include <drawing/programsetup.h>
#include <viewer/mainwindow.h>
#include <viewer/messagebar.h>

#include <QAction>
#include <QImage>
#include <QSettings>
#include <QTemporaryDir>
#include <QTest>

#include <memory>

/// A window with settings and a folder of its own for each test function.
class WindowTest : public QObject {
    Q_OBJECT

public:
    /// Before there is an application.
    static void initMain() {
        setUpProgram();
    }

private slots:
    void init() {
        folder = std::make_unique<QTemporaryDir>();
        QSettings::setDefaultFormat(QSettings::IniFormat); // Windows has its own in one place
        QSettings::setPath(QSettings::IniFormat, QSettings::UserScope, folder->path());
        QSettings().clear();
        window = std::make_unique<MainWindow>();
        window->resize(1000, 700);
        window->show();
    }
    void cleanup() {
        window.reset();
        folder.reset();
    }

protected:
    static constexpr int Patience = 60000; ///< milliseconds, for sanitizers on a busy machine

    /// A picture of two rectangles, red and blue.
    static QImage smallPicture();

    /// Waits until the newest settings have their result.
    bool waitForResult() {
        return QTest::qWaitFor([this] { return !window->document().isTracing(); }, Patience);
    }
    void openAndWait(const QString& fileName) {
        window->open(fileName);
        QVERIFY(waitForResult());
        QVERIFY2(window->document().result(), qPrintable(messageShown()));
    }
    /// Saves the small picture and opens it.
    void openSmallPicture() {
        const QString name = folder->filePath("picture.png");
        QVERIFY(smallPicture().save(name));
        openAndWait(name);
    }
    QString messageShown() const {
        return window->findChild<MessageBar*>()->message();
    }
    template <typename Widget> Widget* find(const char* name) const {
        return window->findChild<Widget*>(QString::fromLatin1(name));
    }
    void set(const char* key, const QVariant& value) {
        JobSettings settings = window->document().settings();
        settings.set(key, value);
        window->document().change(settings, key);
    }

    std::unique_ptr<QTemporaryDir> folder;
    std::unique_ptr<MainWindow> window;
};

inline QImage WindowTest::smallPicture() {
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
