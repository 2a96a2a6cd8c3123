#pragma once

#include "shapes/piecerecord.h"

#include <cstdint>
#include <span>
#include <vector>

namespace ovtrace {

/// A straight part of the rim of an area, and the boundary that it belongs to.
struct Chord {
    Point from;
    Point to;
    std::uint32_t boundary = 0;
};

/// Appends a piece as chords, in the direction in which it is walked: one for a line, some for
/// curves.
void appendChords(const Piece& piece, bool reversed, std::uint32_t boundary,
                  std::vector<Chord>& chords);

/// Whether the closed run of chords may stand for a ring of so many square pixels, less than 0 for
/// holes: it runs round about as many, outer rings counter-clockwise as one sees them.
bool hasAreaOf(std::span<const Chord> ring, double pixels);

} // namespace ovtrace
