// The window's menus and tools, and what they ask for.

#include "mainwindow.h"

#include "dragoutbutton.h"
#include "exportdialog.h"
#include "messagebar.h"
#include "settingform.h"

#include <drawing/errors.h>
#include <drawing/files/resultfile.h>
#include <drawing/input.h>
#include <drawing/settingsfile.h>

#include <QActionGroup>
#include <QApplication>
#include <QClipboard>
#include <QFileDialog>
#include <QFileInfo>
#include <QMenuBar>
#include <QMimeData>
#include <QScreen>
#include <QSettings>
#include <QSpinBox>
#include <QStandardPaths>
#include <QToolBar>

namespace {

constexpr int MostRecent = 10;

/// An action with a name by which it can be found.
QAction* addNamed(QWidget* owner, QMenu* menu, const QString& text, const char* name,
                  const QList<QKeySequence>& keys) {
    auto* action = menu->addAction(text);
    action->setObjectName(QString::fromLatin1(name));
    action->setShortcuts(keys);
    owner->addAction(action);
    return action;
}

/// The name of a file, empty when none is wanted. Without an ending it gets `suffix`, before the
/// question whether a file that exists may be replaced.
QString askForFileToWrite(QWidget* parent, const QString& title, const QString& proposed,
                          const QString& suffix, const QString& filter) {
    QFileDialog dialog(parent, title, QFileInfo(proposed).path(), filter);
    dialog.setAcceptMode(QFileDialog::AcceptSave);
    dialog.setDefaultSuffix(suffix);
    dialog.selectFile(QFileInfo(proposed).fileName() + '.' + suffix);
    return dialog.exec() == QDialog::Accepted ? dialog.selectedFiles().value(0) : QString();
}

} // namespace

void MainWindow::makeActions() {
    makeFileMenu();
    makeEditMenu();
    makeViewMenu();
    auto* tools = addToolBar(tr("Tools"));
    tools->setObjectName(QStringLiteral("tools"));
    tools->setToolButtonStyle(Qt::ToolButtonTextOnly);
    for (const char* name : {"open", "export"})
        tools->addAction(findChild<QAction*>(name));
    tools->addSeparator();
    for (const char* name : {"undo", "redo"})
        tools->addAction(findChild<QAction*>(name));
    tools->addSeparator();
    for (const char* name : {"view.image", "view.result", "view.overlay", "view.split"})
        tools->addAction(findChild<QAction*>(name));
    tools->addSeparator();
    for (const char* name : {"zoom.fit", "zoom.actual"})
        tools->addAction(findChild<QAction*>(name));
    tools->addSeparator();
    pageAction = tools->addWidget(page);
    pageAction->setVisible(false);
    tools->addWidget(dragOut);
}

void MainWindow::makeFileMenu() {
    QMenu* file = menuBar()->addMenu(tr("&File"));
    connect(addNamed(this, file, tr("&Open..."), "open", {QKeySequence::Open}), &QAction::triggered,
            this, &MainWindow::askForImage);
    recentMenu = file->addMenu(tr("Open &recent"));
    connect(addNamed(this, file, tr("&Export..."), "export",
                     {QKeySequence::Save, QKeySequence(Qt::CTRL | Qt::Key_E)}),
            &QAction::triggered, this, &MainWindow::askForExport);
    file->addSeparator();
    connect(addNamed(this, file, tr("Load se&ttings..."), "settings.load", {}), &QAction::triggered,
            this, &MainWindow::askForSettings);
    connect(addNamed(this, file, tr("Save &settings..."), "settings.save", {}), &QAction::triggered,
            this, &MainWindow::saveSettings);
    file->addSeparator();
    connect(addNamed(this, file, tr("&Quit"), "quit", {QKeySequence::Quit}), &QAction::triggered,
            this, &QWidget::close);
}

