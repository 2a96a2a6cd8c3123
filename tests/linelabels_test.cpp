// Which of two colours mixes along thin lines are given.

#include "support/colors.h"
#include "support/pixelview.h"

#include <linelabels.h>

#include <gtest/gtest.h>

namespace {

using namespace ovtrace;

const std::vector<QRgb> WhiteAndBlack{White, Black};

/// White, but for one row, which is covered by black to this share.
QImage lineOf(double share) {
    const int grey = static_cast<int>(255.0 * (1.0 - share) + 0.5);
    QImage image(9, 7, QImage::Format_RGB32);
    image.fill(Qt::white);
    for (int x = 0; x < image.width(); ++x)
        image.setPixel(x, 3, qRgb(grey, grey, grey));
    return image;
}

/// The label of a pixel between white and black, by its lightness.
std::uint16_t labelAt(const QImage& image, int x, int y, const MixOptions& options = {}) {
    const double share = 1.0 - qRed(image.pixel(x, y)) / 255.0;
    const PixelView view = viewOf(image);
    return LineLabels(view, options, WhiteAndBlack)
        .labelOf({x, y, 0, 1, static_cast<float>(share)});
}

TEST(LineLabels, LinesNarrowerThanHalfAPixelKeepTheirColor) {
    for (const double share : {0.2, 0.4, 0.6, 0.9})
        EXPECT_EQ(labelAt(lineOf(share), 4, 3), 1) << share;
}

TEST(LineLabels, NoiseAndRingingAreNoLines) {
    MixOptions noisy;
    noisy.noise = 6;
    noisy.overshoot = 0.2;
    for (const double share : {0.02, 0.06, 0.09})
        EXPECT_EQ(labelAt(lineOf(share), 4, 3, noisy), 0) << share;
    for (const double share : {0.15, 0.3, 0.6})
        EXPECT_EQ(labelAt(lineOf(share), 4, 3, noisy), 1) << share;
    // Three times the noise, of all channels at once.
    noisy.noise = 20;
    EXPECT_EQ(labelAt(lineOf(0.2), 4, 3, noisy), 0);
    EXPECT_EQ(labelAt(lineOf(0.3), 4, 3, noisy), 1);
}

TEST(LineLabels, EdgesOfWidePartsAreGivenToWhatCoversThemMost) {
    for (const double share : {0.2, 0.4, 0.6, 0.9}) {
        QImage image = lineOf(share);
        for (int y = 4; y < image.height(); ++y) {
            for (int x = 0; x < image.width(); ++x)
                image.setPixel(x, y, Black);
        }
        EXPECT_EQ(labelAt(image, 4, 3), share > 0.5 ? 1 : 0) << share;
    }
}

TEST(LineLabels, TheEndOfALineBesideAWiderPartHoldsToIt) {
    QImage image = lineOf(0.4);
    for (int y = 2; y < 5; ++y) {
        for (int x = 5; x < image.width(); ++x)
            image.setPixel(x, y, Black);
    }
    // The pixel at the wide part sees black whole, and goes on as a line all the same.
    EXPECT_EQ(labelAt(image, 4, 3), 1);
    EXPECT_EQ(labelAt(image, 1, 3), 1);
}

TEST(LineLabels, MixesOfOneColorAloneHaveIt) {
    const QImage image = lineOf(0.4);
    const PixelView view = viewOf(image);
    const MixOptions options;
    const LineLabels lines(view, options, WhiteAndBlack);
    EXPECT_EQ(lines.labelOf({4, 3, 0, UnknownLabel, 0.0F}), 0);
    EXPECT_EQ(lines.labelOf({4, 3, 1, 1, 0.3F}), 1);
}

} // namespace
