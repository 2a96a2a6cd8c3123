#include "mainwindow.h"

#include "dragoutbutton.h"
#include "exportdialog.h"
#include "figurespanel.h"
#include "messagebar.h"
#include "palettepanel.h"
#include "settingform.h"
#include "shellwords.h"

#include <drawing/jobrequests.h>
#include <drawing/settinguse.h>
#include <drawing/settingvalue.h>
#include <drawing/sizing.h>
#include <drawing/tracing.h>

#include <QApplication>
#include <QClipboard>
#include <QCloseEvent>
#include <QDir>
#include <QDockWidget>
#include <QFileInfo>
#include <QLabel>
#include <QMimeData>
#include <QProgressBar>
#include <QScrollArea>
#include <QSpinBox>
#include <QStandardPaths>
#include <QStatusBar>
#include <QVBoxLayout>

namespace {

constexpr int ProgressHeight = 4;
constexpr int PanelWidth = 320;
constexpr int ProgressSteps = 1000;

QDockWidget* addPanel(MainWindow* window, const QString& title, const QString& name,
                      QWidget* content) {
    auto* scroll = new QScrollArea;
    scroll->setWidgetResizable(true);
    scroll->setFrameShape(QFrame::NoFrame);
    scroll->setWidget(content);
    auto* dock = new QDockWidget(title, window);
    dock->setObjectName(name);
    dock->setWidget(scroll);
    dock->setFeatures(QDockWidget::DockWidgetMovable | QDockWidget::DockWidgetFloatable);
    window->addDockWidget(Qt::RightDockWidgetArea, dock);
    return dock;
}

} // namespace

MainWindow::MainWindow(QWidget* parent)
    : QMainWindow(parent), canvas(new Canvas(this)), messages(new MessageBar(this)),
      progress(new QProgressBar(this)) {
    setAcceptDrops(true);
    progress->setTextVisible(false);
    progress->setFixedHeight(ProgressHeight);
    progress->setRange(0, ProgressSteps);
    progress->setAccessibleName(tr("Progress of the trace"));
    auto* middle = new QWidget(this);
    auto* layout = new QVBoxLayout(middle);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addWidget(messages);
    layout->addWidget(progress);
    layout->addWidget(canvas, 1);
    setCentralWidget(middle);
    makePanels();
    makeActions();
    connectDocument();
    connectPanels();
    restoreHabits();
    showSettings(doc.settings());
}

MainWindow::~MainWindow() = default;

void MainWindow::makePanels() {
    settingForm = new SettingForm({SettingGroup::Method, SettingGroup::Preparation,
                                   SettingGroup::Tracing, SettingGroup::Input},
                                  {"palette", "page", "max-pixels"}, this);
    sizeForm = new SettingForm({SettingGroup::Size}, {}, this);
    auto* sizePart = new QWidget(this);
    sizeText = new QLabel(sizePart);
    sizeText->setObjectName(QStringLiteral("size"));
    auto* sizeLayout = new QVBoxLayout(sizePart);
    sizeLayout->addWidget(sizeText);
    sizeLayout->addWidget(sizeForm);
    sizeLayout->addStretch();
    palettePanel = new PalettePanel(this);
    figures = new FiguresPanel(this);
    auto* settingsPart = new QWidget(this);
    auto* settingsLayout = new QVBoxLayout(settingsPart);
    settingsLayout->addWidget(settingForm);
    settingsLayout->addStretch();

    QDockWidget* first =
        addPanel(this, tr("Settings"), QStringLiteral("panel.settings"), settingsPart);
    QDockWidget* colors =
        addPanel(this, tr("Colours"), QStringLiteral("panel.palette"), palettePanel);
    QDockWidget* size = addPanel(this, tr("Size"), QStringLiteral("panel.size"), sizePart);
    QDockWidget* numbers = addPanel(this, tr("Figures"), QStringLiteral("panel.figures"), figures);
    tabifyDockWidget(colors, size);
    tabifyDockWidget(size, numbers);
    colors->raise();
    resizeDocks({first}, {PanelWidth}, Qt::Horizontal);

    pointerText = new QLabel(this);
    pointerText->setObjectName(QStringLiteral("pointer"));
    zoomText = new QLabel(this);
    statusBar()->addWidget(pointerText, 1);
    statusBar()->addPermanentWidget(zoomText);
    page = new QSpinBox(this);
    page->setObjectName(QStringLiteral("page"));
    page->setPrefix(tr("Page "));
    page->setMinimum(1);
    page->setAccessibleName(tr("Page"));
    page->setKeyboardTracking(false);
    dragOut = new DragOutButton(this);
}

