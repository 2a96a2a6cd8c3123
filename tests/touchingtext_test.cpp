// Letters that lines touch are lettering as well.

#include "tracecenterlines.h"

#include <QImage>
#include <QPainter>

#include <gtest/gtest.h>

#include <algorithm>

namespace {

constexpr double Height = 24.0;
constexpr double Pen = 3.0;

/// Letters E, H and F of one pen beside a long line.
class Lettering {
public:
    Lettering() : image(520, 260, QImage::Format_RGB32) {
        image.fill(Qt::white);
    }

    void line(double x0, double y0, double x1, double y1) {
        QPainter painter(&image);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setPen(QPen(Qt::black, Pen, Qt::SolidLine, Qt::FlatCap));
        painter.drawLine(QPointF(x0, y0), QPointF(x1, y1));
    }

    /// Its foot stands on `y`, its left side on `x`.
    void letter(char name, double x, double y) {
        const double half = Pen / 2.0;
        const double right = x + 15.0;
        const double top = y - Height;
        line(x + half, top, x + half, y);
        line(x, y - Height / 2.0, right, y - Height / 2.0);
        if (name == 'H')
            line(right - half, top, right - half, y);
        else
            line(x, top + half, right, top + half);
        if (name == 'E')
            line(x, y - half, right, y - half);
    }

    void word(const char* letters, double x, double y) {
        for (; *letters != '\0'; ++letters, x += 20.0)
            letter(*letters, x, y);
    }

    OvCenterlines traced() const {
        return OvTraceCenterlines().trace(image);
    }

    QImage image;
};

std::ptrdiff_t textsIn(const OvCenterlines& drawing) {
    return std::ranges::count(drawing.areas, OvCenterlineArea::Kind::Text, &OvCenterlineArea::kind);
}

TEST(TouchingText, LetterOfAWordThatALineTouchesIsText) {
    Lettering page;
    page.word("HEFEH", 100, 100);
    page.line(118.5, 20, 118.5, 240); // through the right ends of the E's bars
    const OvCenterlines result = page.traced();
    EXPECT_EQ(result.strokes.size(), 1);
    EXPECT_EQ(textsIn(result), 5);
}

TEST(TouchingText, WordOnALineIsText) {
    Lettering page;
    page.word("HEFEH", 60, 100);
    page.word("FHEFH", 260, 200.5);
    page.line(240, 201, 500, 201);
    const OvCenterlines result = page.traced();
    ASSERT_EQ(result.strokes.size(), 1);
    EXPECT_NEAR(result.strokes[0].start.y, 260.0 - 201.0, 0.1); // results have y up
    EXPECT_NEAR(result.strokes[0].end.y, 260.0 - 201.0, 0.1);
    EXPECT_EQ(textsIn(result), 10);
}

TEST(TouchingText, WhatStandsOnALineWithoutTextBesideItIsDrawn) {
    Lettering page;
    page.word("HEFEH", 60, 100);
    page.line(240, 201, 500, 201);
    page.letter('F', 260, 200.5);
    page.letter('H', 420, 200.5);
    EXPECT_EQ(textsIn(page.traced()), 5);
}

TEST(TouchingText, RungsBetweenTwoLinesAreDrawn) {
    Lettering page;
    page.word("HEFEH", 60, 100);
    page.line(240, 201, 500, 201);
    page.line(240, 171, 500, 171);
    for (double x = 260.0; x < 400.0; x += 20.0) {
        page.line(x, 171, x, 201);
        page.line(x + 12.0, 171, x + 12.0, 201);
        page.line(x, 186, x + 12.0, 186);
    }
    EXPECT_EQ(textsIn(page.traced()), 5);
}

} // namespace
