#include "color.h"

namespace ovtrace {
namespace {

Color toColor(const QList<char>& bytes) {
    const auto channel = [&](qsizetype i) { return static_cast<signed char>(bytes.value(i)); };
    return {channel(0), channel(1), channel(2), channel(3)};
}

// Lists are made by appending, which throws std::bad_alloc when there is no room. Those that are
// constructed with a size, or detached, go on without having looked.

/// Four bytes, and those of `bytes` beyond them.
QList<char> storedColor(const Color& color, const QList<char>& bytes = {}) {
    QList<char> stored;
    for (const signed char channel : {color.red, color.green, color.blue, color.alpha})
        stored.append(static_cast<char>(channel));
    for (qsizetype i = 4; i < bytes.size(); ++i)
        stored.append(bytes.at(i));
    return stored;
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
    QList<QList<char>> colors;
    for (const Color& color : palette)
        colors.append(storedColor(color));
    return colors;
}

void updateColorLists(const Palette& palette, QList<QList<char>>& colors) {
    QList<QList<char>> updated;
    for (std::size_t k = 0; k < palette.size(); ++k) {
        const QList<char>& before = colors.at(static_cast<qsizetype>(k));
        updated.append(toColor(before) == palette[k] ? before : storedColor(palette[k], before));
    }
    colors.swap(updated);
}

} // namespace ovtrace
