#pragma once

#include <QByteArray>

/// The program's options in groups, for a terminal of 80 columns.
QByteArray helpText();

/// The manual page of the program, in troff.
QByteArray manualPage();

/// Completion of its options and their values, for bash.
QByteArray bashCompletion();

/// The options of the engine, their defaults, ranges and meanings, as a table.
QByteArray engineOptionTable();
QByteArray presetTable();
QByteArray formatTable();
