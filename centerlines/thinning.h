#pragma once

#include "inkmask.h"

#include <cstddef>
#include <vector>

namespace ovtrace {

class Pace;

/// Thins the pixels of value Ink to lines one pixel wide that hang together as the ink does; what
/// is taken away becomes Paper. Other values count as paper.
///
/// Returns the indices of the pixels that stay, rising.
std::vector<std::size_t> thin(InkMask& mask, Pace& pace);

} // namespace ovtrace
