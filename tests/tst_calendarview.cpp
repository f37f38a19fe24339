// The calendar view and the date selector built on it, driven as a user picks a date.
//
// German captions over a French locale: a name Qt's calendar would write
// itself (French, lower case) can never pass for the toolkit's own.

#include "testenvironment.h"
#include "testmain.h"

#include <orvacat/orvacat.h>

#include <QCalendarWidget>
#include <QMenu>
#include <QSpinBox>
#include <QTableView>
#include <QTableWidget>
#include <QTextCharFormat>
#include <QToolButton>

#include <memory>

namespace {

template <typename T = QToolButton>
T* part(QWidget* view, const char* name)
{
    return view->findChild<T*>(QLatin1String(name));
}
QCalendarWidget* calendarOf(QWidget* view) { return view->findChild<QCalendarWidget*>(); }
QTableView* gridOf(QWidget* view) { return part<QTableView>(view, "qt_calendar_calendarview"); }

/** Where @p day of the shown month sits; the neighbours' days share the grid. */
QModelIndex dayCell(QTableView* grid, int day)
{
    QModelIndex found;
    for (int row = 0; row < grid->model()->rowCount(); ++row) {
        for (int column = 0; column < grid->model()->columnCount(); ++column) {
            const QModelIndex index = grid->model()->index(row, column);
            if (index.data().toString() == QString::number(day) && (day > 14 || !found.isValid()))
                found = index; // small numbers: the first one; large ones: the last
        }
    }
    return found;
}
QPoint dayCentre(QTableView* grid, int day) { return grid->visualRect(dayCell(grid, day)).center(); }

void click(QWidget* widget, QPoint at = QPoint())
{
    QVERIFY(widget && widget->isVisible());
    QTest::mouseClick(widget, Qt::LeftButton, Qt::NoModifier, at.isNull() ? widget->rect().center() : at);
}

std::unique_ptr<OrvaCalanderView> shownView()
{
    std::unique_ptr<OrvaCalanderView> view(new OrvaCalanderView);
    view->resize(TestEnvironment::scaled(280), TestEnvironment::scaled(260));
    view->show();
    if (!QTest::qWaitForWindowActive(view.get()))
        qWarning("The calendar did not show");
    return view;
}

/** Presses @p key where the focus is and names where it went. */
QString pressOnFocus(Qt::Key key)
{
    QTest::keyClick(QApplication::focusWidget(), key);
    QWidget* focus = QApplication::focusWidget();
    return qobject_cast<OrvaCalanderView*>(focus) ? QStringLiteral("view") : focus->objectName();
}

} // namespace

class TestCalendarView : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void cleanup() { QCOMPARE(TestEnvironment::visibleTopLevels(), QStringList()); }

    void calendarIsReworked();
    void monthNamesFollowThePage();
    void clicksAndEnterEmitTheDay();
    void todayButtonSelectsAndEmitsToday();
    void tabWalksTheCycle();
    void selectorHoldsOneItem();
    void popupPicksADayAndCloses();
};

void TestCalendarView::initTestCase()
{
    QLocale::setDefault(QLocale(QLocale::French, QLocale::France)); // weeks start on Monday there
    TestEnvironment::installDefaultTheme(QStringLiteral("deu"));
}

