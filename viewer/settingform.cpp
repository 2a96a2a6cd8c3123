#include "settingform.h"

#include "histogramview.h"
#include "settingtexts.h"

#include <drawing/settinguse.h>

#include <QFormLayout>
#include <QLabel>
#include <QToolButton>
#include <QVBoxLayout>

namespace {

/// The setting over which the histogram of lightness stands.
constexpr const char* ThresholdKey = "brightnessthreshold";

QFormLayout* makeForm(QWidget* parent) {
    auto* form = new QFormLayout(parent);
    form->setContentsMargins(0, 0, 0, 0);
    form->setFieldGrowthPolicy(QFormLayout::AllNonFixedFieldsGrow);
    form->setRowWrapPolicy(QFormLayout::WrapLongRows);
    return form;
}

} // namespace

SettingForm::SettingForm(const QList<SettingGroup>& groups, const QStringList& left,
                         QWidget* parent)
    : QWidget(parent), morePart(new QWidget(this)), moreButton(new QToolButton(this)) {
    auto* commonPart = new QWidget(this);
    QFormLayout* common = makeForm(commonPart);
    QFormLayout* more = makeForm(morePart);
    for (const Setting& setting : settingTable()) {
        if (groups.contains(setting.group) && !left.contains(QLatin1String(setting.key)))
            addRow(setting, setting.rank == SettingRank::Common ? common : more);
    }
    moreButton->setText(tr("More"));
    moreButton->setCheckable(true);
    moreButton->setAutoRaise(true);
    moreButton->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
    moreButton->setObjectName(QStringLiteral("more"));
    connect(moreButton, &QToolButton::toggled, this, &SettingForm::showMore);
    showMore(false);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(commonPart);
    layout->addWidget(moreButton);
    layout->addWidget(morePart);
}

void SettingForm::showMore(bool on) {
    moreButton->setArrowType(on ? Qt::DownArrow : Qt::RightArrow);
    morePart->setVisible(on);
}

void SettingForm::addRow(const Setting& setting, QFormLayout* layout) {
    if (QLatin1String(setting.key) == QLatin1String(ThresholdKey))
        addHistogram(layout);
    auto* label = new QLabel(settingLabel(setting), this);
    SettingEditor* editor = SettingEditor::make(setting, this);
    label->setBuddy(editor);
    label->setToolTip(settingHelp(setting));
    layout->addRow(label, editor);
    rows.append({label, editor, layout});
    connect(editor, &SettingEditor::edited, this, &SettingForm::change);
    connect(editor, &SettingEditor::resetAsked, this, [this](const Setting& asked) {
        JobSettings changed = shown;
        changed.reset(asked.key);
        emit edited(changed, asked.key, false);
    });
}

void SettingForm::addHistogram(QFormLayout* layout) {
    histogram = new HistogramView(this);
    layout->addRow(histogram);
    connect(histogram, &HistogramView::picked, this, [this](double value, bool moving) {
        change(*findSetting(ThresholdKey), value, moving);
    });
}

void SettingForm::change(const Setting& setting, const QVariant& value, bool moving) {
    JobSettings changed = shown;
    try {
        changed.set(setting.key, value, settingLabel(setting));
    } catch (const std::exception& error) {
        emit refused(QString::fromUtf8(error.what()));
        return;
    }
    emit edited(changed, setting.key, moving);
}

void SettingForm::show(const JobSettings& job) {
    shown = job;
    bool hasMore = false;
    for (const Row& row : rows) {
        const Setting& setting = row.editor->setting();
        const bool isUsed = !whyUnused(setting, job);
        row.label->setVisible(isUsed);
        row.editor->setVisible(isUsed);
        hasMore = hasMore || (isUsed && setting.rank == SettingRank::More);
        if (isUsed)
            row.editor->show(job);
        if (histogram != nullptr && QLatin1String(setting.key) == QLatin1String(ThresholdKey)) {
            histogram->setVisible(isUsed);
            histogram->setThreshold(job.number(ThresholdKey));
        }
    }
    moreButton->setVisible(hasMore);
}

void SettingForm::setHistogram(const QList<qint64>& counts) {
    if (histogram != nullptr)
        histogram->setCounts(counts);
}
