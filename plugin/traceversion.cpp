#include "traceversion.h"

#include "pluginconfig.h"

// The header's mark is for hosts: the sources of this folder see the engine as linked statically.
Q_DECL_EXPORT const char* ovTraceVersion() {
    return OVTRACE_VERSION;
}
