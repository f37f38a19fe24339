// Gallery page: the push buttons in their six looks, icon buttons with the
// theme's pictures, check boxes and radio buttons.

#include "gallerypages.h"
#include "pagebuilding.h"

#include <orvacat/orvacat.h>

#include <QButtonGroup>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QVBoxLayout>

namespace {

QLabel* caption(const QString& text)
{
    auto* label = new QLabel(text);
    label->setAlignment(Qt::AlignHCenter | Qt::AlignTop);
    label->setStyleSheet(lookSheet(QStringLiteral("color: @quiet;")));
    return label;
}

QLabel* rowTitle(const QString& text)
{
    auto* label = new QLabel(text);
    label->setAlignment(Qt::AlignLeft | Qt::AlignVCenter);
    return label;
}

QGroupBox* pushButtonSection()
{
    auto* box = new QGroupBox(QStringLiteral("Push buttons"));
    auto* grid = new QGridLayout(box);
    grid->setHorizontalSpacing(px(18));
    grid->setVerticalSpacing(px(6));

    struct Role
    {
        int role;
        QString text;
        QString name;
    };
    const QList<Role> roles = {
        {0, ComponentStrings::getInstance()->getString(QStringLiteral("ok")), QStringLiteral("0 apply")},
        {1, ComponentStrings::getInstance()->getString(QStringLiteral("cancel")), QStringLiteral("1 cancel")},
        {2, QStringLiteral("3"), QStringLiteral("2 selected page")},
        {3, QStringLiteral("4"), QStringLiteral("3 other page")},
        {4, QStringLiteral("Details"), QStringLiteral("4 default")},
        {5, QStringLiteral("Delete"), QStringLiteral("5 destructive")},
    };

    grid->addWidget(rowTitle(QStringLiteral("Enabled")), 0, 0);
    grid->addWidget(rowTitle(QStringLiteral("Disabled")), 1, 0);
    for (int i = 0; i < roles.size(); ++i) {
        const Role& role = roles.at(i);
        for (int row = 0; row < 2; ++row) {
            auto* button = new OrvaButton(role.text, role.role);
            // Page-number buttons are square, as in the paging bar.
            if (role.role == 2 || role.role == 3)
                button->setFixedSize(px(24), px(24));
            else
                button->setMinimumWidth(px(72));
            button->setEnabled(row == 0);
            grid->addWidget(button, row, i + 1, Qt::AlignHCenter | Qt::AlignVCenter);
        }
        grid->addWidget(caption(QStringLiteral("Role %1").arg(role.name)), 2, i + 1);
    }
    grid->setColumnStretch(roles.size() + 1, 1);
    return box;
}

QGroupBox* iconButtonSection()
{
    auto* box = new QGroupBox(QStringLiteral("Icon buttons"));
    auto* grid = new QGridLayout(box);
    grid->setHorizontalSpacing(px(24));
    grid->setVerticalSpacing(px(6));

    // An icon button is named by its tooltip: it says what the button does.
    ComponentStrings* strings = ComponentStrings::getInstance();
    const QList<QPair<QString, QString>> keys = {
        {QStringLiteral("bt_pagebar_backend"), strings->getString(QStringLiteral("first_page"))},
        {QStringLiteral("bt_pagebar_back"), strings->getString(QStringLiteral("prev_5_pages"))},
        {QStringLiteral("bt_pagebar_refresh"), strings->getString(QStringLiteral("pagebar_refresh"))},
        {QStringLiteral("bt_pagebar_next"), strings->getString(QStringLiteral("next_5_pages"))},
        {QStringLiteral("bt_pagebar_nextend"), strings->getString(QStringLiteral("last_page"))},
        {QStringLiteral("bt_search_dropdown"), QStringLiteral("Search options")},
    };
    // Four to a row, each over its picture's name, so that the section fits
    // a 1366-pixel screen at 96 dpi.
    constexpr int perRow = 4;
    int placed = 0;
    auto place = [grid, &placed](OrvaIconButton* button, const QString& name) {
        const int row = placed / perRow * 2;
        const int column = placed % perRow;
        grid->addWidget(button, row, column, Qt::AlignHCenter | Qt::AlignVCenter);
        grid->addWidget(caption(name), row + 1, column);
        ++placed;
    };
    for (const auto& key : keys) {
        auto* button = new OrvaIconButton(key.first);
        button->setToolTip(getHtmlEscapedStringForToolTip(key.second));
        place(button, key.first);
    }

    // The same picture disabled, and one made from a single pixmap.
    auto* disabled = new OrvaIconButton(QStringLiteral("bt_pagebar_refresh"));
    disabled->setToolTip(strings->getString(QStringLiteral("pagebar_refresh")));
    disabled->setEnabled(false);
    place(disabled, QStringLiteral("disabled"));

    auto* single = new OrvaIconButton(getGlobalImage("folder", ImageManager::Normal));
    single->setToolTip(QStringLiteral("Open folder"));
    place(single, QStringLiteral("one pixmap"));

    grid->setColumnStretch(perRow, 1);
    auto* hint = new QLabel(QStringLiteral("Point at, press and tab to the buttons: each state has its own picture, "
                                           "and the hover picture stays while a button has the focus."));
    hint->setWordWrap(true);
    hint->setStyleSheet(lookSheet(QStringLiteral("color: @quiet;")));
    grid->addWidget(hint, grid->rowCount(), 0, 1, perRow + 1);
    return box;
}

QGroupBox* toggleSection()
{
    auto* box = new QGroupBox(QStringLiteral("Check boxes and radio buttons"));
    auto* columns = new QHBoxLayout(box);
    columns->setSpacing(px(40));

    auto* checks = new QVBoxLayout;
    checks->setSpacing(px(8));
    auto* unchecked = new OrvaCheckBox(QStringLiteral("Show hidden files"));
    auto* checked = new OrvaCheckBox(QStringLiteral("Remember my choice"));
    checked->setChecked(true);
    auto* partial = new OrvaCheckBox(QStringLiteral("Some folders selected"));
    partial->setTristate(true);
    partial->setCheckState(Qt::PartiallyChecked);
    auto* disabledOff = new OrvaCheckBox(QStringLiteral("Disabled, off"));
    disabledOff->setEnabled(false);
    auto* disabledOn = new OrvaCheckBox(QStringLiteral("Disabled, on"));
    disabledOn->setChecked(true);
    disabledOn->setEnabled(false);
    for (QWidget* widget : {static_cast<QWidget*>(unchecked), static_cast<QWidget*>(checked),
                            static_cast<QWidget*>(partial), static_cast<QWidget*>(disabledOff),
                            static_cast<QWidget*>(disabledOn)})
        checks->addWidget(widget);
    checks->addStretch(1);

    auto* radios = new QVBoxLayout;
    radios->setSpacing(px(8));
    auto* group = new QButtonGroup(box);
    const QStringList schedule = {QStringLiteral("Back up daily"), QStringLiteral("Back up weekly"),
                                  QStringLiteral("Back up monthly")};
    for (int i = 0; i < schedule.size(); ++i) {
        auto* radio = new OrvaRadioButton(schedule.at(i));
        radio->setChecked(i == 1);
        group->addButton(radio);
        radios->addWidget(radio);
    }
    // A second group, all disabled, so that both disabled pictures show.
    auto* disabledGroup = new QButtonGroup(box);
    auto* radioOff = new OrvaRadioButton(QStringLiteral("Disabled, off"));
    auto* radioOn = new OrvaRadioButton(QStringLiteral("Disabled, on"));
    disabledGroup->addButton(radioOff);
    disabledGroup->addButton(radioOn);
    radioOn->setChecked(true);
    radioOff->setEnabled(false);
    radioOn->setEnabled(false);
    radios->addWidget(radioOff);
    radios->addWidget(radioOn);
    radios->addStretch(1);

    columns->addLayout(checks);
    columns->addLayout(radios);
    columns->addStretch(1);
    return box;
}

QWidget* createPage()
{
    auto* page = new QWidget;
    auto* layout = pageLayout(page);
    layout->setSpacing(px(14));
    layout->addWidget(pushButtonSection());
    layout->addWidget(iconButtonSection());
    layout->addWidget(toggleSection());
    layout->addStretch(1);
    return page;
}

GalleryPageRegistration registration("buttons", "Buttons", 10, &createPage);

} // namespace
