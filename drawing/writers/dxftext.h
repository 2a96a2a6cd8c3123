#pragma once

#include "textbuffer.h"

#include <QPointF>

/// Group codes and their values on their way to a DXF file, a line each.
class DxfText {
public:
    explicit DxfText(QIODevice& device) : text(device) {
    }

    void group(int code, QByteArrayView value) {
        text << code << '\n' << value << '\n';
    }
    void group(int code, const QByteArray& value) {
        group(code, QByteArrayView(value));
    }
    void group(int code, const char* value) {
        group(code, QByteArrayView(value));
    }
    void group(int code, int value) {
        text << code << '\n' << value << '\n';
    }
    void group(int code, double value) {
        text << code << '\n' << value << '\n';
    }
    void handle(int code, int value) {
        group(code, QByteArray::number(value, 16).toUpper());
    }
    /// x and y, in the group `code` and the one ten above.
    void point(int code, QPointF value) {
        group(code, value.x());
        group(code + 10, value.y());
    }
    void point3(int code, QPointF value) {
        point(code, value);
        group(code + 20, 0.0);
    }
    /// Several pairs of code and text.
    void groups(std::initializer_list<std::pair<int, const char*>> pairs) {
        for (const auto& [code, value] : pairs)
            group(code, value);
    }

private:
    TextBuffer text;
};
