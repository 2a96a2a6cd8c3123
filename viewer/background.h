#pragma once

#include "taskthread.h"

#include <memory>
#include <utility>

/// The thread in which objects end that take long to take apart.
TaskThread& backgroundThread();

/// Makes an object that several threads share and whose end is left to another thread: a result of
/// a million outlines takes longer to take apart than a frame lasts.
template <typename Object, typename... Arguments>
std::shared_ptr<Object> makeSharedInBackground(Arguments&&... arguments) {
    return std::shared_ptr<Object>(
        new Object(std::forward<Arguments>(arguments)...),
        [](Object* object) { backgroundThread().start([object] { delete object; }); });
}
