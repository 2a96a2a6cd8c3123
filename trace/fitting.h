#pragma once

#include "tracerecords.h"

namespace ovtrace {

/// Fits lines and quadratic curves to the closed outline `nodes` and stores them in `traced`.
///
/// The outline is cut into sequences whose nodes go in at most two directions; a sequence that
/// neither a line nor a curve fits is split in two. `ltres` and `qtres` are the largest *squared*
/// distances, in pixels, of a node from its evenly spaced place on the line or curve; NaN lets
/// everything pass. The last node is never the end of a sequence: the last sequence runs over it
/// to node 0. Outlines of fewer than two nodes have no segments.
void tracepath(const InternodePath& nodes, float ltres, float qtres, TracedPath& traced);

/// Appends the segments that cover the nodes from `start` to `end`, which lies after `start` or is
/// 0, the closing node. An `end` that is not a node appends nothing.
void fitseq(const InternodePath& nodes, float ltres, float qtres, int start, int end,
            TracedPath& traced);

} // namespace ovtrace
