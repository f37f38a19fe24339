#include <orvacat/orvacalanderview.h>

#include <orvacat/componentstrings.h>
#include <orvacat/imagemanager.h>
#include <orvacat/mousefilters.h>
#include <orvacat/orvabuttons.h>
#include <orvacat/stylemanager.h>

#include "resources/dpiscaling_p.h"

#include <QAccessible>
#include <QAccessibleWidget>
#include <QAction>
#include <QApplication>
#include <QCalendarWidget>
#include <QHeaderView>
#include <QKeyEvent>
#include <QMenu>
#include <QPointer>
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

QCalendarWidget* calendarOf(const OrvaCalanderView* view)
{
    return view->findChild<QCalendarWidget*>(QString(), Qt::FindDirectChildrenOnly);
}

QTableView* dayGridOf(const OrvaCalanderView* view)
{
    return view->findChild<QTableView*>(QLatin1String(dayGridName));
}

// The view and the calendar inside it are containers to a screen reader.
// Qt would show the view as an empty table (it has no model) and the
// calendar as a table holding a table; here the view holds the calendar and
// the today button, and the calendar its navigation bar and day grid.
class CalendarContainerAccessible : public QAccessibleWidget
{
public:
    CalendarContainerAccessible(QWidget* widget, QList<QPointer<QWidget>> children)
        : QAccessibleWidget(widget, QAccessible::Grouping)
        , m_children(std::move(children))
    {
    }

    int childCount() const override { return parts().size(); }
    QAccessibleInterface* child(int index) const override
    {
        return QAccessible::queryAccessibleInterface(parts().value(index));
    }
    int indexOfChild(const QAccessibleInterface* child) const override
    {
        return child ? parts().indexOf(qobject_cast<QWidget*>(child->object())) : -1;
    }
    QAccessibleInterface* focusChild() const override
    {
        QWidget* focus = QApplication::focusWidget();
        if (!focus || !widget()->isAncestorOf(focus))
            return nullptr;
        QAccessibleInterface* focused = QAccessible::queryAccessibleInterface(focus);
        QAccessibleInterface* deeper = focused ? focused->focusChild() : nullptr;
        return deeper ? deeper : focused;
    }
    QAccessible::State state() const override
    {
        // Both hand their focus on to the day grid, which is the one
        // focusable and focused object.
        QAccessible::State state = QAccessibleWidget::state();
        state.focusable = false;
        state.focused = false;
        return state;
    }

private:
    QList<QWidget*> parts() const
    {
        QList<QWidget*> widgets;
        for (const QPointer<QWidget>& child : m_children) {
            if (child)
                widgets << child;
        }
        return widgets;
    }

    QList<QPointer<QWidget>> m_children;
};

} // namespace

/**
 * The day grid as a screen reader reads it: a table named by the month shown
 * ("November 2026") whose cells are named by their whole date in the
 * toolkit's language, with the selected day selected, the keyboard's day
 * focused, today described as today and days outside the allowed range
 * disabled. Qt's own table would name the cells by the bare day number.
 */
class OrvaCalanderDayGridAccessible : public QAccessibleWidget, public QAccessibleTableInterface
{
public:
    OrvaCalanderDayGridAccessible(QTableView* grid, OrvaCalanderView* view)
        : QAccessibleWidget(grid, QAccessible::Table)
        , m_view(view)
    {
    }

    ~OrvaCalanderDayGridAccessible() override
    {
        for (QAccessible::Id id : qAsConst(m_cells))
            QAccessible::deleteAccessibleInterface(id);
    }

    QTableView* grid() const { return static_cast<QTableView*>(object()); }
    QCalendarWidget* calendar() const { return m_view ? calendarOf(m_view) : nullptr; }

