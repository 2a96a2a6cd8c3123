#pragma once

#include "canvas.h"
#include "document.h"

#include <QMainWindow>

class DragOutButton;
class FiguresPanel;
class MessageBar;
class PalettePanel;
class SettingForm;
class QLabel;
class QProgressBar;
class QSpinBox;

/// The window: an image, its result, and the settings that lead from one to the other.
class MainWindow : public QMainWindow {
    Q_OBJECT

public:
    explicit MainWindow(QWidget* parent = nullptr);
    ~MainWindow() override;

    void open(const QString& fileName);

    Document& document() {
        return doc;
    }
    /// The command line that makes the same file, quoted for a shell.
    QString command() const;
    /// Writes the drawing as the settings say.
    void exportTo(const JobSettings& settings, const QString& fileName);

protected:
    void closeEvent(QCloseEvent* event) override;
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dropEvent(QDropEvent* event) override;
    void keyReleaseEvent(QKeyEvent* event) override;

private:
    /// What comes back when something was written.
    enum Purpose { ToFile, ToClipboardAsSvg, ToClipboardAsPicture, ToDrag };

    void makePanels();
    void makeActions();
    void makeFileMenu();
    void makeEditMenu();
    void makeViewMenu();
    void connectDocument();
    void connectPanels();
    void restoreHabits();
    void keepHabits();

    void askForImage();
    void paste();
    void askForExport();
    void askForSettings();
    void saveSettings();
    void loadSettingsFrom(const QString& fileName);
    void copyAs(Purpose purpose, const QString& format);
    void takeWritten(const WriteResult& result);
    void rebuildRecent();

    void showSettings(const JobSettings& settings);
    void showResult(const std::shared_ptr<const TraceResult>& result);
    void showPalette();
    void showSize();
    void showPointer(QPointF place, int outline);
    void fail(const QString& message);
    void changeSetting(const QString& key, const QVariant& value, const QString& what);

    Document doc;
    Canvas* canvas;
    MessageBar* messages;
    QProgressBar* progress;
    SettingForm* settingForm;
    SettingForm* sizeForm;
    QLabel* sizeText;
    PalettePanel* palettePanel;
    FiguresPanel* figures;
    QLabel* pointerText;
    QLabel* zoomText;
    QSpinBox* page;
    QAction* pageAction = nullptr; ///< shows the number of the page in the tools
    DragOutButton* dragOut;
    QMenu* recentMenu = nullptr;
    QStringList recent;
    QString exportFolder;
};