void MainWindow::connectDocument() {
    connect(&doc, &Document::opened, this, [this] {
        messages->hide();
        setWindowFilePath(doc.fileName());
    });
    connect(&doc, &Document::settingsChanged, this, &MainWindow::showSettings);
    connect(&doc, &Document::imageRead, this,
            [this](const std::shared_ptr<const Scene>& scene, const QList<qint64>& histogram,
                   int pages) {
                settingForm->setHistogram(histogram);
                page->setMaximum(pages);
                page->setSuffix(tr(" of %1").arg(pages));
                pageAction->setVisible(pages > 1);
                // The old result stays until the new one is there, unless it is of another image.
                if (!doc.result() || !canvas->scene() || canvas->scene()->size() != scene->size())
                    canvas->setScene(scene);
            });
    connect(&doc, &Document::tracingStarted, this, [this] {
        progress->setValue(0);
        figures->setOutdated();
    });
    connect(&doc, &Document::progressed, this, [this](double fraction) {
        progress->setValue(static_cast<int>(fraction * ProgressSteps));
    });
    connect(&doc, &Document::traced, this, &MainWindow::showResult);
    connect(&doc, &Document::measured, this, [this](const TraceFigures& measured) {
        figures->show(measured.statistics, measured.fileSize, doc.settings().format());
    });
    connect(&doc, &Document::written, this, &MainWindow::takeWritten);
    connect(&doc, &Document::failed, this, &MainWindow::fail);
}

void MainWindow::connectPanels() {
    for (SettingForm* form : {settingForm, sizeForm}) {
        connect(form, &SettingForm::edited, this,
                [this](const JobSettings& settings, const QString& key, bool moving) {
                    doc.change(settings, tr("Change of %1").arg(settingName(*findSetting(key))),
                               moving);
                });
        connect(form, &SettingForm::refused, this, &MainWindow::fail);
    }
    connect(page, &QSpinBox::valueChanged, this,
            [this](int number) { changeSetting("page", double(number), tr("Page")); });
    connect(canvas, &Canvas::zoomChanged, this, [this](double zoom) {
        zoomText->setText(
            tr("%1 %").arg(locale().toString(zoom * devicePixelRatioF() * 100.0, 'f', 0)));
    });
    connect(canvas, &Canvas::pointed, this, &MainWindow::showPointer);
    connect(canvas, &Canvas::pointerLeft, pointerText, &QLabel::clear);
    connect(canvas, &Canvas::colorPicked, this, [this](const QColor& color) {
        palettePanel->setPicking(false);
        QStringList words;
        for (const QColor& each : palettePanel->colors() + QList<QColor>{color})
            words.append(colorWord(each));
        changeSetting("palette", words, tr("Colour from the image"));
    });
    connect(palettePanel, &PalettePanel::selected, canvas, &Canvas::selectColor);
    connect(palettePanel, &PalettePanel::pickingAsked, canvas, &Canvas::setPicking);
    connect(palettePanel, &PalettePanel::fixed, this, [this](const QList<QColor>& colors) {
        QStringList words;
        for (const QColor& color : colors)
            words.append(colorWord(color));
        changeSetting("palette", words, tr("Colours"));
    });
    connect(palettePanel, &PalettePanel::released, this,
            [this] { changeSetting("palette", {}, tr("Colours")); });
    connect(palettePanel, &PalettePanel::hiddenChanged, this, [this](const QList<QColor>& hidden) {
        QStringList words;
        for (const QColor& color : hidden)
            words.append(colorWord(color));
        changeSetting("hide-colors", hidden.isEmpty() ? QVariant() : words, tr("Colours left out"));
    });
    connect(dragOut, &DragOutButton::fileAsked, this, [this] {
        const QString folder = QStandardPaths::writableLocation(QStandardPaths::TempLocation);
        const QString base = QFileInfo(doc.fileName()).completeBaseName();
        doc.write(doc.settings(),
                  QDir(folder).filePath((base.isEmpty() ? tr("drawing") : base) + '.' +
                                        doc.settings().format()),
                  ToDrag);
    });
}

