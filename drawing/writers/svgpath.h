#pragma once

#include "../geometry/pathpiece.h"
#include "textbuffer.h"

/// Path data of SVG in as few characters as a number of digits needs.
///
/// Coordinates are rounded once each and the differences between them taken after that, so that
/// errors do not add up and shared points stay shared. The y axis of the pieces points up, that of
/// the path data down.
class SvgPath {
public:
    /// `height` is y of the lower edge of the picture; `precision` is the number of digits after
    /// the point, 0 to 9.
    SvgPath(TextBuffer& svg, double height, int precision);

    void append(std::span<const PathPiece> pieces, bool isClosed);

private:
    struct Place {
        long long x = 0;
        long long y = 0;
        bool operator==(const Place&) const = default;
    };

    Place rounded(QPointF point) const;
    long long rounded(double value) const;
    void command(char letter);
    void number(long long value);
    void difference(Place to);
    void append(const PathPiece& piece);
    void lineTo(QPointF point);
    void halfArc(double radius, bool isClockwise, bool isLarge, QPointF to);

    TextBuffer& svg;
    double height;
    double unit; ///< how many make a pixel
    int precision;
    Place current;
    char lastCommand = 0;
    bool needsSpace = false; ///< before a number that begins with a digit
    bool hasPoint = false;   ///< whether the last number had a decimal point
};

/// A number in the same short form.
void appendShort(TextBuffer& svg, double value, int precision);