void MainWindow::makeEditMenu() {
    QMenu* edit = menuBar()->addMenu(tr("&Edit"));
    QAction* undo = doc.undoStack().createUndoAction(this, tr("&Undo"));
    undo->setObjectName(QStringLiteral("undo"));
    undo->setIconText(tr("Undo")); // on the bar, where a longer text would move the buttons
    undo->setShortcuts({QKeySequence::Undo});
    QAction* redo = doc.undoStack().createRedoAction(this, tr("&Redo"));
    redo->setObjectName(QStringLiteral("redo"));
    redo->setIconText(tr("Redo"));
    redo->setShortcuts({QKeySequence::Redo, QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_Z)});
    edit->addActions({undo, redo});
    connect(addNamed(this, edit, tr("Show the settings &before (hold B)"), "compare",
                     {QKeySequence(Qt::Key_B)}),
            &QAction::triggered, this, [this] { doc.compareWithLast(true); });
    edit->addSeparator();
    connect(addNamed(this, edit, tr("&Paste an image"), "paste", {QKeySequence::Paste}),
            &QAction::triggered, this, &MainWindow::paste);
    connect(addNamed(this, edit, tr("&Copy as SVG"), "copy.svg", {QKeySequence::Copy}),
            &QAction::triggered, this, [this] { copyAs(ToClipboardAsSvg, "svg"); });
    connect(addNamed(this, edit, tr("Copy as p&icture"), "copy.picture",
                     {QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_C)}),
            &QAction::triggered, this, [this] { copyAs(ToClipboardAsPicture, "png"); });
    connect(addNamed(this, edit, tr("Copy co&mmand"), "copy.command", {}), &QAction::triggered,
            this, [this] { QApplication::clipboard()->setText(command()); });
}

void MainWindow::makeViewMenu() {
    QMenu* view = menuBar()->addMenu(tr("&View"));
    auto* views = new QActionGroup(this);
    const auto addView = [&](const QString& text, const char* name, Qt::Key key,
                             Canvas::View which) {
        QAction* action = addNamed(this, view, text, name, {QKeySequence(key)});
        action->setCheckable(true);
        action->setChecked(canvas->view() == which);
        views->addAction(action);
        connect(action, &QAction::triggered, this, [this, which] { canvas->setView(which); });
    };
    addView(tr("&Image"), "view.image", Qt::Key_1, Canvas::View::Image);
    addView(tr("&Result"), "view.result", Qt::Key_2, Canvas::View::Result);
    addView(tr("&Overlay"), "view.overlay", Qt::Key_3, Canvas::View::Overlay);
    addView(tr("&Split"), "view.split", Qt::Key_4, Canvas::View::Split);
    view->addSeparator();
    const auto addZoom = [&](const QString& text, const char* name, const QList<QKeySequence>& keys,
                             void (Canvas::*zoom)()) {
        connect(addNamed(this, view, text, name, keys), &QAction::triggered, canvas, zoom);
    };
    addZoom(tr("Zoom &in"), "zoom.in",
            {QKeySequence(Qt::CTRL | Qt::Key_Plus), QKeySequence(Qt::CTRL | Qt::Key_Equal),
             QKeySequence(Qt::Key_Plus)},
            &Canvas::zoomIn);
    addZoom(tr("Zoom o&ut"), "zoom.out",
            {QKeySequence(Qt::CTRL | Qt::Key_Minus), QKeySequence(Qt::Key_Minus)},
            &Canvas::zoomOut);
    addZoom(tr("&Fit"), "zoom.fit", {QKeySequence(Qt::CTRL | Qt::Key_0)}, &Canvas::zoomToFit);
    addZoom(tr("&1:1"), "zoom.actual", {QKeySequence(Qt::CTRL | Qt::Key_1)},
            &Canvas::zoomToActualSize);
    view->addSeparator();
    QAction* full =
        addNamed(this, view, tr("F&ull screen"), "fullscreen", {QKeySequence(Qt::Key_F11)});
    full->setCheckable(true);
    connect(full, &QAction::toggled, this,
            [this](bool on) { setWindowState(windowState().setFlag(Qt::WindowFullScreen, on)); });
}

