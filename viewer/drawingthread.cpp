#include "drawingthread.h"

#include "background.h"

#include <drawing/errors.h>
#include <drawing/files/resultfile.h>
#include <drawing/jobrequests.h>
#include <drawing/sizing.h>
#include <drawing/tracing.h>
#include <drawing/writers/formats.h>
#include <drawing/writers/visible.h>

#include <QBuffer>
#include <QDir>
#include <QElapsedTimer>
#include <QTemporaryFile>
#include <QThread>

#include <chrono>
#include <functional>
#include <limits>
#include <new>
#include <utility>

#include <traceprogress.h>

namespace {

constexpr quint64 Closing = std::numeric_limits<quint64>::max();
constexpr int Levels = 256;
constexpr std::chrono::milliseconds Quiet(150); ///< without changes, before figures are made

/// Passes on how far a trace is, and stops it when a newer one waits.
class Reporter : public OvTraceProgress {
public:
    Reporter(std::function<void(double)> tell, std::function<bool()> isOutdated)
        : tell(std::move(tell)), isOutdated(std::move(isOutdated)) {
    }

    bool report(double fraction) override {
        if (fraction - last >= LeastStep) {
            last = fraction;
            tell(fraction);
        }
        return !isOutdated();
    }

private:
    static constexpr double LeastStep = 0.01;

    std::function<void(double)> tell;
    std::function<bool()> isOutdated;
    double last = 0.0;
};

/// The settings without those that decide nothing about the trace.
JobSettings withoutGroups(JobSettings settings, const QList<SettingGroup>& groups) {
    for (const Setting& setting : settingTable()) {
        if (groups.contains(setting.group))
            settings.reset(setting.key);
    }
    return settings;
}

bool readSameImage(const TraceJob& a, const TraceJob& b) {
    const QList<SettingGroup> others{SettingGroup::Method, SettingGroup::Tracing,
                                     SettingGroup::Size, SettingGroup::Output};
    return a.source.number == b.source.number &&
           withoutGroups(a.settings, others) == withoutGroups(b.settings, others);
}

bool traceAlike(const TraceJob& a, const TraceJob& b) {
    const QList<SettingGroup> others{SettingGroup::Size, SettingGroup::Output};
    return a.source.number == b.source.number &&
           withoutGroups(a.settings, others) == withoutGroups(b.settings, others);
}

/// How many pixels have each lightness; of large images every so many rows and columns.
QList<qint64> histogramOf(const QImage& image) {
    constexpr int LargestSide = 1000;
    QList<qint64> counts(Levels);
    const int step = 1 + std::max(image.width(), image.height()) / LargestSide;
    for (int y = 0; y < image.height(); y += step) {
        for (int x = 0; x < image.width(); x += step) {
            const QRgb pixel = image.pixel(x, y);
            const int highest = std::max({qRed(pixel), qGreen(pixel), qBlue(pixel)});
            const int lowest = std::min({qRed(pixel), qGreen(pixel), qBlue(pixel)});
            ++counts[(highest + lowest) / 2];
        }
    }
    return counts;
}

void writeDrawing(const TraceResult& result, const WriteJob& job, QIODevice& device) {
    Drawing drawing = result.drawing;
    setSize(drawing, job.trace.source.fileName, result.place, sizeRequest(job.trace.settings));
    const FileFormat* format = findFormat(job.trace.settings.format());
    format->makeWriter(writerOptions(job.trace.settings))->write(drawing, device);
}

/// Runs a piece of work; gives what went wrong in a sentence.
template <typename Work> QString errorOf(Work work) {
    try {
        work();
        return {};
    } catch (const std::bad_alloc&) {
        return DrawingThread::tr("There is not enough memory for this image.");
    } catch (const std::exception& error) {
        return QString::fromUtf8(error.what());
    }
}

} // namespace

DrawingThread::DrawingThread(QObject* parent) : QObject(parent), thread(&DrawingThread::run, this) {
}

DrawingThread::~DrawingThread() {
    {
        const std::lock_guard lock(mutex);
        closing = true;
        waiting.reset();
        newest = Closing;
    }
    wake.notify_one();
    thread.join();
}

void DrawingThread::trace(const TraceJob& job) {
    {
        const std::lock_guard lock(mutex);
        waiting = job;
        newest = job.number;
    }
    wake.notify_one();
}

void DrawingThread::write(const WriteJob& job) {
    {
        const std::lock_guard lock(mutex);
        writes.push_back(job);
    }
    wake.notify_one();
}

/// What is still to be written is written before the end. Without anything to do for a while, there
/// is time for the figures of the last result: while a slider moves they would only be in the way.
DrawingThread::Work DrawingThread::waitForWork() {
    Work work;
    std::unique_lock lock(mutex);
    const auto hasWork = [this] { return closing || waiting || !writes.empty(); };
    if (unmeasured && !wake.wait_for(lock, Quiet, hasWork))
        return work;
    wake.wait(lock, hasWork);
    if (!writes.empty()) {
        work.write = std::move(writes.front());
        writes.pop_front();
    } else {
        work.trace.swap(waiting);
        work.closing = closing;
    }
    return work;
}

