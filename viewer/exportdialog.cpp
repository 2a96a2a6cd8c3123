#include "exportdialog.h"

#include "settingform.h"
#include "settingtexts.h"

#include <drawing/writers/formats.h>

#include <QComboBox>
#include <QDialogButtonBox>
#include <QFormLayout>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

ExportDialog::ExportDialog(const JobSettings& settings, QWidget* parent)
    : QDialog(parent), format(new QComboBox(this)),
      form(new SettingForm({SettingGroup::Output}, {QStringLiteral("format")}, this)),
      message(new QLabel(this)) {
    setWindowTitle(tr("Export"));
    for (const FileFormat& each : fileFormats())
        format->addItem(QString::fromLatin1(each.name).toUpper() + QStringLiteral(" \u2013 ") +
                            settingText(each.description),
                        QString::fromLatin1(each.name));
    format->setObjectName(QStringLiteral("export.format"));
    format->setAccessibleName(tr("Format"));
    message->setWordWrap(true);
    message->hide();
    auto* head = new QFormLayout;
    head->addRow(tr("&Format"), format);
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Save | QDialogButtonBox::Cancel, this);
    auto* layout = new QVBoxLayout(this);
    layout->addLayout(head);
    layout->addWidget(form);
    layout->addWidget(message);
    layout->addStretch();
    layout->addWidget(buttons);
    connect(format, &QComboBox::activated, this, [this](int index) {
        JobSettings changed = current;
        changed.set("format", format->itemData(index));
        take(changed);
    });
    connect(form, &SettingForm::edited, this, &ExportDialog::take);
    connect(form, &SettingForm::refused, this, [this](const QString& text) {
        message->setText(text);
        message->show();
    });
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    take(settings);
}

void ExportDialog::take(const JobSettings& settings) {
    current = settings;
    message->hide();
    format->setCurrentIndex(format->findData(current.format()));
    form->show(current);
}
