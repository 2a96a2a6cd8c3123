#include "touchingtext.h"

#include "characters.h"
#include "pace.h"
#include "steps.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace ovtrace {
namespace {

/// What ink is in the copy of the mask from which lines are taken.
constexpr InkMask::Value OfLines = InkMask::Bar;
/// Pixels beside a line's edge that are taken with it: unevenness of its edge would hang letters
/// together.
constexpr double Beside = 1.0;
/// Length of a line over the height of known text at least: strokes of letters are shorter.
constexpr double LongOfText = 1.5;
/// Heights of characters of one size, over each other.
constexpr double SameHeight = 1.25;
/// Pieces in a row that are text without known text beside them.
constexpr std::size_t RowOfPieces = 3;
/// Share of a stroke in text at least that belongs to it.
constexpr double InText = 0.7;

struct Member {
    InkComponent box;
    std::uint32_t component; ///< among those of the rest; of no use for known text
    Form form;
    bool known;
    bool text;
    bool between;               ///< lines touch it on opposite sides
    std::array<bool, 2> runs{}; ///< text runs on through it across the page, up and down
};

struct Pair {
    std::size_t a;
    std::size_t b;
    bool upright;
};

bool isLike(int a, int b) {
    return std::max(a, b) <= SameHeight * std::min(a, b);
}

class TouchingText {
public:
    TouchingText(InkMask& mask, const InkLevels& ink, int threshold, double strokeWidth)
        : mask(mask), ink(ink), threshold(threshold), strokeWidth(strokeWidth) {
    }

    void run(std::vector<Stroke>& strokes, double largest, Pace& pace) {
        addKnown(findComponents(mask, InkMask::Text, pace), largest);
        if (members.empty())
            return;
        copyInk();
        const double least = LongOfText * highest();
        for (const Stroke& stroke : strokes)
            if (!stroke.dropped && lengthOf(stroke) >= least)
                takeAway(stroke);
        const InkComponents components = findComponents(rest, InkMask::Ink, pace);
        addAttached(components, std::min(largest, SameHeight * highest()));
        findPairs(largest);
        markRows();
        followKnown();
        if (markPixels(components))
            for (Stroke& stroke : strokes)
                if (!stroke.dropped && lengthOf(stroke) < least && liesInText(stroke))
                    drop(strokes, stroke);
    }

private:
    void addKnown(const InkComponents& components, double largest) {
        for (const InkComponent& c : components.components)
            if (std::max(c.width(), c.height()) <= largest) {
                members.push_back({c, 0, Form::Complex, true, true, false});
                heights.push_back(std::max(c.width(), c.height()));
            }
        std::ranges::sort(heights);
    }

    /// The height of the highest known text but for a tenth of it.
    int highest() const {
        return heights[heights.size() * 9 / 10];
    }

    void copyInk() {
        rest = mask;
        for (int y = 0; y < ink.height; ++y) {
            const std::uint8_t* levels = ink.levels.data() + ink.indexOf(0, y);
            std::uint8_t* values = rest.values.data() + rest.indexOf(0, y);
            for (int x = 0; x < ink.width; ++x) {
                const bool other = values[x] == InkMask::Solid || values[x] == InkMask::Text ||
                                   values[x] == InkMask::Bar;
                values[x] = !other && levels[x] >= threshold ? InkMask::Ink : InkMask::Paper;
            }
        }
    }

    std::uint8_t* restAt(Point p) {
        if (p.x < 0.0 || p.y < 0.0 || p.x >= ink.width || p.y >= ink.height)
            return nullptr;
        return &rest.values[rest.indexOf(static_cast<int>(p.x), static_cast<int>(p.y))];
    }

    void takeAway(const Stroke& stroke) {
        const double reach = 0.5 * stroke.width + Beside;
        const Walk walk(stroke, 0.5);
        for (int k = 0; k <= walk.count(); ++k) {
            const Point at = walk.at(k);
            const Point sideways = turnedQuarter(directionAt(stroke.carrier, at));
            for (int side = 0; side <= stepsIn(2.0 * reach, 0.5); ++side)
                if (std::uint8_t* value = restAt(at + sideways * (0.5 * side - reach));
                    value && *value == InkMask::Ink)
                    *value = OfLines;
        }
    }

    void addAttached(const InkComponents& components, double largest) {
        for (std::uint32_t i = 0; i < components.components.size(); ++i) {
            const InkComponent& c = components.components[i];
            if (std::max(c.width(), c.height()) > largest)
                continue;
            const std::array<bool, 4> touches = touchedSides(components, c);
            if (std::ranges::find(touches, true) == touches.end())
                continue;
            const bool between = (touches[0] && touches[1]) || (touches[2] && touches[3]);
            members.push_back({c, i, formOf(components, c, strokeWidth), false, false, between});
        }
        std::ranges::stable_sort(
            members, [](const Member& a, const Member& b) { return a.box.left < b.box.left; });
    }

    /// Whether lines touch the component on the left, on the right, above and below.
    std::array<bool, 4> touchedSides(const InkComponents& all, const InkComponent& c) const {
        const std::array<std::ptrdiff_t, 4> steps{-1, 1, -rest.stride, rest.stride};
        std::array<bool, 4> touches{};
        forEachPixel(all, c, [&](int x, int y) {
            const std::uint8_t* at = rest.values.data() + rest.indexOf(x, y);
            for (std::size_t side = 0; side < steps.size(); ++side)
                touches[side] = touches[side] || at[steps[side]] == OfLines;
        });
        return touches;
    }