/// An invalid value takes the setting back.
void MainWindow::changeSetting(const QString& key, const QVariant& value, const QString& what) {
    JobSettings changed = doc.settings();
    try {
        if (value.isValid())
            changed.set(key, value);
        else
            changed.reset(key);
    } catch (const std::exception& error) {
        fail(QString::fromUtf8(error.what()));
        return;
    }
    doc.change(changed, what);
}

void MainWindow::open(const QString& fileName) {
    doc.open(fileName);
    recent.removeAll(QFileInfo(fileName).absoluteFilePath());
    recent.prepend(QFileInfo(fileName).absoluteFilePath());
    rebuildRecent();
}

void MainWindow::fail(const QString& message) {
    messages->showMessage(message);
    progress->setValue(0);
}

void MainWindow::showSettings(const JobSettings& settings) {
    settingForm->show(settings);
    sizeForm->show(settings);
    const QSignalBlocker blocker(page);
    page->setValue(static_cast<int>(settings.number("page")));
    showSize();
}

void MainWindow::showResult(const std::shared_ptr<const TraceResult>& result) {
    messages->hide();
    progress->setValue(0);
    canvas->setScene(result->scene);
    if (result->drawing.isEmpty())
        fail(likelyCause(result->drawing, traceSettings(result->job.settings)));
    showPalette();
    showSize();
}

void MainWindow::showPalette() {
    const auto result = doc.result();
    if (!result)
        return;
    const QStringList hidden = doc.settings().value("hide-colors").toStringList();
    QList<PaletteEntry> entries;
    const double area = double(result->drawing.size.width()) * result->drawing.size.height();
    for (qsizetype i = 0; i < result->drawing.palette.size(); ++i) {
        const QColor& color = result->drawing.palette[i];
        const ColorShare& share = result->scene->colorShares()[static_cast<std::size_t>(i)];
        entries.append(
            {color, share.area / area, share.outlines, hidden.contains(colorWord(color))});
    }
    palettePanel->show(entries, doc.settings().isGiven("palette"));
}

void MainWindow::showSize() {
    const auto result = doc.result();
    if (!result)
        return;
    const QSize pixels = result->drawing.size;
    QString text = tr("%1 \u00d7 %2 pixels").arg(pixels.width()).arg(pixels.height());
    try {
        Drawing sized = result->drawing;
        setSize(sized, doc.fileName(), result->place, sizeRequest(doc.settings()));
        if (sized.pixelMillimetres) {
            const auto inMillimetres = [&](double side) {
                return locale().toString(side * *sized.pixelMillimetres, 'f', 2);
            };
            const QRectF drawn = result->scene->drawnBox();
            text += tr("\n%1 \u00d7 %2 mm")
                        .arg(inMillimetres(pixels.width()), inMillimetres(pixels.height()));
            if (drawn.toAlignedRect().size() != pixels)
                text += tr(", drawn: %1 \u00d7 %2 mm")
                            .arg(inMillimetres(drawn.width()), inMillimetres(drawn.height()));
        }
    } catch (const std::exception& error) {
        text += '\n' + QString::fromUtf8(error.what());
    }
    sizeText->setText(text);
}

