#pragma once

#include "settingeditor.h"

#include <QHash>

class HistogramView;
class QFormLayout;
class QLabel;
class QToolButton;

/// Editors for the settings of some groups, in the table's order: the common ones first, all others
/// behind a button. Those that the job does not read are not shown.
class SettingForm : public QWidget {
    Q_OBJECT

public:
    SettingForm(const QList<SettingGroup>& groups, const QStringList& left, QWidget* parent);

    /// Shows a job's values. Emits nothing.
    void show(const JobSettings& job);

    /// How many pixels have each lightness, 0 to 255; shown above a threshold.
    void setHistogram(const QList<qint64>& counts);

signals:
    /// The job as it was shown with one setting changed; while a slider moves, `moving` is true.
    void edited(const JobSettings& job, const QString& key, bool moving);
    /// A value that makes no sense together with the others, in a sentence.
    void refused(const QString& message);

private:
    struct Row {
        QLabel* label;
        SettingEditor* editor;
        QFormLayout* layout;
    };

    void addRow(const Setting& setting, QFormLayout* layout);
    void addHistogram(QFormLayout* layout);
    void change(const Setting& setting, const QVariant& value, bool moving);
    void showMore(bool on);

    JobSettings shown;
    QList<Row> rows;
    QWidget* morePart;
    QToolButton* moreButton;
    HistogramView* histogram = nullptr;
};