    void findPairs(double largest) {
        // What was taken with a line is missing at the foot or the head.
        const double slack = strokeWidth + 2.0 * Beside;
        for (std::size_t i = 0; i < members.size(); ++i)
            for (std::size_t j = i + 1; j < members.size(); ++j) {
                const InkComponent& a = members[i].box;
                const InkComponent& b = members[j].box;
                if (b.left > a.right + GapOfSize * largest)
                    break;
                for (const bool upright : {false, true})
                    if (isInLine(a, b, upright, GapOfSize) && haveFeetInLine(a, b, upright, slack))
                        pairs.push_back({i, j, upright});
            }
    }

    int heightOf(const Member& member, bool upright) const {
        return across(member.box, upright).length();
    }

    /// Whether it could be a character in a row of such pieces alone.
    bool isPiece(const Member& member, bool upright) const {
        const int height = heightOf(member, upright);
        const int low = heights[heights.size() / 10];
        return !member.known && member.form == Form::Complex && !member.between &&
               height * SameHeight >= low && height <= SameHeight * highest();
    }

    void markRows() {
        for (const bool upright : {false, true}) {
            std::vector<std::vector<std::size_t>> beside(members.size());
            for (const Pair& pair : pairs)
                if (pair.upright == upright &&
                    arePieces(members[pair.a], members[pair.b], upright)) {
                    beside[pair.a].push_back(pair.b);
                    beside[pair.b].push_back(pair.a);
                }
            std::vector<bool> seen(members.size(), false);
            for (std::size_t i = 0; i < members.size(); ++i)
                markRow(i, beside, seen);
        }
    }

    bool arePieces(const Member& a, const Member& b, bool upright) const {
        return isPiece(a, upright) && isPiece(b, upright) &&
               isLike(heightOf(a, upright), heightOf(b, upright));
    }

    /// All that hang together with member `i` by neighbours are text when they are enough.
    void markRow(std::size_t i, const std::vector<std::vector<std::size_t>>& beside,
                 std::vector<bool>& seen) {
        std::vector<std::size_t> row;
        const auto take = [&](std::size_t one) {
            if (!seen[one])
                row.push_back(one);
            seen[one] = true;
        };
        take(i);
        std::size_t followed = 0;
        while (followed < row.size())
            for (const std::size_t next : beside[row[followed++]])
                take(next);
        for (const std::size_t one : row)
            members[one].text = members[one].text || row.size() >= RowOfPieces;
    }

    /// Lines of text go on over what has their height: a line runs where two characters stand side
    /// by side in it.
    void followKnown() {
        for (const Pair& pair : pairs)
            if (members[pair.a].text && members[pair.b].text)
                members[pair.a].runs[pair.upright] = members[pair.b].runs[pair.upright] = true;
        const auto goesOn = [&](const Member& from, Member& to, bool upright) {
            if (!from.runs[upright] || to.text)
                return false;
            const int height = heightOf(from, upright);
            const int next = heightOf(to, upright);
            to.text = to.form == Form::Complex ||
                      (to.form == Form::Ring && next <= MostOfRing * height) ||
                      (to.form == Form::Bar && isLike(height, next));
            to.runs[upright] = to.text;
            return to.text;
        };
        bool again = true;
        while (again) {
            again = false;
            for (const Pair& pair : pairs) {
                again = goesOn(members[pair.a], members[pair.b], pair.upright) || again;
                again = goesOn(members[pair.b], members[pair.a], pair.upright) || again;
            }
        }
    }

    bool markPixels(const InkComponents& components) {
        bool any = false;
        for (const Member& member : members) {
            if (member.known || !member.text)
                continue;
            any = true;
            forEachPixel(components, components.components[member.component], [&](int x, int y) {
                mask.values[mask.indexOf(x, y)] = InkMask::Text;
                rest.values[rest.indexOf(x, y)] = InkMask::Text;
            });
        }
        return any;
    }

    bool liesInText(const Stroke& stroke) {
        int inText = 0;
        int beside = 0;
        for (const Point& p : pointsAlong(stroke, 0.5)) {
            const std::uint8_t* value = restAt(p);
            inText += value && *value == InkMask::Text ? 1 : 0;
            beside += !value || (*value != InkMask::Text && *value != OfLines) ? 1 : 0;
        }
        return inText > 0 && inText >= InText * (inText + beside);
    }

    static void drop(std::vector<Stroke>& strokes, Stroke& stroke) {
        stroke.dropped = true;
        for (StrokeEnd& end : stroke.ends) {
            if (end.next >= 0)
                strokes[static_cast<std::size_t>(end.next)]
                    .ends[static_cast<std::size_t>(end.nextEnd)]
                    .next = -1;
            end.next = -1;
        }
    }

    InkMask& mask;
    const InkLevels& ink;
    int threshold;
    double strokeWidth;
    InkMask rest; ///< ink that is neither text nor filled, and what of it belongs to lines
    std::vector<Member> members;
    std::vector<int> heights; ///< of known text, rising
    std::vector<Pair> pairs;
};

} // namespace

void markTouchingText(InkMask& mask, const InkLevels& ink, int threshold,
                      std::vector<Stroke>& strokes, double largest, double strokeWidth,
                      Pace& pace) {
    TouchingText(mask, ink, threshold, strokeWidth).run(strokes, largest, pace);
    pace.step(1.0, 1.0);
}

} // namespace ovtrace
