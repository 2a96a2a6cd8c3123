#include "fitting.h"

namespace ovtrace {
namespace {

/// The nodes from `start` to `end`, in indices of the outline; `end` 0 closes it.
struct Sequence {
    int start;
    int end;
};

/// The result of testing a line or a curve against the inner nodes of a sequence.
struct Fit {
    bool passes;
    int worstNode; ///< the first of the nodes with the largest error
};

/// Tests one sequence against a line and a curve.
class SequenceFitter {
public:
    SequenceFitter(const InternodePath& nodes, Sequence sequence)
        : nodes(nodes.data()), start(sequence.start), first(nodes[index(start)]),
          last(nodes[index(sequence.end)]),
          // Node 0 after the last node, as seen from a sequence that closes the outline.
          innerEnd(sequence.end > start ? sequence.end : static_cast<int>(nodes.size())),
          length(sequence.end == start ? 0.0 : innerEnd - start) {
    }

    /// The nodes' distances from evenly spaced points on the chord. A sequence from node 0 to
    /// node 0 has length 0: its errors are NaN, which exceed no tolerance.
    Fit fitLine(double tolerance) const {
        const double vx = (last.x - first.x) / length;
        const double vy = (last.y - first.y) / length;
        return fit(tolerance, start, [=, this](const Internode& node, int i) {
            const double place = i - start;
            const double ex = node.x - (place * vx + first.x);
            const double ey = node.y - (place * vy + first.y);
            return ey * ey + ex * ex;
        });
    }

    /// The quadratic curve from the first to the last node that passes through node `through`.
    Segment curveThrough(int through) const {
        const Internode& node = nodes[index(through)];
        const double t = (through - start) / length;
        const double t1 = (1.0 - t) * (1.0 - t);
        const double t2 = 2.0 * (1.0 - t) * t;
        const double t3 = t * t;
        const double cx = (first.x * t1 + last.x * t3 - node.x) / -t2;
        const double cy = (first.y * t1 + last.y * t3 - node.y) / -t2;
        return {Segment::Curve, first.x, first.y, cx, cy, last.x, last.y};
    }

    /// The nodes' distances from evenly spaced parameters of the curve.
    Fit fitCurve(double tolerance, const Segment& curve, int through) const {
        return fit(tolerance, through, [=, this](const Internode& node, int i) {
            const double t = (i - start) / length;
            const double t1 = (1.0 - t) * (1.0 - t);
            const double t2 = 2.0 * (1.0 - t) * t;
            const double t3 = t * t;
            const double ex = node.x - (t2 * curve.x2 + t1 * first.x + t3 * last.x);
            const double ey = node.y - (t2 * curve.y2 + t1 * first.y + t3 * last.y);
            return ex * ex + ey * ey;
        });
    }

    Segment line() const {
        return {Segment::Line, first.x, first.y, last.x, last.y, 0.0, 0.0};
    }

private:
    static std::size_t index(int node) {
        return static_cast<std::size_t>(node);
    }

    template <typename SquaredError>
    Fit fit(double tolerance, int worstNode, const SquaredError& squaredError) const {
        Fit result{true, worstNode};
        double largest = 0.0;
        for (int i = start + 1; i < innerEnd; ++i) {
            const double error = squaredError(nodes[index(i)], i);
            if (error > tolerance)
                result.passes = false;
            if (error > largest) {
                largest = error;
                result.worstNode = i;
            }
        }
        return result;
    }

    const Internode* nodes;
    int start;
    Internode first;
    Internode last;
    int innerEnd;
    double length;
};

/// Appends the segment that fits the sequence, or returns the node at which to split it.
int fitOrSplit(const SequenceFitter& fitter, double ltres, double qtres, TracedPath& traced) {
    constexpr int Fitted = -1;
    const Fit line = fitter.fitLine(ltres);
    if (line.passes) {
        traced.push_back(fitter.line());
        return Fitted;
    }
    const Segment curve = fitter.curveThrough(line.worstNode);
    const Fit curved = fitter.fitCurve(qtres, curve, line.worstNode);
    if (curved.passes) {
        traced.push_back(curve);
        return Fitted;
    }
    return (line.worstNode + curved.worstNode) / 2;
}

/// The end of the sequence that starts at `start`: the first node with a third direction, or 0.
int sequenceEnd(const InternodePath& nodes, int start) {
    constexpr int None = -1;
    const int lastNode = static_cast<int>(nodes.size()) - 1;
    const auto direction = [&](int i) { return nodes[static_cast<std::size_t>(i)].direction; };
    const int firstDirection = direction(start);
    int secondDirection = None;
    int end = start + 1;
    while (end < lastNode) {
        const int d = direction(end);
        if (d != firstDirection && d != secondDirection) {
            if (secondDirection != None)
                break;
            secondDirection = d;
        }
        ++end;
    }
    return end == lastNode ? 0 : end;
}

} // namespace

void fitseq(const InternodePath& nodes, float ltres, float qtres, int start, int end,
            TracedPath& traced) {
    if (end < 0 || end >= static_cast<int>(nodes.size()))
        return;
    // A stack of its own in place of recursion, which a long outline could take very deep.
    std::vector<Sequence> pending;
    Sequence sequence{start, end};
    for (;;) {
        const int split = fitOrSplit(SequenceFitter(nodes, sequence), static_cast<double>(ltres),
                                     static_cast<double>(qtres), traced);
        if (split >= 0) {
            pending.push_back({split, sequence.end});
            sequence.end = split;
        } else if (!pending.empty()) {
            sequence = pending.back();
            pending.pop_back();
        } else {
            return;
        }
    }
}

void tracepath(const InternodePath& nodes, float ltres, float qtres, TracedPath& traced) {
    traced.clear();
    if (nodes.size() < 2)
        return;
    int start = 0;
    do {
        const int end = sequenceEnd(nodes, start);
        fitseq(nodes, ltres, qtres, start, end, traced);
        start = end;
    } while (start > 0);
}

} // namespace ovtrace
