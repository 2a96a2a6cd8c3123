#pragma once

/// Swallows what is written to the standard error output while it lives.
///
/// Image libraries print their own complaints there; the program reports a file that cannot be
/// read itself, in one line.
class QuietStandardError {
public:
    QuietStandardError();
    ~QuietStandardError();
    QuietStandardError(const QuietStandardError&) = delete;
    QuietStandardError& operator=(const QuietStandardError&) = delete;

private:
    int saved = -1;
};
