#pragma once

class QIODevice;

/// The pixels an inch that an image's file states across and down; 0 where it states none.
struct FileResolution {
    double across = 0.0;
    double down = 0.0;
};

/// Reads the resolution from the file itself: libraries put a usual one where the file has none.
///
/// PNG, JPEG (JFIF, then EXIF), TIFF (of the page, counted from 1), WebP (EXIF) and BMP can state
/// one. The device must be one that can seek; its position stays.
FileResolution readFileResolution(QIODevice& device, int page);
