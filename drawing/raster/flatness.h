#pragma once

/// A curve may be that far from the straight edges in its place, in pixels: the area in between is
/// two thirds of that for a pixel along it, about one step of the 255 that a coverage has.
constexpr double Flatness = 1.0 / 170.0;