    /** The date shown at @p row, @p column: the grid shows day numbers only, the month follows from the row. */
    QDate dateAt(int row, int column) const
    {
        QCalendarWidget* shown = calendar();
        if (!shown || !grid()->model())
            return QDate();
        const int day = grid()->model()->index(row, column).data(Qt::DisplayRole).toInt();
        if (day < 1)
            return QDate();
        QDate first(shown->yearShown(), shown->monthShown(), 1);
        // The first row may end the previous month, the last two begin the next.
        if (row == 0 && day > 7)
            first = first.addMonths(-1);
        else if (row >= 4 && day <= 14)
            first = first.addMonths(1);
        return QDate(first.year(), first.month(), day);
    }

    QString dateName(const QDate& date) const
    {
        if (!date.isValid() || !m_view || m_view->m_dayNames.size() != 7 || m_view->m_monthNames.size() != 12)
            return QString();
        return QStringLiteral("%1, %2 %3 %4")
            .arg(m_view->m_dayNames.at(date.dayOfWeek() % 7))
            .arg(date.day())
            .arg(m_view->m_monthNames.at(date.month() - 1))
            .arg(date.year());
    }

    QString todayText() const { return m_view ? m_view->m_todayText : QString(); }

    // QAccessibleInterface
    void* interface_cast(QAccessible::InterfaceType type) override
    {
        if (type == QAccessible::TableInterface)
            return static_cast<QAccessibleTableInterface*>(this);
        return QAccessibleWidget::interface_cast(type);
    }
    QString text(QAccessible::Text t) const override
    {
        QCalendarWidget* shown = calendar();
        if (t != QAccessible::Name || !grid()->accessibleName().isEmpty() || !shown || !m_view
            || m_view->m_monthNames.size() != 12)
            return QAccessibleWidget::text(t);
        return m_view->m_monthNames.at(shown->monthShown() - 1) + QLatin1Char(' ')
               + QString::number(shown->yearShown());
    }
    int childCount() const override { return rowCount() * columnCount(); }
    QAccessibleInterface* child(int index) const override
    {
        const int columns = columnCount();
        if (index < 0 || index >= childCount() || columns == 0)
            return nullptr;
        return cellAt(index / columns, index % columns);
    }
    int indexOfChild(const QAccessibleInterface* child) const override
    {
        if (!child || child->role() != QAccessible::Cell || child->parent() != this)
            return -1;
        const QAccessibleTableCellInterface* cell = const_cast<QAccessibleInterface*>(child)->tableCellInterface();
        return cell ? cell->rowIndex() * columnCount() + cell->columnIndex() : -1;
    }
    QAccessibleInterface* childAt(int x, int y) const override
    {
        const QModelIndex index = grid()->indexAt(grid()->viewport()->mapFromGlobal(QPoint(x, y)));
        return index.isValid() ? cellAt(index.row(), index.column()) : nullptr;
    }
    QAccessibleInterface* focusChild() const override
    {
        const QModelIndex current = grid()->currentIndex();
        return grid()->hasFocus() && current.isValid() ? cellAt(current.row(), current.column()) : nullptr;
    }

    // QAccessibleTableInterface
    QAccessibleInterface* caption() const override { return nullptr; }
    QAccessibleInterface* summary() const override { return nullptr; }
    QAccessibleInterface* cellAt(int row, int column) const override;
    int selectedCellCount() const override { return selectedCells().size(); }
    QList<QAccessibleInterface*> selectedCells() const override
    {
        QList<QAccessibleInterface*> cells;
        for (int i = 0; i < childCount(); ++i) {
            QAccessibleInterface* cell = child(i);
            if (cell->state().selected)
                cells << cell;
        }
        return cells;
    }
    QString columnDescription(int column) const override
    {
        // The weekday above the column, in full.
        return m_view && m_view->m_dayNames.size() == 7 ? m_view->m_dayNames.value(dateAt(1, column).dayOfWeek() % 7)
                                                         : QString();
    }
    QString rowDescription(int) const override { return QString(); }
    int selectedColumnCount() const override { return 0; }
    int selectedRowCount() const override { return 0; }
    int columnCount() const override { return grid()->model() ? grid()->model()->columnCount() : 0; }
    int rowCount() const override { return grid()->model() ? grid()->model()->rowCount() : 0; }
    QList<int> selectedColumns() const override { return QList<int>(); }
    QList<int> selectedRows() const override { return QList<int>(); }
    bool isColumnSelected(int) const override { return false; }
    bool isRowSelected(int) const override { return false; }
    bool selectRow(int) override { return false; }
    bool selectColumn(int) override { return false; }
    bool unselectRow(int) override { return false; }
    bool unselectColumn(int) override { return false; }
    // Cells stand for grid positions, not dates, so a new page keeps them.
    void modelChange(QAccessibleTableModelChangeEvent*) override {}

private:
    QPointer<OrvaCalanderView> m_view;
    mutable QHash<int, QAccessible::Id> m_cells;
};

