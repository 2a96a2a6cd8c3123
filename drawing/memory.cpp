#include "memory.h"

#ifdef _WIN32
#include <windows.h>

#include <psapi.h>
#else
#include <cstdio>
#include <sys/resource.h>
#include <unistd.h>
#endif

#ifdef _WIN32

double physicalMemory() {
    MEMORYSTATUSEX status{};
    status.dwLength = sizeof status;
    return GlobalMemoryStatusEx(&status) != 0 ? static_cast<double>(status.ullTotalPhys) : 0.0;
}

void resetPeakMemory() {
}

double peakMemory() {
    PROCESS_MEMORY_COUNTERS counters{};
    if (K32GetProcessMemoryInfo(GetCurrentProcess(), &counters, sizeof counters) == 0)
        return 0.0;
    return static_cast<double>(counters.PeakWorkingSetSize);
}

#else

double physicalMemory() {
    return static_cast<double>(sysconf(_SC_PHYS_PAGES)) *
           static_cast<double>(sysconf(_SC_PAGESIZE));
}

void resetPeakMemory() {
#ifdef __linux__
    // 5 stands for the peak.
    if (std::FILE* file = std::fopen("/proc/self/clear_refs", "w")) {
        std::fputs("5", file);
        std::fclose(file);
    }
#endif
}

double peakMemory() {
    rusage usage{};
    if (getrusage(RUSAGE_SELF, &usage) != 0)
        return 0.0;
#ifdef __APPLE__
    constexpr double Unit = 1.0;
#else
    constexpr double Unit = 1024.0;
#endif
    return static_cast<double>(usage.ru_maxrss) * Unit; // NOLINT(*-union-access): the libc's
}

#endif
