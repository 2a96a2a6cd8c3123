#include "worker.h"

#include "exitstatus.h"
#include "interrupts.h"
#include "workertalk.h"

#include <QCoreApplication>

#include <utility>

namespace {

QStringList messagesIn(const QByteArray& text) {
    QStringList messages;
    for (const QString& line : QString::fromUtf8(text).split('\n', Qt::SkipEmptyParts))
        messages.append(line.startsWith("ovtrace: ") ? line.mid(9) : line);
    return messages;
}

} // namespace

Worker::~Worker() {
    if (currentJob >= 0)
        process.kill();
    process.closeWriteChannel();
    process.waitForFinished(-1);
}

bool Worker::start(QEventLoop& loop) {
    // Windows deals with what has come before it waits for events, and then waits on: the loop has
    // to be told that there is something to look at.
    QObject::connect(&process, &QProcess::readyReadStandardOutput, &loop, &QEventLoop::wakeUp);
    QObject::connect(&process, &QProcess::readyReadStandardError, &loop, &QEventLoop::wakeUp);
    QObject::connect(&process, &QProcess::finished, &loop, &QEventLoop::wakeUp);
    endWithThisProcess(process);
    process.start(QCoreApplication::applicationFilePath(), {WorkerFlag});
    return process.waitForStarted(-1);
}

void Worker::give(qsizetype job, const QStringList& words) {
    currentJob = job;
    process.write(packedWords(words) + '\n');
}

std::optional<WorkerReply> Worker::reply() {
    if (currentJob < 0)
        return std::nullopt;
    // Asked before reading: what a process has said is there when it has ended.
    const bool hasEnded = isGone();
    output += process.readAllStandardOutput();
    errors += process.readAllStandardError();
    const qsizetype outputEnd = output.indexOf(EndMark);
    const qsizetype errorsEnd = errors.indexOf(EndMark);
    const qsizetype lineEnd = outputEnd < 0 ? -1 : output.indexOf('\n', outputEnd);
    if (errorsEnd >= 0 && lineEnd >= 0) {
        WorkerReply reply{.status = output.mid(outputEnd + 1, lineEnd - outputEnd - 1).toInt(),
                          .output = output.first(outputEnd),
                          .messages = messagesIn(errors.first(errorsEnd))};
        output.remove(0, lineEnd + 1);
        errors.remove(0, errorsEnd + 1);
        currentJob = -1;
        return reply;
    }
    if (!hasEnded)
        return std::nullopt;
    currentJob = -1;
    return WorkerReply{.status = FileStatus,
                       .hasCrashed = true,
                       .output = std::exchange(output, {}),
                       .messages = messagesIn(std::exchange(errors, {}))};
}