namespace {

class DayCellAccessible : public QAccessibleInterface, public QAccessibleTableCellInterface
{
public:
    DayCellAccessible(OrvaCalanderDayGridAccessible* table, int row, int column)
        : m_table(table)
        , m_grid(table->grid())
        , m_row(row)
        , m_column(column)
    {
    }

    bool isValid() const override
    {
        return m_grid && m_row < m_table->rowCount() && m_column < m_table->columnCount();
    }
    QObject* object() const override { return nullptr; }
    QWindow* window() const override { return m_table->window(); }
    QAccessibleInterface* parent() const override { return m_table; }
    QAccessibleInterface* child(int) const override { return nullptr; }
    int childCount() const override { return 0; }
    int indexOfChild(const QAccessibleInterface*) const override { return -1; }
    QAccessibleInterface* childAt(int, int) const override { return nullptr; }
    QAccessibleInterface* focusChild() const override { return nullptr; }
    QString text(QAccessible::Text t) const override
    {
        if (!isValid())
            return QString();
        const QDate date = m_table->dateAt(m_row, m_column);
        if (t == QAccessible::Name)
            return m_table->dateName(date);
        if (t == QAccessible::Description && date.isValid() && date == QDate::currentDate())
            return m_table->todayText();
        return QString();
    }
    void setText(QAccessible::Text, const QString&) override {}
    QRect rect() const override
    {
        if (!isValid())
            return QRect();
        const QRect cell = m_grid->visualRect(index());
        return QRect(m_grid->viewport()->mapToGlobal(cell.topLeft()), cell.size());
    }
    QAccessible::Role role() const override { return QAccessible::Cell; }
    QAccessible::State state() const override
    {
        QAccessible::State state;
        if (!isValid()) {
            state.invalid = true;
            return state;
        }
        state.focusable = true;
        state.selectable = true;
        state.selected = isSelected();
        state.focused = m_grid->hasFocus() && m_grid->currentIndex() == index();
        state.disabled = !(index().flags() & Qt::ItemIsEnabled);
        state.invisible = !m_grid->isVisible();
        return state;
    }
    void* interface_cast(QAccessible::InterfaceType type) override
    {
        return type == QAccessible::TableCellInterface ? static_cast<QAccessibleTableCellInterface*>(this) : nullptr;
    }

    // QAccessibleTableCellInterface
    bool isSelected() const override
    {
        QCalendarWidget* calendar = m_table->calendar();
        const QDate date = m_table->dateAt(m_row, m_column);
        return calendar && date.isValid() && date == calendar->selectedDate();
    }
    QList<QAccessibleInterface*> columnHeaderCells() const override { return QList<QAccessibleInterface*>(); }
    QList<QAccessibleInterface*> rowHeaderCells() const override { return QList<QAccessibleInterface*>(); }
    int columnIndex() const override { return m_column; }
    int rowIndex() const override { return m_row; }
    int columnExtent() const override { return 1; }
    int rowExtent() const override { return 1; }
    QAccessibleInterface* table() const override { return m_table; }

private:
    QModelIndex index() const { return m_grid->model() ? m_grid->model()->index(m_row, m_column) : QModelIndex(); }

