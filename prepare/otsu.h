#pragma once

#include <cstdint>
#include <span>

namespace ovtrace {

/// The last index of the lower one of the two classes into which a histogram falls with the
/// greatest variance between them: the middle of the empty stretch where there is one. -1 when
/// there are no two classes.
int otsuSplit(std::span<const std::uint32_t> histogram);

} // namespace ovtrace
