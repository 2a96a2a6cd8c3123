#pragma once

#include "vectorlevel.h"

#include <QtGlobal>

#if OVTRACE_X86
#include <xmmintrin.h>
#endif

namespace ovtrace {

/// Asks for memory that will be read soon, a cache line at a time; changes nothing else.
///
/// A pass over an image asks for the next row while it works on the current one: processors do
/// not foresee reads beyond the end of a page, of which a row may have several.
inline void prefetch([[maybe_unused]] const void* memory, [[maybe_unused]] qsizetype size) {
#if OVTRACE_X86
    constexpr qsizetype CacheLine = 64;
    const char* bytes = static_cast<const char*>(memory);
    for (qsizetype i = 0; i < size; i += CacheLine)
        _mm_prefetch(bytes + i, _MM_HINT_T0);
#endif
}

} // namespace ovtrace
