#include "taskthread.h"

#include <utility>

TaskThread::~TaskThread() {
    {
        const std::lock_guard lock(mutex);
        closing = true;
    }
    wake.notify_one();
    if (thread.joinable())
        thread.join();
}

void TaskThread::start(std::function<void()> task) {
    {
        const std::lock_guard lock(mutex);
        tasks.push_back(std::move(task));
        if (!thread.joinable())
            thread = std::thread(&TaskThread::run, this);
    }
    wake.notify_one();
}

void TaskThread::clear() {
    std::deque<std::function<void()>> dropped; // whose ends need no lock
    {
        const std::lock_guard lock(mutex);
        dropped.swap(tasks);
    }
    idle.notify_all();
}

void TaskThread::wait() {
    std::unique_lock lock(mutex);
    idle.wait(lock, [this] { return tasks.empty() && !busy; });
}

void TaskThread::run() {
    std::unique_lock lock(mutex);
    for (;;) {
        wake.wait(lock, [this] { return closing || !tasks.empty(); });
        if (tasks.empty())
            return;
        std::function<void()> task = std::move(tasks.front());
        tasks.pop_front();
        busy = true;
        lock.unlock();
        task();
        task = nullptr;
        lock.lock();
        busy = false;
        if (tasks.empty())
            idle.notify_all();
    }
}
