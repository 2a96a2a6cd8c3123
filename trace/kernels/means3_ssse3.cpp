#include "means3.h"

#if OVTRACE_X86

#include "bytes16.h"
#include "means3_vector.h"

namespace ovtrace {

void means3Ssse3(const signed char* before, const signed char* center, const signed char* after,
                 signed char* means, qsizetype size, const Means3Drops& drops) {
    const Means3Vector<Bytes16> form(drops);
    form(before, center, after, means, size);
}

} // namespace ovtrace

#endif
