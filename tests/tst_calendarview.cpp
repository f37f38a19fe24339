// The calendar view and the date selector built on it, driven as a user picks a date.
// German captions over a French locale: no name Qt's calendar writes itself can pass for the toolkit's.

#include "testenvironment.h"
#include "testmain.h"

#include <orvacat/orvacat.h>

#include <QCalendarWidget>
#include <QMenu>
#include <QTableView>
#include <QTableWidget>
#include <QToolButton>

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
    QTest::keyClick(QApplication::focusWidget(), key);
    QWidget* focus = QApplication::focusWidget();
    return qobject_cast<OrvaCalanderView*>(focus) ? QStringLiteral("view") : focus->objectName().remove("qt_calendar_");
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

        // Tabbing into the grid lands on the selected day and picks nothing, nor does an arrow; Enter picks.
        calendar->setSelectedDate(QDate(2024, 2, 9));
        part(view, "qt_calendar_yearbutton")->setFocus();
        QCOMPARE(pressOnFocus(Qt::Key_Tab), QStringLiteral("calendarview"));
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

    void tabWalksTheCycle()
    {
        // The year editor is hidden until the year button is clicked, so Tab passes it by.
        const QStringList cycle{"prevmonth",    "nextmonth",    "monthbutton", "yearbutton",
                                "calendarview", "today_button", "view"};
        view->setFocus();
        for (int i = 0; i < 2 * cycle.size(); ++i)
            QCOMPARE(pressOnFocus(Qt::Key_Tab), cycle.at(i % cycle.size()));
        for (int i = 2 * cycle.size() - 2; i >= 0; --i)
            QCOMPARE(pressOnFocus(Qt::Key_Backtab), cycle.at(i % cycle.size()));

        // From the open year editor Tab goes on to the grid and closes the editor.
        auto* yearEdit = part<QWidget>(view, "qt_calendar_yearedit");
        click(part(view, "qt_calendar_yearbutton"));
        QTRY_VERIFY(yearEdit->isVisible() && yearEdit->hasFocus());
        QCOMPARE(pressOnFocus(Qt::Key_Tab), QStringLiteral("calendarview"));
        QTRY_VERIFY(!yearEdit->isVisible());
        QCOMPARE(pressOnFocus(Qt::Key_Backtab), QStringLiteral("yearbutton"));
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
        click(gridOf(popup)->viewport(), dayCentre(gridOf(popup), 20));
        QTRY_VERIFY(!popup->isVisible());
        QCOMPARE(shown(), QStringLiteral("1 items: 2024-02-20 2024-02-20, page 2024-2"));

        // Clearing goes back to the placeholder and today's page.
        selector->clearDate();
        QCOMPARE(shown(), placeholderOnToday);
    }

private:
    OrvaCalanderView* view = nullptr; // shown and active for each test
    QCalendarWidget* calendar = nullptr;
};

ORVACAT_TEST_MAIN(TestCalendarView)
#include "tst_calendarview.moc"
