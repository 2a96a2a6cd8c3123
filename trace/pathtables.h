#pragma once

#include <array>

namespace ovtrace {

/// What a walk does at a node.
struct PathStep {
    signed char nodeType;  ///< what the node keeps after the walk
    signed char direction; ///< in which the walk leaves
    signed char dx;
    signed char dy;
};

/// A combination of node type and direction that no walk meets.
inline constexpr PathStep NoStep{-1, -1, -1, -1};

/// The direction in which a walk that starts at a node arrives there, by node type.
inline constexpr std::array<signed char, 16> PathDirections{0, 0, 3, 0, 1, 0, 3, 0,
                                                            0, 3, 3, 1, 0, 3, 0, 0};

/// 1 for the node types at which the walk of a hole starts.
inline constexpr std::array<signed char, 16> HoleStarts{0, 0, 0, 0, 0, 0, 0, 1,
                                                        0, 0, 0, 1, 0, 1, 1, 0};

/// The step of a walk by node type and direction of arrival.
///
/// Two cells of the colour that touch at the corner alone (types 5 and 10) are one region: the
/// walk turns from one to the other, and the node keeps a type for the second walk through it.
inline constexpr std::array<std::array<PathStep, 4>, 16> PathSteps{{
    {NoStep, NoStep, NoStep, NoStep},
    {{{0, 1, 0, -1}, NoStep, NoStep, {0, 2, -1, 0}}},
    {{NoStep, NoStep, {0, 1, 0, -1}, {0, 0, 1, 0}}},
    {{{0, 0, 1, 0}, NoStep, {0, 2, -1, 0}, NoStep}},
    {{NoStep, {0, 0, 1, 0}, {0, 3, 0, 1}, NoStep}},
    {{{13, 3, 0, 1}, {13, 2, -1, 0}, {7, 1, 0, -1}, {7, 0, 1, 0}}},
    {{NoStep, {0, 1, 0, -1}, NoStep, {0, 3, 0, 1}}},
    {{{0, 3, 0, 1}, {0, 2, -1, 0}, NoStep, NoStep}},
    {{{0, 3, 0, 1}, {0, 2, -1, 0}, NoStep, NoStep}},
    {{NoStep, {0, 1, 0, -1}, NoStep, {0, 3, 0, 1}}},
    {{{11, 1, 0, -1}, {14, 0, 1, 0}, {14, 3, 0, 1}, {11, 2, -1, 0}}},
    {{NoStep, {0, 0, 1, 0}, {0, 3, 0, 1}, NoStep}},
    {{{0, 0, 1, 0}, NoStep, {0, 2, -1, 0}, NoStep}},
    {{NoStep, NoStep, {0, 1, 0, -1}, {0, 0, 1, 0}}},
    {{{0, 1, 0, -1}, NoStep, NoStep, {0, 2, -1, 0}}},
    {NoStep, NoStep, NoStep, NoStep},
}};

} // namespace ovtrace
