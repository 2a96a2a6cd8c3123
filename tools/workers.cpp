#include "workers.h"

#include "exitstatus.h"

#include <QThread>

#include <algorithm>

#ifndef _WIN32
#include <sys/resource.h>
#endif

namespace {

/// How many workers the limit of open files allows: each takes three descriptors, a start some
/// more.
std::size_t mostWorkers(int wanted, qsizetype jobs) {
    auto most = static_cast<std::size_t>(std::min<qsizetype>(wanted, jobs));
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

} // namespace

Workers::Workers(const Plan& plan, const Arguments& arguments)
    : plan(plan), arguments(arguments), report(plan, arguments),
      most(mostWorkers(arguments.jobs, plan.jobs.size())) {
}

BatchResult Workers::run() {
    for (giveMore(); busy() > 0; giveMore()) {
        loop.processEvents(QEventLoop::WaitForMoreEvents);
        collect();
    }
    return report.finish();
}

bool Workers::hasMore() const {
    return !report.isStopped() && (next < plan.jobs.size() || !again.isEmpty());
}

qsizetype Workers::busy() const {
    return std::count_if(workers.begin(), workers.end(),
                         [](const auto& worker) { return worker->job() >= 0; });
}

/// One that waits for a job; null when all have one and no more can be started.
Worker* Workers::freeWorker() {
    std::erase_if(workers, [](const auto& worker) { return worker->isGone(); });
    const auto idle = std::find_if(workers.begin(), workers.end(),
                                   [](const auto& worker) { return worker->job() < 0; });
    if (idle != workers.end())
        return idle->get();
    return workers.size() < most ? startedWorker() : nullptr;
}

Worker* Workers::startedWorker() {
    auto worker = std::make_unique<Worker>();
    if (!worker->start(loop)) {
        most = std::max<std::size_t>(workers.size(), 1); // so many the system has room for
        return nullptr;
    }
    refusals = 0;
    workers.push_back(std::move(worker));
    return workers.back().get();
}

void Workers::giveMore() {
    constexpr int MostRefusals = 50; // a second each in the end
    while (hasMore()) {
        const bool isAgain = next >= plan.jobs.size();
        if (isAgain && busy() > 0)
            return;
        const qsizetype job = isAgain ? again.first() : next;
        Worker* worker = freeWorker();
        if (worker == nullptr && !workers.empty())
            return;
        if (worker == nullptr && ++refusals < MostRefusals) {
            QThread::msleep(static_cast<unsigned long>(std::min(20 * refusals, 1000)));
            continue;
        }
        if (isAgain)
            secondTry = again.takeFirst();
        else
            ++next;
        if (worker == nullptr)
            report.fail(job, plan.jobs[job].image + ": no process could be started for it");
        else
            worker->give(job, wordsFor(plan.jobs[job], isAgain ? 1 : most));
    }
}

void Workers::collect() {
    for (const std::unique_ptr<Worker>& worker : workers) {
        const qsizetype job = worker->job();
        if (const auto reply = worker->reply())
            finish(job, *reply);
    }
}

void Workers::finish(qsizetype job, const WorkerReply& reply) {
    const bool mayGoWellAlone = reply.hasCrashed || reply.status == MemoryStatus;
    if (mayGoWellAlone && job != secondTry) {
        again.append(job);
        return;
    }
    const bool isDone = reply.status == 0 || reply.status == EmptyStatus;
    QStringList messages = reply.messages;
    QString failure = plan.jobs[job].image +
                      (reply.hasCrashed ? ": its process has crashed" : ": its process has failed");
    if (!isDone && !reply.hasCrashed && !messages.isEmpty())
        failure = messages.takeLast();
    for (const QString& message : messages)
        report.warn(message);
    if (isDone)
        report.succeed(job, reply.status == EmptyStatus, reply.output);
    else
        report.fail(job, failure);
}

QStringList Workers::wordsFor(const Job& job, std::size_t together) const {
    QStringList words = arguments.worker;
    words.append({"--format", arguments.format, "--output", job.result, "--page",
                  QString::number(job.page), "--jobs", QString::number(together)});
    if (arguments.quiet)
        words.append("--quiet");
    if (arguments.statistics == StatisticsForm::Table)
        words.append({"--stats", "table"});
    else if (arguments.statistics == StatisticsForm::Json)
        words.append({"--stats", "json"});
    words.append({"--", job.image});
    return words;
}
