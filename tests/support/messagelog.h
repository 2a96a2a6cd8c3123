#pragma once

#include <QString>
#include <QStringList>
#include <QtGlobal>

/// Collects what Qt logs while it lives.
class MessageLog {
public:
    MessageLog() {
        messages.clear();
        previous = qInstallMessageHandler([](QtMsgType, const QMessageLogContext&,
                                             const QString& text) { messages.append(text); });
    }
    ~MessageLog() {
        qInstallMessageHandler(previous);
    }
    MessageLog(const MessageLog&) = delete;
    MessageLog& operator=(const MessageLog&) = delete;

    static inline QStringList messages;

private:
    QtMessageHandler previous;
};
