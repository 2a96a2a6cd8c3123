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
    // Most coordinates of a drawing are whole or half pixels: those need no search for digits.
    constexpr double LargestSimple = 1e6;
    const double doubled = value * 2.0;
    if (doubled >= 1.0 && doubled < LargestSimple) {
        const int halves = static_cast<int>(doubled);
        if (static_cast<double>(halves) == doubled) {
            append(text, halves / 2);
            if (halves % 2 != 0)
                text.append(".5", 2);
            return;
        }
    }
    append(text, value);
}

void appendNumber(QByteArray& text, int value) {
    append(text, value);
}
