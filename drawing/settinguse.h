#pragma once

#include "jobsettings.h"

#include <optional>

/// Nothing when the job reads the setting; otherwise who does, as in "is for png; the format is
/// dxf", to follow the setting's name.
std::optional<QString> whyUnused(const Setting& setting, const JobSettings& job);

/// Who reads the setting, for a manual: "png", "outlines, mode bw"; empty when all do.
QString readersOf(const Setting& setting);

/// The shortest words of a command line, without files, that make these settings again.
QStringList toArguments(const JobSettings& job);
