#include "textfinder.h"

#include "pace.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <vector>

namespace ovtrace {
namespace {

/// Share of the rectangle of its own moments that a bar fills at least; letters fill less.
constexpr double BarFill = 0.85;
/// Length over width of a bent bar at least, and its share of that rectangle.
constexpr double Slender = 4.0;
constexpr double BentFill = 0.65;
/// Gap between neighbours over the size of the greater one.
constexpr double GapOfSize = 0.45;
/// The same between words, over the height of the higher one, and how far their feet may then be
/// apart, over the height of the lower one.
constexpr double GapOfWords = 0.75;
constexpr double FeetApart = 0.12;
/// Characters that touch are at most as long as so many of the largest ones.
constexpr int MostJoined = 4;
/// Least height of one character of a line over that of its neighbour, of a ring at most, and share
/// of the lower one's height that the higher one covers at least.
constexpr double LeastHeight = 0.55;
constexpr double MostOfRing = 1.1;
constexpr double Covered = 0.7;
/// Share of the narrower one's width in which neighbours may overlap.
constexpr double Overlap = 0.3;

enum class Form : std::uint8_t { Bar, Ring, Complex };

struct Member {
    std::uint32_t component;
    Form form;
    int size;  ///< the greater of width and height
    int group; ///< index of the first member known to be in company with it
    bool text;
    bool besideSimple; ///< a bar stands beside it
    bool joined;       ///< too long for a character: several that touch, if it is text
};

/// Two members that may be neighbours in one line of text.
struct Neighbors {
    std::size_t a;
    std::size_t b;
    bool upright; ///< the line runs up or down
    bool apart;   ///< as words are, or the drawing beside them
};

struct Spread {
    double x = 0.0;
    double y = 0.0;
    double xx = 0.0;
    double xy = 0.0;
    double yy = 0.0;
};

template <typename Visit>
void forEachPixel(const InkComponents& all, const InkComponent& component, Visit visit) {
    for (std::uint32_t i = 0; i < component.runCount; ++i) {
        const InkRun& run = all.runs[component.firstRun + i];
        for (int x = run.begin; x < run.end; ++x)
            visit(x, run.y);
    }
}

Spread spreadOf(const InkComponents& all, const InkComponent& component) {
    Spread s;
    const double n = component.area;
    forEachPixel(all, component, [&](int x, int y) {
        s.x += x;
        s.y += y;
    });
    s.x /= n;
    s.y /= n;
    forEachPixel(all, component, [&](int x, int y) {
        s.xx += (x - s.x) * (x - s.x);
        s.xy += (x - s.x) * (y - s.y);
        s.yy += (y - s.y) * (y - s.y);
    });
    // The pixel's own extent adds a twelfth.
    s.xx = s.xx / n + 1.0 / 12.0;
    s.xy = s.xy / n;
    s.yy = s.yy / n + 1.0 / 12.0;
    return s;
}

bool isBar(const Spread& s, int area) {
    // A rectangle a by b has the variances a^2/12 and b^2/12.
    const double sides = 12.0 * std::sqrt(std::max(s.xx * s.yy - s.xy * s.xy, 0.0));
    if (area >= BarFill * sides)
        return true;
    // A dash of an arc is a little bent: long, narrow and nearly full.
    const double half = (s.xx - s.yy) / 2.0;
    const double root = std::sqrt(half * half + s.xy * s.xy);
    const double mean = (s.xx + s.yy) / 2.0;
    return mean + root > Slender * Slender * (mean - root) && area >= BentFill * sides;
}

bool isRing(const InkComponents& all, const InkComponent& component, const Spread& s,
            double strokeWidth) {
    double least = 1e9;
    double greatest = 0.0;
    forEachPixel(all, component, [&](int x, int y) {
        const double d = (x - s.x) * (x - s.x) + (y - s.y) * (y - s.y);
        least = std::min(least, d);
        greatest = std::max(greatest, d);
    });
    least = std::sqrt(least);
    greatest = std::sqrt(greatest);
    const double width = greatest - least;
    return least > 1.5 && width < 1.5 * strokeWidth + 1.5 &&
           component.area > 0.5 * 3.1416 * (greatest * greatest - least * least);
}

Form formOf(const InkComponents& all, const InkComponent& component, double strokeWidth) {
    const Spread s = spreadOf(all, component);
    if (isBar(s, component.area))
        return Form::Bar;
    return isRing(all, component, s, strokeWidth) ? Form::Ring : Form::Complex;
}

int gapBetween(const InkComponent& a, const InkComponent& b) {
    const int dx = std::max({a.left - b.right, b.left - a.right, 0});
    const int dy = std::max({a.top - b.bottom, b.top - a.bottom, 0});
    return std::max(dx, dy);
}

/// Small components, and those that may be several characters, sorted by their left edges.
std::vector<Member> smallOnes(const InkComponents& components, double largest, double strokeWidth) {
    std::vector<Member> members;
    for (std::uint32_t i = 0; i < components.components.size(); ++i) {
        const InkComponent& c = components.components[i];
        const int size = std::max(c.width(), c.height());
        const int height = std::min(c.width(), c.height());
        if (height > largest || size > MostJoined * largest)
            continue;
        const Form form = formOf(components, c, strokeWidth);
        if (size <= largest || form == Form::Complex)
            members.push_back({i, form, size, 0, false, false, size > largest});
    }
    std::stable_sort(members.begin(), members.end(), [&](const Member& a, const Member& b) {
        return components.components[a.component].left < components.components[b.component].left;
    });
    for (std::size_t i = 0; i < members.size(); ++i)
        members[i].group = static_cast<int>(i);
    return members;
}

int rootOf(std::vector<Member>& members, int i) {
    const auto at = [&](int k) -> int& { return members[static_cast<std::size_t>(k)].group; };
    while (at(i) != i) {
        at(i) = at(at(i));
        i = at(i);
    }
    return i;
}

bool isComplex(const Member& member) {
    return member.form == Form::Complex;
}

bool isBeside(const Member& a, const InkComponent& ca, const Member& b, const InkComponent& cb) {
    // A bar or a ring belongs to a character of about its own size, not to a drawing beside it.
    const int size = isComplex(a) == isComplex(b) ? std::max(a.size, b.size)
                     : isComplex(a)               ? a.size
                                                  : b.size;
    return std::max(a.size, b.size) <= size * 3 / 2 && gapBetween(ca, cb) <= GapOfSize * size;
}

/// Calls `visit` with each two members, and their components, that no greater gap parts on the way
/// from left to right.
template <typename Visit>
void forEachNearPair(const std::vector<Member>& members, const InkComponents& components,
                     double gap, Visit visit) {
    for (std::size_t i = 0; i < members.size(); ++i) {
        const InkComponent& a = components.components[members[i].component];
        for (std::size_t j = i + 1; j < members.size(); ++j) {
            const InkComponent& b = components.components[members[j].component];
            if (b.left > a.right + gap)
                break;
            visit(i, a, j, b);
        }
    }
}

/// Calls `visit` with each two members that stand side by side, the complex one first where only
/// one is.
template <typename Visit>
void forEachPair(std::vector<Member>& members, const InkComponents& components, double largest,
                 Visit visit) {
    forEachNearPair(
        members, components, GapOfSize * largest,
        [&](std::size_t i, const InkComponent& a, std::size_t j, const InkComponent& b) {
            if (members[i].joined || members[j].joined ||
                (!isComplex(members[i]) && !isComplex(members[j])) ||
                !isBeside(members[i], a, members[j], b))
                return;
            if (isComplex(members[i]))
                visit(i, j);
            else
                visit(j, i);
        });
}

/// Complex members side by side are one group.
void joinCompany(std::vector<Member>& members, const InkComponents& components, double largest) {
    forEachPair(members, components, largest, [&](std::size_t i, std::size_t j) {
        if (!isComplex(members[j])) {
            members[i].besideSimple = members[i].besideSimple || members[j].form == Form::Bar;
            return;
        }
        const int ra = rootOf(members, static_cast<int>(i));
        const int rb = rootOf(members, static_cast<int>(j));
        members[static_cast<std::size_t>(std::max(ra, rb))].group = std::min(ra, rb);
    });
}

/// Groups are text; a complex member by itself is when it is as large as text elsewhere and no
/// crossing of dashes.
void decideComplex(std::vector<Member>& members) {
    std::vector<int> count(members.size(), 0);
    for (std::size_t i = 0; i < members.size(); ++i)
        ++count[static_cast<std::size_t>(rootOf(members, static_cast<int>(i)))];
    std::vector<int> heights;
    for (std::size_t i = 0; i < members.size(); ++i) {
        Member& m = members[i];
        m.text = count[static_cast<std::size_t>(rootOf(members, static_cast<int>(i)))] >= 2;
        if (m.text)
            heights.push_back(m.size);
    }
    if (heights.empty())
        return;
    std::sort(heights.begin(), heights.end());
    const int low = heights[heights.size() / 10];
    const int high = heights[heights.size() * 9 / 10];
    for (Member& m : members)
        if (isComplex(m) && !m.joined && !m.besideSimple && 10 * m.size >= 8 * low &&
            10 * m.size <= 12 * high)
            m.text = true;
}

/// Bars and rings beside text belong to it: i, 1, o, stops and dashes.
void decideSimple(std::vector<Member>& members, const InkComponents& components, double largest) {
    forEachPair(members, components, largest, [&](std::size_t i, std::size_t j) {
        if (members[i].text && !isComplex(members[j]))
            members[j].text = true;
    });
}

/// One side of a component's box: from `begin` up to `end`.
struct Extent {
    int begin;
    int end;

