#pragma once

/// With which the program ends.
enum ExitStatus : int {
    FileStatus = 1,  ///< a file could not be read or written
    UsageStatus = 2, ///< the command line was wrong
    EmptyStatus = 3, ///< everything went well, but there was nothing to trace
    /// What a worker says to the run that started it: too little memory, which may be otherwise
    /// when no other image is traced at the same time. A user sees FileStatus.
    MemoryStatus = 4,
};
