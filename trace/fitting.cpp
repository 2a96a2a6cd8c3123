#include "fitting.h"

namespace ovtrace {
namespace {

/// The nodes from `start` to `end`, in indices of the outline. An `end` that is not after `start`
/// lies beyond the last node; as many as there are nodes stands for node 0, as 0 does.
struct Sequence {
    int start;
    int end;
};

/// The result of testing a line or a curve against the inner nodes of a sequence.
struct Fit {
    bool passes;
    int worstNode; ///< the first of the nodes with the largest error
};

/// Finds the worst of some errors.
struct Worst {
    Worst(double tolerance, int node) : tolerance(tolerance), fit{true, node} {
    }
    void look(double error, int node) {
        if (error > tolerance)
            fit.passes = false;
        if (error > largest) {
            largest = error;
            fit.worstNode = node;
        }
    }

    double tolerance;
    double largest = 0.0;
    Fit fit;
};

/// Tests one sequence against a line and a curve.
class SequenceFitter {
public:
    SequenceFitter(const InternodePath& path, Sequence sequence)
        : nodes(path.data()), count(static_cast<int>(path.size())), start(sequence.start),
          end(sequence.end), first(nodes[index(start)]), last(nodes[index(end % count)]),
          length(end < start ? end - start + count : end - start) {
    }

    /// Nodes from the first to the last.
    int nodeCount() const {
        return static_cast<int>(length);
    }

    /// The nodes' distances from evenly spaced points on the chord. A sequence from a node to
    /// itself has length 0: its errors are NaN, which exceed no tolerance.
    Fit fitLine(double tolerance) const {
        const double vx = (last.x - first.x) / length;
        const double vy = (last.y - first.y) / length;
        Worst worst(tolerance, start);
        const auto test = [&](int i, double place) {
            const Internode& node = nodes[index(i)];
            const double ex = node.x - (place * vx + first.x);
            const double ey = node.y - (place * vy + first.y);
            worst.look(ey * ey + ex * ex, i);
        };
        for (int i = start + 1; i < straightEnd(); ++i)
            test(i, i - start);
        for (int i = 0; i < wrappedEnd(); ++i)
            test(i, i - start + count);
        return worst.fit;
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

    /// The nodes' distances from evenly spaced parameters of the curve, which are negative beyond
    /// the last node. Node 0, when it comes right after the start, is taken for one after the last.
    Fit fitCurve(double tolerance, const Segment& curve, int through) const {
        Worst worst(tolerance, through);
        const auto test = [&](const Internode& node, int i) {
            const double t = (i - start) / length;
            const double t1 = (1.0 - t) * (1.0 - t);
            const double t2 = 2.0 * (1.0 - t) * t;
            const double t3 = t * t;
            const double ex = node.x - (t2 * curve.x2 + t1 * first.x + t3 * last.x);
            const double ey = node.y - (t2 * curve.y2 + t1 * first.y + t3 * last.y);
            worst.look(ex * ex + ey * ey, i);
        };
        for (int i = start + 1; i < straightEnd(); ++i)
            test(nodes[index(i)], i);
        for (int i = 0; i < wrappedEnd(); ++i)
            test(nodes[index(i)], i == 0 && start + 1 == count ? count : i);
        return worst.fit;
    }

    Segment line() const {
        return {Segment::Line, first.x, first.y, last.x, last.y, 0.0, 0.0};
    }

private:
    static std::size_t index(int node) {
        return static_cast<std::size_t>(node);
    }

    /// Where the inner nodes end that come before the close, and those after it.
    int straightEnd() const {
        return end > start ? end : count;
    }
    int wrappedEnd() const {
        return end < start ? end : 0;
    }

    const Internode* nodes;
    int count;
    int start;
    int end;
    Internode first;
    Internode last;
    double length;
};

/// The work on a sequence and on a node of it, in that of a pixel.
constexpr int SequenceWork = 16;
constexpr int NodeWork = 4;

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
            TracedPath& traced, StageProgress progress) {
    if (nodes.empty() || end < 0 || end > static_cast<int>(nodes.size()))
        return;
    // A stack of its own in place of recursion, which a long outline could take very deep.
    std::vector<Sequence> pending;
    Sequence sequence{start, end};
    for (;;) {
        const SequenceFitter fitter(nodes, sequence);
        const int split =
            fitOrSplit(fitter, static_cast<double>(ltres), static_cast<double>(qtres), traced);
        progress.advance(SequenceWork + NodeWork * std::int64_t(fitter.nodeCount()));
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

void tracepath(const InternodePath& nodes, float ltres, float qtres, TracedPath& traced,
               StageProgress progress) {
    traced.clear();
    if (nodes.size() < 2)
        return;
    int start = 0;
    do {
        const int end = sequenceEnd(nodes, start);
        fitseq(nodes, ltres, qtres, start, end, traced, progress);
        start = end;
    } while (start > 0);
}

} // namespace ovtrace
