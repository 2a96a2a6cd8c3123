#include "vectorlevel.h"

#include <array>
#include <atomic>

#if OVTRACE_X86 && defined(_MSC_VER)
#include <immintrin.h>
#include <intrin.h>
#endif

namespace ovtrace {
namespace {

#if !OVTRACE_X86
constexpr bool hasSsse3() {
    return false;
}
constexpr bool hasAvx2() {
    return false;
}
#elif defined(_MSC_VER)
/// Whether bit `bit` of a register (0 to 3 for eax to edx) of a leaf of CPUID is set.
bool cpuHas(int leaf, int registerIndex, int bit) {
    int registers[4] = {};
    __cpuidex(registers, leaf, 0);
    return (registers[registerIndex] >> bit & 1) != 0;
}
bool hasSsse3() {
    return cpuHas(1, 2, 9);
}
bool hasAvx2() {
    // The system must save the wide registers, too.
    constexpr unsigned long long WideState = 6;
    return cpuHas(1, 2, 27) && (_xgetbv(0) & WideState) == WideState && cpuHas(7, 1, 5);
}
#else
bool hasSsse3() {
    return __builtin_cpu_supports("ssse3") != 0;
}
bool hasAvx2() {
    return __builtin_cpu_supports("avx2") != 0;
}
#endif

constexpr std::array AllLevels{VectorLevel::Scalar, VectorLevel::Ssse3, VectorLevel::Avx2};

std::size_t countLevels() {
    if (!hasSsse3())
        return 1;
    return hasAvx2() ? 3 : 2;
}

std::atomic<VectorLevel>& current() {
    static std::atomic<VectorLevel> level = bestVectorLevel();
    return level;
}

} // namespace

std::span<const VectorLevel> vectorLevels() {
    static const std::size_t count = countLevels();
    return std::span(AllLevels).first(count);
}

VectorLevel bestVectorLevel() {
    return vectorLevels().back();
}

VectorLevel vectorLevel() {
    return current().load(std::memory_order_relaxed);
}

void forceVectorLevel(VectorLevel level) {
    current().store(level, std::memory_order_relaxed);
}

} // namespace ovtrace
