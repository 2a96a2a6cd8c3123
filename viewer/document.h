#pragma once

#include "drawingthread.h"

#include <QImage>
#include <QObject>
#include <QUndoStack>

/// The image that is open, the settings, and the result that follows them: every change of a
/// setting starts the real trace again.
class Document : public QObject {
    Q_OBJECT

public:
    explicit Document(QObject* parent = nullptr);

    /// Opens an image file. What is wrong with it comes with failed().
    void open(const QString& fileName);
    /// Opens a picture that is in no file.
    void open(const QImage& picture);
    bool isOpen() const {
        return source.number != 0;
    }
    /// The image's file; empty when there is none.
    QString fileName() const {
        return source.fileName;
    }

    const JobSettings& settings() const {
        return current;
    }
    /// Takes other settings over, as a step that can be undone. Steps with the same `what` while a
    /// control moves are one.
    void change(const JobSettings& settings, const QString& what, bool moving = false);
    QUndoStack& undoStack() {
        return steps;
    }

    /// Shows the settings from before the last change, until it is called with false.
    void compareWithLast(bool on);

    /// The result of the newest settings that have one; null before the first.
    std::shared_ptr<const TraceResult> result() const {
        return latest;
    }
    bool isTracing() const {
        return tracing;
    }

    /// Writes the drawing with these settings; written() follows.
    void write(const JobSettings& settings, const QString& fileName, int purpose);

signals:
    void opened();
    void settingsChanged(const JobSettings& settings);
    /// The image as it was read; its first result follows.
    void imageRead(std::shared_ptr<const Scene> scene, const QList<qint64>& histogram, int pages);
    void tracingStarted();
    void progressed(double fraction);
    void traced(std::shared_ptr<const TraceResult> result);
    void measured(const TraceFigures& figures);
    void written(const WriteResult& result);
    /// What went wrong, in a sentence.
    void failed(const QString& message);

private:
    friend class SettingsStep;

    void openSource(ImageSource newSource);
    void apply(const JobSettings& settings);
    void startTrace();
    void takeResult(const std::shared_ptr<const TraceResult>& result);

    ImageSource source;
    JobSettings current;
    QUndoStack steps;
    std::shared_ptr<const TraceResult> latest;
    quint64 lastSource = 0;
    quint64 lastJob = 0;
    bool tracing = false;
    bool comparing = false;
    JobSettings kept; ///< while the last ones are shown
    DrawingThread thread;
};
