#pragma once

#include <array>
#include <cmath>
#include <cstddef>
#include <utility>

namespace ovtrace {

/// Linear equations of `Unknowns` unknowns: a row each, its last number the constant.
template <std::size_t Unknowns>
using LinearSystem = std::array<std::array<double, Unknowns + 1>, Unknowns>;

/// Gauss's elimination with the greatest pivots. False where none is greater than `least`: the
/// equations do not determine the unknowns, which else end up in the last column.
template <std::size_t Unknowns> bool solve(LinearSystem<Unknowns>& rows, double least = 0.0) {
    for (std::size_t k = 0; k < Unknowns; ++k) {
        std::size_t pivot = k;
        for (std::size_t i = k + 1; i < Unknowns; ++i)
            if (std::abs(rows[i][k]) > std::abs(rows[pivot][k]))
                pivot = i;
        std::swap(rows[k], rows[pivot]);
        if (!(std::abs(rows[k][k]) > least))
            return false;
        for (std::size_t i = 0; i < Unknowns; ++i) {
            if (i == k)
                continue;
            const double factor = rows[i][k] / rows[k][k];
            for (std::size_t j = k; j <= Unknowns; ++j)
                rows[i][j] -= factor * rows[k][j];
        }
    }
    for (std::size_t k = 0; k < Unknowns; ++k)
        rows[k][Unknowns] /= rows[k][k];
    return true;
}

} // namespace ovtrace
