#include "standardstreams.h"

#include "exitstatus.h"
#include <drawing/errors.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#ifndef _WIN32
#include <fcntl.h>
#include <unistd.h>
#endif

namespace {

constexpr const char* LostOutput = "standard output: cannot be written: ";

void endWithStandardOutput() {
    const bool hadError = std::ferror(stdout) != 0;
    if (std::fclose(stdout) == 0 && !hadError)
        return;
    std::fprintf(stderr, "ovtrace: %s%s\n", LostOutput, std::strerror(errno));
    std::_Exit(FileStatus);
}

} // namespace

void openStandardDescriptors() {
#ifndef _WIN32
    for (const int descriptor : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
        if (fcntl(descriptor, F_GETFD) != -1)
            continue;
        // The lowest free number is the one that is missing.
        const int mode = descriptor == STDOUT_FILENO ? O_RDONLY : O_WRONLY;
        if (open("/dev/null", mode) != descriptor)
            std::_Exit(FileStatus);
    }
#endif
}

void checkStandardOutputAtExit() {
    std::atexit(endWithStandardOutput);
}

void print(const QByteArray& text) {
    const auto size = static_cast<std::size_t>(text.size());
    if (std::fwrite(text.constData(), 1, size, stdout) == size && std::fflush(stdout) == 0)
        return;
    const QString words = QString::fromLocal8Bit(std::strerror(errno));
    std::clearerr(stdout); // it has been told
    throw FileError(LostOutput + words);
}
