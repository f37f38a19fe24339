#ifndef ORVACAT_ORVACALANDERVIEW_H
#define ORVACAT_ORVACALANDERVIEW_H

/**
 * @file
 * OrvaCalanderView, the month calendar that OrvaDateSelector drops down. Its
 * pictures, captions and looks come from the registries, so initialize them
 * before constructing one.
 */

#include <orvacat/orvacat_export.h>

#include <QAbstractItemView>
#include <QDate>
#include <QStringList>

class QAction;
class QCalendarWidget;
class QTableWidget;

/**
 * A month calendar for picking one date, sent out by sigDateSelect(): a
 * single click on a day, a double click or Enter on it (both, so a double
 * click emits more than once), and the today button.
 *
 * Keyboard: Tab walks the day grid (arrow keys move the day, Enter picks
 * it), the month arrows, the month and year buttons and the today button,
 * then leaves the view; inside a popup window (OrvaDateSelector's) it wraps
 * round instead. The view takes no focus of its own: focusing it focuses
 * the day grid. Screen readers find the day grid as a table named by the
 * month shown ("November 2026") whose cells are named by their whole date
 * ("Wednesday, 25 November 2026"), the selected day selected and today
 * described as today; the arrows, month, year and today buttons are named,
 * the month menu and the year editor by the component strings
 * "accessible_calendar_month" and "accessible_calendar_year".
 *
 * It is an item view only so that a combo box can take it as its popup
 * view; it shows no model and every item-view operation is inert. Inside
 * is a QCalendarWidget whose navigation bar, weekday header, month menu
 * and tab chain are reworked; a child of the calendar that cannot be found
 * by its object name is left out. Captions are read once, when the view is
 * built: a language change needs a new view.
 */
class ORVACAT_EXPORT OrvaCalanderView : public QAbstractItemView
{
    Q_OBJECT

public:
    /**
     * The calendar on the current month, weeks from Sunday, with the today
     * button under it; its captions are read from the component strings now.
     */
    explicit OrvaCalanderView(QWidget* parent = nullptr);
    ~OrvaCalanderView() override;

    /** Turns the calendar to @p month (1..12) of @p year without selecting a date. */
    void setCurrentPage(int year, int month);
    /** Days before @p date cannot be picked in the grid; the today button still picks today. */
    void setMinimumDate(const QDate& date);
    /** Days after @p date cannot be picked in the grid; the today button still picks today. */
    void setMaximumDate(const QDate& date);

    /** Shows the keyboard's day as the day grid takes the focus by Tab or Backtab. */
    bool eventFilter(QObject* watched, QEvent* event) override;

    /** Inert: an empty rectangle. */
    QRect visualRect(const QModelIndex& index) const override;
    /** Inert: does nothing. */
    void scrollTo(const QModelIndex& index, ScrollHint hint = EnsureVisible) override;
    /** Inert: an invalid index. */
    QModelIndex indexAt(const QPoint& point) const override;

public Q_SLOTS:
    /** Selects today and emits it, even outside the minimum and maximum dates. */
    void selectToday();
    /** Shows the full name of @p month on the month button when the calendar turns a page. */
    void pageChanged(int year, int month);
    /** Shows the full name of the month that @p action carries (1..12) on the month button. */
    void slotMonthTriggered(QAction* action);

Q_SIGNALS:
    /** The date the user picked: a day clicked, double-clicked or entered, or today. */
    void sigDateSelect(const QDate& date);

protected:
    /**
     * Gives the month arrows their pictures and accessible names, lets every
     * navigation button take the keyboard focus and localizes the month
     * menu. The constructor calls it once.
     */
    void handleNavigationBar();
    /**
     * Reads the twelve month names, puts their first three letters on the
     * month menu and this month's full name on the month button.
     * handleNavigationBar() calls it once.
     */
    void handleMonthMenu();
    /** Puts one-letter localized weekday names, Sunday first, above the day grid. The constructor calls it once. */
    void handleWeekdayHeader();
    /** Hands the view's focus to the day grid, which Tab reaches first. The constructor calls it once. */
    void handleTabOrder();

    /** Inert: an invalid index. */
    QModelIndex moveCursor(CursorAction cursorAction, Qt::KeyboardModifiers modifiers) override;
    /** Inert: 0. */
    int horizontalOffset() const override;
    /** Inert: 0. */
    int verticalOffset() const override;
    /** Inert: every index is hidden. */
    bool isIndexHidden(const QModelIndex& index) const override;
    /** Inert: selects nothing. */
    void setSelection(const QRect& rect, QItemSelectionModel::SelectionFlags command) override;
    /** Inert: an empty region. */
    QRegion visualRegionForSelection(const QItemSelection& selection) const override;
    /** Points the month arrows the reading way again when the layout direction changes. */
    void changeEvent(QEvent* event) override;

private:
    friend class OrvaCalanderDayGridAccessible; // names the days as the view does

    ORVACAT_NO_EXPORT void showMonthName(int month);
    ORVACAT_NO_EXPORT void showMonthArrows();

    QCalendarWidget* m_calendar = nullptr;
    QTableWidget* m_weekdayHeader = nullptr;
    QStringList m_monthNames;
    QStringList m_dayNames; // in full, Sunday first
    QString m_todayText;
};

#endif // ORVACAT_ORVACALANDERVIEW_H
