#pragma once

#include "batchreport.h"

#include <QEventLoop>
#include <QList>

#include <memory>
#include <vector>

class QProcess;

/// Several images at a time, each in a run of this program for that image alone.
class Workers {
public:
    Workers(const Plan& plan, const Arguments& arguments);
    ~Workers();
    Workers(const Workers&) = delete;
    Workers& operator=(const Workers&) = delete;

    BatchResult run();

private:
    struct Worker;

    bool start(qsizetype job);
    void startMore();
    void collect();
    void finish(Worker& worker);
    QStringList wordsFor(const Job& job) const;

    const Plan& plan;
    const Arguments& arguments;
    BatchReport report;
    QEventLoop loop;
    std::vector<std::unique_ptr<Worker>> running;
    std::size_t most; ///< workers at a time
    qsizetype next = 0;
    int refusals = 0; ///< attempts to start one with none running that the system has refused
};

/// The argument by which a worker knows itself.
constexpr const char* WorkerFlag = "--worker";

/// Command line words as one argument that is plain ASCII, and back: names of files reach a worker
/// as they are, whatever bytes they have.
QByteArray packedWords(const QStringList& words);
QStringList unpackedWords(const QByteArray& packed);
