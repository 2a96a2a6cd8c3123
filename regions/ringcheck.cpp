#include "ringcheck.h"

#include "shapes/piece.h"

#include <algorithm>

namespace ovtrace {
namespace {

double leastX(const Chord& chord) {
    return std::min(chord.from.x, chord.to.x);
}
double greatestX(const Chord& chord) {
    return std::max(chord.from.x, chord.to.x);
}

/// Whether the inner parts of two chords cross.
bool areCrossing(const Chord& p, const Chord& q) {
    if (std::max(p.from.y, p.to.y) < std::min(q.from.y, q.to.y) ||
        std::max(q.from.y, q.to.y) < std::min(p.from.y, p.to.y))
        return false;
    const Point along = p.to - p.from;
    if (cross(along, q.from - p.from) * cross(along, q.to - p.from) >= 0.0)
        return false;
    const Point across = q.to - q.from;
    return cross(across, p.from - q.from) * cross(across, p.to - q.from) < 0.0;
}

} // namespace

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

std::vector<std::pair<std::uint32_t, std::uint32_t>> findCrossings(std::vector<Chord> chords) {
    // Those that overlap in x: chords are short.
    std::stable_sort(chords.begin(), chords.end(),
                     [](const Chord& p, const Chord& q) { return leastX(p) < leastX(q); });
    std::vector<std::pair<std::uint32_t, std::uint32_t>> found;
    std::vector<const Chord*> open;
    for (const Chord& chord : chords) {
        std::erase_if(open, [&](const Chord* other) { return greatestX(*other) < leastX(chord); });
        for (const Chord* other : open) {
            if (areCrossing(*other, chord))
                found.emplace_back(other->boundary, chord.boundary);
        }
        open.push_back(&chord);
    }
    return found;
}

} // namespace ovtrace