/// Colour, layer, area and nodes of the outline below the pointer, and its place.
void MainWindow::showPointer(QPointF place, int outline) {
    const auto result = doc.result();
    const auto scene = canvas->scene();
    if (!scene)
        return;
    QString text =
        tr("%1, %2 px")
            .arg(locale().toString(place.x(), 'f', 1), locale().toString(place.y(), 'f', 1));
    double millimetres = 0.0;
    if (result) {
        try {
            Drawing sized;
            sized.size = scene->size();
            setSize(sized, doc.fileName(), result->place, sizeRequest(doc.settings()));
            millimetres = sized.pixelMillimetres.value_or(0.0);
        } catch (const std::exception&) {
            millimetres = 0.0; // the size panel says what is wrong
        }
    }
    if (millimetres > 0.0)
        text +=
            tr("   %1, %2 mm")
                .arg(locale().toString(place.x() * millimetres, 'f', 2),
                     locale().toString((scene->size().height() - place.y()) * millimetres, 'f', 2));
    if (outline >= 0 && static_cast<std::size_t>(outline) < scene->outlines().size()) {
        const SceneOutline& pointed = scene->outlines()[static_cast<std::size_t>(outline)];
        const QString area =
            millimetres > 0.0
                ? tr("%1 mm\u00b2")
                      .arg(locale().toString(pointed.area * millimetres * millimetres, 'f', 2))
                : tr("%1 px\u00b2").arg(locale().toString(pointed.area, 'f', 1));
        text += tr("   %1, colour %2, %3, %4 nodes")
                    .arg(pointed.color.name())
                    .arg(pointed.colorIndex + 1)
                    .arg(area)
                    .arg(pointed.nodes.size());
    }
    pointerText->setText(text);
}

QString MainWindow::command() const {
    const QString file = doc.fileName().isEmpty() ? QStringLiteral("-") : doc.fileName();
    const QString base = QFileInfo(file).completeBaseName();
    const QStringList words = QStringList{"ovtrace", file} + toArguments(doc.settings()) +
                              QStringList{"-o", base + '.' + doc.settings().format()};
    return shellWords(words);
}

void MainWindow::exportTo(const JobSettings& settings, const QString& fileName) {
    doc.change(settings, tr("Export"));
    doc.write(settings, fileName, ToFile);
}

void MainWindow::takeWritten(const WriteResult& result) {
    if (!result.error.isEmpty()) {
        fail(result.error);
        return;
    }
    switch (result.job.purpose) {
    case ToFile:
        statusBar()->showMessage(tr("Written: %1").arg(result.job.fileName), 5000);
        break;
    case ToClipboardAsSvg: {
        auto* data = new QMimeData;
        data->setData("image/svg+xml", result.contents);
        data->setText(QString::fromUtf8(result.contents));
        QApplication::clipboard()->setMimeData(data);
        break;
    }
    case ToClipboardAsPicture:
        QApplication::clipboard()->setImage(QImage::fromData(result.contents, "PNG"));
        break;
    case ToDrag:
        dragOut->startDrag(result.job.fileName);
        break;
    default:
        break;
    }
}

/// Settings that the other format does not read would be errors of a command line; here they stay
/// where they are.
void MainWindow::copyAs(Purpose purpose, const QString& format) {
    if (!doc.result())
        return;
    JobSettings settings = doc.settings();
    settings.set("format", format);
    doc.write(settings, {}, purpose);
}

void MainWindow::closeEvent(QCloseEvent* event) {
    keepHabits();
    event->accept();
}

void MainWindow::dragEnterEvent(QDragEnterEvent* event) {
    if (event->mimeData()->hasUrls() || event->mimeData()->hasImage())
        event->acceptProposedAction();
}

void MainWindow::dropEvent(QDropEvent* event) {
    const QMimeData* data = event->mimeData();
    if (data->hasUrls() && data->urls().first().isLocalFile())
        open(data->urls().first().toLocalFile());
    else if (data->hasImage())
        doc.open(qvariant_cast<QImage>(data->imageData()));
    event->acceptProposedAction();
}

void MainWindow::keyReleaseEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_B && !event->isAutoRepeat())
        doc.compareWithLast(false);
    QMainWindow::keyReleaseEvent(event);
}
