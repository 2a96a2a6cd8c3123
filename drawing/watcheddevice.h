#pragma once

#include <QIODevice>

/// Hands a device on to a decoder and notices when the decoder wants more than there is.
class WatchedDevice : public QIODevice {
public:
    /// `source` is open for reading, can be moved in, and outlives this.
    explicit WatchedDevice(QIODevice& source);

    /// Forgets what was noticed; before the decoding proper, since looking for the format of a
    /// short file goes beyond its end.
    void forget();
    /// Whether something was read at the end, where nothing is left.
    bool wasReadAtEnd() const {
        return readsAtEnd > 0;
    }
    /// Whether a read got less than it was to get.
    bool wasCutShort() const {
        return shortReads > 0;
    }

    bool isSequential() const override;
    qint64 size() const override;
    bool seek(qint64 position) override;
    bool atEnd() const override;

protected:
    qint64 readData(char* data, qint64 most) override;
    qint64 writeData(const char* data, qint64 size) override;

private:
    QIODevice& source;
    int readsAtEnd = 0;
    int shortReads = 0;
};
