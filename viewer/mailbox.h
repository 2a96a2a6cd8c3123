#pragma once

#include <QObject>

#include <deque>
#include <functional>
#include <mutex>

/// Takes calls from any thread to the one that the mailbox lives in, in order.
///
/// Posted calls are made from the event loop, and never once the mailbox is gone: what they refer
/// to has to live as long as the mailbox.
class Mailbox : public QObject {
    Q_OBJECT

public:
    explicit Mailbox(QObject* parent = nullptr);

    /// From any thread.
    void post(std::function<void()> call);

signals:
    /// A call waits to be delivered.
    void filled();

private:
    void deliver();

    std::mutex mutex;
    std::deque<std::function<void()>> calls; ///< guarded by the mutex
};
