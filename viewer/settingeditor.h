#pragma once

#include <drawing/jobsettings.h>

#include <QWidget>

class QToolButton;

/// The control of one setting: what its type asks for, and a button that resets it.
///
/// Made from the table of settings; knows nothing of any particular one.
class SettingEditor : public QWidget {
    Q_OBJECT

public:
    /// An editor that suits the setting's type.
    static SettingEditor* make(const Setting& setting, QWidget* parent);

    const Setting& setting() const {
        return row;
    }

    /// Shows the value that a job has. Emits nothing.
    void show(const JobSettings& job);

signals:
    /// A person has changed the value. While a slider moves, `moving` is true.
    void edited(const Setting& setting, const QVariant& value, bool moving);
    void resetAsked(const Setting& setting);

protected:
    SettingEditor(const Setting& setting, QWidget* parent);

    /// Puts the controls beside the button; the first takes the focus.
    void setControls(const QList<QWidget*>& controls);
    virtual void showValue(const QVariant& value) = 0;
    void emitEdited(const QVariant& value, bool moving = false);

private:
    const Setting& row;
    QToolButton* reset;
    bool isShowing = false;
};
