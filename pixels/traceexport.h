#pragma once

#include <QtGlobal>

// OVTRACE_BUILDING: compiled into the module. OVTRACE_STATIC: the engine linked into a test.
#if defined(OVTRACE_BUILDING)
#define OVTRACE_EXPORT Q_DECL_EXPORT
#elif defined(OVTRACE_STATIC)
#define OVTRACE_EXPORT
#else
#define OVTRACE_EXPORT Q_DECL_IMPORT
#endif
