#pragma once

/// The computer's memory in bytes; 0 when it is not known.
double physicalMemory();

/// Makes peakMemory() begin anew, where the system can do that.
void resetPeakMemory();

/// The most memory in bytes that this process has used so far; 0 when it is not known.
double peakMemory();
