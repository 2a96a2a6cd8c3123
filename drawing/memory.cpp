#include "memory.h"

#ifdef _WIN32
#include <windows.h>

#include <psapi.h>
#else
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <string>
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

namespace {

/// What Linux tells of this program alone, where getrusage() counts what the process had used as a
/// copy of the one that started it; 0 elsewhere.
double peakOfThisProgram() {
    std::ifstream status("/proc/self/status");
    const std::string label = "VmHWM:";
    for (std::string line; std::getline(status, line);)
        if (line.starts_with(label))
            return std::strtod(line.c_str() + label.size(), nullptr) * 1024.0;
    return 0.0;
}

} // namespace

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
    if (const double own = peakOfThisProgram(); own > 0.0)
        return own;
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
