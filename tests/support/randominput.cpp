#include "randominput.h"

#include <functional>
#include <limits>

int RandomInput::number(int low, int high) {
    // Not a standard distribution: those differ between libraries.
    const auto range = static_cast<std::uint32_t>(high - low) + 1U;
    return low + static_cast<int>(generator() % range);
}

QRgb RandomInput::color() {
    const int alpha = oneIn(3) ? number(0, 255) : 255;
    if (oneIn(3))
        return qRgba(number(0, 1) * 255, number(0, 1) * 255, number(0, 1) * 255, alpha);
    return qRgba(number(0, 255), number(0, 255), number(0, 255), alpha);
}

QImage RandomInput::image(int largest) {
    const int shape = number(1, 6);
    const int width = shape == 1 ? 1 : number(1, largest);
    const int height = shape == 2 ? 1 : number(1, largest);
    QImage image(width, height, oneIn(2) ? QImage::Format_ARGB32 : QImage::Format_RGB32);
    QList<QRgb> colors;
    for (int i = number(1, 5); i > 0; --i)
        colors.append(color());
    const auto pick = [&] { return colors[number(0, static_cast<int>(colors.size()) - 1)]; };
    const int cell = number(1, 4);
    const int slope = number(1, 8);
    const QList<std::function<QRgb(int, int)>> kinds{
        [&](int, int) { return pick(); },
        [&](int, int) { return color(); },
        [&](int x, int y) { return colors[(x / cell + y / cell) % 2 % colors.size()]; },
        [&](int x, int y) { return qRgb(x * slope & 255, y * slope & 255, (x + y) & 255); },
        [&](int x, int y) { return colors[(x * slope + y * y) / 16 % colors.size()]; },
        [&](int x, int y) {
            const int dx = x - width / 2;
            const int dy = y - height / 2;
            return colors[(dx * dx + dy * dy) / (slope * 12) % colors.size()];
        },
        [&](int, int) { return oneIn(4) ? pick() : colors.first(); },
    };
    const auto& kind = kinds[number(0, static_cast<int>(kinds.size()) - 1)];
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x)
            image.setPixel(x, y, kind(x, y));
    }
    if (oneIn(4)) {
        image = image.convertToFormat(QImage::Format_Grayscale8);
        if (oneIn(2))
            image = image.convertToFormat(QImage::Format_RGB32);
    }
    return image;
}

double RandomInput::strangeNumber() {
    using Limits = std::numeric_limits<double>;
    const QList<double> numbers{Limits::quiet_NaN(),
                                Limits::infinity(),
                                -Limits::infinity(),
                                -1.0,
                                -0.5,
                                -0.0,
                                0.0,
                                0.25,
                                0.999999999,
                                1e10,
                                -1e10,
                                2.1e9,
                                4e9,
                                1e38,
                                1e39,
                                1e300,
                                -1e300,
                                5e-324,
                                Limits::max()};
    return numbers[number(0, static_cast<int>(numbers.size()) - 1)];
}

double RandomInput::optionValue(const QString& key) {
    // A huge but possible number of colours or cycles would take for ever, here as anywhere.
    const bool counts = key == "numberofcolors" || key == "colorquantcycles";
    if (oneIn(8)) {
        const double value = strangeNumber();
        if (!counts || !(value > 100.0 && value < 2147483648.0))
            return value;
    }
    if (key == "numberofcolors")
        return oneIn(20) ? number(250, 300) : number(-1, 40);
    if (key == "colorquantcycles")
        return number(0, 6);
    if (key == "mincolorratio")
        return number(0, 20) / 100.0;
    if (key == "blurradius")
        return number(-2, 14) / 2.0;
    if (key == "blurdelta")
        return oneIn(2) ? number(-50, 50) : number(0, 2000);
    if (key == "pathomit")
        return number(-4, 40) / 2.0;
    if (key == "ltres" || key == "qtres")
        return number(-2, 40) / 10.0;
    if (key == "brightnessthreshold" || key == "alphathreshold")
        return number(-10, 2600) / 10.0;
    return number(-2, 4) / 2.0;
}

QList<QPair<QString, double>> RandomInput::options() {
    static const QStringList keys{
        "monochrome",    "numberofcolors", "mincolorratio",  "colorquantcycles",
        "colorsampling", "blurradius",     "blurdelta",      "pathomit",
        "ltres",         "qtres",          "alphathreshold", "brightnessthreshold",
        "usealpha",      "usebrightness"};
    QList<QPair<QString, double>> options;
    for (const QString& key : keys) {
        if (oneIn(3))
            options.append({key, optionValue(key)});
    }
    // Most traces should have colours to look at.
    if (!oneIn(4))
        options.append({"monochrome", 0.0});
    return options;
}

QList<QList<char>> RandomInput::palette(int largest) {
    QList<QList<char>> colors;
    if (oneIn(3))
        return colors;
    for (int i = number(1, largest); i > 0; --i) {
        QList<char> bytes;
        for (int c = 0; c < 4; ++c)
            bytes.append(static_cast<char>(number(-128, 127)));
        colors.append(bytes);
    }
    return colors;
}
