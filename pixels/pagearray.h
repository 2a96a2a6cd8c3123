#pragma once

#include <cstddef>
#include <type_traits>
#include <utility>

namespace ovtrace {

/// Zeroed memory that takes room only where it is touched, in huge pages where the system has
/// them: the page faults of an image would cost more than the work on its pixels.
class PageMemory {
public:
    /// Throws std::bad_alloc when there is no room.
    explicit PageMemory(std::size_t bytes);
    PageMemory(PageMemory&& other) noexcept;
    PageMemory& operator=(PageMemory&& other) noexcept;
    ~PageMemory();

    void* data() const {
        return memory;
    }
    /// Gives back what lies beyond the first `bytes`, as far as that can be done.
    void shrink(std::size_t bytes);

private:
    void* memory = nullptr;
    void* mapping = nullptr; ///< what `memory` is a part of, unless it is from the heap
    std::size_t mappingSize = 0;
};

/// An array of numbers, all 0 at first, in page memory.
template <typename Number> class PageArray {
    static_assert(std::is_arithmetic_v<Number>);

public:
    explicit PageArray(std::size_t size) : memory(size * sizeof(Number)) {
    }
    /// Takes over memory of another array, with what it holds.
    explicit PageArray(PageMemory&& memory) : memory(std::move(memory)) {
    }
    PageMemory takeMemory() {
        return std::move(memory);
    }
    Number* data() const {
        return static_cast<Number*>(memory.data());
    }
    Number& operator[](std::size_t index) const {
        return data()[index];
    }

private:
    PageMemory memory;
};

} // namespace ovtrace
