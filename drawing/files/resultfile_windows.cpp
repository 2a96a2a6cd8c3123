#include "resultfile.h"

#include "files.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QUuid>

#include <cstdio>
#include <io.h>
#include <windows.h>

namespace {

constexpr QLatin1String LeftoverStart(".ovtrace-");
constexpr QLatin1String LeftoverEnd(".part");

QString writeAll(QFileDevice& file, const char* data, qint64 size) {
    return file.write(data, size) == size ? QString() : file.errorString();
}

QString flushed(QFileDevice& file) {
    return file.flush() && file.error() == QFileDevice::NoError ? QString() : file.errorString();
}

/// The standard output and devices.
class ThroughTarget : public ResultTarget {
public:
    /// Returns the system's words when it cannot be opened.
    QString open(const QString& name) {
        std::fflush(stdout);
        file.setFileName(name);
        const bool isOpen =
            name == "-" ? file.open(stdout, QIODevice::WriteOnly) : file.open(QIODevice::WriteOnly);
        return isOpen ? QString() : file.errorString();
    }
    QString write(const char* data, qint64 size) override {
        return writeAll(file, data, size);
    }
    QString complete() override {
        return flushed(file);
    }

private:
    QFile file;
};

/// A path that the system takes at any length.
std::wstring longPath(const QString& name) {
    const QString native = QDir::toNativeSeparators(QFileInfo(name).absoluteFilePath());
    return (native.startsWith("\\\\") ? native : "\\\\?\\" + native).toStdWString();
}

/// A new file that takes the place of `name` when it is complete. (Not a QTemporaryFile: that stays
/// open after close(), and Windows moves no open file.)
class NewFileTarget : public ResultTarget {
public:
    explicit NewFileTarget(const QString& name)
        : name(name), file(QFileInfo(name).path() + '/' + LeftoverStart +
                           QUuid::createUuid().toString(QUuid::Id128) + LeftoverEnd) {
    }
    ~NewFileTarget() override {
        if (!isComplete && file.isOpen())
            file.remove();
    }
    QString open() {
        return file.open(QIODevice::WriteOnly | QIODevice::NewOnly) ? QString()
                                                                    : file.errorString();
    }
    QString write(const char* data, qint64 size) override {
        return writeAll(file, data, size);
    }
    QString complete() override {
        const QString error = flushed(file);
        if (!error.isEmpty())
            return error;
        file.close();
        isComplete = MoveFileExW(longPath(file.fileName()).c_str(), longPath(name).c_str(),
                                 MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH) != 0;
        if (isComplete)
            return {};
        const auto code = static_cast<int>(GetLastError());
        file.remove();
        return qt_error_string(code);
    }

private:
    QString name;
    QFile file;
    bool isComplete = false;
};

} // namespace

std::unique_ptr<ResultTarget> openResultTarget(const QString& fileName, QString& error) {
    const FileKind kind = fileName == "-" ? FileKind::Other : factsOf(fileName).kind;
    if (kind == FileKind::Other) {
        auto target = std::make_unique<ThroughTarget>();
        error = target->open(fileName);
        if (error.isEmpty())
            return target;
        return nullptr;
    }
    auto target = std::make_unique<NewFileTarget>(fileName);
    error = kind == FileKind::Folder ? QString("is a folder") : target->open();
    if (error.isEmpty())
        return target;
    return nullptr;
}

void removeLeftovers(const QString& folder) {
    // One that is still written is open, which keeps the system from removing it.
    for (const QString& name :
         QDir(folder).entryList({LeftoverStart + '*' + LeftoverEnd}, QDir::Files | QDir::Hidden))
        removeFile(folder + '/' + name);
}

void removeUnfinishedFile() noexcept {
}
