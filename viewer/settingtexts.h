#pragma once

#include <drawing/settingtable.h>

// The table's texts in the language of the window.

/// A text of the table.
QString settingText(const char* text);

QString settingLabel(const Setting& setting);

/// One sentence that says what the setting does.
QString settingHelp(const Setting& setting);

/// A word of a choice, as people read it.
QString choiceText(const QString& word);
