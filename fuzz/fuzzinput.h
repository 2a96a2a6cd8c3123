#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>

/// What the fuzzer makes, taken value by value; after its end there are zeros.
class FuzzInput {
public:
    FuzzInput(const std::uint8_t* bytes, std::size_t size) : bytes(bytes), left(size) {
    }
    bool isEmpty() const {
        return left == 0;
    }
    template <typename Value> Value take() {
        Value value{};
        const std::size_t size = std::min(left, sizeof value);
        std::memcpy(&value, bytes, size);
        bytes += size;
        left -= size;
        return value;
    }

private:
    const std::uint8_t* bytes;
    std::size_t left;
};
