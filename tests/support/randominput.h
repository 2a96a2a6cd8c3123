#pragma once

#include <QImage>
#include <QList>
#include <QPair>
#include <QString>

#include <random>

/// A source of random images and options; the same seed gives the same sequence everywhere.
class RandomInput {
public:
    explicit RandomInput(unsigned seed) : generator(seed) {
    }

    /// A whole number in [low, high].
    int number(int low, int high);
    bool oneIn(int n) {
        return number(1, n) == 1;
    }

    /// An image of 1 x 1 to `largest` x `largest` pixels: few colours, noise, checkerboards,
    /// saddles, gradients, blobs, single rows and columns, with and without alpha.
    QImage image(int largest);

    /// Values for some of the fourteen options, NaN, infinities, negative and huge ones among them.
    QList<QPair<QString, double>> options();

    /// A palette of 1 to `largest` colours, or an empty one.
    QList<QList<char>> palette(int largest);

private:
    QRgb color();
    double strangeNumber();
    double optionValue(const QString& key);

    std::mt19937 generator;
};
