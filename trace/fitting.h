#pragma once

#include "tracerecords.h"

#include <stageprogress.h>

namespace ovtrace {

/// Fits lines and quadratic curves to the closed outline `nodes` and stores them in `traced`.
///
/// The outline is cut into sequences whose nodes go in at most two directions; a sequence that
/// neither a line nor a curve fits is split in two. `ltres` and `qtres` are the largest *squared*
/// distances, in pixels, of a node from its evenly spaced place on the line or curve; NaN lets
/// everything pass. The last node is never the end of a sequence: the last sequence runs over it
/// to node 0. Outlines of fewer than two nodes have no segments.
void tracepath(const InternodePath& nodes, float ltres, float qtres, TracedPath& traced,
               StageProgress progress = {});

/// Appends the segments that cover the nodes from `start` to `end`, running over the last node to
/// node 0 when `end` lies before `start`; an `end` of as many as there are nodes is node 0 at the
/// close. Appends nothing for any other `end` that is no node.
///
/// tracepath() asks for an `end` after `start` or of 0. In other sequences that run over the last
/// node, parameters beyond it are negative and a split may lie on either side of the close, so
/// that there are outlines for which it does not end.
void fitseq(const InternodePath& nodes, float ltres, float qtres, int start, int end,
            TracedPath& traced, StageProgress progress = {});

} // namespace ovtrace
