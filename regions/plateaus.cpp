#include "plateaus.h"

#include "colorcounts.h"
#include "mixing.h"

#include <algorithm>
#include <array>

namespace ovtrace {
namespace {

/// Differences of channels up to which a neighbourhood may be a plain area: compression leaves
/// ringing of this size beside edges of full contrast.
constexpr int LargestNoise = 48;
/// More than what compression leaves of this quality that is still told from a gradient.
constexpr int MostNoise = 9;
/// Rows are left out of larger images: so many pixels tell enough.
constexpr std::size_t EnoughPixels = std::size_t(1) << 19;

int channel(QRgb color, int shift) {
    return static_cast<int>(color >> shift & 0xffU);
}

/// The rows of an image that are looked at, and the neighbourhoods of three by three pixels in
/// them.
class Neighbourhoods {
public:
    explicit Neighbourhoods(const PixelView& image)
        : image(image),
          stride(static_cast<int>(static_cast<std::size_t>(image.width) *
                                      static_cast<std::size_t>(image.height) / EnoughPixels +
                                  1)) {
    }

    /// Calls visit(colour, range) for every neighbourhood whose pixels are not all equal, with the
    /// colour of its middle and the largest difference in a channel.
    template <typename Visit> void forEachUneven(const Visit& visit) const {
        forEachUnevenPlace([&](int x, int y, int range) { visit(image.at(x, y), range); });
    }
    /// The same with the place of the middle: visit(x, y, range).
    template <typename Visit> void forEachUnevenPlace(const Visit& visit) const {
        for (int y = 1; y + 1 < image.height; y += stride)
            visitRow(y, [&](int x, int range, bool plain) {
                if (!plain)
                    visit(x, y, range);
            });
    }
    /// The colours of the neighbourhoods whose pixels are all equal.
    ColorCounts plainColors() const {
        ColorCounts counts;
        for (int y = 1; y + 1 < image.height; y += stride)
            visitRow(y, [&](int x, int, bool plain) {
                if (plain)
                    counts.add(image.at(x, y));
            });
        return counts;
    }

private:
    /// Calls visit(x, range, whether all are equal) for the neighbourhoods of a row.
    template <typename Visit> void visitRow(int y, const Visit& visit) const {
        const std::array rows{image.row(y - 1), image.row(y), image.row(y + 1)};
        const auto isPlainColumn = [&](int x) {
            return rows[0][x] == rows[1][x] && rows[2][x] == rows[1][x];
        };
        // How many columns in a row have been plain and of one colour.
        int plain = isPlainColumn(0) ? 1 : 0;
        for (int x = 1; x < image.width; ++x) {
            const bool same = isPlainColumn(x) && (plain == 0 || rows[1][x] == rows[1][x - 1]);
            plain = same ? plain + 1 : int(isPlainColumn(x));
            if (x >= 2)
                visit(x - 1, plain < 3 ? rangeOf(rows, x - 1) : 0, plain >= 3);
        }
    }
    static int rangeOf(const std::array<const QRgb*, 3>& rows, int x) {
        int worst = 0;
        for (const int shift : {0, 8, 16, 24}) {
            int least = 255;
            int most = 0;
            for (const QRgb* row : rows) {
                for (int k = x - 1; k <= x + 1; ++k) {
                    least = std::min(least, channel(row[k], shift));
                    most = std::max(most, channel(row[k], shift));
                }
            }
            worst = std::max(worst, most - least);
        }
        return worst;
    }

