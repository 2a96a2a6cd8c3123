#pragma once

#include <QPoint>
#include <QSize>
#include <QString>
#include <QTransform>

#include <array>
#include <optional>

/// The six numbers of a world file in its order, A, D, B, E, C, F: the middle of the pixel in
/// column c and row r (from 0, rows counted down) lies at x = A c + B r + C, y = D c + E r + F.
using WorldNumbers = std::array<double, 6>;

/// "A,D,B,E,C,F"; nothing for anything else, and for numbers that put the image on a line.
std::optional<WorldNumbers> parseWorld(const QString& text);

/// The numbers of the world file beside an image, such as a.pgw, a.pngw or a.wld beside a.png;
/// nothing when there is none. Throws FileError for one that cannot be read.
std::optional<WorldNumbers> readWorldFile(const QString& imageName);

/// From drawing coordinates (pixels, y up, the lower left corner of the part that is traced at 0,
/// 0) to the world's; `corner` is the column and row at which that part begins, `size` is its size.
QTransform worldTransform(const WorldNumbers& numbers, QPoint corner, QSize size);
