#pragma once

#include "shapes/weightedsamples.h"

namespace ovtrace {

/// Puts neighbours together that one shape explains for less: the window and the sparse candidates
/// of the search have cut them.
std::vector<Carrier> merged(const Weighted& data, const FitOptions& options,
                            const std::vector<Carrier>& carriers);

/// Moves the breaks between neighbours to where their errors are least.
void refineBreaks(const Weighted& data, std::vector<Carrier>& carriers);

} // namespace ovtrace
