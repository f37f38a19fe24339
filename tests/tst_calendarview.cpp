// The calendar view and the date selector built on it, driven as a user picks a date.
// German captions over a French locale: no name Qt's calendar writes itself can pass for the toolkit's.

#include "testenvironment.h"
#include "testmain.h"
#include "warningcollector.h"

#include <orvacat/orvacat.h>

#include <QAccessible>
#include <QCalendarWidget>
#include <QLineEdit>
#include <QMenu>
#include <QMetaEnum>
#include <QTableView>
#include <QTableWidget>
#include <QToolButton>
#include <QVBoxLayout>

namespace {

template <typename T = QToolButton>
T* part(QWidget* view, const char* name) { return view->findChild<T*>(QLatin1String(name)); }
QTableView* gridOf(QWidget* view) { return part<QTableView>(view, "qt_calendar_calendarview"); }

/** Where @p day of February 2024 sits: the 1st, a Thursday, is fifth in the first row. */
QModelIndex dayCell(QTableView* grid, int day) { return grid->model()->index((day + 3) / 7, (day + 3) % 7); }
QPoint dayCentre(QTableView* grid, int day) { return grid->visualRect(dayCell(grid, day)).center(); }

void click(QWidget* w, QPoint p = {}) { QTest::mouseClick(w, Qt::LeftButton, {}, p.isNull() ? w->rect().center() : p); }

/** The dates a spy caught, in order; the spy starts afresh. */
QString dates(QSignalSpy& spy)
{
    QStringList dates;
    for (const QList<QVariant>& emission : qAsConst(spy))
        dates << emission.at(0).toDate().toString(Qt::ISODate);
    spy.clear();
    return dates.join(' ');
}

/** Presses @p key where the focus is and names where it went, without the "qt_calendar_" of Qt's names. */
QString pressOnFocus(Qt::Key key)
{
    if (!QApplication::focusWidget())
        return QStringLiteral("nothing");
    QTest::keyClick(QApplication::focusWidget(), key);
    QWidget* focus = QApplication::focusWidget();
    return focus ? focus->objectName().remove("qt_calendar_") : QStringLiteral("nothing");
}

/**
 * What a screen reader finds under @p object: role and name, the children
 * that show in brackets (a table's cells left out). A child that does not
 * name this interface as its parent is marked "(stray)".
 */
QString outline(QAccessibleInterface* iface)
{
    QString text = QMetaEnum::fromType<QAccessible::Role>().valueToKey(iface->role());
    if (!iface->text(QAccessible::Name).isEmpty())
        text += " '" + iface->text(QAccessible::Name) + "'";
    QStringList children;
    for (int i = 0; iface->role() != QAccessible::Table && i < iface->childCount(); ++i) {
        QAccessibleInterface* child = iface->child(i);
        if (!child->state().invisible)
            children << outline(child) + (child->parent() == iface ? "" : " (stray)");
    }
    return children.isEmpty() ? text : text + " [" + children.join(", ") + "]";
}
QString outline(QObject* object) { return outline(QAccessible::queryAccessibleInterface(object)); }

/** A day cell as a screen reader hears it: name, then what its state and description add. */
QString heard(QAccessibleInterface* cell)
{
    const QAccessible::State state = cell->state();
    return cell->text(QAccessible::Name) + (state.selected ? " selected" : "") + (state.focused ? " focused" : "")
           + (state.disabled ? " disabled" : "") + (cell->text(QAccessible::Description).isEmpty() ? "" : " (")
           + cell->text(QAccessible::Description) + (cell->text(QAccessible::Description).isEmpty() ? "" : ")");
}

} // namespace