void MainWindow::askForImage() {
    QStringList patterns;
    for (const QString& format : readableFormats())
        patterns.append("*." + format);
    const QString folder = recent.isEmpty()
                               ? QStandardPaths::writableLocation(QStandardPaths::PicturesLocation)
                               : QFileInfo(recent.first()).path();
    const QString name = QFileDialog::getOpenFileName(this, tr("Open an image"), folder,
                                                      tr("Images (%1)").arg(patterns.join(' ')) +
                                                          ";;" + tr("All files (*)"));
    if (!name.isEmpty())
        open(name);
}

void MainWindow::paste() {
    const QMimeData* data = QApplication::clipboard()->mimeData();
    if (data->hasImage())
        doc.open(qvariant_cast<QImage>(data->imageData()));
    else if (data->hasUrls() && data->urls().first().isLocalFile())
        open(data->urls().first().toLocalFile());
    else
        fail(tr("There is no image on the clipboard."));
}

void MainWindow::askForExport() {
    if (!doc.result())
        return;
    ExportDialog dialog(doc.settings(), this);
    if (dialog.exec() != QDialog::Accepted)
        return;
    const QString format = dialog.settings().format();
    const QString base =
        doc.fileName().isEmpty() ? tr("drawing") : QFileInfo(doc.fileName()).completeBaseName();
    const QString folder = exportFolder.isEmpty() ? QFileInfo(doc.fileName()).path() : exportFolder;
    const QString name = askForFileToWrite(this, tr("Export"), folder + '/' + base, format,
                                           format.toUpper() + " (*." + format + ')');
    if (name.isEmpty())
        return;
    exportFolder = QFileInfo(name).path();
    exportTo(dialog.settings(), name);
}

void MainWindow::askForSettings() {
    const QString name = QFileDialog::getOpenFileName(this, tr("Load settings"), exportFolder,
                                                      tr("Settings (*.json)"));
    if (!name.isEmpty())
        loadSettingsFrom(name);
}

void MainWindow::loadSettingsFrom(const QString& fileName) {
    try {
        doc.change(loadSettings(fileName), tr("Load settings"));
    } catch (const std::exception& error) {
        fail(QString::fromUtf8(error.what()));
    }
}

void MainWindow::saveSettings() {
    const QString name = askForFileToWrite(this, tr("Save settings"), exportFolder + "/settings",
                                           "json", tr("Settings (*.json)"));
    if (name.isEmpty())
        return;
    try {
        saveFile(name, settingsToJson(doc.settings()));
    } catch (const std::exception& error) {
        fail(QString::fromUtf8(error.what()));
    }
}

void MainWindow::rebuildRecent() {
    while (recent.size() > MostRecent)
        recent.removeLast();
    recentMenu->clear();
    recentMenu->setEnabled(!recent.isEmpty());
    for (const QString& name : recent) {
        connect(recentMenu->addAction(name), &QAction::triggered, this,
                [this, name] { open(name); });
    }
}

void MainWindow::restoreHabits() {
    const QSettings habits;
    resize(QSize(1200, 800).boundedTo(screen()->availableSize() * 0.9)); // the first time
    restoreGeometry(habits.value("geometry").toByteArray());
    restoreState(habits.value("panels").toByteArray());
    recent = habits.value("recent").toStringList();
    exportFolder = habits.value("exportFolder").toString();
    rebuildRecent();
    try {
        const QByteArray settings = habits.value("settings").toByteArray();
        if (!settings.isEmpty())
            doc.change(settingsFromJson(settings, tr("The settings of last time")),
                       tr("Settings of last time"));
    } catch (const std::exception& error) {
        fail(QString::fromUtf8(error.what())); // of another version, perhaps
    }
    doc.undoStack().clear();
}

void MainWindow::keepHabits() {
    QSettings habits;
    habits.setValue("geometry", saveGeometry());
    habits.setValue("panels", saveState());
    habits.setValue("recent", recent);
    habits.setValue("exportFolder", exportFolder);
    habits.setValue("settings", settingsToJson(doc.settings()));
}
