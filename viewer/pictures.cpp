// Makes the pictures of the documentation from the real window:
//
//     QT_QPA_PLATFORM=offscreen ovtraceview_pictures IMAGE FOLDER

#include "canvas.h"
#include "mainwindow.h"

#include <QAction>
#include <QApplication>
#include <QSettings>
#include <QTemporaryDir>

#include <utility>

namespace {

void waitForResult(MainWindow& window) {
    while (window.document().isTracing() || !window.findChild<Canvas*>()->isComplete())
        QApplication::processEvents(QEventLoop::AllEvents, 10);
}

} // namespace

int main(int argc, char* argv[]) {
    QApplication application(argc, argv);
    if (argc != 3)
        return 2;
    const QTemporaryDir habits; // nobody's own settings are in the pictures
    QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, habits.path());
    QApplication::setApplicationName("ovtraceview");
    MainWindow window;
    window.resize(1200, 800);
    window.show();
    JobSettings settings;
    settings.set("method", "regions");
    window.document().change(settings, {});
    window.open(QString::fromLocal8Bit(argv[1]));
    for (const auto& [view, name] :
         {std::pair{"view.split", "split"}, {"view.overlay", "overlay"}}) {
        window.findChild<QAction*>(view)->trigger();
        QApplication::processEvents();
        waitForResult(window);
        window.grab(); // asks for the tiles
        waitForResult(window);
        const QString file = QString("%1/ovtraceview-%2.png").arg(argv[2], name);
        if (!window.grab().save(file))
            return 1;
    }
    return 0;
}
