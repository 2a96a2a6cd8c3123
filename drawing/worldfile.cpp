#include "worldfile.h"

#include "errors.h"

#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>
#include <QStringList>

#include <cmath>

namespace {

/// The longest world file that is read; six numbers need no more.
constexpr qint64 LongestFile = 4096;

std::optional<WorldNumbers> numbersOf(const QStringList& words) {
    WorldNumbers numbers{};
    if (words.size() != static_cast<qsizetype>(numbers.size()))
        return {};
    for (std::size_t i = 0; i < numbers.size(); ++i) {
        bool isNumber = false;
        numbers[i] = words[static_cast<qsizetype>(i)].trimmed().toDouble(&isNumber);
        if (!isNumber || !std::isfinite(numbers[i]))
            return {};
    }
    const auto [a, d, b, e, c, f] = numbers;
    return a * e - b * d != 0.0 ? std::optional(numbers) : std::nullopt;
}

/// a.png: a.pgw, a.pngw and a.wld.
QStringList worldNames(const QString& imageName) {
    const QFileInfo image(imageName);
    const QString ending = image.suffix();
    const QString base = imageName.left(imageName.size() - ending.size());
    QStringList names;
    if (ending.size() >= 3)
        names = {base + ending.front() + ending.back() + 'w', base + ending + 'w'};
    return names + QStringList{base + "wld"};
}

/// The file of that name, its ending in small or capital letters; empty when there is none.
QString existing(const QString& name) {
    const qsizetype ending = QFileInfo(name).suffix().size();
    for (const QString& variant : {name, name.chopped(ending) + name.right(ending).toLower(),
                                   name.chopped(ending) + name.right(ending).toUpper()}) {
        if (QFileInfo(variant).isFile())
            return variant;
    }
    return {};
}

} // namespace

std::optional<WorldNumbers> parseWorld(const QString& text) {
    return numbersOf(text.split(','));
}

std::optional<WorldNumbers> readWorldFile(const QString& imageName) {
    for (const QString& candidate : worldNames(imageName)) {
        const QString name = existing(candidate);
        if (name.isEmpty())
            continue;
        QFile file(name);
        if (!file.open(QIODevice::ReadOnly))
            throw FileError(QString("%1: cannot be read: %2").arg(name, file.errorString()));
        static const QRegularExpression space("\\s+");
        const QString text = QString::fromLatin1(file.read(LongestFile));
        const auto numbers = numbersOf(text.split(space, Qt::SkipEmptyParts));
        if (!numbers)
            throw FileError(QString("%1: is no world file: six numbers are needed that give pixels "
                                    "a width and a height")
                                .arg(name));
        return numbers;
    }
    return {};
}

QTransform worldTransform(const WorldNumbers& numbers, QPoint corner, QSize size) {
    const auto [a, d, b, e, c, f] = numbers;
    // The column and row, less half a pixel, of the drawing's origin.
    const double column = corner.x() - 0.5;
    const double row = corner.y() + size.height() - 0.5;
    return {a, d, -b, -e, a * column + b * row + c, d * column + e * row + f};
}
