// The slope of a page's lines.

#include "binarize.h"
#include "pace.h"
#include "skew.h"
#include "straighten.h"

#include <QImage>
#include <QPainter>

#include <gtest/gtest.h>

#include <cmath>
#include <random>

using namespace ovtrace;

namespace {

double slopeOf(const QImage& image) {
    Pace pace(nullptr);
    return skewOf(binarized(image, ThresholdKind::Fixed, 128, pace), pace);
}

/// Rows of short words, or of a frame with lines across and upright ones, turned by a slope.
QImage turnedPage(bool hasWords, double slope) {
    QImage image(900, 700, QImage::Format_RGB32);
    image.fill(Qt::white);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.translate(450, 350);
    painter.rotate(std::atan(slope) * 180.0 / std::acos(-1.0));
    std::mt19937 random(2);
    if (hasWords) {
        for (int y = -250; y <= 250; y += 24)
            for (double x = -300; x < 300; x += 8 + static_cast<double>(random() % 8))
                painter.fillRect(QRectF(x, y, 5, 6 + static_cast<double>(random() % 3)), Qt::black);
    } else {
        painter.setPen(QPen(Qt::black, 3));
        painter.drawRect(-300, -200, 600, 400);
        painter.drawLine(-300, 60, 200, 60);
        painter.drawLine(-100, -200, -100, 60);
        painter.drawEllipse(50, -150, 180, 180);
    }
    return image;
}

TEST(Skew, IsFoundToAFractionOfAPixel) {
    for (const bool hasWords : {true, false}) {
        for (const double slope : {-0.15, -0.033, -0.004, 0.0123, 0.05, 0.19}) {
            // Half a pixel from one end of the page to the other.
            EXPECT_NEAR(slopeOf(turnedPage(hasWords, slope)), slope, 0.5 / 900.0)
                << (hasWords ? "words" : "lines");
        }
    }
}

TEST(Skew, StraightPagesStayAsTheyAre) {
    EXPECT_EQ(slopeOf(turnedPage(true, 0.0)), 0.0);
    EXPECT_EQ(slopeOf(turnedPage(false, 0.0)), 0.0);
}

TEST(Skew, StraightenedLinesAreStraight) {
    Pace pace(nullptr);
    for (const double slope : {-0.1, 0.03}) {
        const QImage straight = straightened(turnedPage(false, slope), slope, pace);
        EXPECT_EQ(slopeOf(straight), 0.0) << slope;
    }
}

TEST(Skew, WhatHasNoDirectionIsNotTurned) {
    std::mt19937 random(4);
    QImage noise(300, 300, QImage::Format_Grayscale8);
    for (int y = 0; y < 300; ++y)
        for (int x = 0; x < 300; ++x)
            noise.scanLine(y)[x] = static_cast<uchar>(random() % 256);
    EXPECT_EQ(slopeOf(noise), 0.0);
    QImage disk(400, 400, QImage::Format_RGB32);
    disk.fill(Qt::white);
    QPainter painter(&disk);
    painter.setBrush(Qt::black);
    painter.drawEllipse(50, 50, 300, 300);
    painter.end();
    EXPECT_EQ(slopeOf(disk), 0.0);
}

TEST(Skew, EmptyAndTinyPages) {
    for (const int side : {1, 2, 3, 9}) {
        QImage image(side, side, QImage::Format_RGB32);
        image.fill(Qt::white);
        EXPECT_EQ(slopeOf(image), 0.0) << side;
        image.setPixel(side / 2, side / 2, qRgb(0, 0, 0));
        EXPECT_EQ(slopeOf(image), 0.0) << side;
    }
}

} // namespace
