#include "ringcheck.h"

#include "shapes/piece.h"

namespace ovtrace {
void appendChords(const Piece& piece, bool reversed, std::uint32_t boundary,
                  std::vector<Chord>& chords) {
    constexpr int OfCurve = 6;
    const int count = piece.kind == PieceKind::Line ? 1 : OfCurve;
    Point from = reversed ? piece.to : piece.from;
    for (int i = 1; i <= count; ++i) {
        const double t = double(i) / count;
        const Point end = reversed ? piece.from : piece.to;
        const Point to = i == count ? end : pointAt(piece, reversed ? 1.0 - t : t);
        chords.push_back({from, to, boundary});
        from = to;
    }
}

bool hasAreaOf(std::span<const Chord> ring, double pixels) {
    // Lines that cover a tenth of their pixels, or curves of which six chords show little.
    constexpr double Least = 0.1;
    constexpr double Most = 4.0;
    const Point origin = ring.front().from;
    double area = 0.0;
    for (const Chord& chord : ring)
        area -= cross(chord.from - origin, chord.to - origin) / 2.0;
    const double share = area / pixels;
    return share >= Least && share <= Most;
}

} // namespace ovtrace
