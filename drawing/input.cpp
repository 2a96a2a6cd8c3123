#include "input.h"

#include "errors.h"
#include "files/filename.h"
#include "files/files.h"
#include "memoryestimate.h"
#include "promisedbytes.h"
#include "quietstderr.h"
#include "settingtable.h"
#include "watcheddevice.h"

#include <QBuffer>
#include <QFile>
#include <QFileInfo>
#include <QImageReader>
#include <QPainter>

#include <algorithm>
#include <cmath>
#include <cstdio>

#include <prepareimage.h>

namespace {

/// Formats of pictures made of pixels; Qt may read others, such as drawings and documents.
const QStringList& pictureFormats() {
    static const QStringList formats{"bmp",  "cur",  "gif",  "icns", "ico", "jp2", "jpeg",
                                     "jpg",  "pbm",  "pgm",  "png",  "ppm", "tga", "tif",
                                     "tiff", "wbmp", "webp", "xbm",  "xpm"};
    return formats;
}

/// The share of an image that its file has to hold, in formats that tell. One that ends earlier is
/// no picture any more, and its promises are no reason for work.
constexpr double LeastShare = 0.05;
constexpr double SmallImage = 4e6; ///< pixels that are no work worth refusing

void checkFile(const QString& fileName) {
    const FileFacts file = factsOf(fileName);
    if (file.kind == FileKind::None)
        throw FileError(QString("%1: no such file").arg(fileName));
    if (file.kind == FileKind::Folder)
        throw FileError(QString("%1: is a folder, not an image").arg(fileName));
    if (!file.isReadable)
        throw FileError(QString("%1: no permission to read it").arg(fileName));
    if (file.kind == FileKind::Regular && file.size == 0)
        throw FileError(QString("%1: the file is empty").arg(fileName));
}

QByteArray readStandardInput() {
    QFile file;
    if (!file.open(stdin, QIODevice::ReadOnly))
        throw FileError("the standard input cannot be read");
    QByteArray contents = file.readAll();
    if (contents.isEmpty())
        throw FileError("the standard input is empty");
    return contents;
}

void checkSize(const QString& name, QSize size, const InputRequest& request) {
    const double pixels = static_cast<double>(size.width()) * size.height();
    if (pixels > static_cast<double>(request.largestPixels))
        throw FileError(QString("%1: %2 x %3 pixels are more than %4; allow them with %5, "
                                "or make the image smaller")
                            .arg(name)
                            .arg(size.width())
                            .arg(size.height())
                            .arg(request.largestPixels)
                            .arg(settingName("max-pixels")));
}

/// Refuses files whose header promises far more than they hold.
void checkPromise(const QImageReader& reader, QIODevice& device, const QByteArray& head,
                  const QString& name) {
    const QSize size = reader.size();
    const double promised = promisedBytes(reader.format(), head, size);
    const bool isLarge = static_cast<double>(size.width()) * size.height() > SmallImage;
    if (isLarge && static_cast<double>(device.size()) < promised * LeastShare)
        throw FileError(QString("%1: cannot be decoded: its header promises %2 x %3 pixels, for "
                                "which its %4 bytes are too few")
                            .arg(name)
                            .arg(size.width())
                            .arg(size.height())
                            .arg(device.size()));
}

[[noreturn]] void failWithoutPage(const QString& name, int page) {
    throw FileError(QString("%1: has no page %2").arg(name).arg(page));
}

/// Goes to the page. To be asked before the size: the TIFF handler goes nowhere once it knows one.
void goToPage(QImageReader& reader, const QString& name, const InputRequest& request) {
    if (request.page == 1 || reader.jumpToImage(request.page - 1))
        return;
    const bool canJump = reader.jumpToImage(0);
    if (canJump)
        failWithoutPage(name, request.page);
    // Other formats are read up to it.
    for (int page = 1; page < request.page; ++page) {
        if (reader.size().isValid())
            checkSize(name, reader.size(), request);
        if (reader.read().isNull())
            failWithoutPage(name, request.page);
    }
}

/// Makes the reader look for its format in the contents. TGA files have no mark of their own: most
/// begin as a cursor file without images does.
void decideFormat(QImageReader& reader, QIODevice& device) {
    reader.setDecideFormatFromContent(true);
    if (reader.format() != "ico")
        return;
    const int images = reader.imageCount();
    device.seek(0); // counting has gone past the header
    if (images > 0)
        return;
    reader.setDecideFormatFromContent(false);
    reader.setFormat("tga");
    reader.setDevice(&device);
}

/// An image for a decoder to fill: blank, so that rows which it does not reach are blank, too.
QImage blankFor(const QImageReader& reader) {
    const QSize size = reader.size();
    const QImage::Format format = reader.imageFormat();
    if (!size.isValid() || format == QImage::Format_Invalid)
        return {};
    QImage image(size, format);
    const bool hasTable = image.pixelFormat().colorModel() == QPixelFormat::Indexed;
    if (hasTable || image.hasAlphaChannel())
        image.fill(0);
    else
        image.fill(Qt::white);
    return image;
}

/// Bitmaps are read piece by piece, each of the size that is needed: a piece cut short is missing.
/// Other decoders read ahead, but never at the end unless they need more.
bool endsEarly(const WatchedDevice& device, const QByteArray& format) {
    return device.wasReadAtEnd() || (format == "bmp" && device.wasCutShort());
}

InputImage readPage(QIODevice& source, const QString& name, const InputRequest& request) {
    constexpr qint64 HeadSize = 32;
    const QByteArray head = source.peek(HeadSize);
    WatchedDevice device(source);
    QImageReader reader(&device);
    const QuietStandardError quiet;
    decideFormat(reader, device);
    reader.setAutoTransform(true);
    if (!reader.canRead() || !pictureFormats().contains(QString::fromLatin1(reader.format())))
        throw FileError(QString("%1: cannot be decoded: not a picture in a format that is "
                                "read here")
                            .arg(name));
    goToPage(reader, name, request);
    if (reader.size().isValid()) {
        checkSize(name, reader.size(), request);
        checkDecodingMemory(name, reader.size(), reader.imageFormat(), request.together);
        checkPromise(reader, source, head, name);
    }
    InputImage input;
    input.image = blankFor(reader);
    // Asked after reading, the reader looks for a further image.
    const QByteArray format = reader.format();
    device.forget();
    const bool isRead = reader.read(&input.image) && !input.image.isNull();
    if (!isRead && request.page > 1)
        failWithoutPage(name, request.page);
    if (!isRead)
        throw FileError(QString("%1: cannot be decoded: %2").arg(name, reader.errorString()));
    checkSize(name, input.image.size(), request);
    input.isTruncated = endsEarly(device, format);
    if (input.isTruncated && request.isStrict)
        throw FileError(QString("%1: the file ends too early").arg(name));
    return input;
}

QImage onBackground(const QImage& image, const QColor& background) {
    if (!image.hasAlphaChannel())
        return image;
    QImage result(image.size(), QImage::Format_RGB32);
    result.fill(background);
    QPainter painter(&result);
    painter.drawImage(0, 0, image);
    return result;
}

/// Prepares the image as asked for. What was turned lies as before in the world.
void prepare(InputImage& input, const EngineValues& values) {
    OvPrepareImage preparer;
    for (auto value = values.begin(); value != values.end(); ++value)
        preparer.setOption(value.key(), value.value());
    const QSizeF before = input.image.size();
    const OvPreparedImage prepared = preparer.prepare(input.image);
    input.image = prepared.image;
    if (!input.place.world || prepared.slope == 0.0)
        return;
    const double cosine = 1.0 / std::sqrt(1.0 + prepared.slope * prepared.slope);
    const double sine = prepared.slope * cosine;
    // About the middle, with y up.
    QTransform turn =
        QTransform::fromTranslate(-input.image.width() / 2.0, -input.image.height() / 2.0);
    turn *= QTransform(cosine, -sine, sine, cosine, before.width() / 2.0, before.height() / 2.0);
    input.place.world = turn * *input.place.world;
}

} // namespace

