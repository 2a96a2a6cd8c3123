#include "lightevidence.h"

#include "mixing.h"

#include <array>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <optional>

namespace ovtrace {
namespace {

/// Pixels that an edge may be wide where it is looked at.
constexpr int Widest = 4;

/// The pixels of a row or a column by their number; beyond the image there are none.
class Run {
public:
    Run(const PixelView& image, int x, int y, int dx, int dy)
        : image(image), x(x), y(y), dx(dx), dy(dy) {
    }
    bool contains(int k) const {
        const int column = x + k * dx;
        const int row = y + k * dy;
        return column >= 0 && row >= 0 && column < image.width && row < image.height;
    }
    QRgb at(int k) const {
        return image.at(x + k * dx, y + k * dy);
    }
    /// Whether an edge begins in pixel k: the two before it are of one colour, and it is not.
    bool beginsAt(int k) const {
        return contains(k - 2) && contains(k) && at(k - 1) == at(k - 2) && at(k) != at(k - 1);
    }
    /// The next row or column on either side.
    Run beside(int way) const {
        return {image, x + way * dy, y + way * dx, dx, dy};
    }

private:
    const PixelView& image;
    int x; ///< the pixel at 0
    int y;
    int dx; ///< the step to the next one
    int dy;
};

/// Where an edge crosses a run by either light.
struct Crossing {
    QRgb before = 0;
    QRgb behind = 0;
    double stored = 0.0;
    double linear = 0.0;
};

std::optional<Crossing> crossingFrom(const Run& run, int begin) {
    int end = begin;
    while (end < begin + Widest && run.contains(end + 1) && run.at(end) != run.at(end + 1))
        ++end;
    if (!run.contains(end + 1) || run.at(end) != run.at(end + 1))
        return std::nullopt;
    Crossing found{run.at(begin - 1), run.at(end), double(end), double(end)};
    if (found.before == found.behind)
        return std::nullopt;
    const ColorAxis stored(found.before, found.behind, Light::Stored);
    const ColorAxis linear(found.before, found.behind, Light::Linear);
    for (int k = begin; k < end; ++k) {
        found.stored -= stored.position(run.at(k));
        found.linear -= linear.position(run.at(k));
    }
    return found;
}

/// The crossing of the same two colours near by in a run beside.
std::optional<Crossing> crossingNear(const Run& run, const Crossing& other) {
    constexpr int Reach = 3;
    for (int k = -Reach; k <= Reach; ++k) {
        if (!run.beginsAt(k))
            continue;
        const auto found = crossingFrom(run, k);
        if (found && found->before == other.before && found->behind == other.behind)
            return found;
    }
    return std::nullopt;
}

class EvidenceCount {
public:
    /// An edge that begins at pixel 0 of a run.
    void add(const Run& run) {
        const auto here = crossingFrom(run, 0);
        if (!here)
            return;
        // The next one, the one before, and the one after the next.
        const Run next = run.beside(1);
        const auto second = crossingNear(next, *here);
        const auto first = second ? crossingNear(run.beside(-1), *here) : std::nullopt;
        const auto last = first ? crossingNear(next.beside(1), *here) : std::nullopt;
        if (last)
            add({&*first, &*here, &*second, &*last});
    }
    LightEvidence evidence() const {
        return found;
    }

private:
    void add(const std::array<const Crossing*, 4>& edge) {
        // The third difference: what an edge does that is no parabola.
        const auto unevenness = [&edge](double Crossing::*at) {
            return std::fabs(edge[3]->*at - edge[0]->*at - 3.0 * (edge[2]->*at - edge[1]->*at));
        };
        for (std::size_t i = 1; i < edge.size(); ++i) {
            if (!isSteep(edge[i]->stored - edge[i - 1]->stored))
                return;
        }
        constexpr double Clear = 0.05; // pixels: what roundings do not make
        constexpr double Corner = 0.5; // pixels: what bends more is no edge that runs on
        const double stored = unevenness(&Crossing::stored);
        const double linear = unevenness(&Crossing::linear);
        if (std::fabs(stored - linear) < Clear || std::fmin(stored, linear) > Corner)
            return;
        ++(stored < linear ? found.forStored : found.forLinear);
    }
    static bool isSteep(double movesOn) {
        constexpr double Most = 1.3; // steeper than diagonal, and what the light may be off
        return std::fabs(movesOn) <= Most;
    }

    LightEvidence found;
};

} // namespace

LightEvidence lightEvidence(const PixelView& image) {
    // A part of the rows and columns of a large image says enough.
    constexpr std::int64_t Usual = 1 << 20; // pixels
    const auto every = static_cast<int>(1 + std::int64_t{image.width} * image.height / Usual);
    EvidenceCount count;
    for (int y = 0; y < image.height; ++y) {
        const QRgb* row = image.row(y);
        for (int x = 2; y % every == 0 && x < image.width; ++x) {
            if (row[x] != row[x - 1] && row[x - 1] == row[x - 2])
                count.add({image, x, y, 1, 0});
        }
        for (int x = 0; y >= 2 && x < image.width; x += every) {
            if (row[x] != image.at(x, y - 1) && image.at(x, y - 1) == image.at(x, y - 2))
                count.add({image, x, y, 0, 1});
        }
    }
    return count.evidence();
}

Light lightOfEdges(const PixelView& image) {
    const LightEvidence found = lightEvidence(image);
    // Edges that bend, and coverage that was drawn roughly, speak for either at random: twice as
    // many, and more than three standard deviations beyond half of them.
    const double all = found.forStored + found.forLinear;
    const double more = found.forLinear - found.forStored;
    return found.forLinear >= 2 * found.forStored && more * more > 9.0 * all ? Light::Linear
                                                                             : Light::Stored;
}

} // namespace ovtrace