class TestCalendarView : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        QLocale::setDefault(QLocale(QLocale::French, QLocale::France)); // weeks start on Monday there
        TestEnvironment::installDefaultTheme(QStringLiteral("deu"));
    }

    void init()
    {
        view = new OrvaCalanderView;
        calendar = view->findChild<QCalendarWidget*>();
        view->resize(TestEnvironment::scaled(280), TestEnvironment::scaled(260));
        view->show();
        QVERIFY(QTest::qWaitForWindowActive(view));
    }

    void cleanup()
    {
        delete view;
        QCOMPARE(TestEnvironment::visibleTopLevels(), QStringList());
    }

    void calendarIsReworked()
    {
        QToolButton* prev = part(view, "qt_calendar_prevmonth");
        auto* today = part<OrvaButton>(view, "qt_calendar_today_button");
        QCOMPARE(view->accessibleName() + ", " + prev->accessibleName() + ", "
                     + part(view, "qt_calendar_nextmonth")->accessibleName() + ", " + today->text(),
                 QStringLiteral("Kalender, Vorheriger Monat, Nächster Monat, Heute"));
        QCOMPARE(today->height(), TestEnvironment::scaled(24));

        // One letter a day, Sunday first, under the navigation bar; the grid agrees, though the locale is French.
        auto* header = part<QTableWidget>(view, "qt_calendar_weekdayview");
        QString letters;
        for (int i = 0; i < header->columnCount(); ++i)
            letters += header->item(0, i)->text();
        QCOMPARE(letters, QStringLiteral("SMDMDFS"));
        const int navigationEnd = part<QWidget>(view, "qt_calendar_navigationbar")->geometry().bottom();
        QVERIFY(header->isVisible() && navigationEnd < header->y() && header->geometry().bottom() < gridOf(view)->y());
        view->setCurrentPage(2024, 2);
        QCOMPARE(dayCell(gridOf(view), 1).data().toString(), QStringLiteral("1"));

        // The month arrows show the theme's picture at its logical size.
        const QPixmap picture = getGlobalImage("bt_pagebar_backend", ImageManager::Normal);
        QCOMPARE(prev->iconSize(), picture.size() / DPIinfo::getInstance()->getDPR());
        QVERIFY(prev->icon().pixmap(picture.size()).toImage() == picture.toImage()); // pixels, whatever the ratio

        // Right to left, as the calendar mirrors its own arrows: the previous month on the right, pointing right.
        QToolButton* next = part(view, "qt_calendar_nextmonth");
        view->setLayoutDirection(Qt::RightToLeft);
        QTRY_VERIFY(prev->x() > next->x());
        const QPixmap forward = getGlobalImage("bt_pagebar_nextend", ImageManager::Normal);
        QVERIFY(prev->icon().pixmap(forward.size()).toImage() == forward.toImage());
        QVERIFY(next->icon().pixmap(picture.size()).toImage() == picture.toImage());
    }

    void monthNamesFollowThePage()
    {
        QToolButton* month = part(view, "qt_calendar_monthbutton");
        auto shown = [&]() { return month->text() + ' ' + part(view, "qt_calendar_yearbutton")->text(); };

        // The button names the month in full, the menu abbreviates.
        const QString months = "Januar Februar März April Mai Juni Juli August September Oktober November Dezember";
        QCOMPARE(month->text(), months.split(' ').at(QDate::currentDate().month() - 1));
        QStringList menu;
        for (QAction* action : month->menu()->actions())
            menu << QString::number(action->data().toInt()) + action->text();
        QCOMPARE(menu.join(' '), QStringLiteral("1Jan 2Feb 3Mär 4Apr 5Mai 6Jun 7Jul 8Aug 9Sep 10Okt 11Nov 12Dez"));
        QCOMPARE(QAccessible::queryAccessibleInterface(month->menu())->text(QAccessible::Name), QStringLiteral("Monat"));

        // Paged by the arrows, by the keyboard and across the year.
        view->setCurrentPage(2024, 2);
        click(part(view, "qt_calendar_nextmonth"));
        QCOMPARE(shown(), QStringLiteral("März 2024"));
        calendar->setSelectedDate(QDate(2024, 1, 15));
        QTest::keyClick(gridOf(view), Qt::Key_PageUp);
        QCOMPARE(shown(), QStringLiteral("Dezember 2023"));
        click(part(view, "qt_calendar_nextmonth"));
        QCOMPARE(shown(), QStringLiteral("Januar 2024"));

        QAction august(nullptr); // as from a host's own month menu
        august.setData(8);
        view->slotMonthTriggered(&august);
        QCOMPARE(month->text(), QStringLiteral("August"));
    }

    void clicksAndEnterEmitTheDay()
    {
        view->setCurrentPage(2024, 2);
        QSignalSpy selected(view, &OrvaCalanderView::sigDateSelect);
        QVERIFY(selected.isValid());
        QTableView* grid = gridOf(view);
        click(grid->viewport(), dayCentre(grid, 28));
        QCOMPARE(dates(selected), QStringLiteral("2024-02-28"));

        // A double click through the window, as the platform delivers it, picks as clicked and as activated.
        QTest::mouseDClick(view->windowHandle(), Qt::LeftButton, Qt::NoModifier,
                           grid->viewport()->mapTo(view, dayCentre(grid, 14)));
        QVERIFY(dates(selected).startsWith(QStringLiteral("2024-02-14 2024-02-14")));

        // Tabbing back into the grid lands on the selected day and picks nothing, nor does an arrow; Enter picks.
        calendar->setSelectedDate(QDate(2024, 2, 9));
        part(view, "qt_calendar_prevmonth")->setFocus();
        QCOMPARE(pressOnFocus(Qt::Key_Backtab), QStringLiteral("calendarview"));
        QCOMPARE(grid->currentIndex(), dayCell(grid, 9));
        QTest::keyClick(grid, Qt::Key_Return);
        QTest::keyClick(grid, Qt::Key_Down);
        QTest::keyClick(grid, Qt::Key_Enter, Qt::KeypadModifier);
        QCOMPARE(dates(selected), QStringLiteral("2024-02-09 2024-02-16"));
    }

    void todayButtonSelectsAndEmitsToday()
    {
        QSignalSpy selected(view, &OrvaCalanderView::sigDateSelect);
        auto* today = part<OrvaButton>(view, "qt_calendar_today_button");
        click(today);
        QCOMPARE(calendar->selectedDate(), QDate::currentDate());

        // Outside the range today is still emitted; the calendar keeps to its range.
        const QDate limit = QDate::currentDate().addDays(-40);
        view->setMinimumDate(limit.addYears(-1));
        view->setMaximumDate(limit);
        click(today);
        QCOMPARE(calendar->selectedDate(), limit);
        const QDate soonest = QDate::currentDate().addDays(40);
        view->setMaximumDate(soonest.addYears(1));
        view->setMinimumDate(soonest);
        click(today);
        QCOMPARE(calendar->selectedDate(), soonest);
        const QString now = QDate::currentDate().toString(Qt::ISODate);
        QCOMPARE(dates(selected), now + ' ' + now + ' ' + now);
    }

    void tabWalksThroughAndOut()
    {
        // Between two fields of a window, Tab goes through the calendar and on; the year editor shows only
        // once the year button is clicked, so Tab passes it by.
        QWidget window;
        auto* layout = new QVBoxLayout(&window);
        for (const char* name : {"before", "after"}) {
            layout->addWidget(new QLineEdit(&window));
            layout->itemAt(layout->count() - 1)->widget()->setObjectName(name);
            if (layout->count() == 1)
                layout->addWidget(view);
        }
        window.show();
        QVERIFY(QTest::qWaitForWindowActive(&window));
        const QStringList stops{"calendarview", "prevmonth", "nextmonth", "monthbutton", "yearbutton", "today_button", "after"};
        window.findChild<QLineEdit*>("before")->setFocus();
        for (const QString& stop : stops)
            QCOMPARE(pressOnFocus(Qt::Key_Tab), stop);
        for (int i = stops.size() - 2; i >= 0; --i)
            QCOMPARE(pressOnFocus(Qt::Key_Backtab), stops.at(i));
        QCOMPARE(pressOnFocus(Qt::Key_Backtab), QStringLiteral("before"));

        // Focusing the view focuses the grid.
        view->setFocus();
        QCOMPARE(QApplication::focusWidget(), gridOf(view));

        // The open year editor is named, and Tab from it goes on and closes it.
        auto* yearEdit = part<QWidget>(view, "qt_calendar_yearedit");
        click(part(view, "qt_calendar_yearbutton"));
        QTRY_VERIFY(yearEdit->isVisible() && yearEdit->hasFocus());
        QCOMPARE(QAccessible::queryAccessibleInterface(yearEdit)->text(QAccessible::Name), QStringLiteral("Jahr"));
        QCOMPARE(pressOnFocus(Qt::Key_Tab), QStringLiteral("today_button"));
        QTRY_VERIFY(!yearEdit->isVisible());
        QCOMPARE(pressOnFocus(Qt::Key_Backtab), QStringLiteral("yearbutton"));
    }

    void screenReaderReadsTheMonth()
    {
        view->setCurrentPage(2024, 2);
        view->setMinimumDate(QDate(2024, 2, 3));
        calendar->setSelectedDate(QDate(2024, 2, 9));
        // The view holds the calendar and the today button; the calendar its named navigation and the day grid.
        QCOMPARE(outline(view), QStringLiteral("Grouping 'Kalender' [Grouping [Client [Button 'Vorheriger Monat', "
                                               "Button 'Nächster Monat', ButtonMenu 'Februar', Button '2024'], "
                                               "Table 'Februar 2024'], Button 'Heute']"));
        QVERIFY(!QAccessible::queryAccessibleInterface(calendar)->state().focusable); // the grid is

        // Days are named by their date, the neighbouring months' too; days before the minimum are disabled.
        QTableView* grid = gridOf(view);
        QAccessibleTableInterface* table = QAccessible::queryAccessibleInterface(grid)->tableInterface();
        QVERIFY(table);
        QCOMPARE(table->rowCount() * 10 + table->columnCount(), 67);
        QCOMPARE(heard(table->cellAt(0, 0)), QStringLiteral("Sonntag, 28 Januar 2024 disabled"));
        QCOMPARE(heard(table->cellAt(0, 4)), QStringLiteral("Donnerstag, 1 Februar 2024 disabled"));
        QCOMPARE(heard(table->cellAt(1, 5)), QStringLiteral("Freitag, 9 Februar 2024 selected focused"));
        QCOMPARE(heard(table->cellAt(5, 6)), QStringLiteral("Samstag, 9 März 2024"));
        QCOMPARE(table->columnDescription(1), QStringLiteral("Montag"));

        // The arrow keys move the day, and the focus a screen reader follows with it.
        grid->setFocus();
        QTest::keyClick(grid, Qt::Key_Right);
        QTest::keyClick(grid, Qt::Key_Down);
        QCOMPARE(calendar->selectedDate(), QDate(2024, 2, 17));
        QCOMPARE(heard(QAccessible::queryAccessibleInterface(view)->focusChild()),
                 QStringLiteral("Samstag, 17 Februar 2024 selected focused"));

        // With the focus in another window, nothing in the calendar is focused for a screen reader.
        QLineEdit elsewhere;
        elsewhere.show();
        QApplication::setActiveWindow(&elsewhere);
        elsewhere.setFocus();
        QTRY_VERIFY(elsewhere.hasFocus());
        QVERIFY(!QAccessible::queryAccessibleInterface(view)->focusChild());
        QApplication::setActiveWindow(view);
        grid->setFocus();

        // Paged to another month, the grid is renamed and the same cells name other days; today says so.
        const QDate today = QDate::currentDate();
        view->setCurrentPage(today.year(), today.month());
        const QString month = part(view, "qt_calendar_monthbutton")->text();
        QCOMPARE(QAccessible::queryAccessibleInterface(grid)->text(QAccessible::Name),
                 month + ' ' + QString::number(today.year()));
        QStringList described;
        for (int i = 0; i < table->rowCount() * table->columnCount(); ++i) {
            QAccessibleInterface* cell = QAccessible::queryAccessibleInterface(grid)->child(i);
            if (!cell->text(QAccessible::Description).isEmpty())
                described << heard(cell).section(", ", 1);
        }
        QCOMPARE(described, QStringList(QStringLiteral("%1 %2 %3 (Heute)").arg(today.day()).arg(month).arg(today.year())));

        // A host's own table, older than these names: English names rather than raw keys, and no warning.
        ComponentStrings::getInstance()->installStrings({{QStringLiteral("today"), QStringLiteral("Heute")}});
        WarningCollector warnings;
        OrvaCalanderView older;
        TestEnvironment::installDefaultTheme(QStringLiteral("deu"));
        older.show();
        QVERIFY(QTest::qWaitForWindowExposed(&older));
        QVERIFY(outline(&older).startsWith(QStringLiteral("Grouping 'Calendar' [Grouping [Client [Button 'Previous month', "
                                                          "Button 'Next month'")));
        QVERIFY(warnings.messages().filter(QStringLiteral("accessible")).isEmpty());
    }

    void selectorShowsThePickedDate()
    {
        QWidget window;
        auto* selector = new OrvaDateSelector(QStringLiteral("Pick a date"), &window);
        window.resize(TestEnvironment::scaled(300), TestEnvironment::scaled(80));
        window.show();
        QVERIFY(QTest::qWaitForWindowActive(&window));
        OrvaCalanderView* popup = selector->getCalendarView();
        QCalendarWidget* popupCalendar = popup->findChild<QCalendarWidget*>();
        auto shown = [selector, popupCalendar]() {
            const QString date = selector->itemData(0).toDate().toString(Qt::ISODate);
            return QStringLiteral("%1 items: %2 %3, page %4-%5").arg(selector->count()).arg(selector->currentText())
                .arg(date).arg(popupCalendar->yearShown()).arg(popupCalendar->monthShown());
        };
        const QString placeholderOnToday = QStringLiteral("1 items: Pick a date , page %1-%2")
                                               .arg(QDate::currentDate().year()).arg(QDate::currentDate().month());
        QCOMPARE(shown(), placeholderOnToday);
        QCOMPARE(selector->height(), TestEnvironment::scaled(32));

        // A picked date turns the popup's page; an invalid one is the placeholder.
        selector->dateSelect(QDate(2024, 2, 9));
        QCOMPARE(shown(), QStringLiteral("1 items: 2024-02-09 2024-02-09, page 2024-2"));
        selector->dateSelect(QDate());
        QCOMPARE(shown(), QStringLiteral("1 items: Pick a date , page 2024-2"));

        // A click opens the calendar at its size; an invalid date leaves it open, a day clicked closes it.
        click(selector);
        QTRY_VERIFY(popup->isVisible());
        QVERIFY(popup->window() != &window && popup->window()->width() >= TestEnvironment::scaled(280));
        QVERIFY(popup->window()->height() >= TestEnvironment::scaled(260));
        selector->dateSelect(QDate());
        QVERIFY(popup->isVisible());

        // The keyboard starts on the day grid and Tab keeps it in the popup; Escape closes it, back to the field.
        QTRY_COMPARE(QApplication::focusWidget(), gridOf(popup));
        QStringList stops;
        for (int i = 0; i < 6; ++i)
            stops << pressOnFocus(Qt::Key_Tab);
        QCOMPARE(stops.join(' '), QStringLiteral("prevmonth nextmonth monthbutton yearbutton today_button calendarview"));
        QCOMPARE(pressOnFocus(Qt::Key_Backtab), QStringLiteral("today_button"));
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Escape);
        QTRY_VERIFY(!popup->isVisible());
        QCOMPARE(QApplication::focusWidget(), selector);

        click(selector);
        QTRY_VERIFY(popup->isVisible());
        click(gridOf(popup)->viewport(), dayCentre(gridOf(popup), 20));
        QTRY_VERIFY(!popup->isVisible());
        QCOMPARE(shown(), QStringLiteral("1 items: 2024-02-20 2024-02-20, page 2024-2"));

        // Opened from the keyboard, the arrows move the day and Enter picks it.
        QTest::keyClick(selector, Qt::Key_F4);
        QTRY_COMPARE(QApplication::focusWidget(), gridOf(popup));
        QTest::keyClick(gridOf(popup), Qt::Key_Right);
        QTest::keyClick(gridOf(popup), Qt::Key_Return);
        QTRY_VERIFY(!popup->isVisible());
        QCOMPARE(shown(), QStringLiteral("1 items: 2024-02-21 2024-02-21, page 2024-2"));

        // Clearing goes back to the placeholder and today's page.
        selector->clearDate();
        QCOMPARE(shown(), placeholderOnToday);
    }

private:
    QPointer<OrvaCalanderView> view; // shown and active for each test, unless a test's window took it
    QCalendarWidget* calendar = nullptr;
};

ORVACAT_TEST_MAIN(TestCalendarView)
#include "tst_calendarview.moc"