QStringList readableFormats() {
    QStringList names;
    for (const QByteArray& name : QImageReader::supportedImageFormats()) {
        if (pictureFormats().contains(QString::fromLatin1(name)))
            names.append(QString::fromLatin1(name));
    }
    return names;
}

bool hasPictureEnding(const QString& fileName) {
    return pictureFormats().contains(QFileInfo(fileName).suffix().toLower());
}

bool isPicture(const QString& fileName) {
    if (factsOf(fileName).kind != FileKind::Regular)
        return false;
    const QuietStandardError quiet;
    try {
        const auto file = openForReading(fileName);
        QImageReader reader(file.get());
        decideFormat(reader, *file);
        return reader.canRead() && pictureFormats().contains(QString::fromLatin1(reader.format()));
    } catch (const FileError&) {
        return false;
    }
}

int countPages(const QString& fileName) {
    if (factsOf(fileName).kind != FileKind::Regular)
        return 1;
    const QuietStandardError quiet;
    const auto file = openForReading(fileName);
    QImageReader reader(file.get());
    decideFormat(reader, *file);
    return std::max(1, reader.imageCount());
}

InputImage readInput(const QString& fileName, const InputRequest& request) {
    const bool isStandardInput = fileName == "-";
    const QString name = isStandardInput ? QString("standard input") : fileName;
    InputImage input;
    if (!isStandardInput)
        checkFile(fileName);
    if (factsOf(fileName).kind == FileKind::Regular && !isStandardInput) {
        const auto file = openForReading(fileName);
        input = readPage(*file, name, request);
        input.place.resolution = readFileResolution(*file, request.page);
    } else {
        QByteArray contents =
            isStandardInput ? readStandardInput() : openForReading(fileName)->readAll();
        QBuffer buffer(&contents);
        buffer.open(QIODevice::ReadOnly);
        input = readPage(buffer, name, request);
        input.place.resolution = readFileResolution(buffer, request.page);
    }
    input.title = isStandardInput ? "traced" : presentable(QFileInfo(fileName).completeBaseName());
    if (!request.crop.isNull()) {
        if (!input.image.rect().contains(request.crop))
            throw FileError(QString("%1: the part to trace must lie within its %2 x %3 pixels")
                                .arg(name)
                                .arg(input.image.width())
                                .arg(input.image.height()));
        input.image = input.image.copy(request.crop);
    }
    auto world = request.world;
    if (!world && request.usesWorldFile && !isStandardInput)
        world = readWorldFile(fileName);
    if (world)
        input.place.world = worldTransform(*world, request.crop.topLeft(), input.image.size());
    if (request.background)
        input.image = onBackground(input.image, *request.background);
    if (!request.preparation.isEmpty())
        prepare(input, request.preparation);
    return input;
}
