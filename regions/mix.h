#pragma once

#include <array>
#include <cstdint>

namespace ovtrace {

/// In place of a label that is not known.
constexpr std::uint16_t UnknownLabel = 65535;

/// A pixel that has no palette colour: a share `t` of `b`, the rest of `a`.
struct Mix {
    int x;
    int y;
    std::uint16_t a = UnknownLabel;
    std::uint16_t b = UnknownLabel;
    float t = 0.0F;

    std::uint16_t label() const {
        return t > 0.5F && b != UnknownLabel ? b : a;
    }
};

/// From a pixel to another one, down and to the right.
struct PixelOffset {
    int x;
    int y;
};
/// To those around a pixel, by distance, the eight that touch it first; in raster order otherwise.
constexpr std::array<PixelOffset, 24> Around{
    {{0, -1}, {-1, 0}, {1, 0},  {0, 1}, {-1, -1}, {1, -1}, {-1, 1},  {1, 1},
     {0, -2}, {-2, 0}, {2, 0},  {0, 2}, {-1, -2}, {1, -2}, {-2, -1}, {2, -1},
     {-2, 1}, {2, 1},  {-1, 2}, {1, 2}, {-2, -2}, {2, -2}, {-2, 2},  {2, 2}}};

} // namespace ovtrace
