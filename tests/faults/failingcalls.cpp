// Loaded before the C library, makes calls of the system fail on the results that a program writes:
// OVTRACE_FAULTS is a list such as "fsync=5 open=95": the call and the number of its error, or of
// a signal that ends the program there ("write=k9"). OVTRACE_FAULTS_ONCE names a file that is
// removed by the first fault, after which there are no more.

#include <cerrno>
#include <csignal>
#include <cstdarg>
#include <cstdlib>
#include <cstring>
#include <dlfcn.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

/// Whether the call has to fail; errno is what it fails with.
bool isToFail(const char* call) {
    const char* faults = std::getenv("OVTRACE_FAULTS");
    const std::size_t length = std::strlen(call);
    for (const char* fault = faults; fault != nullptr; fault = std::strchr(fault, ' ')) {
        fault += *fault == ' ' ? 1 : 0;
        if (std::strncmp(fault, call, length) != 0 || fault[length] != '=')
            continue;
        const char* once = std::getenv("OVTRACE_FAULTS_ONCE");
        if (once != nullptr && unlink(once) != 0)
            return false;
        const char* how = fault + length + 1;
        if (*how == 'k')
            kill(getpid(), std::atoi(how + 1));
        errno = std::atoi(how);
        return true;
    }
    return false;
}

/// Whether a descriptor is a regular file that is written and not read: a result.
bool isResult(int descriptor) {
    struct stat status {};
    return fstat(descriptor, &status) == 0 && S_ISREG(status.st_mode) &&
           (fcntl(descriptor, F_GETFL) & O_ACCMODE) == O_WRONLY;
}

template <typename Function> Function* original(const char* name) {
    return reinterpret_cast<Function*>(dlsym(RTLD_NEXT, name));
}

} // namespace

extern "C" {

int fsync(int descriptor) {
    static const auto call = original<int(int)>("fsync");
    return isResult(descriptor) && isToFail("fsync") ? -1 : call(descriptor);
}

ssize_t write(int descriptor, const void* data, size_t size) {
    static const auto call = original<ssize_t(int, const void*, size_t)>("write");
    if (!isResult(descriptor) || std::getenv("OVTRACE_FAULTS") == nullptr)
        return call(descriptor, data, size);
    // Half of it goes, as on a disk that fills up; then none.
    static bool isFirst = true;
    if (isFirst && size > 1) {
        isFirst = false;
        return call(descriptor, data, size / 2);
    }
    return isToFail("write") ? -1 : call(descriptor, data, size);
}

int close(int descriptor) {
    static const auto call = original<int(int)>("close");
    const bool fails = isResult(descriptor) && isToFail("close");
    const int error = errno;
    const int result = call(descriptor);
    if (!fails)
        return result;
    errno = error;
    return -1;
}

int rename(const char* from, const char* to) noexcept {
    static const auto call = original<int(const char*, const char*)>("rename");
    return isToFail("rename") ? -1 : call(from, to);
}

int linkat(int fromFolder, const char* from, int toFolder, const char* to, int flags) noexcept {
    static const auto call = original<int(int, const char*, int, const char*, int)>("linkat");
    return isToFail("linkat") ? -1 : call(fromFolder, from, toFolder, to, flags);
}

/// Fails for files without a name alone.
int open(const char* name, int flags, ...) {
    static const auto call = original<int(const char*, int, ...)>("open");
    std::va_list further;
    va_start(further, flags);
    const mode_t mode = (flags & (O_CREAT | O_TMPFILE)) != 0 ? va_arg(further, mode_t) : 0;
    va_end(further);
    return (flags & O_TMPFILE) == O_TMPFILE && isToFail("open") ? -1 : call(name, flags, mode);
}

} // extern "C"
