#include "svgpath.h"

#include <cmath>

namespace {

double powerOfTen(int exponent) {
    double power = 1.0;
    for (int i = 0; i < exponent; ++i)
        power *= 10.0;
    return power;
}

/// `value` / 10^precision without needless zeros; returns whether it has a decimal point.
bool appendFixed(TextBuffer& svg, long long value, int precision) {
    std::array<char, 32> digits{};
    char* const end = digits.data() + digits.size();
    char* begin = end;
    auto rest = static_cast<unsigned long long>(value < 0 ? -value : value);
    bool hasFraction = false;
    for (int i = 0; i < precision; ++i, rest /= 10) {
        const auto digit = static_cast<char>('0' + rest % 10);
        if (!hasFraction && digit == '0')
            continue;
        hasFraction = true;
        *--begin = digit;
    }
    if (hasFraction)
        *--begin = '.';
    for (; rest > 0; rest /= 10)
        *--begin = static_cast<char>('0' + rest % 10);
    if (begin == end)
        *--begin = '0';
    if (value < 0)
        *--begin = '-';
    svg << QByteArrayView(begin, end);
    return hasFraction;
}

} // namespace

void appendShort(TextBuffer& svg, double value, int precision) {
    appendFixed(svg, std::llround(value * powerOfTen(precision)), precision);
}

SvgPath::SvgPath(TextBuffer& svg, double height, int precision)
    : svg(svg), height(height), unit(powerOfTen(precision)), precision(precision) {
}

long long SvgPath::rounded(double value) const {
    return std::llround(value * unit);
}

SvgPath::Place SvgPath::rounded(QPointF point) const {
    return {rounded(point.x()), rounded(height - point.y())};
}

void SvgPath::command(char letter) {
    // A letter need not be repeated, but after "M" lines would be absolute.
    if (letter != lastCommand || letter == 'M') {
        svg << letter;
        needsSpace = false;
    }
    lastCommand = letter;
}

void SvgPath::number(long long value) {
    const auto whole = static_cast<long long>(unit);
    const bool beginsWithPoint = value != 0 && value > -whole && value < whole;
    if (needsSpace && value >= 0 && !(beginsWithPoint && hasPoint))
        svg << ' ';
    hasPoint = appendFixed(svg, value, precision);
    needsSpace = true;
}

void SvgPath::difference(Place to) {
    number(to.x - current.x);
    number(to.y - current.y);
}

void SvgPath::lineTo(QPointF point) {
    const Place to = rounded(point);
    if (to == current)
        return;
    if (to.y == current.y) {
        command('h');
        number(to.x - current.x);
    } else if (to.x == current.x) {
        command('v');
        number(to.y - current.y);
    } else {
        command('l');
        difference(to);
    }
    current = to;
}

void SvgPath::halfArc(double radius, bool isClockwise, bool isLarge, QPointF to) {
    const Place end = rounded(to);
    if (end == current)
        return;
    command('a');
    number(rounded(radius));
    number(rounded(radius));
    svg << " 0 " << (isLarge ? '1' : '0') << ' ' << (isClockwise ? '1' : '0');
    needsSpace = true;
    hasPoint = false;
    difference(end);
    current = end;
}

void SvgPath::append(const PathPiece& piece) {
    switch (piece.kind) {
    case PieceKind::Line:
        lineTo(piece.to);
        return;
    case PieceKind::Arc: {
        if (piece.bulge == 0.0) {
            lineTo(piece.to);
            return;
        }
        const double radius = arcCircle(piece.from, piece.to, piece.bulge).radius;
        // What is flatter than the last digit shows is a line.
        const Place from = rounded(piece.from);
        const Place to = rounded(piece.to);
        const double chord = std::sqrt(static_cast<double>((to.x - from.x) * (to.x - from.x)) +
                                       static_cast<double>((to.y - from.y) * (to.y - from.y)));
        if (chord * std::abs(piece.bulge) < 1.0)
            lineTo(piece.to);
        else
            halfArc(radius, piece.bulge<0.0, std::abs(piece.bulge)> 1.0, piece.to);
        return;
    }
    case PieceKind::Quadratic: {
        command('q');
        difference(rounded(piece.control));
        const Place to = rounded(piece.to);
        difference(to);
        current = to;
        return;
    }
    case PieceKind::Cubic: {
        command('c');
        difference(rounded(piece.control));
        difference(rounded(piece.control2));
        const Place to = rounded(piece.to);
        difference(to);
        current = to;
        return;
    }
    case PieceKind::Circle: {
        const bool isClockwise = piece.bulge < 0.0;
        halfArc(piece.radius, isClockwise, true, 2.0 * piece.control - piece.from);
        halfArc(piece.radius, isClockwise, true, piece.to);
        return;
    }
    case PieceKind::Ellipse:
        for (const PathPiece& quarter : asCubics(piece))
            append(quarter);
        return;
    }
}

void SvgPath::append(std::span<const PathPiece> pieces, bool isClosed) {
    if (pieces.empty())
        return;
    command('M');
    current = rounded(pieces.front().from);
    number(current.x);
    number(current.y);
    // The closing line of a ring needs no command of its own.
    const bool skipsLast = isClosed && pieces.size() > 1 && pieces.back().kind == PieceKind::Line;
    for (const PathPiece& piece : pieces.first(pieces.size() - (skipsLast ? 1 : 0)))
        append(piece);
    if (isClosed) {
        svg << 'z';
        lastCommand = 'z';
        needsSpace = false;
    }
}
