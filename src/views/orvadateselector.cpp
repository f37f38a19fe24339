#include <orvacat/orvadateselector.h>

#include <orvacat/mousefilters.h>
#include <orvacat/orvacalanderview.h>
#include <orvacat/stylemanager.h>

#include "resources/dpiscaling_p.h"

#include <QIcon>

OrvaDateSelector::OrvaDateSelector(QString placeholder, QWidget* parent)
    : QComboBox(parent)
    , m_placeholder(std::move(placeholder))
{
    m_calendarView = new OrvaCalanderView(nullptr);
    setView(m_calendarView);

    // The popup container would take a mouse release on the calendar as
    // picking the combo box's item and close before a day is chosen.
    m_calendarView->installEventFilter(new MouseReleaseFilter(m_calendarView));
    m_calendarView->viewport()->installEventFilter(new MouseReleaseFilter(m_calendarView));

    insertItem(count(), QIcon(), m_placeholder, QVariant(QDate()));

    connect(m_calendarView.data(), &OrvaCalanderView::sigDateSelect, this, &OrvaDateSelector::dateSelect);

    m_calendarView->setFixedSize(scaled(280), scaled(260));
    setFixedHeight(scaled(32));

    setStyleSheet(getStyleSheet("component.date_selector", false) + getStyleSheet("component.menu", false));
}

void OrvaDateSelector::clearDate()
{
    const QDate today = QDate::currentDate();
    clear();
    insertItem(count(), QIcon(), m_placeholder, QVariant(QDate()));
    setCurrentIndex(0);
    if (m_calendarView)
        m_calendarView->setCurrentPage(today.year(), today.month());
}

OrvaCalanderView* OrvaDateSelector::getCalendarView()
{
    return m_calendarView;
}

void OrvaDateSelector::dateSelect(const QDate& date)
{
    clear();
    if (!date.isValid()) {
        insertItem(count(), QIcon(), m_placeholder, QVariant(date));
        return;
    }
    insertItem(count(), QIcon(), date.toString(QStringLiteral("yyyy-MM-dd")), QVariant(date));
    setCurrentIndex(0);
    if (m_calendarView)
        m_calendarView->setCurrentPage(date.year(), date.month());
    update();
    hidePopup();
}
