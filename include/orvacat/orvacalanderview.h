#ifndef ORVACAT_ORVACALANDERVIEW_H
#define ORVACAT_ORVACALANDERVIEW_H

#include <orvacat/orvacat_export.h>

#include <QAbstractItemView>
#include <QDate>
#include <QList>
#include <QPointer>
#include <QStringList>

class QAction;
class QCalendarWidget;
class QTableWidget;

/**
 * A month calendar for picking one date, sent out by sigDateSelect(): a
 * single click on a day, a double click or Enter on it (both, so a double
 * click emits more than once), and the today button.
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
    explicit OrvaCalanderView(QWidget* parent = nullptr);
    ~OrvaCalanderView() override;

    void setCurrentPage(int year, int month);
    void setMinimumDate(const QDate& date);
    void setMaximumDate(const QDate& date);

    /** Tab and Backtab in the year button, year editor, day grid and today button walk the view's own chain. */
    bool eventFilter(QObject* watched, QEvent* event) override;

    QRect visualRect(const QModelIndex& index) const override;
    void scrollTo(const QModelIndex& index, ScrollHint hint = EnsureVisible) override;
    QModelIndex indexAt(const QPoint& point) const override;

public Q_SLOTS:
    /** Selects today and emits it, even outside the minimum and maximum dates. */
    void selectToday();
    void pageChanged(int year, int month);
    /** Shows the full name of the month that @p action carries (1..12) on the month button. */
    void slotMonthTriggered(QAction* action);

Q_SIGNALS:
    void sigDateSelect(const QDate& date);

protected:
    void handleNavigationBar();
    void handleMonthMenu();
    void handleWeekdayHeader();
    void handleTabOrder();

    QModelIndex moveCursor(CursorAction cursorAction, Qt::KeyboardModifiers modifiers) override;
    int horizontalOffset() const override;
    int verticalOffset() const override;
    bool isIndexHidden(const QModelIndex& index) const override;
    void setSelection(const QRect& rect, QItemSelectionModel::SelectionFlags command) override;
    QRegion visualRegionForSelection(const QItemSelection& selection) const override;
    /** Tab and Backtab walk view, previous month, next month, month, year, year editor, day grid, today. */
    bool focusNextPrevChild(bool next) override;

private:
    void showMonthName(int month);

    QCalendarWidget* m_calendar = nullptr;
    QTableWidget* m_weekdayHeader = nullptr;
    QStringList m_monthNames;
    QList<QPointer<QWidget>> m_tabCycle;
};

#endif // ORVACAT_ORVACALANDERVIEW_H
