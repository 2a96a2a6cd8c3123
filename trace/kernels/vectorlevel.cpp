#include "vectorlevel.h"

#include <atomic>

namespace ovtrace {
namespace {

#if defined(__SSE2__) || defined(_M_X64)
constexpr VectorLevel Best = VectorLevel::Sse2;
#else
constexpr VectorLevel Best = VectorLevel::Scalar;
#endif

std::atomic<VectorLevel> current = Best;

} // namespace

VectorLevel bestVectorLevel() {
    return Best;
}

VectorLevel vectorLevel() {
    return current.load(std::memory_order_relaxed);
}

void forceVectorLevel(VectorLevel level) {
    current.store(level, std::memory_order_relaxed);
}

} // namespace ovtrace
