#pragma once

#include <QByteArray>

/// Opens those of the descriptors 0 to 2 that are closed on the null device, before anything else
/// gets their numbers: what is meant for a stream never lands in a result. The standard input and
/// output stay unusable, so that nothing is lost without an error.
void openStandardDescriptors();

/// Makes the program fail when, at its end, not all of the standard output could be written.
void checkStandardOutputAtExit();

/// Prints text on the standard output. Throws FileError.
void print(const QByteArray& text);
