#include "traceprogress.h"

// Here rather than in the header: the module holds the class's only virtual table.
OvTraceProgress::~OvTraceProgress() = default;
