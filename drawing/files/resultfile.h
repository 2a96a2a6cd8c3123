#pragma once

#include <QIODevice>
#include <QString>

#include <memory>

/// Where the bytes of a result go, as the system sees it.
class ResultTarget {
public:
    ResultTarget() = default;
    /// What was not completed is as if it had never been begun.
    virtual ~ResultTarget() = default;
    ResultTarget(const ResultTarget&) = delete;
    ResultTarget& operator=(const ResultTarget&) = delete;

    /// Writes all bytes. Returns the system's words for what went wrong; empty when nothing did.
    virtual QString write(const char* data, qint64 size) = 0;
    /// Brings everything to its place; returns likewise.
    virtual QString complete() = 0;
};

/// Opens what is to be written: a file that takes its place when it is complete, or a device, pipe,
/// socket or open descriptor, which is written through. `error` has the system's words when null
/// is returned.
std::unique_ptr<ResultTarget> openResultTarget(const QString& fileName, QString& error);

/// Removes what runs that were killed have left in a folder, where the file system has no files
/// without names.
void removeLeftovers(const QString& folder);

/// Removes the unfinished file of this process, for handlers of signals: async-signal-safe.
void removeUnfinishedFile() noexcept;

/// A file that appears whole or not at all, "-" is the standard output.
///
/// Without commit() nothing appears, and a file that was there stays as it was. The first error is
/// kept and everything after it refused, so that a writer need not look.
class ResultFile : public QIODevice {
public:
    /// Throws FileError when the file cannot be written.
    explicit ResultFile(const QString& fileName);
    ~ResultFile() override;

    /// Throws FileError when something has been lost so far.
    void check() const;
    /// Checks, brings all bytes to the disk and the file to its place. Throws FileError.
    void commit();

    bool isSequential() const override;

protected:
    qint64 readData(char* data, qint64 size) override;
    qint64 writeData(const char* data, qint64 size) override;

private:
    QString name;
    QString failure; ///< the system's words for the first error
    std::unique_ptr<ResultTarget> target;
};

/// Writes a whole file. Throws FileError.
void saveFile(const QString& fileName, const QByteArray& contents);