    const PixelView& image;
    int stride;
};

/// The colours with the number of their pixels, the commonest first.
std::vector<ColorCounts::Entry> commonestFirst(const ColorCounts& counts) {
    std::vector<ColorCounts::Entry> order = counts.entries();
    std::stable_sort(order.begin(), order.end(),
                     [](const auto& a, const auto& b) { return a.count > b.count; });
    return order;
}

/// Edges between exact colours that are so alike that they could be noise.
class PaleEdges {
public:
    explicit PaleEdges(const ColorCounts& plain) {
        // Areas, no single blocks of eight by eight that compression has left plain.
        constexpr std::uint64_t Share = 200;
        constexpr std::size_t Most = 32;
        const auto order = commonestFirst(plain);
        std::uint64_t all = 0;
        for (const ColorCounts::Entry& entry : order)
            all += entry.count;
        for (std::size_t k = 0; k < std::min(order.size(), Most); ++k) {
            if (order[k].count * Share < all)
                break;
            for (std::size_t i = 0; i < k; ++i)
                add(order[i].color, order[k].color);
        }
    }
    bool isEmpty() const {
        return edges.empty();
    }
    /// Whether the pixels around a place are mixes of two such colours, one of them there itself.
    bool explain(const PixelView& image, int x, int y) const {
        return std::any_of(edges.begin(), edges.end(),
                           [&](const Edge& edge) { return edge.explains(image, x, y); });
    }

private:
    struct Edge {
        QRgb from;
        QRgb to;
        ColorAxis axis;

        bool explains(const PixelView& image, int x, int y) const {
            constexpr double Rounding = 2.0; // steps of a channel
            bool any = false;
            for (int row = y - 1; row <= y + 1; ++row) {
                for (int column = x - 1; column <= x + 1; ++column) {
                    const QRgb color = image.at(column, row);
                    any = any || color == from || color == to;
                    if (axis.residual(mixColor(color)) > Rounding)
                        return false;
                }
            }
            return any;
        }
    };

    void add(QRgb from, QRgb to) {
        // Below, compression may have made two colours of one.
        constexpr int Least = 12;
        const int apart = farthestChannel(from, to);
        if (apart >= Least && apart <= LargestNoise)
            edges.push_back({from, to, ColorAxis(from, to)});
    }

    std::vector<Edge> edges;
};

/// A colour that stands for those within a radius.
struct Leader {
    QRgb color;
    std::uint64_t count;
};

/// Goes through colours, the commonest first: each joins the first leader within `radius` or leads
/// itself. Stops when there are more than `most` leaders.
std::vector<Leader> leadersOf(const std::vector<ColorCounts::Entry>& order, int radius,
                              std::size_t most) {
    std::vector<Leader> leaders;
    for (const ColorCounts::Entry& entry : order) {
        const auto found = std::find_if(leaders.begin(), leaders.end(), [&](const Leader& leader) {
            return farthestChannel(leader.color, entry.color) <= radius;
        });
        if (found != leaders.end())
            found->count += entry.count;
        else
            leaders.push_back({entry.color, entry.count});
        if (leaders.size() > most)
            break;
    }
    std::stable_sort(leaders.begin(), leaders.end(),
                     [](const Leader& a, const Leader& b) { return a.count > b.count; });
    return leaders;
}

class PlateauFinder {
public:
    PlateauFinder(const PixelView& image, std::size_t most)
        : neighbourhoods(image), image(image), most(most) {
    }

