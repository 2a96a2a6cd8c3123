#include "mailbox.h"

#include <utility>

Mailbox::Mailbox(QObject* parent) : QObject(parent) {
    connect(this, &Mailbox::filled, this, &Mailbox::deliver, Qt::QueuedConnection);
}

void Mailbox::post(std::function<void()> call) {
    bool wasEmpty = false;
    {
        const std::lock_guard lock(mutex);
        wasEmpty = calls.empty();
        calls.push_back(std::move(call));
    }
    if (wasEmpty)
        emit filled();
}

/// One call an event, so that calls that wait in an event loop of their own hold nothing up.
void Mailbox::deliver() {
    std::function<void()> call;
    bool isMore = false;
    {
        const std::lock_guard lock(mutex);
        call = std::move(calls.front());
        calls.pop_front();
        isMore = !calls.empty();
    }
    if (isMore)
        emit filled();
    call();
}
