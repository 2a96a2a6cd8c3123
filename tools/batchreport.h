#pragma once

#include "batch.h"
#include "progress.h"
#include <drawing/statistics.h>

#include <map>

/// How many pixels each image has, for the progress of a batch; a guess where a file does not tell.
QList<double> pixelsOf(const QList<Job>& jobs);

/// What a batch tells as it goes: the progress, messages, figures in the order of the images, and a
/// line at its end.
class BatchReport {
public:
    BatchReport(const Plan& plan, const Arguments& arguments);

    /// A result was written.
    void succeed(qsizetype job, bool isEmpty, const QByteArray& figures);
    /// There is no result. The first failure ends the batch unless it is to go on.
    void fail(qsizetype job, const QString& message, bool lacksMemory = false);
    /// A message about a job whose result is written all the same.
    void warn(const QString& message);

    bool isStopped() const;
    /// The share of the current image that is done.
    void setShare(double share);
    /// The line at the end; returns what to make of it all.
    BatchResult finish();

private:
    void advance(qsizetype job, const QString& line);
    void printInOrder(qsizetype job, const QByteArray& text);

    const Plan& plan;
    const Arguments& arguments;
    QList<double> pixels;
    Progress progress;
    BatchResult result;
    bool hasHeading = false; ///< of the table of figures
    qsizetype nextPrinted = 0;
    std::map<qsizetype, QByteArray> waiting; ///< figures that wait for those before them
};
