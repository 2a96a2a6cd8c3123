#pragma once

#include <vector>

namespace ovtrace {

/// Gives the memory of a vector back. To assign {} is no way to: that takes an empty list of
/// elements into the memory that there is.
template <typename Element> void release(std::vector<Element>& elements) {
    std::vector<Element>().swap(elements);
}

} // namespace ovtrace
