#include "quietstderr.h"

#include <QtGlobal>

#include <cstdio>
#include <fcntl.h>

#ifdef Q_OS_WIN
#include <io.h>
#else
#include <unistd.h>
#endif

namespace {

#ifdef Q_OS_WIN
constexpr const char* NullDevice = "NUL";
const auto Duplicate = _dup;
const auto DuplicateTo = _dup2;
const auto Close = _close;
int openForWriting(const char* name) {
    return _open(name, _O_WRONLY);
}
#else
constexpr const char* NullDevice = "/dev/null";
const auto Duplicate = dup;
const auto DuplicateTo = dup2;
const auto Close = close;
int openForWriting(const char* name) {
    return open(name, O_WRONLY | O_CLOEXEC);
}
#endif

constexpr int StandardError = 2;

} // namespace

QuietStandardError::QuietStandardError() {
    std::fflush(stderr);
    const int nowhere = openForWriting(NullDevice);
    if (nowhere < 0)
        return;
    saved = Duplicate(StandardError);
    if (saved >= 0)
        DuplicateTo(nowhere, StandardError);
    Close(nowhere);
}

QuietStandardError::~QuietStandardError() {
    if (saved < 0)
        return;
    std::fflush(stderr);
    DuplicateTo(saved, StandardError);
    Close(saved);
}
