#include "textbuffer.h"

TextBuffer& TextBuffer::operator<<(double value) {
    // Most coordinates of a drawing are whole or half pixels: those need no search for digits.
    constexpr double LargestSimple = 1e6;
    const double doubled = value * 2.0;
    // A precision of 0 has no halves; with more they stand as they are.
    if (precision != 0 && doubled >= 1.0 && doubled < LargestSimple) {
        const int halves = static_cast<int>(doubled);
        if (static_cast<double>(halves) == doubled) {
            *this << halves / 2;
            if (halves % 2 != 0)
                *this << ".5";
            return *this;
        }
    }
    if (precision >= 0) {
        appendRounded(value);
    } else {
        reserve(LongestNumber);
        end = std::to_chars(end, bufferEnd(), value).ptr;
    }
    return *this;
}

void TextBuffer::appendRounded(double value) {
    reserve(LongestNumber);
    char* const start = end;
    end = std::to_chars(end, bufferEnd(), value, std::chars_format::fixed, precision).ptr;
    if (precision == 0)
        return;
    while (end[-1] == '0')
        --end;
    if (end[-1] == '.')
        --end;
    if (QByteArrayView(start, end) == "-0")
        end = std::copy_n("0", 1, start);
}
