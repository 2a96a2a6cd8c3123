#include "fileresolution.h"

#include <QByteArray>
#include <QDataStream>
#include <QIODevice>

#include <cmath>
#include <optional>

namespace {

constexpr double InchesPerMetre = 1.0 / 0.0254;
constexpr double InchesPerCentimetre = 1.0 / 2.54;

/// `count` bytes at a place of the device; fewer when it ends before.
QByteArray bytesAt(QIODevice& device, qint64 place, qint64 count) {
    return device.seek(place) ? device.read(count) : QByteArray();
}

template <typename Number>
Number numberAt(const QByteArray& bytes, qsizetype place, QDataStream::ByteOrder order) {
    QDataStream stream(bytes.mid(place, sizeof(Number)));
    stream.setByteOrder(order);
    Number number{};
    stream >> number;
    return number;
}

template <typename Number> Number bigEndian(const QByteArray& bytes, qsizetype place) {
    return numberAt<Number>(bytes, place, QDataStream::BigEndian);
}

template <typename Number> Number littleEndian(const QByteArray& bytes, qsizetype place) {
    return numberAt<Number>(bytes, place, QDataStream::LittleEndian);
}

FileResolution perMetre(double across, double down) {
    return {across / InchesPerMetre, down / InchesPerMetre};
}

FileResolution readPng(QIODevice& device) {
    constexpr int FirstChunk = 8;
    constexpr char InMetres = 1;
    for (qint64 place = FirstChunk;;) {
        const QByteArray chunk = bytesAt(device, place, 17); // length, name, nine bytes
        if (chunk.size() < 12)
            return {};
        const auto length = bigEndian<quint32>(chunk, 0);
        const QByteArray name = chunk.mid(4, 4);
        if (name == "IDAT" || name == "IEND")
            return {};
        if (name == "pHYs" && length == 9) {
            const bool isKnown = chunk.size() == 17 && chunk[16] == InMetres;
            return isKnown ? perMetre(bigEndian<quint32>(chunk, 8), bigEndian<quint32>(chunk, 12))
                           : FileResolution();
        }
        place += 12 + qint64(length);
    }
}

FileResolution readBmp(QIODevice& device) {
    const QByteArray head = bytesAt(device, 0, 46);
    constexpr quint32 InfoHeader = 40; // older headers have no resolution
    if (head.size() < 46 || littleEndian<quint32>(head, 14) < InfoHeader)
        return {};
    const double across = littleEndian<qint32>(head, 38);
    const double down = littleEndian<qint32>(head, 42);
    return across > 0.0 && down > 0.0 ? perMetre(across, down) : FileResolution();
}

/// The directories of a TIFF file, or of the EXIF data of another, which begin at `start`.
class TiffReader {
public:
    TiffReader(QIODevice& device, qint64 start) : device(device), start(start) {
    }

    FileResolution read(int page) {
        const QByteArray head = bytesAt(device, start, 8);
        if (head.size() < 8 || (!head.startsWith("II*") && !head.startsWith("MM")))
            return {};
        isLittle = head[0] == 'I';
        qint64 directory = number<quint32>(head, 4);
        // The directories are a chain, which a broken file may close to a ring.
        for (int i = 1; i < page && directory != 0; ++i) {
            const qint64 end = directory + 2 + qint64(EntrySize) * countEntries(directory);
            const QByteArray next = bytesAt(device, start + end, 4);
            directory = next.size() == 4 ? number<quint32>(next, 0) : 0;
        }
        return directory == 0 ? FileResolution() : readDirectory(directory);
    }

private:
    static constexpr int EntrySize = 12;

    template <typename Number> Number number(const QByteArray& bytes, qsizetype place) const {
        return isLittle ? littleEndian<Number>(bytes, place) : bigEndian<Number>(bytes, place);
    }

    int countEntries(qint64 directory) const {
        const QByteArray count = bytesAt(device, start + directory, 2);
        return count.size() == 2 ? number<quint16>(count, 0) : 0;
    }

    double rational(const QByteArray& entries, qsizetype entry) const {
        const QByteArray value = bytesAt(device, start + number<quint32>(entries, entry + 8), 8);
        if (value.size() < 8 || number<quint32>(value, 4) == 0)
            return 0.0;
        return double(number<quint32>(value, 0)) / number<quint32>(value, 4);
    }

