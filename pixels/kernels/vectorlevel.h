#pragma once

#include <span>

// Whether the vector forms are compiled at all.
#if defined(__x86_64__) || defined(_M_X64)
#define OVTRACE_X86 1
#else
#define OVTRACE_X86 0
#endif

namespace ovtrace {

/// Which form of the pixel kernels runs. Every form gives the same bytes. Kernels that have no
/// form for a level use the one below.
enum class VectorLevel {
    Scalar, ///< plain C++, the definition
    Ssse3,  ///< 16 bytes at a time, with table look-ups in registers; x86 since 2006
    Avx2,   ///< 32 bytes at a time; x86 since 2013
};

/// The levels that this processor has, from Scalar to the best.
std::span<const VectorLevel> vectorLevels();

/// The best of them.
VectorLevel bestVectorLevel();

/// The level in use: the best one unless a test has chosen another.
VectorLevel vectorLevel();

/// Makes the kernels use `level`, which must not exceed the best one.
void forceVectorLevel(VectorLevel level);

} // namespace ovtrace