    OrvaCalanderDayGridAccessible* m_table;
    QPointer<QTableView> m_grid;
    int m_row;
    int m_column;
};

QAccessibleInterface* calendarAccessibleFactory(const QString& className, QObject* object)
{
    // Asked once for every class up the hierarchy: the view answers as
    // itself, so that a host's subclass with a factory of its own keeps
    // that; the calendar's parts, which are never subclassed, answer the
    // first question.
    auto* widget = qobject_cast<QWidget*>(object);
    if (!widget)
        return nullptr;
    if (className == QLatin1String("OrvaCalanderView")) {
        auto* view = qobject_cast<OrvaCalanderView*>(widget);
        return view ? new CalendarContainerAccessible(
                          view, {calendarOf(view), view->findChild<QWidget*>(QLatin1String(todayButtonName))})
                    : nullptr;
    }
    if (className != QLatin1String(object->metaObject()->className()))
        return nullptr;
    QWidget* parent = widget->parentWidget();
    if (auto* calendar = qobject_cast<QCalendarWidget*>(widget)) {
        if (!qobject_cast<OrvaCalanderView*>(parent))
            return nullptr;
        return new CalendarContainerAccessible(calendar, {calendar->findChild<QWidget*>(QLatin1String(navigationBarName)),
                                                          calendar->findChild<QWidget*>(QLatin1String(dayGridName))});
    }
    auto* grid = qobject_cast<QTableView*>(widget);
    auto* view = qobject_cast<OrvaCalanderView*>(parent ? parent->parentWidget() : nullptr);
    if (grid && view && widget->objectName() == QLatin1String(dayGridName))
        return new OrvaCalanderDayGridAccessible(grid, view);
    return nullptr;
}

} // namespace

QAccessibleInterface* OrvaCalanderDayGridAccessible::cellAt(int row, int column) const
{
    if (row < 0 || column < 0 || row >= rowCount() || column >= columnCount())
        return nullptr;
    const int key = row * columnCount() + column;
    if (QAccessible::Id id = m_cells.value(key))
        return QAccessible::accessibleInterface(id);
    auto* cell = new DayCellAccessible(const_cast<OrvaCalanderDayGridAccessible*>(this), row, column);
    m_cells.insert(key, QAccessible::registerAccessibleInterface(cell));
    return cell;
}