void TestCalendarView::calendarIsReworked()
{
    auto view = shownView();
    QCOMPARE(view->accessibleName(), QStringLiteral("Kalender"));
    QCOMPARE(part(view.get(), "qt_calendar_prevmonth")->accessibleName(), QStringLiteral("Vorheriger Monat"));
    QCOMPARE(part(view.get(), "qt_calendar_nextmonth")->accessibleName(), QStringLiteral("Nächster Monat"));
    auto* today = part<OrvaButton>(view.get(), "qt_calendar_today_button");
    QCOMPARE(today->text(), QStringLiteral("Heute"));
    QCOMPARE(today->height(), TestEnvironment::scaled(24));

    // One letter a day, Sunday first, between the navigation bar and the grid;
    // and the grid agrees: 1 February 2024, a Thursday, is in the fifth column.
    auto* header = part<QTableWidget>(view.get(), "qt_calendar_weekdayview");
    QString letters;
    for (int i = 0; i < header->columnCount(); ++i)
        letters += header->item(0, i)->text();
    QCOMPARE(letters, QStringLiteral("SMDMDFS"));
    auto top = [](QWidget* w) { return w->mapTo(w->window(), QPoint()).y(); };
    QWidget* navigation = part<QWidget>(view.get(), "qt_calendar_navigationbar");
    QVERIFY(header->isVisible() && top(navigation) + navigation->height() <= top(header));
    QVERIFY(top(header) + header->height() <= top(gridOf(view.get())));
    view->setCurrentPage(2024, 2);
    QCOMPARE(dayCell(gridOf(view.get()), 1).column(), 4);
    QCOMPARE(calendarOf(view.get())->weekdayTextFormat(Qt::Saturday).foreground().color(), QColor(Qt::black));
    QCOMPARE(calendarOf(view.get())->weekdayTextFormat(Qt::Sunday).foreground().color(), QColor(Qt::black));

    // The month arrows show the theme's picture at its logical size.
    QToolButton* prev = part(view.get(), "qt_calendar_prevmonth");
    const QImage picture = getGlobalImage("bt_pagebar_backend", ImageManager::Normal).toImage();
    const double ratio = DPIinfo::getInstance()->getDPR();
    QCOMPARE(prev->iconSize(), QSize(qRound(picture.width() / ratio), qRound(picture.height() / ratio)));
    QImage shown = prev->icon().pixmap(picture.size()).toImage();
    shown.setDevicePixelRatio(picture.devicePixelRatio());
    QCOMPARE(shown, picture);
}

void TestCalendarView::monthNamesFollowThePage()
{
    auto view = shownView();
    QCalendarWidget* calendar = calendarOf(view.get());
    QToolButton* month = part(view.get(), "qt_calendar_monthbutton");
    QToolButton* year = part(view.get(), "qt_calendar_yearbutton");

    // The button names the month in full, the menu abbreviates.
    const QStringList months{"Januar", "Februar", "März",      "April",   "Mai",      "Juni",
                             "Juli",   "August",  "September", "Oktober", "November", "Dezember"};
    QCOMPARE(month->text(), months.at(QDate::currentDate().month() - 1));
    QStringList menu;
    for (QAction* action : month->menu()->actions())
        menu << QString::number(action->data().toInt()) + ' ' + action->text();
    QCOMPARE(menu.join(','), QStringLiteral("1 Jan,2 Feb,3 Mär,4 Apr,5 Mai,6 Jun,7 Jul,8 Aug,9 Sep,10 Okt,11 Nov,12 Dez"));

    // Paged by the arrows, by the keyboard and across the year.
    view->setCurrentPage(2024, 2);
    click(part(view.get(), "qt_calendar_nextmonth"));
    QCOMPARE(month->text(), QStringLiteral("März"));
    click(part(view.get(), "qt_calendar_prevmonth"));
    click(part(view.get(), "qt_calendar_prevmonth"));
    QCOMPARE(month->text(), QStringLiteral("Januar"));
    calendar->setSelectedDate(QDate(2024, 1, 15));
    QTest::keyClick(gridOf(view.get()), Qt::Key_PageUp);
    QCOMPARE(calendar->selectedDate(), QDate(2023, 12, 15));
    QCOMPARE(month->text() + ' ' + year->text(), QStringLiteral("Dezember 2023"));
    click(part(view.get(), "qt_calendar_nextmonth"));
    QCOMPARE(month->text() + ' ' + year->text(), QStringLiteral("Januar 2024"));
    month->menu()->actions().at(4)->trigger(); // as picked from the menu
    QCOMPARE(month->text() + ' ' + QString::number(calendar->monthShown()), QStringLiteral("Mai 5"));

    // The slot offered for a host's own month menu; what names no month changes nothing.
    QAction august(nullptr), nonsense(nullptr);
    august.setData(8);
    nonsense.setData(13);
    view->slotMonthTriggered(&august);
    view->slotMonthTriggered(&nonsense);
    QCOMPARE(month->text(), QStringLiteral("August"));
}

