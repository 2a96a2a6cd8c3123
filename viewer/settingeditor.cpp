#include "settingeditor.h"

#include "settingtexts.h"

#include <drawing/settingvalue.h>

#include <QCheckBox>
#include <QColorDialog>
#include <QComboBox>
#include <QDoubleSpinBox>
#include <QHBoxLayout>
#include <QLineEdit>
#include <QSlider>
#include <QToolButton>

#include <algorithm>
#include <cmath>

namespace {

constexpr int SliderSteps = 1000;
/// From this ratio of its ends on, a range is laid out by factors and not by differences.
constexpr double WideRange = 1000.0;

class SwitchEditor : public SettingEditor {
public:
    SwitchEditor(const Setting& setting, QWidget* parent)
        : SettingEditor(setting, parent), box(new QCheckBox(this)) {
        setControls({box});
        connect(box, &QCheckBox::toggled, this, [this](bool on) { emitEdited(on); });
    }

protected:
    void showValue(const QVariant& value) override {
        box->setChecked(value.toBool());
    }

private:
    QCheckBox* box;
};

/// Where numbers of a range lie on a slider.
class SliderScale {
public:
    explicit SliderScale(const Setting& setting)
        : low(setting.low), high(setting.high), isWide(high - low >= WideRange) {
    }

    int placeOf(double value) const {
        const double share = isWide ? std::log1p(value - low) / std::log1p(high - low)
                                    : (value - low) / (high - low);
        return static_cast<int>(std::lround(std::clamp(share, 0.0, 1.0) * SliderSteps));
    }

    double valueAt(int place) const {
        const double share = place / double(SliderSteps);
        return low + (isWide ? std::expm1(share * std::log1p(high - low)) : share * (high - low));
    }

private:
    double low;
    double high;
    bool isWide;
};

class NumberEditor : public SettingEditor {
public:
    NumberEditor(const Setting& setting, QWidget* parent)
        : SettingEditor(setting, parent), scale(setting), slider(new QSlider(Qt::Horizontal, this)),
          box(new QDoubleSpinBox(this)) {
        slider->setRange(0, SliderSteps);
        slider->setFocusPolicy(Qt::NoFocus); // the number beside it has the same reach by keys
        box->setRange(setting.low, setting.high);
        box->setDecimals(isWhole() ? 0 : digits());
        box->setSingleStep(isWhole() ? 1.0 : std::pow(10.0, 1 - digits()));
        if (setting.unit[0] != '\0')
            box->setSuffix(' ' + settingText(setting.unit));
        if (setting.low < 0.0 && setting.usual == setting.low)
            box->setSpecialValueText(SettingEditor::tr("automatic"));
        box->setKeyboardTracking(false);
        setControls({box, slider});
        connect(slider, &QSlider::valueChanged, this, [this](int place) {
            const double value = rounded(scale.valueAt(place));
            const QSignalBlocker blocker(box);
            box->setValue(value);
            emitEdited(value, slider->isSliderDown());
        });
        connect(box, &QDoubleSpinBox::valueChanged, this, [this](double value) {
            const QSignalBlocker blocker(slider);
            slider->setValue(scale.placeOf(value));
            emitEdited(value);
        });
    }

protected:
    void showValue(const QVariant& value) override {
        const double number = value.isValid() ? value.toDouble() : setting().low;
        box->setValue(number);
        slider->setValue(scale.placeOf(number));
    }

private:
    bool isWhole() const {
        return setting().type == SettingType::Whole;
    }
    int digits() const {
        return setting().high <= 1.0 ? 3 : 2;
    }
    double rounded(double value) const {
        const double step = isWhole() ? 1.0 : std::pow(10.0, -digits());
        return std::round(value / step) * step;
    }