    FileResolution readDirectory(qint64 directory) {
        constexpr int XResolution = 282;
        constexpr int YResolution = 283;
        constexpr int ResolutionUnit = 296;
        constexpr int Inch = 2;
        constexpr int Centimetre = 3;
        const QByteArray entries =
            bytesAt(device, start + directory + 2, qint64(EntrySize) * countEntries(directory));
        FileResolution resolution;
        int unit = Inch; // when nothing is said
        for (qsizetype entry = 0; entry + EntrySize <= entries.size(); entry += EntrySize) {
            const int tag = number<quint16>(entries, entry);
            if (tag == XResolution)
                resolution.across = rational(entries, entry);
            else if (tag == YResolution)
                resolution.down = rational(entries, entry);
            else if (tag == ResolutionUnit)
                unit = number<quint16>(entries, entry + 8);
        }
        const double factor = unit == Inch         ? 1.0
                              : unit == Centimetre ? 1.0 / InchesPerCentimetre
                                                   : 0.0;
        return {resolution.across * factor, resolution.down * factor};
    }

    QIODevice& device;
    qint64 start;
    bool isLittle = true;
};

std::optional<FileResolution> readJfif(const QByteArray& data) {
    constexpr int InInches = 1;
    constexpr int InCentimetres = 2;
    if (!data.startsWith(QByteArray("JFIF\0", 5)) || data.size() < 12)
        return {};
    const int unit = quint8(data[7]);
    const double factor = unit == InInches        ? 1.0
                          : unit == InCentimetres ? 1.0 / InchesPerCentimetre
                                                  : 0.0;
    return FileResolution{bigEndian<quint16>(data, 8) * factor,
                          bigEndian<quint16>(data, 10) * factor};
}

FileResolution readJpeg(QIODevice& device) {
    constexpr int App0 = 0xE0;
    constexpr int App1 = 0xE1;
    constexpr int StartOfScan = 0xDA;
    constexpr int EndOfImage = 0xD9;
    FileResolution found;
    for (qint64 place = 2;;) {
        const QByteArray marker = bytesAt(device, place, 4);
        if (marker.size() < 4 || quint8(marker[0]) != 0xFF)
            return found;
        const int kind = quint8(marker[1]);
        const int length = bigEndian<quint16>(marker, 2);
        if (kind == StartOfScan || kind == EndOfImage || length < 2)
            return found;
        if (kind == App0) {
            const auto jfif = readJfif(bytesAt(device, place + 4, 12));
            if (jfif && jfif->across > 0.0)
                return *jfif;
        } else if (kind == App1 && bytesAt(device, place + 4, 4) == "Exif") {
            found = TiffReader(device, place + 10).read(1);
        }
        place += 2 + length;
    }
}

FileResolution readWebP(QIODevice& device) {
    for (qint64 place = 12;;) {
        const QByteArray head = bytesAt(device, place, 8);
        if (head.size() < 8)
            return {};
        if (head.startsWith("EXIF")) {
            const bool isMarked = bytesAt(device, place + 8, 4) == "Exif";
            return TiffReader(device, place + (isMarked ? 14 : 8)).read(1);
        }
        const qint64 length = littleEndian<quint32>(head, 4);
        place += 8 + length + length % 2;
    }
}

FileResolution readByKind(QIODevice& device, int page) {
    const QByteArray head = bytesAt(device, 0, 12);
    if (head.startsWith("\x89PNG"))
        return readPng(device);
    if (head.startsWith("\xFF\xD8"))
        return readJpeg(device);
    if (head.startsWith("BM"))
        return readBmp(device);
    if (head.startsWith("II*") || head.startsWith(QByteArray("MM\0*", 4)))
        return TiffReader(device, 0).read(page);
    if (head.startsWith("RIFF") && head.endsWith("WEBP"))
        return readWebP(device);
    return {};
}

} // namespace

FileResolution readFileResolution(QIODevice& device, int page) {
    const qint64 place = device.pos();
    FileResolution resolution = readByKind(device, page);
    device.seek(place);
    if (!(resolution.across > 0.0 && resolution.down > 0.0))
        resolution = {};
    return resolution;
}
