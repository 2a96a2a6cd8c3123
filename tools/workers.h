#pragma once

#include "batchreport.h"
#include "worker.h"

#include <QEventLoop>
#include <QList>

#include <memory>
#include <vector>

/// Several images at a time, in runs of this program that take one after another. A job that finds
/// too little memory beside the others, or whose process ends before it does, is tried once more by
/// itself.
class Workers {
public:
    Workers(const Plan& plan, const Arguments& arguments);

    BatchResult run();

private:
    bool hasMore() const;
    qsizetype busy() const;
    Worker* freeWorker();
    Worker* startedWorker();
    void giveMore();
    void collect();
    void finish(qsizetype job, const WorkerReply& reply);
    /// `together` is how many may be traced at the same time.
    QStringList wordsFor(const Job& job, std::size_t together) const;

    const Plan& plan;
    const Arguments& arguments;
    BatchReport report;
    QEventLoop loop;
    std::vector<std::unique_ptr<Worker>> workers;
    std::size_t most; ///< workers at a time
    qsizetype next = 0;
    QList<qsizetype> again;   ///< jobs that are tried once more, when all others are done
    qsizetype secondTry = -1; ///< the last of those
    int refusals = 0; ///< attempts to start one with none running that the system has refused
};
