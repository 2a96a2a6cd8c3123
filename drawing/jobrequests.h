#pragma once

#include "jobsettings.h"
#include "writers/writeroptions.h"

// What the stages of a job read of its settings. A combination that makes no sense throws
// UsageError.

TraceSettings traceSettings(const JobSettings& job);
SizeRequest sizeRequest(const JobSettings& job);
InputRequest inputRequest(const JobSettings& job);
WriterOptions writerOptions(const JobSettings& job);
