#include "programsetup.h"

#include <QImageReader>
#include <QtGlobal>

void setUpProgram() {
    QImageReader::setAllocationLimit(0); // the program's own limits take its place
#ifdef __MINGW32__
    // Qt keeps a stack for compiled regular expressions in each thread, whose end comes after that
    // of the thread's memory here: threads crash when they end.
    qputenv("QT_ENABLE_REGEXP_JIT", "0");
#endif
}
