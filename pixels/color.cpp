#include "color.h"

namespace ovtrace {
namespace {

Color toColor(const QList<char>& bytes) {
    const auto channel = [&](qsizetype i) { return static_cast<signed char>(bytes.value(i)); };
    return {channel(0), channel(1), channel(2), channel(3)};
}

void storeColor(const Color& color, QList<char>& bytes) {
    if (bytes.size() < 4)
        bytes.resize(4);
    bytes[0] = static_cast<char>(color.red);
    bytes[1] = static_cast<char>(color.green);
    bytes[2] = static_cast<char>(color.blue);
    bytes[3] = static_cast<char>(color.alpha);
}

} // namespace

Palette toPalette(const QList<QList<char>>& colors) {
    Palette palette;
    palette.reserve(static_cast<std::size_t>(colors.size()));
    for (const QList<char>& bytes : colors)
        palette.push_back(toColor(bytes));
    return palette;
}

QList<QList<char>> toColorLists(const Palette& palette) {
    QList<QList<char>> colors(static_cast<qsizetype>(palette.size()));
    for (std::size_t k = 0; k < palette.size(); ++k)
        storeColor(palette[k], colors[static_cast<qsizetype>(k)]);
    return colors;
}

void updateColorLists(const Palette& palette, QList<QList<char>>& colors) {
    for (std::size_t k = 0; k < palette.size(); ++k) {
        const auto entry = static_cast<qsizetype>(k);
        if (toColor(colors.at(entry)) != palette[k])
            storeColor(palette[k], colors[entry]);
    }
}

} // namespace ovtrace
