#include "interrupts.h"

#include <drawing/files/resultfile.h>

#include <QProcess>

#include <atomic>
#include <csignal>
#include <unistd.h>

#ifdef __linux__
#include <sys/prctl.h>
#endif

namespace {

std::atomic<bool> barIsShown = false;

extern "C" void endBySignal(int number) {
    removeUnfinishedFile();
    constexpr char ClearLine[] = "\r\033[K";
    if (barIsShown && write(STDERR_FILENO, ClearLine, sizeof ClearLine - 1) < 0)
        barIsShown = false; // there is no terminal any more
    std::signal(number, SIG_DFL);
    std::raise(number);
}

} // namespace

void endCleanlyOnSignals() {
    for (const int number : {SIGINT, SIGTERM, SIGHUP}) {
        struct sigaction action {};
        // Who starts a program in the background may have it ignore some of them.
        if (sigaction(number, nullptr, &action) != 0 || action.sa_handler == SIG_IGN)
            continue;
        action = {};
        action.sa_handler = endBySignal;
        sigaction(number, &action, nullptr);
    }
}

void setBarIsShown(bool isShown) noexcept {
    barIsShown = isShown;
}

void endWithThisProcess(QProcess& process) {
#ifdef __linux__
    process.setChildProcessModifier([parent = getpid()] {
        prctl(PR_SET_PDEATHSIG, SIGTERM);
        if (getppid() != parent)
            _exit(1); // it has ended in between
    });
#else
    Q_UNUSED(process)
#endif
}
