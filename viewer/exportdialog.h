#pragma once

#include <drawing/jobsettings.h>

#include <QDialog>

class SettingForm;
class QComboBox;
class QLabel;

/// Asks for the format of a file and for the settings of that format.
class ExportDialog : public QDialog {
    Q_OBJECT

public:
    ExportDialog(const JobSettings& settings, QWidget* parent);

    /// The settings as they stand in the dialog.
    const JobSettings& settings() const {
        return current;
    }

private:
    void take(const JobSettings& settings);

    JobSettings current;
    QComboBox* format;
    SettingForm* form;
    QLabel* message;
};
