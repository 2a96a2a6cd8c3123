#pragma once

namespace ovtrace {

/// Which form of the pixel kernels runs. Every form gives the same bytes.
enum class VectorLevel {
    Scalar, ///< plain C++, the definition
    Sse2,   ///< 16 bytes at a time; every 64-bit x86 processor has it
};

/// The best level that this processor has.
VectorLevel bestVectorLevel();

/// The level in use: the best one unless a test has chosen another.
VectorLevel vectorLevel();

/// Makes the kernels use `level`, which must not exceed the best one.
void forceVectorLevel(VectorLevel level);

} // namespace ovtrace