void TestCalendarView::clicksAndEnterEmitTheDay()
{
    auto view = shownView();
    view->setCurrentPage(2024, 2);
    QSignalSpy selected(view.get(), &OrvaCalanderView::sigDateSelect);
    QVERIFY(selected.isValid());
    QTableView* grid = gridOf(view.get());
    auto emitted = [&selected]() {
        QStringList dates;
        for (const QList<QVariant>& emission : qAsConst(selected))
            dates << emission.at(0).toDate().toString(Qt::ISODate);
        selected.clear();
        return dates.join(' ');
    };

    click(grid->viewport(), dayCentre(grid, 9));
    click(grid->viewport(), dayCentre(grid, 28));
    QCOMPARE(emitted(), QStringLiteral("2024-02-09 2024-02-28"));
    QCOMPARE(calendarOf(view.get())->selectedDate(), QDate(2024, 2, 28));

    // A double click through the window, as the platform delivers it, picks the
    // day as clicked and again as activated.
    QTest::mouseDClick(view->windowHandle(), Qt::LeftButton, Qt::NoModifier,
                       grid->viewport()->mapTo(view.get(), dayCentre(grid, 14)));
    QVERIFY(emitted().startsWith(QStringLiteral("2024-02-14 2024-02-14")));

    // The keyboard: tabbing into the grid lands on the selected day and picks
    // nothing, nor do the arrows; Return and Enter pick.
    calendarOf(view.get())->setSelectedDate(QDate(2024, 2, 9));
    part(view.get(), "qt_calendar_yearbutton")->setFocus();
    QCOMPARE(pressOnFocus(Qt::Key_Tab), QStringLiteral("qt_calendar_calendarview"));
    QCOMPARE(grid->currentIndex(), dayCell(grid, 9));
    QTest::keyClick(grid, Qt::Key_Return);
    QTest::keyClick(grid, Qt::Key_Right);
    QTest::keyClick(grid, Qt::Key_Down);
    QTest::keyClick(grid, Qt::Key_Enter, Qt::KeypadModifier);
    QCOMPARE(emitted(), QStringLiteral("2024-02-09 2024-02-17"));
}

void TestCalendarView::todayButtonSelectsAndEmitsToday()
{
    auto view = shownView();
    QCalendarWidget* calendar = calendarOf(view.get());
    view->setCurrentPage(2001, 5);
    QSignalSpy selected(view.get(), &OrvaCalanderView::sigDateSelect);
    auto* today = part<OrvaButton>(view.get(), "qt_calendar_today_button");
    click(today);
    QCOMPARE(calendar->selectedDate(), QDate::currentDate());
    QCOMPARE(calendar->monthShown(), QDate::currentDate().month());

    // Outside the range today is still emitted; the calendar keeps to its range.
    const QDate limit = QDate::currentDate().addDays(-40);
    view->setMinimumDate(limit.addYears(-1));
    view->setMaximumDate(limit);
    click(today);
    QCOMPARE(calendar->selectedDate(), limit);
    QCOMPARE(selected.count(), 2);
    for (const QList<QVariant>& emission : qAsConst(selected))
        QCOMPARE(emission.at(0).toDate(), QDate::currentDate());
}

void TestCalendarView::tabWalksTheCycle()
{
    auto view = shownView();
    // The year editor is hidden until the year button is clicked, so Tab passes it by.
    const QStringList cycle{"qt_calendar_prevmonth",  "qt_calendar_nextmonth",    "qt_calendar_monthbutton",
                            "qt_calendar_yearbutton", "qt_calendar_calendarview", "qt_calendar_today_button",
                            "view"};
    view->setFocus();
    for (int i = 0; i < 2 * cycle.size(); ++i)
        QCOMPARE(pressOnFocus(Qt::Key_Tab), cycle.at(i % cycle.size()));
    for (int i = 2 * cycle.size() - 2; i >= 0; --i)
        QCOMPARE(pressOnFocus(Qt::Key_Backtab), cycle.at(i % cycle.size()));

    // From the open year editor Tab goes on to the grid and closes the editor.
    auto* yearEdit = part<QSpinBox>(view.get(), "qt_calendar_yearedit");
    click(part(view.get(), "qt_calendar_yearbutton"));
    QTRY_VERIFY(yearEdit->isVisible() && yearEdit->hasFocus());
    QCOMPARE(pressOnFocus(Qt::Key_Tab), QStringLiteral("qt_calendar_calendarview"));
    QTRY_VERIFY(!yearEdit->isVisible());
    QCOMPARE(pressOnFocus(Qt::Key_Backtab), QStringLiteral("qt_calendar_yearbutton"));
}

