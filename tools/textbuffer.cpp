#include "textbuffer.h"

TextBuffer& TextBuffer::operator<<(double value) {
    // Most coordinates of a drawing are whole or half pixels: those need no search for digits.
    constexpr double LargestSimple = 1e6;
    const double doubled = value * 2.0;
    if (doubled >= 1.0 && doubled < LargestSimple) {
        const int halves = static_cast<int>(doubled);
        if (static_cast<double>(halves) == doubled) {
            *this << halves / 2;
            if (halves % 2 != 0)
                *this << ".5";
            return *this;
        }
    }
    reserve(LongestNumber);
    end = std::to_chars(end, bufferEnd(), value).ptr;
    return *this;
}