OrvaCalanderView::OrvaCalanderView(QWidget* parent)
    : QAbstractItemView(parent)
{
    // Before any child exists: an interface is made once per object, on the
    // first question, and kept.
    static const bool accessible = (QAccessible::installFactory(&calendarAccessibleFactory), true);
    Q_UNUSED(accessible)

    auto* layout = new QVBoxLayout(this);

    m_todayText = ComponentStrings::getInstance()->getString(QStringLiteral("today"));
    auto* todayButton = new OrvaButton(m_todayText, 1);
    todayButton->setFixedHeight(scaled(24));

    m_calendar = new QCalendarWidget(this);
    m_calendar->setFirstDayOfWeek(Qt::Sunday);
    todayButton->setObjectName(QLatin1String(todayButtonName));

    layout->addWidget(m_calendar);
    layout->addWidget(todayButton, 0, Qt::AlignHCenter);

    setSelectionMode(QAbstractItemView::NoSelection);
    m_calendar->setHorizontalHeaderFormat(QCalendarWidget::NoHorizontalHeader);
    m_calendar->setVerticalHeaderFormat(QCalendarWidget::NoVerticalHeader);

    // Weekends drawn like working days: without a colour of their own they
    // take the day grid's text colour, which the theme decides.
    QTextCharFormat weekend = m_calendar->weekdayTextFormat(Qt::Saturday);
    weekend.clearForeground();
    m_calendar->setWeekdayTextFormat(Qt::Saturday, weekend);
    m_calendar->setWeekdayTextFormat(Qt::Sunday, weekend);

    setAccessibleName(ComponentStrings::getInstance()->getString(
        QStringLiteral("accessible_calendar"), QStringLiteral("Calendar")));

    handleNavigationBar();
    handleWeekdayHeader();
    handleTabOrder();

    if (QTableView* dayGrid = dayGridOf(this))
        dayGrid->installEventFilter(this);

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
            ComponentStrings::getInstance()->getString(QStringLiteral("accessible_calendar_prev_month"),
                                                       QStringLiteral("Previous month")));
    }
    if (nextMonth) {
        nextMonth->setAccessibleName(
            ComponentStrings::getInstance()->getString(QStringLiteral("accessible_calendar_next_month"),
                                                       QStringLiteral("Next month")));
    }
    showMonthArrows();

    if (yearEdit) {
        yearEdit->setAttribute(Qt::WA_MacShowFocusRect, false);
        yearEdit->setAccessibleName(
            ComponentStrings::getInstance()->getString(QStringLiteral("accessible_calendar_year"),
                                                       QStringLiteral("Year")));
    }

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
        menu->setAccessibleName(ComponentStrings::getInstance()->getString(
            QStringLiteral("accessible_calendar_month"), QStringLiteral("Month")));
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
    m_dayNames.clear();
    for (int i = 0; i < 7; ++i) {
        const QString name = ComponentStrings::getInstance()->getString(QLatin1String(dayKeys[i]));
        m_dayNames << name;
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
    // Qt's own chain is kept: the calendar hands its focus to the day grid
    // and comes first, then the navigation buttons, the year editor while it
    // is open, and the today button; Tab goes on out of the view like out of
    // any QCalendarWidget. Inside a combo box's popup, a window of its own,
    // the same chain wraps round and the focus stays in the popup. The view
    // itself is no stop: it hands its focus to the day grid, so a combo box
    // that focuses its view as the popup opens starts on the grid.
    QTableView* dayGrid = dayGridOf(this);
    if (!dayGrid)
        return;
    setFocusPolicy(Qt::NoFocus);
    setFocusProxy(dayGrid);
}

void OrvaCalanderView::showMonthArrows()
{
    // Mirrored as the calendar mirrors its own arrows: under a right-to-left
    // layout the previous month sits on the right and points right.
    const bool mirrored = isRightToLeft();
    showImage(m_calendar->findChild<QToolButton*>(QLatin1String(prevMonthName)),
              mirrored ? "bt_pagebar_nextend" : "bt_pagebar_backend");
    showImage(m_calendar->findChild<QToolButton*>(QLatin1String(nextMonthName)),
              mirrored ? "bt_pagebar_backend" : "bt_pagebar_nextend");
}

void OrvaCalanderView::changeEvent(QEvent* event)
{
    QAbstractItemView::changeEvent(event);
    // The calendar has just put its own arrows back (its children hear of
    // the change before the view does).
    if (event->type() == QEvent::LayoutDirectionChange)
        showMonthArrows();
}

bool OrvaCalanderView::eventFilter(QObject* watched, QEvent* event)
{
    if (event->type() != QEvent::FocusIn)
        return false;
    auto* focusEvent = static_cast<QFocusEvent*>(event);
    auto* dayGrid = qobject_cast<QTableView*>(watched);
    if (!dayGrid || (focusEvent->reason() != Qt::TabFocusReason && focusEvent->reason() != Qt::BacktabFocusReason))
        return false;
    const QModelIndex current = dayGrid->currentIndex();
    if (current.isValid()) {
        // The grid only paints its focus cell when the current index
        // changes; bouncing it shows where the keyboard is.
        dayGrid->setCurrentIndex(QModelIndex());
        dayGrid->setCurrentIndex(current);
    }
    return false;
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
    // The day grid is named by the month it shows.
    if (QTableView* dayGrid = dayGridOf(this)) {
        QAccessibleEvent event(dayGrid, QAccessible::NameChanged);
        QAccessible::updateAccessibility(&event);
    }
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
