#include "interrupts.h"

#include <windows.h>

void endCleanlyOnSignals() {
    // Processes of a job end when its last handle is closed, that is when this process ends. What
    // this process starts belongs to the same job.
    const HANDLE job = CreateJobObjectW(nullptr, nullptr);
    JOBOBJECT_EXTENDED_LIMIT_INFORMATION limits{};
    limits.BasicLimitInformation.LimitFlags = JOB_OBJECT_LIMIT_KILL_ON_JOB_CLOSE;
    if (job != nullptr && SetInformationJobObject(job, JobObjectExtendedLimitInformation, &limits,
                                                  sizeof limits) != 0)
        AssignProcessToJobObject(job, GetCurrentProcess());
}

void setBarIsShown(bool) noexcept {
}

void endWithThisProcess(QProcess&) {
}
