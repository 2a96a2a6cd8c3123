// Tasks that run one after another in a thread of their own. These tests run under ThreadSanitizer,
// too.

#include <viewer/taskthread.h>

#include <gtest/gtest.h>

#include <future>
#include <thread>
#include <vector>

namespace {

TEST(TaskThread, RunsTasksInOrderInAnotherThread) {
    TaskThread tasks;
    std::vector<int> order;
    std::thread::id where;
    for (int i = 0; i < 100; ++i)
        tasks.start([&order, i] { order.push_back(i); });
    tasks.start([&where] { where = std::this_thread::get_id(); });
    tasks.wait();
    ASSERT_EQ(order.size(), 100U);
    for (int i = 0; i < 100; ++i)
        EXPECT_EQ(order[std::size_t(i)], i);
    EXPECT_NE(where, std::this_thread::get_id());
    EXPECT_NE(where, std::thread::id());
}

TEST(TaskThread, DropsWhatWaitsAndNotWhatIsUnderWay) {
    TaskThread tasks;
    std::promise<void> begun;
    std::promise<void> goOn;
    bool isFirstDone = false;
    bool isSecondDone = false;
    tasks.start([&] {
        begun.set_value();
        goOn.get_future().wait();
        isFirstDone = true;
    });
    tasks.start([&] { isSecondDone = true; });
    begun.get_future().wait();
    tasks.clear();
    goOn.set_value();
    tasks.wait();
    EXPECT_TRUE(isFirstDone);
    EXPECT_FALSE(isSecondDone);
}

TEST(TaskThread, EndsWhenAllTasksAreDone) {
    int done = 0;
    {
        TaskThread tasks;
        for (int i = 0; i < 20; ++i)
            tasks.start([&] { ++done; });
    }
    EXPECT_EQ(done, 20);
}

TEST(TaskThread, TasksMayStartTasks) {
    int done = 0;
    {
        TaskThread tasks;
        tasks.start([&] { tasks.start([&] { done += 2; }); });
        tasks.wait();
        EXPECT_EQ(done, 2);
        tasks.start([&] { tasks.start([&] { done += 3; }); });
    }
    EXPECT_EQ(done, 5);
}

} // namespace
