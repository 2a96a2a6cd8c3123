#include "resultfile.h"

#include "filename.h"
#include "files.h"

#include <QFileInfo>

#include <algorithm>
#include <array>
#include <atomic>
#include <cerrno>
#include <climits>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>
#include <utility>

namespace {

constexpr QLatin1String LeftoverStart(".ovtrace-");
constexpr QLatin1String LeftoverEnd(".part");

/// The hidden file that a handler of signals has to remove; empty when there is none.
std::array<char, PATH_MAX> unfinishedName{};
std::atomic<bool> hasUnfinished = false;

QString systemWords(int error) {
    return QString::fromLocal8Bit(std::strerror(error));
}

/// A descriptor that is closed with its owner.
class Descriptor {
public:
    explicit Descriptor(int number = -1) : number(number) {
    }
    ~Descriptor() {
        close();
    }
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;

    int get() const {
        return number;
    }
    bool close() {
        const int closing = std::exchange(number, -1);
        return closing < 0 || ::close(closing) == 0;
    }

private:
    int number;
};

QString writeAll(int descriptor, const char* data, qint64 size) {
    while (size > 0) {
        const ssize_t written = ::write(descriptor, data, static_cast<std::size_t>(size));
        if (written < 0 && errno == EINTR)
            continue;
        if (written < 0)
            return systemWords(errno);
        data += written;
        size -= written;
    }
    return {};
}

/// Devices, pipes, sockets and descriptors that are open already.
class ThroughTarget : public ResultTarget {
public:
    explicit ThroughTarget(int descriptor) : file(descriptor) {
    }
    QString write(const char* data, qint64 size) override {
        return writeAll(file.get(), data, size);
    }
    QString complete() override {
        // A descriptor may be a file, where the disk has the last word; most others know no sync.
        if (fsync(file.get()) != 0 && (errno == EIO || errno == ENOSPC || errno == EDQUOT))
            return systemWords(errno);
        return file.close() ? QString() : systemWords(errno);
    }

private:
    Descriptor file;
};

/// A new file that takes the place of `name` when it is complete.
class NewFileTarget : public ResultTarget {
public:
    explicit NewFileTarget(QByteArray name) : name(std::move(name)) {
    }
    ~NewFileTarget() override {
        if (!hidden.isEmpty())
            unlink(hidden.constData());
        hasUnfinished = false;
    }

    /// Returns the system's words when the file cannot be made.
    QString open() {
        struct stat status {};
        exists = stat(name.constData(), &status) == 0;
        if (exists && access(name.constData(), W_OK) != 0)
            return systemWords(errno);
        if (exists)
            old = status;
        return openWithoutName() || openHidden() ? QString() : systemWords(errno);
    }
    QString write(const char* data, qint64 size) override {
        return writeAll(file->get(), data, size);
    }
    QString complete() override {
        keepPermissions();
        if (fsync(file->get()) != 0 && errno != EINVAL && errno != ENOTSUP && errno != EROFS)
            return systemWords(errno);
        // Network file systems say at a close what was lost; the descriptor itself is needed until
        // the file has its name.
        if (!Descriptor(dup(file->get())).close())
            return systemWords(errno);
        if (hidden.isEmpty() && !giveName())
            return systemWords(errno);
        if (!hidden.isEmpty() && rename(hidden.constData(), name.constData()) != 0)
            return systemWords(errno);
        hidden.clear();
        return {};
    }

private:
    QByteArray folder() const {
        const qsizetype slash = name.lastIndexOf('/');
        return slash < 0 ? QByteArray(".") : name.left(std::max<qsizetype>(slash, 1));
    }

    bool openWithoutName() {
#ifdef O_TMPFILE
        // A name is given to it later by way of /proc.
        if (access("/proc/self/fd", X_OK) != 0)
            return false;
        file = std::make_unique<Descriptor>(
            ::open(folder().constData(), O_TMPFILE | O_WRONLY | O_CLOEXEC, 0666));
        return file->get() >= 0;
#else
        return false;
#endif
    }

    QByteArray freshName() const {
        static std::atomic<unsigned> count = 0;
        const QString own = QString("%1-%2").arg(getpid()).arg(count++);
        return folder() + '/' + (QString(LeftoverStart) + own + LeftoverEnd).toLatin1();
    }

    bool openHidden() {
        for (int attempt = 0; attempt < 100; ++attempt) {
            remember(freshName());
            file = std::make_unique<Descriptor>(
                ::open(hidden.constData(), O_CREAT | O_EXCL | O_WRONLY | O_CLOEXEC, 0666));
            if (file->get() < 0) {
                const int error = errno;
                forget();
                errno = error;
                if (error == EEXIST)
                    continue;
                return false;
            }
            // Who removes leftovers takes the lock first; one that has just been removed is made
            // anew.
            struct stat status {};
            if (flock(file->get(), LOCK_EX | LOCK_NB) == 0 && fstat(file->get(), &status) == 0 &&
                status.st_nlink > 0)
                return true;
            unlink(hidden.constData());
            forget();
        }
        errno = EEXIST;
        return false;
    }

    /// Gives the nameless file its place, or a hidden name when another file is there.
    bool giveName() {
        const QByteArray self = "/proc/self/fd/" + QByteArray::number(file->get());
        const auto linkAs = [&](const QByteArray& path) {
            return linkat(AT_FDCWD, self.constData(), AT_FDCWD, path.constData(),
                          AT_SYMLINK_FOLLOW) == 0;
        };
        if (!exists && linkAs(name))
            return true;
        if (!exists && errno != EEXIST)
            return false;
        do {
            remember(freshName());
            if (linkAs(hidden))
                return true;
        } while (errno == EEXIST);
        forget();
        return false;
    }

