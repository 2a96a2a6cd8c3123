#pragma once

#include <QColor>
#include <QList>
#include <QPair>
#include <QString>
#include <QStringList>

#include <stdexcept>

/// What is wrong with the command line, as a text for the user.
class UsageError : public std::runtime_error {
public:
    explicit UsageError(const QString& message) : std::runtime_error(message.toStdString()) {
    }
};

/// How an image is handed to the tracer, and with which options.
enum class Mode {
    Color, ///< as it is, in colour
    Bw,    ///< black and white by lightness, palette images too
    Raw    ///< the engine's own defaults and the image as read
};

enum class Format { Svg, Json };

/// The command line, checked.
struct Arguments {
    QStringList images;
    QString output; ///< a file, "-" for stdout, empty for a file beside each image
    Format format = Format::Svg;
    Mode mode = Mode::Color;
    QList<QPair<QString, double>> options; ///< after those of the mode, in their order
    QList<QColor> palette;
};

/// Reads the program's arguments (the first is its name). Throws UsageError; answers --help and
/// --version itself and ends the program.
Arguments parseArguments(const QStringList& words);
