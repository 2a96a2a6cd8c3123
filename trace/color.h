#pragma once

#include <QList>

#include <vector>

namespace ovtrace {

/// A colour in stored bytes: each channel is its value 0..255 minus 128.
struct Color {
    signed char red = 0;
    signed char green = 0;
    signed char blue = 0;
    signed char alpha = 0;

    bool operator==(const Color&) const = default;
};

/// What is added to a stored byte to give the channel value.
inline constexpr int StoredOffset = 128;

/// The working form of a palette; a colour's position is its index.
using Palette = std::vector<Color>;

/// Palette entries need not have four bytes: those missing read as 0, those beyond are ignored.
Palette toPalette(const QList<QList<char>>& colors);
QList<QList<char>> toColorLists(const Palette& palette);

/// Writes the colours that differ from what toPalette() makes of `colors` back into `colors`.
void updateColorLists(const Palette& palette, QList<QList<char>>& colors);

} // namespace ovtrace
