#include "batch.h"

#include "exitstatus.h"
#include "output.h"
#include "progress.h"
#include "standardstreams.h"
#include <drawing/input.h>
#include <drawing/quietstderr.h>
#include <drawing/statistics.h>
#include <drawing/tracing.h>
#include <drawing/writers/formats.h>

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QImageReader>
#include <QProcess>

#include <cstdio>
#include <map>

namespace {

/// How many pixels each image has, for the progress of a batch; a guess where a file does not tell.
QList<double> pixelsOf(const QStringList& images) {
    if (images.size() < 2)
        return {1e6};
    const QuietStandardError quiet;
    QList<double> pixels;
    for (const QString& image : images) {
        const QSize size = QImageReader(image).size();
        pixels.append(size.isValid() ? static_cast<double>(size.width()) * size.height() : 1e6);
    }
    return pixels;
}

double sum(const QList<double>& values) {
    double total = 0.0;
    for (const double value : values)
        total += value;
    return total;
}

double secondsSince(QElapsedTimer& timer) {
    return static_cast<double>(timer.nsecsElapsed()) / 1e9;
}

/// Prints the statistics of each image; a table has one heading.
class StatisticsPrinter {
public:
    explicit StatisticsPrinter(StatisticsForm form) : form(form) {
    }
    void add(const QString& image, const Drawing& drawing, const Timings& timings) {
        if (form == StatisticsForm::None)
            return;
        const Statistics statistics = measure(image, drawing, timings);
        addText(form == StatisticsForm::Json ? toJson(statistics)
                                             : tableHeading() + toTableRow(statistics));
    }
    /// What another process has printed for an image.
    void addText(const QByteArray& text) {
        const bool isTable = form == StatisticsForm::Table;
        print(isTable && !isFirst ? text.mid(text.indexOf('\n') + 1) : text);
        std::fflush(stdout);
        isFirst = false;
    }

private:
    StatisticsForm form;
    bool isFirst = true;
};

/// One after another, in this process.
class Sequence {
public:
    Sequence(const QStringList& images, const Arguments& arguments)
        : images(images), arguments(arguments), pixels(pixelsOf(images)),
          progress(images.size(), sum(pixels), arguments.quiet), printer(arguments.statistics),
          writer(findFormat(arguments.format)->makeWriter(arguments.writer)),
          output(arguments, *writer) {
    }

    BatchResult run() {
        for (qsizetype i = 0; i < images.size(); ++i) {
            try {
                progress.advance(pixels[i], trace(images[i]));
            } catch (const FileError& error) {
                if (!arguments.continueOnError)
                    throw;
                result.failed = true;
                progress.message(QString("ovtrace: ") + error.what());
                progress.advance(pixels[i], images[i] + ": failed");
            }
        }
        output.finish();
        return result;
    }

private:
    /// Returns what to tell about the image.
    QString trace(const QString& name) {
        QElapsedTimer timer;
        Timings timings;
        timer.start();
        InputImage input = readInput(name, arguments.input);
        timings.reading = secondsSince(timer);
        timer.restart();
        const double dotsPerInch = input.dotsPerInch;
        Drawing drawing = traceImage(std::move(input), arguments.settings);
        setSize(drawing, dotsPerInch, arguments.size);
        timings.tracing = secondsSince(timer);
        timer.restart();
        output.add(name, drawing);
        timings.writing = secondsSince(timer);
        printer.add(name, drawing, timings);
        if (drawing.polylines.isEmpty()) {
            result.empty = true;
            if (!arguments.quiet)
                progress.message(QString("ovtrace: %1: nothing was traced: %2")
                                     .arg(name, likelyCause(drawing, arguments.settings)));
        }
        const QString target =
            arguments.output.isEmpty() ? outputName(name, arguments) : arguments.output;
        return QString("%1 -> %2").arg(name, target);
    }

