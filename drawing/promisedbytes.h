#pragma once

#include <QByteArray>
#include <QSize>

/// How many bytes a file needs at least for an image of this size, in formats that pack pixels
/// simply: bmp, tga, pbm, pgm and ppm; 0 for others. `head` is the beginning of the file, 32 bytes
/// as far as it has them.
double promisedBytes(const QByteArray& format, const QByteArray& head, QSize size);