void TestCalendarView::selectorHoldsOneItem()
{
    OrvaDateSelector selector(QStringLiteral("Pick a date"));
    OrvaCalanderView* view = selector.getCalendarView();
    QCOMPARE(static_cast<QAbstractItemView*>(view), selector.view());
    QCalendarWidget* calendar = calendarOf(view);
    calendar->setSelectedDate(QDate(2019, 11, 3));

    // The placeholder with a null date, or the date as text with the date.
    // A picked date turns the calendar's page; clearing turns it to today's.
    const QList<QDate> dates{QDate(), QDate(2024, 2, 9), QDate(), QDate(2024, 2, 29)};
    for (const QDate& date : dates) {
        selector.dateSelect(date);
        QCOMPARE(selector.count(), 1);
        QCOMPARE(selector.currentText(), date.isValid() ? date.toString("yyyy-MM-dd") : QStringLiteral("Pick a date"));
        QCOMPARE(selector.itemData(0).toDate(), date);
    }
    QCOMPARE(part(view, "qt_calendar_monthbutton")->text() + ' ' + QString::number(calendar->yearShown()),
             QStringLiteral("Februar 2024"));
    selector.clearDate();
    QCOMPARE(selector.count(), 1);
    QCOMPARE(selector.currentText(), QStringLiteral("Pick a date"));
    QVERIFY(selector.itemData(0).toDate().isNull());
    QCOMPARE(calendar->yearShown(), QDate::currentDate().year());
    QCOMPARE(calendar->monthShown(), QDate::currentDate().month());
    QCOMPARE(calendar->selectedDate(), QDate(2019, 11, 3)); // the selection is the calendar's own
}

void TestCalendarView::popupPicksADayAndCloses()
{
    QWidget window;
    auto* selector = new OrvaDateSelector(QStringLiteral("Pick a date"), &window);
    selector->move(10, 10);
    window.resize(TestEnvironment::scaled(300), TestEnvironment::scaled(80));
    window.show();
    QVERIFY(QTest::qWaitForWindowActive(&window));
    OrvaCalanderView* view = selector->getCalendarView();
    QTableView* grid = gridOf(view);
    view->setCurrentPage(2024, 2);

    // A click opens the calendar at its own size, not a list of one row.
    click(selector);
    QTRY_VERIFY(view->isVisible());
    QVERIFY(view->window() != &window);
    QVERIFY(view->window()->width() >= TestEnvironment::scaled(280));
    QVERIFY(view->window()->height() >= TestEnvironment::scaled(260));

    // An invalid date leaves it open; a day clicked in it closes it.
    selector->dateSelect(QDate());
    QVERIFY(view->isVisible());
    click(grid->viewport(), dayCentre(grid, 20));
    QTRY_VERIFY(!view->isVisible());
    QCOMPARE(selector->currentText(), QStringLiteral("2024-02-20"));

    // Alt+Down opens it from the keyboard; Enter on a day picks it.
    QTest::keyClick(selector, Qt::Key_Down, Qt::AltModifier);
    QTRY_VERIFY(view->isVisible());
    grid->setFocus();
    QTRY_VERIFY(grid->hasFocus());
    QTest::keyClick(grid, Qt::Key_Right);
    QTest::keyClick(grid, Qt::Key_Return);
    QTRY_VERIFY(!view->isVisible());
    QCOMPARE(selector->currentText(), QStringLiteral("2024-02-21"));

    // So does the today button inside it.
    selector->showPopup();
    QTRY_VERIFY(view->isVisible());
    click(part<OrvaButton>(view, "qt_calendar_today_button"));
    QTRY_VERIFY(!view->isVisible());
    QCOMPARE(selector->currentText(), QDate::currentDate().toString(QStringLiteral("yyyy-MM-dd")));
    QCOMPARE(selector->count(), 1);
}

ORVACAT_TEST_MAIN(TestCalendarView)
#include "tst_calendarview.moc"
