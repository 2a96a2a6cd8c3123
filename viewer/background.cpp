#include "background.h"

TaskThread& backgroundThread() {
    static TaskThread thread;
    return thread;
}
