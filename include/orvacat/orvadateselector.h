#ifndef ORVACAT_ORVADATESELECTOR_H
#define ORVACAT_ORVADATESELECTOR_H

/**
 * @file
 * OrvaDateSelector, a date field that drops down an OrvaCalanderView. Its
 * captions and looks come from the registries, so initialize them before
 * constructing one.
 */

#include <orvacat/orvacat_export.h>

#include <QComboBox>
#include <QDate>
#include <QPointer>
#include <QString>

class OrvaCalanderView;

/**
 * A date field: a combo box whose drop-down is an OrvaCalanderView. It
 * always holds exactly one item, the placeholder (no date yet, user data a
 * null QDate) or the chosen date as "yyyy-MM-dd" with the QDate as user
 * data: read it with itemData(0).toDate().
 *
 * From the keyboard the popup (F4, Alt+Down) opens on the day grid: the
 * arrow keys move the day, Enter picks it, Tab and Backtab stay inside the
 * popup, and Escape closes it with the focus back on the field. Screen
 * readers read the field as a combo box whose text is the date or the
 * placeholder; name it through a label with QLabel::setBuddy().
 */
class ORVACAT_EXPORT OrvaDateSelector : public QComboBox
{
    Q_OBJECT

public:
    /** A field showing @p placeholder until a date is chosen, its calendar on this month. */
    explicit OrvaDateSelector(QString placeholder, QWidget* parent = nullptr);

    /** Back to the placeholder; the calendar turns to this month, its selection is kept. */
    void clearDate();
    /**
     * The popup calendar, for its minimum and maximum dates or the month it
     * shows; null if a host replaced the combo box's view.
     */
    OrvaCalanderView* getCalendarView();

public Q_SLOTS:
    /** Shows @p date and closes the popup; an invalid date shows the placeholder and leaves the popup open. */
    void dateSelect(const QDate& date);

private:
    QString m_placeholder;
    QPointer<OrvaCalanderView> m_calendarView;
};

#endif // ORVACAT_ORVADATESELECTOR_H
