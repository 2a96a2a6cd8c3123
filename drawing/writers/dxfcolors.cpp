#include "dxfcolors.h"

#include <array>

namespace {

constexpr int FirstHue = 10;
constexpr int FirstGrey = 250;
constexpr int LastColor = 255;

/// Brightest channel of the five shades of a hue.
constexpr std::array<int, 5> Shades{255, 165, 127, 76, 38};
constexpr std::array<int, 6> Greys{51, 91, 132, 173, 214, 255};

/// Colour 10 to 249: 24 hues of 15 degrees, each in five shades, pure (even) and pale (odd).
QRgb hueColor(int number) {
    const int hue = number / 10 - 1;
    const int high = Shades[static_cast<std::size_t>(number % 10 / 2)];
    const int low = number % 2 == 0 ? 0 : high / 2;
    const int step = hue % 4;
    const int rising = low + (high - low) * step / 4;
    const int falling = low + (high - low) * (4 - step) / 4;
    switch (hue / 4) {
    case 0:
        return qRgb(high, rising, low);
    case 1:
        return qRgb(falling, high, low);
    case 2:
        return qRgb(low, high, rising);
    case 3:
        return qRgb(low, falling, high);
    case 4:
        return qRgb(rising, low, high);
    default:
        return qRgb(high, low, falling);
    }
}

std::array<QRgb, LastColor + 1> makeColors() {
    std::array<QRgb, LastColor + 1> colors{};
    const std::array basic{qRgb(0, 0, 0),      qRgb(255, 0, 0),   qRgb(255, 255, 0),
                           qRgb(0, 255, 0),    qRgb(0, 255, 255), qRgb(0, 0, 255),
                           qRgb(255, 0, 255),  qRgb(0, 0, 0),     qRgb(128, 128, 128),
                           qRgb(192, 192, 192)};
    std::copy(basic.begin(), basic.end(), colors.begin());
    for (int number = FirstHue; number < FirstGrey; ++number)
        colors[static_cast<std::size_t>(number)] = hueColor(number);
    for (int number = FirstGrey; number <= LastColor; ++number) {
        const int grey = Greys[static_cast<std::size_t>(number - FirstGrey)];
        colors[static_cast<std::size_t>(number)] = qRgb(grey, grey, grey);
    }
    return colors;
}

} // namespace

int nearestDxfColor(const QColor& color) {
    static const auto colors = makeColors();
    const auto square = [](int value) { return value * value; };
    int best = 1;
    int least = square(1000);
    // Number 0 is no colour of its own; 7 is black on light ground and white on dark.
    for (int number = 1; number <= LastColor; ++number) {
        const QRgb candidate = colors[static_cast<std::size_t>(number)];
        const int distance = square(qRed(candidate) - color.red()) +
                             square(qGreen(candidate) - color.green()) +
                             square(qBlue(candidate) - color.blue());
        if (distance < least) {
            least = distance;
            best = number;
        }
    }
    return best;
}
