#include "filename.h"

#include <QStringDecoder>

namespace {

constexpr char16_t FirstEscape = 0xdc00; ///< stands for byte 0; those in use begin at 0xdc80

bool isEscape(const QString& text, qsizetype i) {
    const char16_t unit = text[i].unicode();
    const bool followsHigh = i > 0 && text[i - 1].isHighSurrogate();
    return unit >= FirstEscape + 0x80 && unit <= FirstEscape + 0xff && !followsHigh;
}

/// How many bytes the first byte of a UTF-8 sequence announces; 0 when it is none.
qsizetype sequenceLength(unsigned char first) {
    if (first < 0x80)
        return 1;
    if (first < 0xc2 || first > 0xf4)
        return 0;
    return first < 0xe0 ? 2 : first < 0xf0 ? 3 : 4;
}

/// The character that begins at the bytes; empty when they are no UTF-8.
QString decodedCharacter(QByteArrayView bytes) {
    const qsizetype length = sequenceLength(static_cast<unsigned char>(bytes[0]));
    if (length == 0 || length > bytes.size())
        return {};
    QStringDecoder decoder(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless);
    QString character = decoder(bytes.first(length));
    return decoder.hasError() ? QString() : character;
}

} // namespace

QString fileNameFromBytes(const QByteArray& bytes) {
    QString name = QString::fromUtf8(bytes);
    if (name.toUtf8() == bytes)
        return name;
    name.clear();
    for (qsizetype i = 0; i < bytes.size();) {
        const QString character = decodedCharacter(QByteArrayView(bytes).sliced(i));
        if (character.isEmpty()) {
            name += QChar(FirstEscape + static_cast<unsigned char>(bytes[i++]));
        } else {
            name += character;
            i += sequenceLength(static_cast<unsigned char>(bytes[i]));
        }
    }
    return name;
}

QByteArray fileNameToBytes(const QString& name) {
    QByteArray bytes;
    qsizetype start = 0;
    for (qsizetype i = 0; i < name.size(); ++i) {
        if (!isEscape(name, i))
            continue;
        bytes += QStringView(name).sliced(start, i - start).toUtf8();
        bytes += static_cast<char>(name[i].unicode() - FirstEscape);
        start = i + 1;
    }
    return bytes + QStringView(name).sliced(start).toUtf8();
}

QString presentable(const QString& text) {
    QString result = text;
    for (qsizetype i = 0; i < result.size(); ++i) {
        const QChar unit = result[i];
        const bool isPair =
            unit.isHighSurrogate() && i + 1 < result.size() && result[i + 1].isLowSurrogate();
        if (isPair)
            ++i;
        else if (unit.isSurrogate() || unit.isNonCharacter() ||
                 unit.category() == QChar::Other_Control)
            result[i] = QChar::ReplacementCharacter;
    }
    return result;
}
