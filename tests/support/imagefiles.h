#pragma once

#include <QByteArray>
#include <QImage>
#include <QList>

// Image files, byte by byte, of formats that the library reads.

/// A GIF file whose frames are images of two colours, black and white.
QByteArray gifFile(const QList<QImage>& frames);

/// A TIFF file of grey pages, uncompressed.
QByteArray tiffFile(const QList<QImage>& images);

/// A file in a format that the library writes, at its best quality.
QByteArray encoded(const QImage& image, const char* format);

/// An icon file, whose images are PNG files.
QByteArray icoFile(const QList<QImage>& images);

/// A TGA file of version 2, uncompressed, of 24 bits a pixel, rows from the top.
QByteArray tgaFile(const QImage& image);