    void remember(const QByteArray& path) {
        hidden = path;
        if (path.size() < static_cast<qsizetype>(unfinishedName.size())) {
            std::copy_n(path.constData(), path.size() + 1, unfinishedName.data());
            hasUnfinished = true;
        }
    }
    void forget() {
        hasUnfinished = false;
        hidden.clear();
    }

    /// A file that takes another's place is as open to others as that one was.
    void keepPermissions() const {
        if (!exists)
            return;
        if (old.st_uid != geteuid() || old.st_gid != getegid()) {
            if (fchown(file->get(), old.st_uid, old.st_gid) != 0)
                return; // not this user's to give away: with the permissions of a new file
        }
        fchmod(file->get(), old.st_mode & 07777);
    }

    QByteArray name;
    bool exists = false;
    struct stat old {};
    std::unique_ptr<Descriptor> file;
    QByteArray hidden; ///< its name until it has its own; empty while it has none
};

/// The file that a name stands for, links followed; the last one may lead to nothing yet.
QByteArray linksFollowed(QByteArray name) {
    constexpr int MostLinks = 40; // as the system itself
    for (int i = 0; i < MostLinks; ++i) {
        std::array<char, PATH_MAX> target{};
        const ssize_t size = readlink(name.constData(), target.data(), target.size() - 1);
        const qsizetype slash = name.lastIndexOf('/');
        const QByteArray folder = slash < 0 ? QByteArray() : name.left(slash + 1);
        std::array<char, PATH_MAX> real{};
        const bool isInProc =
            realpath(folder.isEmpty() ? "." : folder.constData(), real.data()) != nullptr &&
            std::strncmp(real.data(), "/proc/", 6) == 0;
        if (isInProc)
            return QByteArray(real.data()) + '/' + name.mid(slash + 1);
        if (size < 0)
            return name;
        const QByteArray next(target.data(), size);
        name = next.startsWith('/') ? next : folder + next;
    }
    return name;
}

/// The number of this process's descriptor that a name such as /dev/stdout stands for, or -1.
int ownDescriptor(const QByteArray& path) {
    const QByteArray own = "/proc/" + QByteArray::number(getpid()) + "/fd/";
    bool isNumber = false;
    const int number = path.mid(own.size()).toInt(&isNumber);
    return path.startsWith(own) && isNumber ? number : -1;
}

int connectedTo(const QByteArray& name) {
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    if (name.size() >= static_cast<qsizetype>(sizeof address.sun_path)) {
        errno = ENAMETOOLONG;
        return -1;
    }
    std::copy_n(name.constData(), name.size(), static_cast<char*>(address.sun_path));
    const int descriptor = socket(AF_UNIX, SOCK_STREAM, 0);
    if (descriptor >= 0 &&
        connect(descriptor, reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0) {
        const int error = errno;
        close(descriptor);
        errno = error;
        return -1;
    }
    return descriptor;
}

std::unique_ptr<ResultTarget> openThrough(int descriptor, QString& error) {
    if (descriptor < 0) {
        error = systemWords(errno);
        return nullptr;
    }
    fcntl(descriptor, F_SETFD, FD_CLOEXEC);
    return std::make_unique<ThroughTarget>(descriptor);
}

} // namespace

std::unique_ptr<ResultTarget> openResultTarget(const QString& fileName, QString& error) {
    const QByteArray name = fileName == "-" ? QByteArray("/dev/stdout") : fileNameToBytes(fileName);
    const QByteArray path = linksFollowed(name);
    const int own = fileName == "-" ? STDOUT_FILENO : ownDescriptor(path);
    if (own == STDOUT_FILENO)
        std::fflush(stdout);
    if (own >= 0)
        return openThrough(dup(own), error);
    struct stat status {};
    const bool exists = stat(path.constData(), &status) == 0;
    if (exists && S_ISDIR(status.st_mode)) {
        error = systemWords(EISDIR);
        return nullptr;
    }
    if (exists && S_ISSOCK(status.st_mode))
        return openThrough(connectedTo(path), error);
    if (exists && (!S_ISREG(status.st_mode) || path.startsWith("/proc/")))
        return openThrough(open(path.constData(), O_WRONLY | O_CLOEXEC | O_NOCTTY), error);
    auto target = std::make_unique<NewFileTarget>(path);
    error = target->open();
    if (!error.isEmpty())
        return nullptr;
    return target;
}

void removeLeftovers(const QString& folder) {
    if (factsOf(folder).kind != FileKind::Folder)
        return;
    for (const QString& name : namesIn(folder)) {
        if (!name.startsWith(LeftoverStart) || !name.endsWith(LeftoverEnd))
            continue;
        const QByteArray path = fileNameToBytes(folder + '/' + name);
        const Descriptor file(open(path.constData(), O_WRONLY | O_CLOEXEC | O_NOFOLLOW));
        // Who still writes it holds the lock.
        if (file.get() >= 0 && flock(file.get(), LOCK_EX | LOCK_NB) == 0)
            unlink(path.constData());
    }
}

void removeUnfinishedFile() noexcept {
    if (hasUnfinished)
        unlink(unfinishedName.data());
}
