#include "imagedata.h"

ImageData::ImageData() = default;

ImageData::ImageData(int width, int height, QList<char>& data)
    : width(width), height(height), data(data) {
}
