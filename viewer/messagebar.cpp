#include "messagebar.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QToolButton>

MessageBar::MessageBar(QWidget* parent) : QFrame(parent), label(new QLabel(this)) {
    setObjectName(QStringLiteral("message"));
    setAutoFillBackground(true);
    setStyleSheet(QStringLiteral("#message { background: #f6d7d7; color: #5a0010; }"
                                 "#message QLabel { color: #5a0010; }"));
    label->setWordWrap(true);
    label->setTextInteractionFlags(Qt::TextSelectableByMouse);
    label->setAccessibleName(tr("Message"));
    auto* close = new QToolButton(this);
    close->setText(QStringLiteral("\u00d7"));
    close->setAutoRaise(true);
    close->setToolTip(tr("Close"));
    close->setAccessibleName(tr("Close the message"));
    connect(close, &QToolButton::clicked, this, &QWidget::hide);
    auto* layout = new QHBoxLayout(this);
    layout->addWidget(label, 1);
    layout->addWidget(close);
    hide();
}

void MessageBar::showMessage(const QString& text) {
    label->setText(text);
    show();
}

QString MessageBar::message() const {
    return isHidden() ? QString() : label->text();
}
