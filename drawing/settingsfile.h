#pragma once

#include "errors.h"
#include "jobsettings.h"

#include <QByteArray>

/// The settings as JSON: method, mode, every option of the tracer with the value it will have, and
/// of the others those that were given and are read.
QByteArray settingsToJson(const JobSettings& job);

/// Reads what settingsToJson() wrote; `name` is the file's in what is said about it. Throws
/// UsageError for anything that is no setting.
JobSettings settingsFromJson(const QByteArray& json, const QString& name);

/// Reads a file of settings. Throws FileError or UsageError.
JobSettings loadSettings(const QString& fileName);
