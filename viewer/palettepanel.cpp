#include "palettepanel.h"

#include <QColorDialog>
#include <QHBoxLayout>
#include <QListWidget>
#include <QToolButton>
#include <QVBoxLayout>

namespace {

constexpr int ColorRole = Qt::UserRole;
constexpr int SwatchSide = 18;

QIcon swatch(const QColor& color) {
    QPixmap picture(SwatchSide, SwatchSide);
    picture.fill(color);
    return picture;
}

QToolButton* makeButton(const QString& text, const QString& help, const QString& name,
                        QWidget* parent) {
    auto* button = new QToolButton(parent);
    button->setText(text);
    button->setToolTip(help);
    button->setAccessibleName(text);
    button->setAccessibleDescription(help);
    button->setObjectName(name);
    return button;
}

} // namespace

PalettePanel::PalettePanel(QWidget* parent) : QWidget(parent), list(new QListWidget(this)) {
    list->setObjectName(QStringLiteral("palette"));
    list->setAccessibleName(tr("Colours of the result"));
    list->setDragDropMode(QAbstractItemView::InternalMove);
    list->setToolTip(
        tr("Click to mark the outlines of a colour, double-click to change it, clear its "
           "box to leave it out, drag it to another place in the order."));
    add = makeButton(tr("Pick"), tr("Add a colour by a click into the image."),
                     QStringLiteral("palette.pick"), this);
    add->setCheckable(true);
    remove = makeButton(tr("Remove"), tr("Do without the marked colour."),
                        QStringLiteral("palette.remove"), this);
    fix = makeButton(tr("Fix"), tr("Keep these colours, whatever the image has."),
                     QStringLiteral("palette.fix"), this);
    fix->setCheckable(true);
    auto* buttons = new QHBoxLayout;
    for (QToolButton* button : {add, remove, fix})
        buttons->addWidget(button);
    buttons->addStretch();
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(list);
    layout->addLayout(buttons);

    connect(list, &QListWidget::currentRowChanged, this, [this](int row) {
        if (!isShowing)
            emit selected(row);
    });
    connect(list, &QListWidget::itemChanged, this, [this] {
        if (isShowing)
            return;
        QList<QColor> hidden;
        for (int row = 0; row < list->count(); ++row) {
            if (list->item(row)->checkState() != Qt::Checked)
                hidden.append(list->item(row)->data(ColorRole).value<QColor>());
        }
        emit hiddenChanged(hidden);
    });
    connect(list, &QListWidget::itemDoubleClicked, this, &PalettePanel::edit);
    connect(list->model(), &QAbstractItemModel::rowsMoved, this, [this] { fixWith(colors()); });
    connect(add, &QToolButton::toggled, this, &PalettePanel::pickingAsked);
    connect(remove, &QToolButton::clicked, this, &PalettePanel::removeSelected);
    connect(fix, &QToolButton::clicked, this, [this](bool on) {
        if (on)
            fixWith(colors());
        else
            emit released();
    });
}

QString PalettePanel::nameOf(const QColor& color) {
    if (color.alpha() == 0)
        return tr("transparent");
    return color.alpha() == 255 ? color.name() : color.name(QColor::HexArgb);
}

void PalettePanel::show(const QList<PaletteEntry>& entries, bool isFixed) {
    isShowing = true;
    list->clear();
    for (const PaletteEntry& entry : entries) {
        const QString name = nameOf(entry.color);
        auto* item =
            new QListWidgetItem(swatch(entry.color),
                                tr("%1   %2 %   %3")
                                    .arg(name, locale().toString(entry.share * 100.0, 'f', 1))
                                    .arg(entry.outlines),
                                list);
        item->setData(ColorRole, entry.color);
        item->setFlags(item->flags() | Qt::ItemIsUserCheckable);
        item->setCheckState(entry.isHidden ? Qt::Unchecked : Qt::Checked);
        item->setToolTip(tr("%n outline(s)", nullptr, entry.outlines));
    }
    fix->setChecked(isFixed);
    isShowing = false;
}

void PalettePanel::setPicking(bool picking) {
    add->setChecked(picking);
}

QList<QColor> PalettePanel::colors() const {
    QList<QColor> result;
    for (int row = 0; row < list->count(); ++row)
        result.append(list->item(row)->data(ColorRole).value<QColor>());
    return result;
}

void PalettePanel::edit(QListWidgetItem* item) {
    const QColor chosen = QColorDialog::getColor(item->data(ColorRole).value<QColor>(), this,
                                                 tr("Colour"), QColorDialog::ShowAlphaChannel);
    if (!chosen.isValid())
        return;
    QList<QColor> changed = colors();
    changed[list->row(item)] = chosen;
    fixWith(changed);
}

void PalettePanel::removeSelected() {
    const int row = list->currentRow();
    if (row < 0)
        return;
    QList<QColor> changed = colors();
    changed.removeAt(row);
    fixWith(changed);
}

void PalettePanel::fixWith(const QList<QColor>& changed) {
    if (!isShowing)
        emit fixed(changed);
}
