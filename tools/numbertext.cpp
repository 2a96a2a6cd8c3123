#include "numbertext.h"

#include <array>
#include <charconv>

namespace {

template <typename Number> void append(QByteArray& text, Number value) {
    std::array<char, 32> digits{}; // the longest double takes 24
    const auto result = std::to_chars(digits.data(), digits.data() + digits.size(), value);
    text.append(digits.data(), result.ptr - digits.data());
}

} // namespace

void appendNumber(QByteArray& text, double value) {
    append(text, value);
}

void appendNumber(QByteArray& text, int value) {
    append(text, value);
}
