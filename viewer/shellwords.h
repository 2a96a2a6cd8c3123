#pragma once

#include <QStringList>

/// The words as one line that a shell takes apart into the same words again.
QString shellWords(const QStringList& words);
