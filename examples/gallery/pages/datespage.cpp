// Gallery page: the date selector, whose drop-down is the calendar, and the
// same calendar shown in the page. Picking a day (click, double click, Enter
// or the Today button) is echoed beside each.

#include "gallerypages.h"
#include "pagebuilding.h"

#include <orvacat/orvacat.h>

#include <QApplication>
#include <QCalendarWidget>
#include <QDir>
#include <QFrame>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QPainter>
#include <QVBoxLayout>

namespace {

QLabel* heading(const QString& text)
{
    auto* label = new QLabel(text);
    QFont font = label->font();
    font.setBold(true);
    label->setFont(font);
    return label;
}

QString describe(const QDate& date)
{
    if (!date.isValid())
        return QStringLiteral("No date chosen");
    return QStringLiteral("Chosen: <b>%1</b> (%2)")
        .arg(date.toString(QStringLiteral("yyyy-MM-dd")), QLocale(QLocale::English).toString(date, QStringLiteral("dddd")));
}

QWidget* selectorSection()
{
    auto* section = new QWidget;
    auto* layout = new QVBoxLayout(section);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(px(8));
    layout->addWidget(heading(QStringLiteral("Date selector")));

    auto* selector = new OrvaDateSelector(QStringLiteral("Select a date"));
    selector->setObjectName(QStringLiteral("gallerySelector"));
    selector->setFixedWidth(px(200));
    // Bookings only: from today to a year ahead.
    selector->getCalendarView()->setMinimumDate(QDate::currentDate());
    selector->getCalendarView()->setMaximumDate(QDate::currentDate().addYears(1));

    auto* clear = new OrvaButton(QStringLiteral("Clear"), 1);
    clear->setFixedHeight(px(28));

    auto* row = new QHBoxLayout;
    row->setSpacing(px(10));
    row->addWidget(selector);
    row->addWidget(clear);
    row->addStretch(1);
    layout->addLayout(row);

    auto* echo = new QLabel(describe(QDate()));
    layout->addWidget(echo);
    layout->addWidget(note(QStringLiteral("Open it and pick a day between today and a year from now. The field "
                                          "shows the date as yyyy-MM-dd; Clear brings the placeholder back.")));

    QObject::connect(selector, qOverload<int>(&QComboBox::currentIndexChanged), echo,
                     [selector, echo] { echo->setText(describe(selector->itemData(0).toDate())); });
    QObject::connect(clear, &QPushButton::clicked, selector, [selector, echo] {
        selector->clearDate();
        echo->setText(describe(QDate()));
    });
    return section;
}

QWidget* calendarSection()
{
    auto* section = new QWidget;
    auto* layout = new QVBoxLayout(section);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(px(8));
    layout->addWidget(heading(QStringLiteral("Calendar")));

    // The calendar's look comes with the selector's sheet; a host showing it
    // on its own puts the same sheet around it.
    auto* frame = new QWidget;
    frame->setStyleSheet(getStyleSheet("component.date_selector", false));
    auto* frameLayout = new QVBoxLayout(frame);
    frameLayout->setContentsMargins(0, 0, 0, 0);
    auto* calendar = new OrvaCalanderView;
    calendar->setFixedSize(px(280), px(260));
    frameLayout->addWidget(calendar);

    auto* echo = new QLabel(QStringLiteral("Click a day, press Enter on one, or use Today."));
    echo->setWordWrap(true);
    int picks = 0;
    QObject::connect(calendar, &OrvaCalanderView::sigDateSelect, echo, [echo, picks](const QDate& date) mutable {
        ++picks;
        echo->setText(QStringLiteral("sigDateSelect #%1: <b>%2</b>").arg(picks).arg(date.toString(QStringLiteral("yyyy-MM-dd"))));
    });

    auto* row = new QHBoxLayout;
    row->setSpacing(px(16));
    row->addWidget(frame, 0, Qt::AlignTop);
    auto* side = new QVBoxLayout;
    side->addWidget(echo);
    side->addWidget(note(QStringLiteral("A double click reports the day more than once: once for the click, once "
                                        "for the activation. Tab walks the days (the arrow keys move the day), "
                                        "the arrows, month, year and Today, then leaves the calendar.")));
    side->addStretch(1);
    row->addLayout(side, 1);
    layout->addLayout(row);
    return section;
}

QWidget* createPage()
{
    auto* page = new QWidget;
    auto* layout = pageLayout(page);
    layout->setSpacing(px(22));
    layout->addWidget(selectorSection());
    layout->addWidget(calendarSection());
    layout->addStretch(1);
    return page;
}

// The selector with its calendar dropped down, on a picked date.
void popupScreenshot(QWidget* window, QWidget* page, const QString& dir)
{
    auto* selector = page->findChild<OrvaDateSelector*>(QStringLiteral("gallerySelector"));
    if (!selector)
        return;
    selector->dateSelect(QDate::currentDate().addDays(12));
    selector->showPopup();
    QWidget* popup = selector->view()->window();
    QApplication::processEvents();
    if (popup && popup->isVisible()) {
        QPixmap picture = window->grab();
        {
            QPainter painter(&picture);
            painter.drawPixmap(window->mapFromGlobal(popup->mapToGlobal(QPoint())), popup->grab());
        }
        picture.save(QDir(dir).filePath(QStringLiteral("dates-popup.png")));
    }
    selector->hidePopup();
    selector->clearDate();
}

GalleryPageRegistration registration("dates", "Dates", 53, &createPage, &popupScreenshot);

} // namespace
