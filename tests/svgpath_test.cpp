#include <drawing/writers/svgpath.h>

#include <gtest/gtest.h>

#include <QBuffer>

namespace {

QByteArray pathOf(const std::vector<PathPiece>& pieces, bool isClosed, int precision = 3) {
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    {
        TextBuffer text(buffer);
        SvgPath(text, 100.0, precision).append(pieces, isClosed);
    }
    return buffer.data();
}

} // namespace

TEST(SvgPath, LinesTakeTheShortestCommand) {
    const std::vector square{linePiece({10, 90}, {20.5, 90}), linePiece({20.5, 90}, {20.5, 80}),
                             linePiece({20.5, 80}, {10, 79.75}), linePiece({10, 79.75}, {10, 90})};
    EXPECT_EQ(pathOf(square, true), "M10 10h10.5v10l-10.5.25z");
    EXPECT_EQ(pathOf(square, false), "M10 10h10.5v10l-10.5.25v-10.25");
}

TEST(SvgPath, RoundingDoesNotAddUp) {
    std::vector<PathPiece> pieces;
    for (int i = 0; i < 1000; ++i)
        pieces.push_back(linePiece({i * 0.0014, 50}, {(i + 1) * 0.0014, 50}));
    const QByteArray path = pathOf(pieces, false, 3);
    double x = 0.0;
    for (const QByteArray& word : path.mid(path.indexOf('h') + 1).split(' ')) {
        for (const QByteArray& part : word.split('.')) {
            if (!part.isEmpty())
                x += part.leftJustified(3, '0').toInt();
        }
    }
    EXPECT_EQ(x, 1400.0) << "thousandths, whatever the single steps are rounded to";
}

TEST(SvgPath, ArcsTurnWithTheAxis) {
    // Counter-clockwise with y up stays so to the eye; flags are numbers of their own.
    EXPECT_EQ(pathOf({arcPiece({20, 50}, {10, 60}, 0.41421356237309503)}, false),
              "M20 50a10 10 0 0 0-10-10");
    EXPECT_EQ(pathOf({arcPiece({20, 50}, {10, 60}, -2.414213562373095)}, false),
              "M20 50a10 10 0 1 1-10-10");
    EXPECT_EQ(pathOf({arcPiece({0, 50}, {10, 50}, 1e-6)}, false), "M0 50h10") << "too flat to see";
    EXPECT_EQ(pathOf({circlePiece({50, 50}, 2.5)}, true),
              "M52.5 50a2.5 2.5 0 1 0-5 0 2.5 2.5 0 1 0 5 0z");
}

TEST(SvgPath, CurvesAreRelative) {
    EXPECT_EQ(pathOf({cubicPiece({0, 100}, {1, 99}, {2, 99}, {3.125, 100})}, false),
              "M0 0c1 1 2 1 3.125 0");
    EXPECT_EQ(pathOf({quadraticPiece({0, 100}, {1, 99}, {3, 100})}, false, 0), "M0 0q1 1 3 0");
}
