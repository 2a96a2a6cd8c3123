#pragma once

#include <QByteArrayView>
#include <QIODevice>

#include <algorithm>
#include <array>
#include <charconv>

/// Text on its way to a device, collected in pieces: a large drawing is never held as text.
class TextBuffer {
public:
    /// `device` is open for writing and outlives the buffer. What a full device refuses is lost
    /// here; it says so itself in the end.
    explicit TextBuffer(QIODevice& device) : device(device) {
    }
    ~TextBuffer() {
        flush();
    }
    TextBuffer(const TextBuffer&) = delete;
    TextBuffer& operator=(const TextBuffer&) = delete;

    TextBuffer& operator<<(char character) {
        reserve(1);
        *end++ = character;
        return *this;
    }
    TextBuffer& operator<<(QByteArrayView text) {
        if (text.size() > bufferEnd() - end)
            flush();
        if (text.size() > bufferEnd() - end)
            device.write(text.data(), text.size());
        else
            end = std::copy(text.begin(), text.end(), end);
        return *this;
    }
    TextBuffer& operator<<(const char* text) {
        return *this << QByteArrayView(text);
    }
    TextBuffer& operator<<(const QByteArray& text) {
        return *this << QByteArrayView(text);
    }
    TextBuffer& operator<<(int value) {
        reserve(LongestNumber);
        end = std::to_chars(end, bufferEnd(), value).ptr;
        return *this;
    }
    /// The shortest text that reads back as exactly `value`, which is finite; with a precision,
    /// `value` rounded to so many digits after the point, without zeros at the end.
    TextBuffer& operator<<(double value);
    void setPrecision(int digits) {
        precision = digits;
    }

    void flush() {
        device.write(buffer.data(), end - buffer.data());
        end = buffer.data();
    }

private:
    static constexpr qsizetype LongestNumber = 400; ///< of a rounded double without exponent

    char* bufferEnd() {
        return buffer.data() + buffer.size();
    }
    void reserve(qsizetype size) {
        if (bufferEnd() - end < size)
            flush();
    }

    void appendRounded(double value);

    QIODevice& device;
    int precision = -1; ///< digits after the point; negative: as many as it takes
    std::array<char, 32768> buffer;
    char* end = buffer.data();
};
