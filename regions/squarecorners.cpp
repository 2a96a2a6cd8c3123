#include "squarecorners.h"

#include "mixing.h"

#include "shapes/piece.h"

#include <algorithm>
#include <cmath>
#include <optional>

namespace ovtrace {
namespace {

/// The part of a right angle's quadrant, `width` by `height` within a pixel, that a piece across it
/// from `a` along the one side to `b` along the other cuts off.
double cutArea(double width, double height, double a, double b) {
    if (width / a + height / b <= 1.0)
        return width * height;
    const double beyondWidth = std::max(a - width, 0.0);
    const double beyondHeight = std::max(b - height, 0.0);
    return (a * b - beyondWidth * beyondWidth * b / a - beyondHeight * beyondHeight * a / b) / 2.0;
}

class SquareCorners {
public:
    SquareCorners(const PixelView& image, const LabelImage& labels, std::uint16_t left,
                  std::uint16_t right)
        : image(image), axis(labels.palette[left], labels.palette[right], labels.light),
          light(labels.light) {
    }

    std::vector<Piece> run(std::span<const Piece> pieces) const {
        std::vector<Piece> squared;
        for (std::size_t i = 0; i < pieces.size(); ++i) {
            std::optional<Point> corner = cornerOver(pieces, i, i);
            const std::size_t first = i;
            // A place that the corner itself has spoilt may lie between.
            if (!corner && i + 1 < pieces.size() && !cornerOver(pieces, i + 1, i + 1)) {
                corner = cornerOver(pieces, i, i + 1);
                if (corner)
                    ++i;
            }
            if (!corner) {
                squared.push_back(pieces[i]);
                continue;
            }
            squared.push_back(linePiece(pieces[first].from, *corner));
            squared.push_back(linePiece(*corner, pieces[i].to));
        }
        return squared;
    }

private:
    static bool isMiddle(double coordinate) {
        constexpr double Exact = 0.02; // pixels
        return std::fabs(coordinate - std::floor(coordinate) - 0.5) < Exact;
    }
    /// The corner that the pieces from `first` to `last` cut, where an edge runs on along the
    /// pixels before or behind it.
    std::optional<Point> cornerOver(std::span<const Piece> pieces, std::size_t first,
                                    std::size_t last) const {
        if (pieces[first].kind != PieceKind::Line || pieces[last].kind != PieceKind::Line)
            return std::nullopt;
        const Point from = pieces[first].from;
        const Point to = pieces[last].to;
        const std::size_t count = pieces.size();
        const Piece& before = pieces[(first + count - 1) % count];
        const Piece& behind = pieces[(last + 1) % count];
        constexpr double Exact = 0.05; // pixels
        const auto runs = [&](const Piece& piece, double Point::*along) {
            return piece.kind == PieceKind::Line && (piece.to == from || piece.from == to) &&
                   std::fabs(piece.from.*along - piece.to.*along) < Exact;
        };
        if (isMiddle(from.x) && isMiddle(to.y) &&
            (runs(before, &Point::y) || runs(behind, &Point::x)) &&
            isCorner({to.x, from.y}, from, to))
            return Point{to.x, from.y};
        if (isMiddle(from.y) && isMiddle(to.x) &&
            (runs(before, &Point::x) || runs(behind, &Point::y)) &&
            isCorner({from.x, to.y}, from, to))
            return Point{from.x, to.y};
        return std::nullopt;
    }
    /// Whether the pixel of a right-angled corner is covered as it says, rather than as the piece
    /// straight from `from` to `to` says.
    bool isCorner(Point corner, Point from, Point to) const {
        constexpr double Least = 0.1; // pixels
        constexpr double Most = 1.6;  // pixels: places of the next rows and columns but one
        constexpr double Rough = 0.1; // of a pixel: what places of a few pixels each leave
        const double a = std::max(std::fabs(from.x - corner.x), std::fabs(to.x - corner.x));
        const double b = std::max(std::fabs(from.y - corner.y), std::fabs(to.y - corner.y));
        if (a < Least || b < Least || a > Most || b > Most)
            return false;
        const double column = std::floor(corner.x);
        const double row = std::floor(corner.y);
        if (column < 0.0 || row < 0.0 || column >= image.width || row >= image.height)
            return false;
        const MixColor color =
            mixColor(image.at(static_cast<int>(column), static_cast<int>(row)), light);
        constexpr double Explained = 0.04; // more is a third colour
        if (axis.residual(color) * axis.step() > Explained)
            return false;
        const bool isLeft = std::min(from.x, to.x) < corner.x;
        const bool isUpper = std::min(from.y, to.y) < corner.y;
        const double width = isLeft ? corner.x - column : column + 1.0 - corner.x;
        const double height = isUpper ? corner.y - row : row + 1.0 - corner.y;
        const double quadrant = width * height;
        const double cut = quadrant - cutArea(width, height, a, b);
        // Turning right, from +x to +y, the quadrant is on the right.
        const bool turnsRight = cross(corner - from, to - corner) > 0.0;
        const double right = std::clamp(axis.rawPosition(color), 0.0, 1.0);
        const double covered = turnsRight ? right : 1.0 - right;
        const double off = std::fabs(covered - quadrant);
        return off < Rough && off < std::fabs(covered - cut);
    }

    const PixelView& image;
    ColorAxis axis;
    Light light;
};

} // namespace

std::vector<Piece> withSquareCorners(std::span<const Piece> pieces, const PixelView& image,
                                     const LabelImage& labels, std::uint16_t left,
                                     std::uint16_t right) {
    return SquareCorners(image, labels, left, right).run(pieces);
}

} // namespace ovtrace
