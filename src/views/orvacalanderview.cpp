#include <orvacat/orvacalanderview.h>

#include <orvacat/componentstrings.h>
#include <orvacat/imagemanager.h>
#include <orvacat/mousefilters.h>
#include <orvacat/orvabuttons.h>
#include <orvacat/stylemanager.h>

#include "resources/dpiscaling_p.h"

#include <QAction>
#include <QApplication>
#include <QCalendarWidget>
#include <QHeaderView>
#include <QKeyEvent>
#include <QMenu>
#include <QSpinBox>
#include <QTableView>
#include <QTableWidget>
#include <QTextCharFormat>
#include <QToolButton>
#include <QVBoxLayout>

namespace {

// QCalendarWidget's own children; Qt does not promise these names, so every
// look-up may come back empty and the caller carries on without it.
const char prevMonthName[] = "qt_calendar_prevmonth";
const char nextMonthName[] = "qt_calendar_nextmonth";
const char monthButtonName[] = "qt_calendar_monthbutton";
const char yearButtonName[] = "qt_calendar_yearbutton";
const char yearEditName[] = "qt_calendar_yearedit";
const char navigationBarName[] = "qt_calendar_navigationbar";
const char dayGridName[] = "qt_calendar_calendarview";
// Ours, named in the same family so hosts' style sheets can reach them.
const char todayButtonName[] = "qt_calendar_today_button";
const char weekdayViewName[] = "qt_calendar_weekdayview";

void showImage(QToolButton* button, const char* imageKey)
{
    if (!button)
        return;
    const QPixmap pixmap = getGlobalImage(imageKey, ImageManager::Normal);
    // Without the picture the calendar's own arrow is better than a blank button.
    if (pixmap.isNull())
        return;
    button->setIcon(QIcon(pixmap));
    button->setIconSize(logicalIconSize(pixmap.size()));
}

} // namespace

OrvaCalanderView::OrvaCalanderView(QWidget* parent)
    : QAbstractItemView(parent)
{
    auto* layout = new QVBoxLayout(this);

    auto* todayButton = new OrvaButton(ComponentStrings::getInstance()->getString(QStringLiteral("today")), 1);
    todayButton->setFixedHeight(scaled(24));

    m_calendar = new QCalendarWidget(this);
    m_calendar->setFirstDayOfWeek(Qt::Sunday);
    todayButton->setObjectName(QLatin1String(todayButtonName));

    layout->addWidget(m_calendar);
    layout->addWidget(todayButton, 0, Qt::AlignHCenter);

    setSelectionMode(QAbstractItemView::NoSelection);
    m_calendar->setHorizontalHeaderFormat(QCalendarWidget::NoHorizontalHeader);
    m_calendar->setVerticalHeaderFormat(QCalendarWidget::NoVerticalHeader);

    // Weekends drawn like working days.
    QTextCharFormat weekend = m_calendar->weekdayTextFormat(Qt::Saturday);
    weekend.setForeground(QBrush(Qt::black));
    m_calendar->setWeekdayTextFormat(Qt::Saturday, weekend);
    m_calendar->setWeekdayTextFormat(Qt::Sunday, weekend);

    setAccessibleName(ComponentStrings::getInstance()->getString(QStringLiteral("accessible_calendar")));

    handleNavigationBar();
    handleWeekdayHeader();
    handleTabOrder();

    for (const char* name : {yearButtonName, yearEditName, dayGridName, todayButtonName}) {
        if (QWidget* child = findChild<QWidget*>(QLatin1String(name)))
            child->installEventFilter(this);
    }

    connect(m_calendar, &QCalendarWidget::activated, this, &OrvaCalanderView::sigDateSelect);
    connect(m_calendar, &QCalendarWidget::clicked, this, &OrvaCalanderView::sigDateSelect);
    connect(todayButton, &QPushButton::clicked, this, &OrvaCalanderView::selectToday);
    connect(m_calendar, &QCalendarWidget::currentPageChanged, this, &OrvaCalanderView::pageChanged);
}

OrvaCalanderView::~OrvaCalanderView() = default;

void OrvaCalanderView::setCurrentPage(int year, int month)
{
    m_calendar->setCurrentPage(year, month);
}

void OrvaCalanderView::setMinimumDate(const QDate& date)
{
    m_calendar->setMinimumDate(date);
}

void OrvaCalanderView::setMaximumDate(const QDate& date)
{
    m_calendar->setMaximumDate(date);
}

