#include "vectorlevel.h"

#include <atomic>

#if OVTRACE_HAS_SSSE3 && defined(_MSC_VER)
#include <intrin.h>
#endif

namespace ovtrace {
namespace {

bool hasSsse3() {
#if !OVTRACE_HAS_SSSE3
    return false;
#elif defined(_MSC_VER)
    int registers[4] = {};
    __cpuid(registers, 1);
    return (registers[2] & 1 << 9) != 0;
#else
    return __builtin_cpu_supports("ssse3") != 0;
#endif
}

std::atomic<VectorLevel>& current() {
    static std::atomic<VectorLevel> level = bestVectorLevel();
    return level;
}

} // namespace

VectorLevel bestVectorLevel() {
    return hasSsse3() ? VectorLevel::Ssse3 : VectorLevel::Scalar;
}

VectorLevel vectorLevel() {
    return current().load(std::memory_order_relaxed);
}

void forceVectorLevel(VectorLevel level) {
    current().store(level, std::memory_order_relaxed);
}

} // namespace ovtrace
