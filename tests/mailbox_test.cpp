// Calls from other threads. These tests run under ThreadSanitizer, too.

#include <viewer/mailbox.h>

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QEventLoop>

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <thread>
#include <vector>

namespace {

/// An event loop, which gtest's own main() lacks.
class MailboxTest : public testing::Test {
protected:
    template <typename Condition> static bool waitFor(Condition condition) {
        const QDeadlineTimer end(20000);
        while (!condition() && !end.hasExpired())
            QCoreApplication::processEvents(QEventLoop::AllEvents, 10);
        return condition();
    }

private:
    char name[8] = "mailbox";
    char* arguments[1] = {name};
    int count = 1;
    QCoreApplication application{count, arguments};
};

TEST_F(MailboxTest, CallsComeInOrderInItsThread) {
    Mailbox mailbox;
    std::vector<std::string> arrived;
    bool isWithSender = false;
    std::thread sender([&] {
        for (int i = 0; i < 200; ++i) {
            mailbox.post([&, other = std::this_thread::get_id(), text = std::to_string(i)] {
                isWithSender = isWithSender || std::this_thread::get_id() == other;
                arrived.push_back(text);
            });
        }
    });
    EXPECT_TRUE(waitFor([&] { return arrived.size() == 200; }));
    sender.join();
    EXPECT_FALSE(isWithSender);
    for (std::size_t i = 0; i < arrived.size(); ++i)
        EXPECT_EQ(arrived[i], std::to_string(i));
}

TEST_F(MailboxTest, NothingIsCalledBeforeTheEventLoopNorAfterItsEnd) {
    int called = 0;
    {
        Mailbox mailbox;
        mailbox.post([&] { ++called; });
        EXPECT_EQ(called, 0);
    }
    QCoreApplication::processEvents();
    EXPECT_EQ(called, 0);
}

TEST_F(MailboxTest, ACallThatWaitsInALoopOfItsOwnHoldsNoOtherUp) {
    Mailbox mailbox;
    std::vector<int> order;
    mailbox.post([&] {
        order.push_back(1);
        EXPECT_TRUE(waitFor([&] { return order.size() == 3; }));
    });
    mailbox.post([&] { order.push_back(2); });
    mailbox.post([&] { order.push_back(3); });
    EXPECT_TRUE(waitFor([&] { return order.size() == 3; }));
    EXPECT_EQ(order, (std::vector<int>{1, 2, 3}));
}

} // namespace
