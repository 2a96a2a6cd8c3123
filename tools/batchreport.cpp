#include "batchreport.h"

#include "standardstreams.h"
#include <drawing/files/files.h>
#include <drawing/quietstderr.h>

#include <QImageReader>

#include <numeric>

namespace {

double sum(const QList<double>& values) {
    return std::accumulate(values.begin(), values.end(), 0.0);
}

QString counted(qsizetype count, const char* one, const char* several) {
    return QString("%1 %2").arg(count).arg(count == 1 ? one : several);
}

double pixelsOf(const Job& job) {
    constexpr double Guess = 1e6;
    try {
        const auto file = openForReading(job.image);
        const QSize size = QImageReader(file.get()).size();
        return size.isValid() ? static_cast<double>(size.width()) * size.height() : Guess;
    } catch (const FileError&) {
        return Guess; // it is told when its turn comes
    }
}

} // namespace

QList<double> pixelsOf(const QList<Job>& jobs) {
    QList<double> pixels;
    if (jobs.size() < 2)
        return pixels.fill(1e6, jobs.size());
    const QuietStandardError quiet;
    for (const Job& job : jobs) {
        const bool isSame = !pixels.isEmpty() && job.image == jobs[pixels.size() - 1].image;
        const bool isFile = factsOf(job.image).kind == FileKind::Regular;
        pixels.append(isSame ? pixels.last() : isFile ? pixelsOf(job) : 1e6);
    }
    return pixels;
}

BatchReport::BatchReport(const Plan& plan, const Arguments& arguments)
    : plan(plan), arguments(arguments), pixels(pixelsOf(plan.jobs)),
      progress(plan.jobs.size(), sum(pixels), arguments.quiet) {
    for (const QString& failure : plan.failures)
        progress.message("ovtrace: " + failure);
    result.failed = plan.failures.size();
    if (arguments.quiet)
        return;
    for (const QString& skipped : plan.skipped)
        progress.message("ovtrace: skipped " + skipped);
    if (plan.others > 0)
        progress.message("ovtrace: skipped " + counted(plan.others,
                                                       "file whose name is no picture's",
                                                       "files whose names are no pictures'"));
}

void BatchReport::succeed(qsizetype job, bool isEmpty, const QByteArray& figures) {
    ++result.traced;
    result.empty += isEmpty ? 1 : 0;
    advance(job, QString("%1 -> %2").arg(nameOf(plan.jobs[job]), plan.jobs[job].result));
    printInOrder(job, figures);
}

void BatchReport::fail(qsizetype job, const QString& message, bool lacksMemory) {
    ++result.failed;
    if (result.failure.isEmpty() && !arguments.continueOnError) {
        result.failure = message;
        result.lackedMemory = lacksMemory;
    }
    if (arguments.continueOnError)
        progress.message("ovtrace: " + message);
    advance(job, nameOf(plan.jobs[job]) + ": failed");
    printInOrder(job, {});
}

void BatchReport::warn(const QString& message) {
    if (!arguments.quiet)
        progress.message("ovtrace: " + message);
}

bool BatchReport::isStopped() const {
    return !result.failure.isEmpty();
}

void BatchReport::setShare(double share) {
    progress.setShare(share);
}

BatchResult BatchReport::finish() {
    if (!plan.isBatch || arguments.quiet)
        return result;
    QStringList parts{counted(result.traced, "result", "results")};
    if (result.empty > 0)
        parts[0] += QString(" (%1 without outlines)").arg(result.empty);
    if (result.failed > 0)
        parts.append(QString("%1 failed").arg(result.failed));
    const qsizetype left = plan.jobs.size() + plan.failures.size() - result.traced - result.failed;
    if (left > 0)
        parts.append(QString("%1 not traced").arg(left));
    if (const qsizetype skipped = plan.skipped.size() + plan.others; skipped > 0)
        parts.append(QString("%1 skipped").arg(skipped));
    progress.end(parts.join(", "));
    return result;
}

void BatchReport::advance(qsizetype job, const QString& line) {
    progress.advance(pixels[job], line);
}

void BatchReport::printInOrder(qsizetype job, const QByteArray& text) {
    waiting[job] = text;
    for (; waiting.contains(nextPrinted); waiting.erase(nextPrinted++)) {
        const QByteArray& figures = waiting[nextPrinted];
        if (figures.isEmpty())
            continue;
        const bool isTable = arguments.statistics == StatisticsForm::Table;
        print(isTable && hasHeading ? figures.mid(figures.indexOf('\n') + 1) : figures);
        hasHeading = true;
    }
}