    int length() const {
        return end - begin;
    }
};

int common(Extent a, Extent b) {
    return std::min(a.end, b.end) - std::max(a.begin, b.begin);
}

Extent across(const InkComponent& c, bool upright) {
    return upright ? Extent{c.left, c.right} : Extent{c.top, c.bottom};
}

/// Whether two components may be neighbours in a line of text that runs across the page, or up and
/// down, no farther from each other than `gap` times the height of the higher one.
bool isInLine(const InkComponent& a, const InkComponent& b, bool upright, double gap) {
    const Extent ha = across(a, upright);
    const Extent hb = across(b, upright);
    const double low = std::min(ha.length(), hb.length());
    const double high = std::max(ha.length(), hb.length());
    const Extent wa = across(a, !upright);
    const Extent wb = across(b, !upright);
    return low >= LeastHeight * high && common(ha, hb) >= Covered * low &&
           common(wa, wb) <= Overlap * std::min(wa.length(), wb.length()) &&
           -common(wa, wb) <= gap * high;
}

/// Whether both stand on one line: in one that runs up or down feet may be on either side.
bool haveFeetInLine(const InkComponent& a, const InkComponent& b, bool upright) {
    const Extent ha = across(a, upright);
    const Extent hb = across(b, upright);
    const double most = std::max(1.0, FeetApart * std::min(ha.length(), hb.length()));
    return std::abs(ha.end - hb.end) <= most || (upright && std::abs(ha.begin - hb.begin) <= most);
}

std::vector<Neighbors> findNeighbors(const std::vector<Member>& members,
                                     const InkComponents& components, double largest) {
    std::vector<Neighbors> found;
    forEachNearPair(
        members, components, GapOfWords * largest,
        [&](std::size_t i, const InkComponent& a, std::size_t j, const InkComponent& b) {
            for (const bool upright : {false, true}) {
                if (isInLine(a, b, upright, GapOfSize))
                    found.push_back({i, j, upright, false});
                else if (isInLine(a, b, upright, GapOfWords) && haveFeetInLine(a, b, upright))
                    found.push_back({i, j, upright, true});
            }
        });
    return found;
}

/// Lines of text go on: over letters that are bars or rings, one after the other, over those that
/// touch each other, and over gaps between words, but for rings: those are of the drawing.
void followLines(std::vector<Member>& members, const InkComponents& components, double largest) {
    const std::vector<Neighbors> neighbors = findNeighbors(members, components, largest);
    // A line runs where two characters stand side by side in it.
    std::array<std::vector<bool>, 2> runs;
    runs.fill(std::vector<bool>(members.size(), false));
    for (const Neighbors& n : neighbors)
        if (members[n.a].text && members[n.b].text && !n.apart)
            runs[n.upright][n.a] = runs[n.upright][n.b] = true;
    const auto goesOn = [&](const Neighbors& n, std::size_t from, std::size_t to) {
        const bool upright = n.upright;
        if (members[to].text || !runs[upright][from])
            return false;
        const double height =
            across(components.components[members[from].component], upright).length();
        const double next = across(components.components[members[to].component], upright).length();
        if (members[to].form == Form::Ring && (n.apart || next > MostOfRing * height))
            return false;
        members[to].text = true;
        runs[upright][to] = true;
        return true;
    };
    bool again = true;
    while (again) {
        again = false;
        for (const Neighbors& n : neighbors) {
            again = goesOn(n, n.a, n.b) || again;
            again = goesOn(n, n.b, n.a) || again;
        }
    }
}

} // namespace

void markText(InkMask& mask, const InkComponents& components, double largest, double strokeWidth,
              Pace& pace) {
    std::vector<Member> members = smallOnes(components, largest, strokeWidth);
    joinCompany(members, components, largest);
    decideComplex(members);
    decideSimple(members, components, largest);
    followLines(members, components, largest);
    for (const Member& member : members)
        if (member.text)
            forEachPixel(components, components.components[member.component],
                         [&](int x, int y) { mask.values[mask.indexOf(x, y)] = InkMask::Text; });
    pace.step(1.0, 1.0);
}

} // namespace ovtrace
