// The calendar view and the date selector built on it, driven as a user picks a date.
//
// The suite runs with the German captions over a French locale, so a name
// that Qt's calendar would write itself (French, lower case) can never pass
// for the toolkit's own (German).

#include "testenvironment.h"
#include "testmain.h"

#include <orvacat/orvacat.h>

#include <QCalendarWidget>
#include <QListView>
#include <QMenu>
#include <QSpinBox>
#include <QTableView>
#include <QTableWidget>
#include <QTextCharFormat>
#include <QToolButton>

#include <memory>

namespace {

const QStringList germanMonths{"Januar", "Februar", "März",      "April",   "Mai",      "Juni",
                               "Juli",   "August",  "September", "Oktober", "November", "Dezember"};

QCalendarWidget* calendarOf(QWidget* view) { return view->findChild<QCalendarWidget*>(); }

template <typename T = QToolButton>
T* part(QWidget* view, const char* name)
{
    return view->findChild<T*>(QLatin1String(name));
}

QTableView* gridOf(QWidget* view) { return part<QTableView>(view, "qt_calendar_calendarview"); }

/**
 * The grid cell of @p day in the shown month. Neighbouring months share the
 * grid: their small numbers sit at the bottom, their large ones at the top.
 */
QModelIndex dayCell(QTableView* grid, int day)
{
    QModelIndex found;
    for (int row = 0; row < grid->model()->rowCount(); ++row) {
        for (int column = 0; column < grid->model()->columnCount(); ++column) {
            const QModelIndex index = grid->model()->index(row, column);
            if (index.data().toString() == QString::number(day) && (day > 14 || !found.isValid()))
                found = index;
        }
    }
    return found;
}

void clickDay(QTableView* grid, int day)
{
    QVERIFY(dayCell(grid, day).isValid());
    QTest::mouseClick(grid->viewport(), Qt::LeftButton, Qt::NoModifier, grid->visualRect(dayCell(grid, day)).center());
}

void click(QWidget* button)
{
    QVERIFY(button && button->isVisible());
    QTest::mouseClick(button, Qt::LeftButton, Qt::NoModifier, button->rect().center());
}

std::unique_ptr<OrvaCalanderView> shownView(bool active = false)
{
    std::unique_ptr<OrvaCalanderView> view(new OrvaCalanderView);
    view->resize(TestEnvironment::scaled(280), TestEnvironment::scaled(260));
    view->show();
    if (!(active ? QTest::qWaitForWindowActive(view.get()) : QTest::qWaitForWindowExposed(view.get())))
        qWarning("The calendar did not show");
    return view;
}

QString focusName()
{
    QWidget* focus = QApplication::focusWidget();
    if (qobject_cast<OrvaCalanderView*>(focus))
        return QStringLiteral("view");
    return focus ? focus->objectName() : QStringLiteral("(none)");
}

void pressOnFocus(Qt::Key key)
{
    QVERIFY(QApplication::focusWidget());
    QTest::keyClick(QApplication::focusWidget(), key);
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
    void clicksEmitTheDay();
    void enterEmitsTheSelectedDay();
    void todayButtonSelectsAndEmitsToday();
    void tabWalksTheCycle_data();
    void tabWalksTheCycle();
    void tabLeavesTheYearEditorForTheGrid();

    void selectorHoldsOneItem();
    void popupPicksADayAndCloses();
    void clearDateGoesBackToThePlaceholder();
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
    QVERIFY(today);
    QCOMPARE(today->text(), QStringLiteral("Heute"));
    QCOMPARE(today->height(), TestEnvironment::scaled(24));

    // One letter a day, Sunday first, between the navigation bar and the grid,
    // and the grid agrees: 1 February 2024, a Thursday, is in the fifth column.
    auto* header = part<QTableWidget>(view.get(), "qt_calendar_weekdayview");
    QVERIFY(header && header->isVisible() && header->rowCount() == 1);
    QString letters;
    for (int i = 0; i < header->columnCount(); ++i)
        letters += header->item(0, i)->text();
    QCOMPARE(letters, QStringLiteral("SMDMDFS"));
    auto top = [](QWidget* w) { return w->mapTo(w->window(), QPoint()).y(); };
    QWidget* navigation = part<QWidget>(view.get(), "qt_calendar_navigationbar");
    QTableView* grid = gridOf(view.get());
    QVERIFY(top(navigation) + navigation->height() <= top(header));
    QVERIFY(top(header) + header->height() <= top(grid));
    view->setCurrentPage(2024, 2);
    QCOMPARE(dayCell(grid, 1).column(), 4);
    QCOMPARE(dayCell(grid, 4).column(), 0);

    // Weekends are not painted apart.
    QCOMPARE(calendarOf(view.get())->weekdayTextFormat(Qt::Saturday).foreground().color(), QColor(Qt::black));
    QCOMPARE(calendarOf(view.get())->weekdayTextFormat(Qt::Sunday).foreground().color(), QColor(Qt::black));

    // The month arrows show the theme's pictures at their logical size.
    QToolButton* prev = part(view.get(), "qt_calendar_prevmonth");
    const QPixmap picture = getGlobalImage("bt_pagebar_backend", ImageManager::Normal);
    QVERIFY(!picture.isNull());
    const double ratio = DPIinfo::getInstance()->getDPR();
    QCOMPARE(prev->iconSize(), QSize(qRound(picture.width() / ratio), qRound(picture.height() / ratio)));
    QImage shown = prev->icon().pixmap(picture.size()).toImage();
    QImage expected = picture.toImage();
    shown.setDevicePixelRatio(1);
    expected.setDevicePixelRatio(1);
    QCOMPARE(shown, expected);
}

void TestCalendarView::monthNamesFollowThePage()
{
    auto view = shownView();
    QCalendarWidget* calendar = calendarOf(view.get());
    QToolButton* month = part(view.get(), "qt_calendar_monthbutton");
    QToolButton* year = part(view.get(), "qt_calendar_yearbutton");
    QVERIFY(month && month->menu() && year);

    // The button names the month in full, the menu abbreviates.
    QCOMPARE(month->text(), germanMonths.at(QDate::currentDate().month() - 1));
    QStringList menu;
    for (QAction* action : month->menu()->actions())
        menu << QString::number(action->data().toInt()) + ' ' + action->text();
    QCOMPARE(menu.join(','), QStringLiteral("1 Jan,2 Feb,3 Mär,4 Apr,5 Mai,6 Jun,7 Jul,8 Aug,9 Sep,10 Okt,11 Nov,12 Dez"));

    // Paged by the arrows, by the keyboard and across the year.
    view->setCurrentPage(2024, 2);
    QCOMPARE(month->text(), QStringLiteral("Februar"));
    click(part(view.get(), "qt_calendar_nextmonth"));
    QCOMPARE(month->text(), QStringLiteral("März"));
    click(part(view.get(), "qt_calendar_prevmonth"));
    click(part(view.get(), "qt_calendar_prevmonth"));
    QCOMPARE(month->text(), QStringLiteral("Januar"));
    calendar->setSelectedDate(QDate(2024, 1, 15));
    QTest::keyClick(gridOf(view.get()), Qt::Key_PageUp);
    QCOMPARE(calendar->selectedDate(), QDate(2023, 12, 15));
    QCOMPARE(month->text(), QStringLiteral("Dezember"));
    QCOMPARE(year->text(), QStringLiteral("2023"));
    click(part(view.get(), "qt_calendar_nextmonth"));
    QCOMPARE(month->text(), QStringLiteral("Januar"));
    QCOMPARE(year->text(), QStringLiteral("2024"));

    // A month picked from the menu turns the page, and the name follows.
    month->menu()->actions().at(4)->trigger();
    QCOMPARE(calendar->monthShown(), 5);
    QCOMPARE(month->text(), QStringLiteral("Mai"));

    // The slot offered for a host's own month menu; what names no month changes nothing.
    QAction august(nullptr), nonsense(nullptr);
    august.setData(8);
    nonsense.setData(13);
    view->slotMonthTriggered(&august);
    QCOMPARE(month->text(), QStringLiteral("August"));
    view->slotMonthTriggered(&nonsense);
    view->slotMonthTriggered(nullptr);
    QCOMPARE(month->text(), QStringLiteral("August"));
}

void TestCalendarView::clicksEmitTheDay()
{
    auto view = shownView();
    view->setCurrentPage(2024, 2);
    QSignalSpy selected(view.get(), &OrvaCalanderView::sigDateSelect);
    QVERIFY(selected.isValid());
    QTableView* grid = gridOf(view.get());

    clickDay(grid, 9);
    QCOMPARE(selected.count(), 1);
    QCOMPARE(selected.at(0).at(0).toDate(), QDate(2024, 2, 9));
    QCOMPARE(calendarOf(view.get())->selectedDate(), QDate(2024, 2, 9));
    clickDay(grid, 28);
    QCOMPARE(selected.count(), 2);
    QCOMPARE(selected.at(1).at(0).toDate(), QDate(2024, 2, 28));

    // A double click through the window, as the platform delivers it, picks
    // the day more than once: as clicked and as activated.
    selected.clear();
    const QPoint inWindow = grid->viewport()->mapTo(view.get(), grid->visualRect(dayCell(grid, 14)).center());
    QTest::mouseDClick(view->windowHandle(), Qt::LeftButton, Qt::NoModifier, inWindow);
    QVERIFY2(selected.count() >= 2, qPrintable(QString::number(selected.count())));
    for (const QList<QVariant>& emission : qAsConst(selected))
        QCOMPARE(emission.at(0).toDate(), QDate(2024, 2, 14));
}

void TestCalendarView::enterEmitsTheSelectedDay()
{
    auto view = shownView(true);
    calendarOf(view.get())->setSelectedDate(QDate(2024, 2, 9));
    QSignalSpy selected(view.get(), &OrvaCalanderView::sigDateSelect);

    // Tabbing into the grid lands on the selected day and picks nothing.
    part(view.get(), "qt_calendar_yearbutton")->setFocus();
    QTRY_COMPARE(focusName(), QStringLiteral("qt_calendar_yearbutton"));
    pressOnFocus(Qt::Key_Tab);
    QTableView* grid = gridOf(view.get());
    QVERIFY(grid->hasFocus());
    QCOMPARE(grid->currentIndex(), dayCell(grid, 9));
    QCOMPARE(selected.count(), 0);

    QTest::keyClick(grid, Qt::Key_Return);
    QCOMPARE(selected.count(), 1);
    QCOMPARE(selected.at(0).at(0).toDate(), QDate(2024, 2, 9));
    QTest::keyClick(grid, Qt::Key_Right);
    QTest::keyClick(grid, Qt::Key_Down);
    QCOMPARE(selected.count(), 1); // moving alone picks nothing
    QTest::keyClick(grid, Qt::Key_Enter, Qt::KeypadModifier);
    QCOMPARE(selected.count(), 2);
    QCOMPARE(selected.at(1).at(0).toDate(), QDate(2024, 2, 17));
}

void TestCalendarView::todayButtonSelectsAndEmitsToday()
{
    auto view = shownView();
    QCalendarWidget* calendar = calendarOf(view.get());
    view->setCurrentPage(2001, 5);
    QSignalSpy selected(view.get(), &OrvaCalanderView::sigDateSelect);
    auto* today = part<OrvaButton>(view.get(), "qt_calendar_today_button");
    click(today);
    QCOMPARE(selected.count(), 1);
    QCOMPARE(selected.at(0).at(0).toDate(), QDate::currentDate());
    QCOMPARE(calendar->selectedDate(), QDate::currentDate());
    QCOMPARE(calendar->monthShown(), QDate::currentDate().month());

    // Outside the range today is still emitted; the calendar keeps to its range.
    const QDate limit = QDate::currentDate().addDays(-40);
    view->setMinimumDate(limit.addYears(-1));
    view->setMaximumDate(limit);
    click(today);
    QCOMPARE(selected.count(), 2);
    QCOMPARE(selected.at(1).at(0).toDate(), QDate::currentDate());
    QCOMPARE(calendar->selectedDate(), limit);
}

void TestCalendarView::tabWalksTheCycle_data()
{
    QTest::addColumn<int>("key");
    QTest::addColumn<QStringList>("cycle");

    // The year editor is hidden until the year button is clicked, so Tab passes it by.
    const QStringList forward{"qt_calendar_prevmonth",    "qt_calendar_nextmonth",    "qt_calendar_monthbutton",
                              "qt_calendar_yearbutton",   "qt_calendar_calendarview", "qt_calendar_today_button",
                              "view"};
    QStringList backward(forward.rbegin() + 1, forward.rend());
    backward << QStringLiteral("view");
    QTest::newRow("tab") << int(Qt::Key_Tab) << forward;
    QTest::newRow("backtab") << int(Qt::Key_Backtab) << backward;
}

void TestCalendarView::tabWalksTheCycle()
{
    QFETCH(int, key);
    QFETCH(QStringList, cycle);

    auto view = shownView(true);
    view->setFocus();
    QTRY_COMPARE(focusName(), QStringLiteral("view"));
    for (int round = 0; round < 2; ++round) {
        for (const QString& expected : cycle) {
            pressOnFocus(Qt::Key(key));
            QCOMPARE(focusName(), expected);
        }
    }
}

void TestCalendarView::tabLeavesTheYearEditorForTheGrid()
{
    auto view = shownView(true);
    QToolButton* yearButton = part(view.get(), "qt_calendar_yearbutton");
    auto* yearEdit = part<QSpinBox>(view.get(), "qt_calendar_yearedit");
    QVERIFY(yearButton && yearEdit && !yearEdit->isVisible());

    click(yearButton);
    QTRY_VERIFY(yearEdit->isVisible() && yearEdit->hasFocus());
    pressOnFocus(Qt::Key_Tab);
    QCOMPARE(focusName(), QStringLiteral("qt_calendar_calendarview"));
    QTRY_VERIFY(!yearEdit->isVisible()); // leaving the editor ends the year editing
    pressOnFocus(Qt::Key_Tab);
    QCOMPARE(focusName(), QStringLiteral("qt_calendar_today_button"));
    pressOnFocus(Qt::Key_Backtab);
    pressOnFocus(Qt::Key_Backtab);
    QCOMPARE(focusName(), QStringLiteral("qt_calendar_yearbutton"));
}

void TestCalendarView::selectorHoldsOneItem()
{
    OrvaDateSelector selector(QStringLiteral("Pick a date"));
    QCOMPARE(selector.count(), 1);
    QCOMPARE(selector.currentText(), QStringLiteral("Pick a date"));
    QVERIFY(selector.itemData(0).toDate().isNull());
    OrvaCalanderView* view = selector.getCalendarView();
    QCOMPARE(static_cast<QAbstractItemView*>(view), selector.view());

    // A picked date turns the calendar's page; whatever comes, one item stays.
    selector.dateSelect(QDate(2024, 2, 9));
    QCOMPARE(selector.currentText(), QStringLiteral("2024-02-09"));
    QCOMPARE(calendarOf(view)->yearShown(), 2024);
    QCOMPARE(part(view, "qt_calendar_monthbutton")->text(), QStringLiteral("Februar"));
    for (const QDate& date : {QDate(1999, 12, 31), QDate(), QDate(2024, 2, 29)}) {
        selector.dateSelect(date);
        QCOMPARE(selector.count(), 1);
        QCOMPARE(selector.currentIndex(), 0);
        QCOMPARE(selector.itemData(0).toDate(), date);
    }
    QCOMPARE(selector.currentText(), QStringLiteral("2024-02-29"));

    // A replaced view deletes the calendar; the selector goes on without it.
    selector.setView(new QListView);
    QCOMPARE(selector.getCalendarView(), nullptr);
    selector.dateSelect(QDate(2024, 3, 1));
    QCOMPARE(selector.currentText(), QStringLiteral("2024-03-01"));
    selector.clearDate();
    QCOMPARE(selector.currentText(), QStringLiteral("Pick a date"));
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
    clickDay(gridOf(view), 20);
    QTRY_VERIFY(!view->isVisible());
    QCOMPARE(selector->count(), 1);
    QCOMPARE(selector->currentText(), QStringLiteral("2024-02-20"));

    // Alt+Down opens it by the keyboard; Enter on a day picks it.
    selector->setFocus();
    QTest::keyClick(selector, Qt::Key_Down, Qt::AltModifier);
    QTRY_VERIFY(view->isVisible());
    QTableView* grid = gridOf(view);
    grid->setFocus();
    QTRY_VERIFY(grid->hasFocus());
    QTest::keyClick(grid, Qt::Key_Right);
    QTest::keyClick(grid, Qt::Key_Return);
    QTRY_VERIFY(!view->isVisible());
    QCOMPARE(selector->currentText(), QStringLiteral("2024-02-21"));

    // The today button inside it picks today.
    selector->showPopup();
    QTRY_VERIFY(view->isVisible());
    click(part<OrvaButton>(view, "qt_calendar_today_button"));
    QTRY_VERIFY(!view->isVisible());
    QCOMPARE(selector->currentText(), QDate::currentDate().toString(QStringLiteral("yyyy-MM-dd")));
}

void TestCalendarView::clearDateGoesBackToThePlaceholder()
{
    OrvaDateSelector selector(QStringLiteral("Pick a date"));
    QCalendarWidget* calendar = calendarOf(selector.getCalendarView());
    calendar->setSelectedDate(QDate(2019, 11, 3));
    selector.dateSelect(QDate(2019, 11, 3));

    for (int twice = 0; twice < 2; ++twice) {
        selector.clearDate();
        QCOMPARE(selector.count(), 1);
        QCOMPARE(selector.currentText(), QStringLiteral("Pick a date"));
        QVERIFY(selector.itemData(0).toDate().isNull());
    }
    QCOMPARE(calendar->yearShown(), QDate::currentDate().year());
    QCOMPARE(calendar->monthShown(), QDate::currentDate().month());
    QCOMPARE(calendar->selectedDate(), QDate(2019, 11, 3)); // the selection is the calendar's own
}

ORVACAT_TEST_MAIN(TestCalendarView)
#include "tst_calendarview.moc"
