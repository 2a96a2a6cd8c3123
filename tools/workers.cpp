#include "workers.h"

#include "exitstatus.h"
#include "interrupts.h"
#include <drawing/files/filename.h>

#include <QCoreApplication>
#include <QProcess>
#include <QThread>

#include <algorithm>

#ifndef _WIN32
#include <sys/resource.h>
#endif

namespace {

/// How many workers the limit of open files allows: each takes three descriptors, a start some
/// more.
std::size_t mostWorkers(int wanted) {
    auto most = static_cast<std::size_t>(wanted);
#ifndef _WIN32
    constexpr rlim_t Own = 32;
    constexpr rlim_t PerWorker = 4;
    rlimit limit{};
    if (getrlimit(RLIMIT_NOFILE, &limit) == 0 && limit.rlim_cur != RLIM_INFINITY) {
        const rlim_t left = limit.rlim_cur > Own ? limit.rlim_cur - Own : 0;
        most = std::clamp<std::size_t>(left / PerWorker, 1, most);
    }
#endif
    return most;
}

/// The messages among what a worker says.
QStringList messagesIn(const QByteArray& text) {
    QStringList messages;
    for (const QString& line : QString::fromUtf8(text).split('\n', Qt::SkipEmptyParts))
        messages.append(line.startsWith("ovtrace: ") ? line.mid(9) : line);
    return messages;
}

} // namespace

struct Workers::Worker {
    qsizetype job = 0;
    QProcess process;
};

Workers::Workers(const Plan& plan, const Arguments& arguments)
    : plan(plan), arguments(arguments), report(plan, arguments), most(mostWorkers(arguments.jobs)) {
}

Workers::~Workers() = default;

BatchResult Workers::run() {
    for (startMore(); !running.empty(); startMore()) {
        loop.processEvents(QEventLoop::WaitForMoreEvents);
        collect();
    }
    return report.finish();
}

void Workers::startMore() {
    constexpr int MostRefusals = 50; // a second each in the end
    while (next < plan.jobs.size() && !report.isStopped() && running.size() < most) {
        if (start(next)) {
            ++next;
            refusals = 0;
        } else if (!running.empty()) {
            most = running.size(); // so many the system has room for
        } else if (++refusals < MostRefusals) {
            QThread::msleep(static_cast<unsigned long>(std::min(20 * refusals, 1000)));
        } else {
            report.fail(next, plan.jobs[next].image + ": no process could be started for it");
            ++next;
        }
    }
}

/// Returns whether there is a process for the job now.
bool Workers::start(qsizetype job) {
    auto worker = std::make_unique<Worker>();
    worker->job = job;
    worker->process.setStandardInputFile(QProcess::nullDevice());
    endWithThisProcess(worker->process);
    worker->process.start(QCoreApplication::applicationFilePath(),
                          {WorkerFlag, packedWords(wordsFor(plan.jobs[job]))});
    if (!worker->process.waitForStarted(-1))
        return false;
    running.push_back(std::move(worker));
    return true;
}

void Workers::collect() {
    const auto hasEnded = [](const std::unique_ptr<Worker>& worker) {
        return worker->process.state() == QProcess::NotRunning;
    };
    const auto ended = std::stable_partition(running.begin(), running.end(), std::not_fn(hasEnded));
    for (auto worker = ended; worker != running.end(); ++worker)
        finish(**worker);
    running.erase(ended, running.end());
}

void Workers::finish(Worker& worker) {
    QProcess& process = worker.process;
    const QString& image = plan.jobs[worker.job].image;
    const bool isNormal = process.exitStatus() == QProcess::NormalExit;
    const int status = isNormal ? process.exitCode() : FileStatus;
    const bool isDone = status == 0 || status == EmptyStatus;
    QStringList lines = messagesIn(process.readAllStandardError());
    QString failure = image + (isNormal ? ": its process has failed" : ": its process has crashed");
    if (!isDone && isNormal && !lines.isEmpty())
        failure = lines.takeLast();
    for (const QString& line : lines)
        report.warn(line);
    if (isDone)
        report.succeed(worker.job, status == EmptyStatus, process.readAllStandardOutput());
    else
        report.fail(worker.job, failure);
}

QStringList Workers::wordsFor(const Job& job) const {
    QStringList words = arguments.worker;
    words.append({"--format", arguments.format, "--output", job.result, "--page",
                  QString::number(job.page)});
    if (arguments.quiet)
        words.append("--quiet");
    if (arguments.statistics == StatisticsForm::Table)
        words.append({"--stats", "table"});
    else if (arguments.statistics == StatisticsForm::Json)
        words.append({"--stats", "json"});
    words.append({"--", job.image});
    return words;
}

QByteArray packedWords(const QStringList& words) {
    QByteArrayList packed;
    for (const QString& word : words)
        packed.append(fileNameToBytes(word).toPercentEncoding());
    return packed.join(' ');
}

QStringList unpackedWords(const QByteArray& packed) {
    QStringList words;
    for (const QByteArray& word : packed.split(' '))
        words.append(fileNameFromBytes(QByteArray::fromPercentEncoding(word)));
    return words;
}
