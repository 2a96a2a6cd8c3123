#pragma once

#include <cstdlib>
#include <memory>
#include <new>
#include <type_traits>

namespace ovtrace {

/// A zeroed array of numbers that takes memory only where it is touched, a page at a time.
template <typename Number> class LazyArray {
    static_assert(std::is_arithmetic_v<Number>);

public:
    /// Throws std::bad_alloc when there is no room for `size` numbers.
    explicit LazyArray(std::size_t size)
        : numbers(static_cast<Number*>(std::calloc(size, sizeof(Number)))) {
        if (!numbers && size != 0)
            throw std::bad_alloc();
    }
    Number* data() const {
        return numbers.get();
    }
    Number& operator[](std::size_t index) const {
        return numbers.get()[index];
    }

private:
    struct Free {
        void operator()(Number* memory) const {
            std::free(memory);
        }
    };
    std::unique_ptr<Number[], Free> numbers;
};

} // namespace ovtrace
