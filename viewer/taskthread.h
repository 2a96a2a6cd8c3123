#pragma once

#include <condition_variable>
#include <deque>
#include <functional>
#include <mutex>
#include <thread>

/// Runs tasks one after another in a thread of its own, which starts with the first of them.
class TaskThread {
public:
    TaskThread() = default;
    /// Returns when all tasks are done.
    ~TaskThread();
    TaskThread(const TaskThread&) = delete;
    TaskThread& operator=(const TaskThread&) = delete;

    void start(std::function<void()> task);
    /// Drops the tasks that wait.
    void clear();
    /// Returns when all tasks are done.
    void wait();

private:
    void run();

    std::mutex mutex;
    std::condition_variable wake;
    std::condition_variable idle;
    // Guarded by the mutex:
    std::deque<std::function<void()>> tasks;
    bool busy = false;
    bool closing = false;

    std::thread thread;
};
