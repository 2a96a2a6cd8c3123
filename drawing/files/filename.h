#pragma once

#include <QByteArray>
#include <QString>

#include <string>

// Names of files as text and back. On Linux a name is any bytes: those that are no UTF-8 stand in
// the text as lone surrogates U+DC80 to U+DCFF, one a byte, so that nothing is lost on the way.

/// The text for a name as the system has it.
QString fileNameFromBytes(const QByteArray& bytes);

/// The name for the system: what fileNameFromBytes() was made from.
QByteArray fileNameToBytes(const QString& name);

/// Text fit for documents and for one line of a terminal: control characters and what is no
/// character become U+FFFD.
QString presentable(const QString& text);
