#pragma once

#include "mailbox.h"
#include "scene.h"

#include <drawing/drawing.h>
#include <drawing/input.h>
#include <drawing/jobsettings.h>
#include <drawing/statistics.h>

#include <QObject>

#include <atomic>
#include <condition_variable>
#include <deque>
#include <memory>
#include <mutex>
#include <optional>
#include <thread>

/// Where an image comes from.
struct ImageSource {
    quint64 number = 0; ///< another one for each image that was opened
    QString fileName;   ///< empty when the image did not come from a file
    QImage picture;     ///< that did not come from a file
};

/// What is to be traced, and how.
struct TraceJob {
    quint64 number = 0; ///< newer ones are larger
    ImageSource source;
    JobSettings settings;
};

/// What came of it.
struct TraceResult {
    TraceJob job;
    Drawing drawing;
    std::shared_ptr<const Scene> scene;
    ImagePlace place; ///< what the image says of its size
    double seconds = 0.0;
    QString error; ///< why there is no drawing; empty when there is one
};

/// Figures that take longer than the trace.
struct TraceFigures {
    quint64 number = 0; ///< of the job
    Statistics statistics;
    qint64 fileSize = 0; ///< bytes, in the job's format
};

/// What is to be written.
struct WriteJob {
    TraceJob trace;
    QString fileName; ///< empty: the bytes are asked for
    int purpose = 0;  ///< comes back with the result
};

struct WriteResult {
    WriteJob job;
    QByteArray contents; ///< when there is no file
    QString error;       ///< empty when all went well
};

/// Reads, traces and writes in a thread of its own, so that the window never waits.
///
/// Of the traces only the newest counts: it cancels the one under way. Everything that is to be
/// written is written, in order. Signals come in the thread that the object lives in.
class DrawingThread : public QObject {
    Q_OBJECT

public:
    explicit DrawingThread(QObject* parent = nullptr);
    /// Cancels what is under way and waits for it.
    ~DrawingThread() override;

    void trace(const TraceJob& job);
    void write(const WriteJob& job);

signals:
    /// The image of a job was read; its trace follows.
    void imageRead(quint64 number, std::shared_ptr<const Scene> scene,
                   const QList<qint64>& histogram, int pages);
    /// `fraction` of the trace under way is done, 0 to 1.
    void progressed(quint64 number, double fraction);
    void traced(std::shared_ptr<const TraceResult> result);
    void measured(const TraceFigures& figures);
    void written(const WriteResult& result);

private:
    /// An image as it was read, and for which request.
    struct ReadImage {
        TraceJob job;
        InputImage input;
        std::shared_ptr<const Scene> scene; ///< the image alone
    };

    /// What the thread does next.
    struct Work {
        std::optional<TraceJob> trace;
        std::optional<WriteJob> write;
        bool closing = false; ///< nothing more
    };

    void run();
    Work waitForWork();
    void doTrace(const TraceJob& job);
    void doWrite(const WriteJob& job);
    void doMeasure();
    const InputImage& readImage(const TraceJob& job);
    std::shared_ptr<const Scene> sceneOf(const TraceResult& result) const;
    std::shared_ptr<const TraceResult> makeResult(const TraceJob& job, bool canBeCancelled);
    bool isOutdated(quint64 number) const {
        return number < newest.load(std::memory_order_relaxed);
    }

    std::mutex mutex;
    std::condition_variable wake;
    // Guarded by the mutex:
    std::optional<TraceJob> waiting;
    std::deque<WriteJob> writes;
    bool closing = false;

    std::atomic<quint64> newest{0}; ///< the number of the trace that counts

    // Of the thread itself:
    std::optional<ReadImage> lastImage;
    std::shared_ptr<const TraceResult> lastResult;
    std::shared_ptr<const TraceResult> unmeasured; ///< shown, its figures still to come

    Mailbox mailbox; ///< for what the thread tells
    std::thread thread;
};