    const QStringList& images;
    const Arguments& arguments;
    QList<double> pixels;
    Progress progress;
    StatisticsPrinter printer;
    std::unique_ptr<Writer> writer;
    Output output;
    BatchResult result;
};

/// Several at a time: each in a run of this program for that image alone.
class Workers {
public:
    Workers(const QStringList& images, const Arguments& arguments)
        : images(images), arguments(arguments), pixels(pixelsOf(images)),
          progress(images.size(), sum(pixels), arguments.quiet), printer(arguments.statistics) {
    }

    BatchResult run() {
        QEventLoop loop;
        const qsizetype count = std::min<qsizetype>(arguments.jobs, images.size());
        for (qsizetype i = 0; i < count; ++i)
            startNext(loop);
        if (running > 0)
            loop.exec();
        if (!failure.isEmpty() && !arguments.continueOnError)
            throw FileError(failure);
        return result;
    }

private:
    QStringList wordsFor(const QString& image) const {
        QStringList words = arguments.worker;
        words.append(
            {"--quiet", "--format", arguments.format, "--output", outputName(image, arguments)});
        if (arguments.statistics == StatisticsForm::Table)
            words.append({"--stats", "table"});
        else if (arguments.statistics == StatisticsForm::Json)
            words.append({"--stats", "json"});
        words.append({"--", image});
        return words;
    }

    void startNext(QEventLoop& loop) {
        const bool isStopped = !failure.isEmpty() && !arguments.continueOnError;
        if (isStopped || next == images.size()) {
            if (running == 0)
                loop.exit();
            return;
        }
        const qsizetype index = next++;
        ++running;
        auto* process = new QProcess(&loop);
        QObject::connect(process, &QProcess::finished, &loop, [this, process, index, &loop] {
            finish(*process, index);
            process->deleteLater();
            --running;
            startNext(loop);
        });
        QObject::connect(process, &QProcess::errorOccurred, &loop,
                         [this, index, &loop](QProcess::ProcessError error) {
                             if (error != QProcess::FailedToStart)
                                 return; // finished() follows
                             fail(images[index] + ": no process could be started for it");
                             --running;
                             startNext(loop);
                         });
        process->start(QCoreApplication::applicationFilePath(), wordsFor(images[index]));
    }

    void fail(const QString& message) {
        result.failed = true;
        if (failure.isEmpty())
            failure = message;
        if (arguments.continueOnError)
            progress.message("ovtrace: " + message);
    }

    void finish(QProcess& process, qsizetype index) {
        const QString& image = images[index];
        QString errors = QString::fromLocal8Bit(process.readAllStandardError()).trimmed();
        const bool isNormal = process.exitStatus() == QProcess::NormalExit;
        const int status = isNormal ? process.exitCode() : FileStatus;
        QString line = QString("%1 -> %2").arg(image, outputName(image, arguments));
        if (status == EmptyStatus) {
            result.empty = true;
            if (!arguments.quiet)
                progress.message(QString("ovtrace: %1: nothing was traced").arg(image));
        } else if (status != 0) {
            errors.remove(0, errors.startsWith("ovtrace: ") ? 9 : 0);
            fail(isNormal && !errors.isEmpty() ? errors : image + ": its process has crashed");
            line = image + ": failed";
        }
        progress.advance(pixels[index], line);
        printed[index] = process.readAllStandardOutput();
        // In the order of the images, whichever is done first.
        while (printed.contains(nextPrinted)) {
            if (!printed[nextPrinted].isEmpty())
                printer.addText(printed[nextPrinted]);
            printed.erase(nextPrinted++);
        }
    }

    const QStringList& images;
    const Arguments& arguments;
    QList<double> pixels;
    Progress progress;
    StatisticsPrinter printer;
    BatchResult result;
    QString failure; ///< the first one
    qsizetype next = 0;
    int running = 0;
    qsizetype nextPrinted = 0;
    std::map<qsizetype, QByteArray> printed; ///< statistics that wait for those before them
};

} // namespace

BatchResult traceAll(const QStringList& images, const Arguments& arguments) {
    const bool ownOutputs = arguments.output.isEmpty();
    if (ownOutputs)
        checkOutputNames(images, arguments);
    if (arguments.jobs > 1 && images.size() > 1 && ownOutputs)
        return Workers(images, arguments).run();
    return Sequence(images, arguments).run();
}
