#pragma once

#include <QByteArray>
#include <QStringList>

#include <functional>

// How a worker and the run that started it talk. A line of packed words on the worker's standard
// input is a job. What the job prints comes back on both of its output streams; a mark ends it on
// each of them, after which the standard output has a line with the job's exit status.

/// The argument by which a worker knows itself.
constexpr const char* WorkerFlag = "--worker";

/// Ends what a job prints: a record separator, which no message and no figure has in it.
constexpr char EndMark = '\x1e';

/// Command line words as one line that is plain ASCII, and back: names of files reach a worker as
/// they are, whatever bytes they have.
QByteArray packedWords(const QStringList& words);
QStringList unpackedWords(const QByteArray& packed);

/// The worker's side: does the jobs that come on the standard input, one after another, until it
/// ends. `attempt` does one and returns its exit status.
void serveJobs(const std::function<int(const QStringList& words)>& attempt);