void OrvaCalanderView::handleNavigationBar()
{
    auto* prevMonth = m_calendar->findChild<QToolButton*>(QLatin1String(prevMonthName));
    auto* nextMonth = m_calendar->findChild<QToolButton*>(QLatin1String(nextMonthName));
    auto* monthButton = m_calendar->findChild<QToolButton*>(QLatin1String(monthButtonName));
    auto* yearButton = m_calendar->findChild<QToolButton*>(QLatin1String(yearButtonName));
    auto* yearEdit = m_calendar->findChild<QSpinBox*>(QLatin1String(yearEditName));
    auto* navigationBar = m_calendar->findChild<QWidget*>(QLatin1String(navigationBarName));

    for (QToolButton* button : {prevMonth, nextMonth, monthButton, yearButton}) {
        if (button)
            button->setFocusPolicy(Qt::StrongFocus);
    }

    if (prevMonth) {
        prevMonth->setAccessibleName(
            ComponentStrings::getInstance()->getString(QStringLiteral("accessible_calendar_prev_month")));
    }
    if (nextMonth) {
        nextMonth->setAccessibleName(
            ComponentStrings::getInstance()->getString(QStringLiteral("accessible_calendar_next_month")));
    }
    showImage(prevMonth, "bt_pagebar_backend");
    showImage(nextMonth, "bt_pagebar_nextend");

    if (yearEdit)
        yearEdit->setAttribute(Qt::WA_MacShowFocusRect, false);

    if (navigationBar) {
        navigationBar->setAutoFillBackground(false);
        // Clicks between the buttons would otherwise reach a combo box's
        // popup container under us and close it.
        navigationBar->installEventFilter(new MouseButtonFilter(navigationBar));
    }

    handleMonthMenu();
}

void OrvaCalanderView::handleMonthMenu()
{
    static const char* const monthKeys[] = {"month_jan", "month_feb", "month_mar", "month_apr",
                                            "month_may", "month_jun", "month_jul", "month_aug",
                                            "month_sep", "month_oct", "month_nov", "month_dec"};
    for (const char* key : monthKeys)
        m_monthNames.append(ComponentStrings::getInstance()->getString(QLatin1String(key)));

    auto* monthButton = m_calendar->findChild<QToolButton*>(QLatin1String(monthButtonName));
    if (!monthButton)
        return;
    if (QMenu* menu = monthButton->menu()) {
        const QList<QAction*> actions = menu->actions();
        for (QAction* action : actions) {
            const int month = action->data().toInt();
            if (month >= 1 && month <= m_monthNames.size())
                action->setText(m_monthNames.at(month - 1).mid(0, 3));
        }
    }
    showMonthName(QDate::currentDate().month());
}

void OrvaCalanderView::handleWeekdayHeader()
{
    auto* dayGrid = m_calendar->findChild<QTableView*>(QLatin1String(dayGridName));
    auto* calendarLayout = qobject_cast<QVBoxLayout*>(m_calendar->layout());

    m_weekdayHeader = new QTableWidget(0, 7);
    m_weekdayHeader->setFocusPolicy(Qt::NoFocus);
    m_weekdayHeader->setObjectName(QLatin1String(weekdayViewName));
    m_weekdayHeader->horizontalHeader()->setStyleSheet(getStyleSheet("component.table_header", false));
    m_weekdayHeader->setStyleSheet(getStyleSheet("component.table", false));
    m_weekdayHeader->setFixedHeight(scaled(30));
    m_weekdayHeader->verticalHeader()->hide();
    m_weekdayHeader->horizontalHeader()->hide();

    // Sunday first, as the grid starts its weeks.
    static const char* const dayKeys[] = {"sunday", "monday", "tuesday", "wednesday",
                                          "thursday", "friday", "saturday"};
    m_weekdayHeader->insertRow(0);
    for (int i = 0; i < 7; ++i) {
        const QString name = ComponentStrings::getInstance()->getString(QLatin1String(dayKeys[i]));
        auto* item = new QTableWidgetItem(name.mid(0, 1));
        item->setTextAlignment(Qt::AlignCenter);
        m_weekdayHeader->setItem(0, i, item);
    }

    m_weekdayHeader->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    m_weekdayHeader->setSizeAdjustPolicy(QAbstractScrollArea::AdjustToContents);
    m_weekdayHeader->setEditTriggers(QAbstractItemView::NoEditTriggers);
    m_weekdayHeader->setSelectionMode(QAbstractItemView::NoSelection);
    m_weekdayHeader->setFrameStyle(0);
    m_weekdayHeader->setShowGrid(false);

    if (dayGrid)
        dayGrid->horizontalHeader()->setDefaultSectionSize(30);
    m_weekdayHeader->horizontalHeader()->setDefaultSectionSize(30);
    m_weekdayHeader->horizontalHeader()->setSectionResizeMode(QHeaderView::Stretch);

    if (calendarLayout)
        calendarLayout->insertWidget(1, m_weekdayHeader);
    else
        m_weekdayHeader->setParent(m_calendar); // still owned, never shown loose
}

