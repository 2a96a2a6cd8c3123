#include "indexedimage.h"

IndexedImage::IndexedImage() = default;

IndexedImage::IndexedImage(const QList<QList<int>>& array, const QList<QList<char>>& palette)
    : width(static_cast<int>(array.first().size()) - 2), height(static_cast<int>(array.size()) - 2),
      array(array), palette(palette) {
}
