#pragma once

#include <QEventLoop>
#include <QProcess>
#include <QStringList>

#include <optional>

/// What a job printed, and how it ended.
struct WorkerReply {
    int status = 0;
    bool hasCrashed = false; ///< its process has ended before it did; the rest is what it had said
    QByteArray output;
    QStringList messages; ///< without the program's name
};

/// A run of this program that traces one image after another, seen from the one that started it.
class Worker {
public:
    Worker() = default;
    /// Ends the process, and a job that it still has with it.
    ~Worker();
    Worker(const Worker&) = delete;
    Worker& operator=(const Worker&) = delete;

    /// Returns whether there is a process now. `loop` wakes up when it says something or ends; it
    /// must outlive this.
    bool start(QEventLoop& loop);
    /// Hands it a job, as the words of a command line; it must have none.
    void give(qsizetype job, const QStringList& words);
    /// The job that it has; -1 for none.
    qsizetype job() const {
        return currentJob;
    }
    /// What became of the job, once it has ended; the worker is free then, or gone.
    std::optional<WorkerReply> reply();
    bool isGone() const {
        return process.state() == QProcess::NotRunning;
    }

private:
    QProcess process;
    QByteArray output;
    QByteArray errors;
    qsizetype currentJob = -1;
};