    Plateaus run() {
        Plateaus found;
        countRanges();
        if (isDisturbed())
            forgetPaleEdges();
        if (!isDisturbed())
            return found;
        const int level = noiseLevel();
        found.isSmooth = level > MostNoise;
        if (found.isSmooth)
            return found;
        constexpr int Least = 2;
        found.noise = std::max(level * 3 / 2, Least);
        collect(found);
        return found;
    }

private:
    void countRanges() {
        neighbourhoods.forEachUneven([this](QRgb, int range) {
            ++uneven;
            nearlyPlain += std::uint64_t(range <= LargestNoise);
        });
    }
    void forgetPaleEdges() {
        const PaleEdges pale(neighbourhoods.plainColors());
        if (pale.isEmpty())
            return;
        neighbourhoods.forEachUnevenPlace([&](int x, int y, int range) {
            if (range > LargestNoise || !pale.explain(image, x, y))
                return;
            --uneven;
            --nearlyPlain;
        });
    }
    /// Of rendered drawings, a quarter of the uneven neighbourhoods are nearly plain at most: those
    /// that the faint end of an edge touches.
    bool isDisturbed() const {
        constexpr double Share = 0.3;
        return double(nearlyPlain) > Share * double(uneven);
    }
    /// The colours of nearly plain neighbourhoods.
    ColorCounts plainColors(int range, bool exact) const {
        ColorCounts counts;
        neighbourhoods.forEachUneven([&](QRgb color, int r) {
            if (r <= range)
                counts.add(color);
        });
        if (exact) {
            for (int y = 0; y + 1 < image.height; ++y)
                addBlocks(image.row(y), image.row(y + 1), counts);
        }
        return counts;
    }
    void addBlocks(const QRgb* upper, const QRgb* lower, ColorCounts& counts) const {
        for (int x = 0; x + 1 < image.width; ++x) {
            if (upper[x] == lower[x] && upper[x] == upper[x + 1] && upper[x] == lower[x + 1])
                counts.add(upper[x]);
        }
    }
    /// How far four in five pixels of nearly plain neighbourhoods are from the commonest colour
    /// near by: where all colours occur, it is more than noise.
    int noiseLevel() const {
        constexpr int Radius = 24;
        constexpr int Nearly = 20;
        constexpr std::size_t Enough = 256;
        const auto order = commonestFirst(plainColors(Nearly, true));
        const auto leaders = leadersOf(order, Radius, Enough);
        std::array<std::uint64_t, Radius + 1> histogram{};
        std::uint64_t total = 0;
        neighbourhoods.forEachUneven([&](QRgb color, int range) {
            if (range > Nearly)
                return;
            int nearest = Radius + 1;
            for (const Leader& leader : leaders)
                nearest = std::min(nearest, farthestChannel(leader.color, color));
            if (nearest > Radius)
                return;
            ++histogram[static_cast<std::size_t>(nearest)];
            ++total;
        });
        std::uint64_t below = 0;
        int level = 0;
        while (level < Radius &&
               (below += histogram[static_cast<std::size_t>(level)]) * 5 < total * 4)
            ++level;
        return level;
    }
    void collect(Plateaus& found) const {
        const int flat = found.noise * 3 / 2 + 2;
        const auto leaders =
            leadersOf(commonestFirst(plainColors(flat, true)), 2 * found.noise, most);
        found.isSmooth = leaders.size() > most;
        if (found.isSmooth)
            return;
        // Fewer pixels in plain neighbourhoods are chance.
        constexpr std::uint64_t Fewest = 4;
        for (std::size_t i = 0; i < leaders.size(); ++i) {
            if (leaders[i].count >= Fewest && !isEcho(leaders, i, found.noise))
                found.colors.push_back(leaders[i].color);
        }
        found.isSmooth = found.colors.empty();
    }
    /// Whether a colour is little beside commoner ones that it is near to, or that it lies between:
    /// ringing and blurred edges have plain places as well.
    static bool isEcho(const std::vector<Leader>& leaders, std::size_t index, int noise) {
        constexpr std::uint64_t Little = 20;
        const Leader& leader = leaders[index];
        const MixColor color = mixColor(leader.color);
        for (std::size_t i = 0; i < index; ++i) {
            if (leader.count * Little > leaders[i].count)
                break;
            if (farthestChannel(leaders[i].color, leader.color) <= 4 * noise)
                return true;
            for (std::size_t k = 0; k < i; ++k) {
                if (ColorAxis(leaders[i].color, leaders[k].color).residual(color) <= 2 * noise)
                    return true;
            }
        }
        return false;
    }

    Neighbourhoods neighbourhoods;
    const PixelView& image;
    std::size_t most;
    std::uint64_t uneven = 0;
    std::uint64_t nearlyPlain = 0;
};

} // namespace

Plateaus findPlateaus(const PixelView& image, std::size_t most) {
    return PlateauFinder(image, most).run();
}

} // namespace ovtrace