void DrawingThread::run() {
    QThread::currentThread()->setPriority(QThread::LowPriority); // the window comes first
    for (Work work = waitForWork(); !work.closing; work = waitForWork()) {
        if (work.write)
            doWrite(*work.write);
        else if (work.trace)
            doTrace(*work.trace);
        else
            doMeasure();
    }
}

void DrawingThread::doTrace(const TraceJob& job) {
    unmeasured.reset();
    const auto result = makeResult(job, true);
    if (isOutdated(job.number))
        return;
    mailbox.post([this, result] { emit traced(result); });
    if (result->error.isEmpty())
        unmeasured = result;
}

void DrawingThread::doMeasure() {
    const auto result = std::exchange(unmeasured, nullptr);
    TraceFigures figures{result->job.number, {}, 0};
    const QString error = errorOf([&] {
        QBuffer file;
        file.open(QIODevice::WriteOnly);
        writeDrawing(*result, {result->job, {}, 0}, file);
        figures.fileSize = file.size();
        if (!isOutdated(result->job.number))
            figures.statistics =
                measure(result->drawing.title, result->drawing, {0.0, result->seconds, 0.0});
    });
    if (error.isEmpty() && !isOutdated(result->job.number))
        mailbox.post([this, figures] { emit measured(figures); });
}

void DrawingThread::doWrite(const WriteJob& job) {
    WriteResult result{job, {}, {}};
    const auto traced = makeResult(job.trace, false);
    result.error = traced->error;
    if (result.error.isEmpty()) {
        result.error = errorOf([&] {
            if (job.fileName.isEmpty()) {
                QBuffer buffer(&result.contents);
                buffer.open(QIODevice::WriteOnly);
                writeDrawing(*traced, job, buffer);
            } else {
                ResultFile file(job.fileName);
                writeDrawing(*traced, job, file);
                file.commit();
            }
        });
    }
    mailbox.post([this, result] { emit written(result); });
}

/// The image of a job, read when it is another one than the last.
const InputImage& DrawingThread::readImage(const TraceJob& job) {
    if (lastImage && readSameImage(lastImage->job, job))
        return lastImage->input;
    lastImage.reset();
    lastResult.reset();
    const InputRequest request = inputRequest(job.settings);
    QString fileName = job.source.fileName;
    QTemporaryFile pasted(QDir::temp().filePath(tr("pasted") + QStringLiteral("-XXXXXX.bmp")));
    if (fileName.isEmpty()) {
        if (!pasted.open() || !job.source.picture.save(&pasted, "BMP") || !pasted.flush())
            throw FileError(tr("The picture cannot be kept: %1").arg(pasted.errorString()));
        fileName = pasted.fileName();
    }
    const int pages = countPages(fileName);
    lastImage = ReadImage{job, readInput(fileName, request), nullptr};
    const InputImage& input = lastImage->input;
    lastImage->scene = makeSharedInBackground<Scene>(input.image);
    mailbox.post([this, number = job.number, scene = lastImage->scene,
                  histogram = histogramOf(input.image),
                  pages] { emit imageRead(number, scene, histogram, pages); });
    return lastImage->input;
}

/// What the settings leave out of files is not shown either.
std::shared_ptr<const Scene> DrawingThread::sceneOf(const TraceResult& result) const {
    return makeSharedInBackground<Scene>(
        *lastImage->scene, visibleParts(result.drawing, writerOptions(result.job.settings)));
}

std::shared_ptr<const TraceResult> DrawingThread::makeResult(const TraceJob& job,
                                                             bool canBeCancelled) {
    auto result = makeSharedInBackground<TraceResult>();
    result->job = job;
    result->error = errorOf([&] {
        const InputImage& input = readImage(job);
        if (lastResult && traceAlike(lastResult->job, job)) {
            *result = *lastResult;
            result->job = job;
            result->scene = sceneOf(*result);
            return;
        }
        Reporter progress(
            [this, number = job.number](double fraction) {
                mailbox.post([this, number, fraction] { emit progressed(number, fraction); });
            },
            [&] { return canBeCancelled && isOutdated(job.number); });
        QElapsedTimer clock;
        clock.start();
        result->place = input.place;
        result->drawing = traceImage(InputImage(input), traceSettings(job.settings), &progress);
        result->seconds = static_cast<double>(clock.nsecsElapsed()) * 1e-9;
        if (!canBeCancelled || !isOutdated(job.number)) {
            result->scene = sceneOf(*result);
            lastResult = result;
        }
    });
    return result;
}