void OrvaCalanderView::handleTabOrder()
{
    // The cycle is walked by focusNextPrevChild() rather than written into
    // the window's focus chain with QWidget::setTabOrder: the day grid, the
    // year editor and the view itself have children that proxy their focus
    // to them, and setTabOrder moves such a widget together with everything
    // up to that child, which cuts the day grid out of the chain. The
    // calendar, whose focus proxy is the grid, would also count as a stop of
    // its own right after the view. A child that is missing drops out of the
    // cycle and its neighbours meet.
    const char* const chainNames[] = {prevMonthName, nextMonthName, monthButtonName, yearButtonName,
                                      yearEditName, dayGridName, todayButtonName};
    m_tabCycle.clear();
    m_tabCycle.append(this);
    for (const char* name : chainNames) {
        if (QWidget* widget = findChild<QWidget*>(QLatin1String(name)))
            m_tabCycle.append(widget);
    }
}

bool OrvaCalanderView::focusNextPrevChild(bool next)
{
    QWidget* focus = QApplication::focusWidget();
    int at = -1;
    for (int i = 0; i < m_tabCycle.size(); ++i) {
        if (m_tabCycle.at(i) && m_tabCycle.at(i) == focus)
            at = i;
    }
    if (at < 0)
        return QAbstractItemView::focusNextPrevChild(next);

    const int count = m_tabCycle.size();
    for (int step = 1; step < count; ++step) {
        QWidget* candidate = m_tabCycle.at(((next ? at + step : at - step) % count + count) % count);
        // Hidden stops are passed by: the year editor is only there while the
        // year is being edited. The focus policy is not asked: the calendar
        // switches the day grid's off while the year editor is open.
        if (!candidate || !candidate->isVisible() || !candidate->isEnabled())
            continue;
        candidate->setFocus(next ? Qt::TabFocusReason : Qt::BacktabFocusReason);
        return true;
    }
    return true;
}

bool OrvaCalanderView::eventFilter(QObject* watched, QEvent* event)
{
    if (event->type() != QEvent::KeyPress)
        return false;
    auto* keyEvent = dynamic_cast<QKeyEvent*>(event);
    if (!keyEvent || (keyEvent->key() != Qt::Key_Tab && keyEvent->key() != Qt::Key_Backtab))
        return false;
    Q_UNUSED(watched)

    focusNextPrevChild(keyEvent->key() == Qt::Key_Tab);

    auto* dayGrid = m_calendar->findChild<QTableView*>(QLatin1String(dayGridName));
    if (dayGrid && dayGrid->hasFocus()) {
        const QModelIndex current = dayGrid->currentIndex();
        if (current.isValid()) {
            // The grid only paints its focus cell when the current index
            // changes; bouncing it shows where the keyboard is.
            dayGrid->setCurrentIndex(QModelIndex());
            dayGrid->setCurrentIndex(current);
        }
    }
    return true;
}

void OrvaCalanderView::selectToday()
{
    m_calendar->setSelectedDate(QDate::currentDate());
    Q_EMIT sigDateSelect(QDate::currentDate());
}

void OrvaCalanderView::pageChanged(int year, int month)
{
    Q_UNUSED(year)
    showMonthName(month);
}

void OrvaCalanderView::slotMonthTriggered(QAction* action)
{
    if (!action)
        return;
    showMonthName(action->data().toInt());
}

void OrvaCalanderView::showMonthName(int month)
{
    if (month < 1 || month > m_monthNames.size())
        return;
    if (auto* monthButton = m_calendar->findChild<QToolButton*>(QLatin1String(monthButtonName)))
        monthButton->setText(m_monthNames.at(month - 1));
}

QRect OrvaCalanderView::visualRect(const QModelIndex& index) const
{
    Q_UNUSED(index)
    return QRect();
}

void OrvaCalanderView::scrollTo(const QModelIndex& index, ScrollHint hint)
{
    Q_UNUSED(index)
    Q_UNUSED(hint)
}

QModelIndex OrvaCalanderView::indexAt(const QPoint& point) const
{
    Q_UNUSED(point)
    return QModelIndex();
}

QModelIndex OrvaCalanderView::moveCursor(CursorAction cursorAction, Qt::KeyboardModifiers modifiers)
{
    Q_UNUSED(cursorAction)
    Q_UNUSED(modifiers)
    return QModelIndex();
}

int OrvaCalanderView::horizontalOffset() const
{
    return 0;
}

int OrvaCalanderView::verticalOffset() const
{
    return 0;
}

bool OrvaCalanderView::isIndexHidden(const QModelIndex& index) const
{
    Q_UNUSED(index)
    return true;
}

void OrvaCalanderView::setSelection(const QRect& rect, QItemSelectionModel::SelectionFlags command)
{
    Q_UNUSED(rect)
    Q_UNUSED(command)
}

QRegion OrvaCalanderView::visualRegionForSelection(const QItemSelection& selection) const
{
    Q_UNUSED(selection)
    return QRegion();
}
