#include "textfinder.h"

#include "characters.h"
#include "pace.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <vector>

namespace ovtrace {
namespace {

/// Characters that touch are at most as long as so many of the largest ones.
constexpr int MostJoined = 4;

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

std::vector<Neighbors> findNeighbors(const std::vector<Member>& members,
                                     const InkComponents& components, double largest) {
    std::vector<Neighbors> found;
    forEachNearPair(
        members, components, GapOfWords * largest,
        [&](std::size_t i, const InkComponent& a, std::size_t j, const InkComponent& b) {
            for (const bool upright : {false, true}) {
                if (isInLine(a, b, upright, GapOfSize))
                    found.push_back({i, j, upright, false});
                else if (isInLine(a, b, upright, GapOfWords) && haveFeetInLine(a, b, upright, 1.0))
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
