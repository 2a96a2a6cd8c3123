#include "batch.h"

#include "batchreport.h"
#include "output.h"
#include "workers.h"
#include <drawing/files/files.h>
#include <drawing/files/resultfile.h>
#include <drawing/input.h>
#include <drawing/memoryestimate.h>
#include <drawing/sizing.h>
#include <drawing/tracing.h>
#include <drawing/writers/formats.h>

#include <QElapsedTimer>
#include <QFileInfo>
#include <QSet>

#include <new>
#include <optional>
#include <traceprogress.h>

namespace {

double secondsSince(QElapsedTimer& timer) {
    return static_cast<double>(timer.nsecsElapsed()) / 1e9;
}

/// Shows how much of an image is traced. A key or a signal that ends the program does so at once
/// and needs nobody to ask here.
class ShareOfImage : public OvTraceProgress {
public:
    explicit ShareOfImage(BatchReport& report) : batch(report) {
    }
    bool report(double fraction) override {
        batch.setShare(fraction);
        return true;
    }

private:
    BatchReport& batch;
};

/// One after another, in this process.
class Sequence {
public:
    Sequence(const Plan& plan, const Arguments& arguments)
        : plan(plan), arguments(arguments), report(plan, arguments),
          writer(findFormat(arguments.format)->makeWriter(arguments.writer)),
          output(arguments, *writer) {
    }

    BatchResult run() {
        for (qsizetype i = 0; i < plan.jobs.size() && !report.isStopped(); ++i) {
            if (const auto outcome = attempt(i))
                report.succeed(i, outcome->isEmpty, outcome->figures);
        }
        if (!report.isStopped())
            output.finish();
        return report.finish();
    }

private:
    struct Outcome {
        bool isEmpty = false;
        QByteArray figures;
    };

    std::optional<Outcome> attempt(qsizetype i) {
        try {
            return trace(plan.jobs[i]);
        } catch (const std::bad_alloc&) {
            report.fail(i, nameOf(plan.jobs[i]) + ": not enough memory for this image", true);
        } catch (const MemoryError& error) {
            report.fail(i, error.what(), true);
        } catch (const std::exception& error) {
            report.fail(i, error.what());
        }
        return std::nullopt;
    }

    Outcome trace(const Job& job) {
        InputRequest request = arguments.input;
        request.page = job.page;
        request.together = arguments.isWorker ? arguments.jobs : 1;
        QElapsedTimer timer;
        Timings timings;
        timer.start();
        InputImage input = readInput(job.image, request);
        timings.reading = secondsSince(timer);
        if (input.isTruncated)
            report.warn(nameOf(job) + ": the file ends too early; what is missing is blank");
        checkTracingMemory(nameOf(job), input, arguments.settings,
                           {writingBytes(input.image), request.together});
        timer.restart();
        const ImagePlace place = input.place;
        ShareOfImage share(report);
        Drawing drawing = traceImage(std::move(input), arguments.settings, &share);
        setSize(drawing, nameOf(job), place, arguments.size);
        timings.tracing = secondsSince(timer);
        timer.restart();
        output.add(job, drawing);
        timings.writing = secondsSince(timer);
        const bool isEmpty = drawing.isEmpty();
        if (isEmpty)
            report.warn(QString("%1: nothing was traced: %2")
                            .arg(nameOf(job), likelyCause(drawing, arguments.settings)));
        return {isEmpty, figures(job, drawing, timings)};
    }

    /// What the format takes whatever the image shows: PNG has its picture twice.
    double writingBytes(const QImage& image) const {
        if (arguments.format != "png")
            return 0.0;
        constexpr double BytesPerPixel = 8.0;
        const double scale = arguments.writer.scale;
        return BytesPerPixel * scale * scale * image.width() * image.height();
    }

    QByteArray figures(const Job& job, const Drawing& drawing, const Timings& timings) const {
        if (arguments.statistics == StatisticsForm::None)
            return {};
        const Statistics statistics = measure(job.image, drawing, timings);
        return arguments.statistics == StatisticsForm::Json
                   ? toJson(statistics)
                   : tableHeading() + toTableRow(statistics);
    }

    const Plan& plan;
    const Arguments& arguments;
    BatchReport report;
    std::unique_ptr<Writer> writer;
    Output output;
};

/// The folders of the results: made where they were asked for, and rid of what killed runs have
/// left in them.
void prepareFolders(const Plan& plan, const Arguments& arguments) {
    QSet<QString> folders;
    for (const Job& job : plan.jobs) {
        if (job.result != "-")
            folders.insert(QFileInfo(job.result).path());
    }
    for (const QString& folder : folders) {
        if (!arguments.outputFolder.isEmpty())
            makeFolders(folder);
        removeLeftovers(folder);
    }
}

} // namespace

BatchResult traceAll(const Plan& plan, const Arguments& arguments) {
    if (!arguments.isWorker)
        prepareFolders(plan, arguments);
    const bool ownOutputs = arguments.output.isEmpty();
    if (arguments.jobs > 1 && plan.jobs.size() > 1 && ownOutputs)
        return Workers(plan, arguments).run();
    return Sequence(plan, arguments).run();
}
