#pragma once

#include "settingtable.h"

// The parts of the table of settings.

QList<Setting> methodRows();
QList<Setting> inputRows();
QList<Setting> outlineRows();
QList<Setting> regionRows();
QList<Setting> centerlineRows();
QList<Setting> preparationRows();
QList<Setting> sizeRows();
QList<Setting> outputRows();
