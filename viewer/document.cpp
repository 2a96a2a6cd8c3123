#include "document.h"

#include <QUndoCommand>

/// One change of the settings.
class SettingsStep : public QUndoCommand {
public:
    SettingsStep(Document& document, JobSettings after, const QString& what, bool moving)
        : QUndoCommand(what), document(document), before(document.settings()),
          after(std::move(after)), moving(moving) {
    }

    void undo() override {
        document.apply(before);
    }
    void redo() override {
        document.apply(after);
    }

    int id() const override {
        return 1;
    }
    /// All places of a slider on its way are one step.
    bool mergeWith(const QUndoCommand* other) override {
        const auto* next = static_cast<const SettingsStep*>(other);
        if (!moving || next->text() != text())
            return false;
        after = next->after;
        moving = next->moving;
        return true;
    }

    const JobSettings& settingsBefore() const {
        return before;
    }

private:
    Document& document;
    JobSettings before;
    JobSettings after;
    bool moving;
};

Document::Document(QObject* parent) : QObject(parent) {
    connect(&thread, &DrawingThread::imageRead, this,
            [this](quint64 number, const std::shared_ptr<const Scene>& scene,
                   const QList<qint64>& histogram, int pages) {
                if (number <= lastJob)
                    emit imageRead(scene, histogram, pages);
            });
    connect(&thread, &DrawingThread::progressed, this, [this](quint64 number, double fraction) {
        if (number == lastJob)
            emit progressed(fraction);
    });
    connect(&thread, &DrawingThread::traced, this, &Document::takeResult);
    connect(&thread, &DrawingThread::measured, this, [this](const TraceFigures& figures) {
        if (figures.number == lastJob)
            emit measured(figures);
    });
    connect(&thread, &DrawingThread::written, this, &Document::written);
}

void Document::open(const QString& fileName) {
    openSource({0, fileName, {}});
}

void Document::open(const QImage& picture) {
    openSource({0, {}, picture});
}

void Document::openSource(ImageSource newSource) {
    newSource.number = ++lastSource;
    source = std::move(newSource);
    // The part and the page that were chosen are those of the other image.
    for (const char* key : {"page", "crop"})
        current.reset(key);
    steps.clear();
    latest.reset();
    emit opened();
    emit settingsChanged(current);
    startTrace();
}

void Document::change(const JobSettings& settings, const QString& what, bool moving) {
    if (!(settings == current))
        steps.push(new SettingsStep(*this, settings, what, moving));
}

void Document::apply(const JobSettings& settings) {
    current = settings;
    emit settingsChanged(current);
    startTrace();
}

void Document::compareWithLast(bool on) {
    if (on == comparing || (on && steps.index() == 0))
        return;
    comparing = on;
    if (on) {
        kept = current;
        apply(static_cast<const SettingsStep*>(steps.command(steps.index() - 1))->settingsBefore());
    } else {
        apply(kept);
    }
}

void Document::startTrace() {
    if (!isOpen())
        return;
    thread.trace({++lastJob, source, current});
    tracing = true;
    emit tracingStarted();
}

void Document::takeResult(const std::shared_ptr<const TraceResult>& result) {
    if (result->job.number != lastJob)
        return; // another one is on its way
    tracing = false;
    if (!result->error.isEmpty()) {
        emit failed(result->error);
        return;
    }
    latest = result;
    emit traced(result);
}

void Document::write(const JobSettings& settings, const QString& fileName, int purpose) {
    thread.write({{lastJob, source, settings}, fileName, purpose});
}
