#pragma once

namespace ovtrace {

/// Thrown out of a stage when the host cancels the trace; the public classes catch it.
struct TraceCancelled {};

} // namespace ovtrace
