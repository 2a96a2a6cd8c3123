#pragma once

#include <QByteArray>

/// Appends the shortest text that reads back as exactly `value`, which is finite.
void appendNumber(QByteArray& text, double value);
void appendNumber(QByteArray& text, int value);
