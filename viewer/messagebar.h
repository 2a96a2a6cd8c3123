#pragma once

#include <QFrame>

class QLabel;

/// A line at the top of the window that says what went wrong, until it is closed or something goes
/// right.
class MessageBar : public QFrame {
    Q_OBJECT

public:
    explicit MessageBar(QWidget* parent = nullptr);

    void showMessage(const QString& text);
    QString message() const;

private:
    QLabel* label;
};
