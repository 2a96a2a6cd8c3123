#include "ringcheck.h"

namespace ovtrace {

bool standsForRing(double area, double pixels) {
    // Lines that cover a tenth of their pixels, or curves that bulge beyond theirs.
    constexpr double Least = 0.1;
    constexpr double Most = 4.0;
    const double share = -area / pixels;
    return share >= Least && share <= Most;
}

} // namespace ovtrace
