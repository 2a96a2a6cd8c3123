#include "watcheddevice.h"

WatchedDevice::WatchedDevice(QIODevice& source) : source(source) {
    // Without a buffer, which would read further than the decoder does.
    open(QIODevice::ReadOnly | QIODevice::Unbuffered);
}

void WatchedDevice::forget() {
    readsAtEnd = 0;
    shortReads = 0;
}

bool WatchedDevice::isSequential() const {
    return false;
}

qint64 WatchedDevice::size() const {
    return source.size();
}

bool WatchedDevice::seek(qint64 position) {
    return QIODevice::seek(position) && source.seek(position);
}

bool WatchedDevice::atEnd() const {
    return source.atEnd() && bytesAvailable() == 0;
}

qint64 WatchedDevice::readData(char* data, qint64 most) {
    const bool isAtEnd = source.atEnd();
    const qint64 size = source.read(data, most);
    if (most > 0 && isAtEnd)
        ++readsAtEnd;
    else if (size < most)
        ++shortReads;
    return size;
}

qint64 WatchedDevice::writeData(const char*, qint64) {
    return -1;
}