    SliderScale scale;
    QSlider* slider;
    QDoubleSpinBox* box;
};

class ChoiceEditor : public SettingEditor {
public:
    ChoiceEditor(const Setting& setting, QWidget* parent)
        : SettingEditor(setting, parent), box(new QComboBox(this)) {
        if (!setting.usual.isValid())
            box->addItem(SettingEditor::tr("automatic"), QVariant());
        for (const QString& word : setting.words)
            box->addItem(choiceText(word), word);
        setControls({box});
        connect(box, &QComboBox::activated, this, [this](int index) {
            if (box->itemData(index).isValid())
                emitEdited(box->itemData(index));
            else
                emit resetAsked(this->setting());
        });
    }

protected:
    void showValue(const QVariant& value) override {
        box->setCurrentIndex(std::max(0, box->findData(value)));
    }

private:
    QComboBox* box;
};

/// Words that are checked when they are complete: lengths, rectangles, numbers with words.
class TextEditor : public SettingEditor {
public:
    TextEditor(const Setting& setting, QWidget* parent)
        : SettingEditor(setting, parent), line(new QLineEdit(this)) {
        line->setPlaceholderText(SettingEditor::tr("automatic"));
        setControls({line});
        connect(line, &QLineEdit::textEdited, this, [this] { mark({}); });
        connect(line, &QLineEdit::editingFinished, this, [this] { finish(); });
    }

protected:
    void showValue(const QVariant& value) override {
        line->setText(value.isValid() ? settingToText(value) : QString());
        mark({});
    }

private:
    void finish() {
        if (!line->isModified())
            return;
        line->setModified(false);
        if (line->text().trimmed().isEmpty()) {
            emit resetAsked(setting());
            return;
        }
        try {
            emitEdited(settingFromText(setting(), line->text().trimmed(), settingLabel(setting())));
        } catch (const std::exception& error) {
            mark(QString::fromUtf8(error.what()));
        }
    }

    /// What is wrong is said at the place, in colour and as tooltip.
    void mark(const QString& error) {
        line->setStyleSheet(error.isEmpty() ? QString() : QStringLiteral("color: #c00020"));
        line->setToolTip(error.isEmpty() ? settingHelp(setting()) : error);
    }

    QLineEdit* line;
};

class ColorEditor : public SettingEditor {
public:
    ColorEditor(const Setting& setting, QWidget* parent)
        : SettingEditor(setting, parent), button(new QToolButton(this)) {
        button->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
        setControls({button});
        connect(button, &QToolButton::clicked, this, [this] {
            const QColor chosen = QColorDialog::getColor(color, this, settingLabel(this->setting()),
                                                         QColorDialog::ShowAlphaChannel);
            if (chosen.isValid())
                emitEdited(colorWord(chosen));
        });
    }

protected:
    void showValue(const QVariant& value) override {
        color = value.isValid() ? parseColor(value.toString()) : QColor();
        QPixmap icon(16, 16);
        icon.fill(color.isValid() ? color : Qt::transparent);
        button->setIcon(icon);
        button->setText(color.isValid() ? value.toString() : SettingEditor::tr("none"));
    }

private:
    QToolButton* button;
    QColor color;
};

} // namespace

SettingEditor* SettingEditor::make(const Setting& setting, QWidget* parent) {
    switch (setting.type) {
    case SettingType::Switch:
        return new SwitchEditor(setting, parent);
    case SettingType::Whole:
    case SettingType::Number:
        if (setting.words.isEmpty() && setting.usual.isValid())
            return new NumberEditor(setting, parent);
        return new TextEditor(setting, parent);
    case SettingType::Choice:
        return new ChoiceEditor(setting, parent);
    case SettingType::Color:
        return new ColorEditor(setting, parent);
    default:
        return new TextEditor(setting, parent);
    }
}

SettingEditor::SettingEditor(const Setting& setting, QWidget* parent)
    : QWidget(parent), row(setting), reset(new QToolButton(this)) {
    reset->setText(QStringLiteral("\u21ba"));
    reset->setAutoRaise(true);
    reset->setToolTip(tr("Reset"));
    reset->setAccessibleName(tr("Reset %1").arg(settingLabel(setting)));
    connect(reset, &QToolButton::clicked, this, [this] { emit resetAsked(row); });
    setToolTip(settingHelp(setting));
}

void SettingEditor::setControls(const QList<QWidget*>& controls) {
    auto* layout = new QHBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    for (QWidget* control : controls) {
        control->setAccessibleName(settingLabel(row));
        control->setAccessibleDescription(settingHelp(row));
        control->setToolTip(settingHelp(row));
        layout->addWidget(control, qobject_cast<QSlider*>(control) != nullptr ? 2 : 1);
    }
    layout->addWidget(reset);
    controls.first()->setObjectName(QStringLiteral("setting.") + row.key);
    setFocusProxy(controls.first());
}

void SettingEditor::show(const JobSettings& job) {
    isShowing = true;
    showValue(job.value(row.key));
    isShowing = false;
    reset->setEnabled(job.isGiven(row.key));
}

void SettingEditor::emitEdited(const QVariant& value, bool moving) {
    if (!isShowing)
        emit edited(row, value, moving);
}
