// The calendar view and the date selector built on it, driven as a user picks a date.

#include "testenvironment.h"
#include "testmain.h"

#include <orvacat/orvacat.h>

#include <QCalendarWidget>
#include <QHeaderView>
#include <QListView>
#include <QMenu>
#include <QSpinBox>
#include <QStandardItemModel>
#include <QTableView>
#include <QTableWidget>
#include <QTextCharFormat>
#include <QToolButton>
#include <QVBoxLayout>

#include <memory>

namespace {

QString str(const char* key)
{
    return ComponentStrings::getInstance()->getString(QLatin1String(key));
}

QCalendarWidget* calendarOf(QWidget* view)
{
    return view->findChild<QCalendarWidget*>();
}

QTableView* dayGridOf(QWidget* view)
{
    return view->findChild<QTableView*>(QStringLiteral("qt_calendar_calendarview"));
}

/**
 * The grid cell a user would click for @p day of the shown month. Days of
 * the neighbouring months share the grid: small numbers of the next month
 * sit at the bottom, large ones of the previous month at the top.
 */
QModelIndex dayCell(QTableView* grid, int day)
{
    QAbstractItemModel* model = grid->model();
    QModelIndex found;
    for (int row = 0; row < model->rowCount(); ++row) {
        for (int column = 0; column < model->columnCount(); ++column) {
            const QModelIndex index = model->index(row, column);
            if (index.data(Qt::DisplayRole).toString() != QString::number(day))
                continue;
            if (day <= 14 && !found.isValid())
                found = index; // first match: this month's
            else if (day > 14)
                found = index; // last match: this month's
        }
    }
    return found;
}

QPoint cellCentre(QTableView* grid, int day)
{
    const QModelIndex index = dayCell(grid, day);
    return index.isValid() ? grid->visualRect(index).center() : QPoint(-1, -1);
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

OrvaButton* todayButtonOf(QWidget* view)
{
    return view->findChild<OrvaButton*>(QStringLiteral("qt_calendar_today_button"));
}

QToolButton* toolButtonOf(QWidget* view, const char* name)
{
    return view->findChild<QToolButton*>(QLatin1String(name));
}

/** A shown window with a date selector in it. */
struct SelectorFixture
{
    explicit SelectorFixture(bool active = false)
        : window(new QWidget)
        , selector(new OrvaDateSelector(QStringLiteral("Pick a date"), window.get()))
    {
        selector->move(10, 10);
        window->resize(TestEnvironment::scaled(300), TestEnvironment::scaled(80));
        window->show();
        if (!(active ? QTest::qWaitForWindowActive(window.get()) : QTest::qWaitForWindowExposed(window.get())))
            qWarning("The selector did not show");
    }

    std::unique_ptr<QWidget> window;
    OrvaDateSelector* selector;
};

QString focusName()
{
    QWidget* focus = QApplication::focusWidget();
    if (!focus)
        return QStringLiteral("(none)");
    if (qobject_cast<OrvaCalanderView*>(focus))
        return QStringLiteral("view");
    return focus->objectName();
}

void pressOnFocus(Qt::Key key)
{
    QWidget* focus = QApplication::focusWidget();
    QVERIFY(focus);
    QTest::keyClick(focus, key);
}

} // namespace

class TestCalendarView : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void cleanup();

    void calendarIsReworked();
    void weekdayHeaderShowsOneLetterSundayFirst();
    void monthButtonAndMenuFollowThePage();
    void itemViewOperationsAreInert();

    void clickingADayEmitsIt();
    void doubleClickEmitsMoreThanOnce();
    void enterEmitsTheSelectedDay();
    void todayButtonSelectsAndEmitsToday();
    void tabWalksTheCycle_data();
    void tabWalksTheCycle();
    void tabLeavesTheYearEditorForTheGrid();

    void selectorHoldsOneItem();
    void invalidDateShowsThePlaceholder();
    void pickingADayInThePopupClosesIt();
    void enterInThePopupPicksTheDay();
    void clearDateGoesBackToThePlaceholder();
};

void TestCalendarView::initTestCase()
{
    TestEnvironment::installDefaultTheme();
}

void TestCalendarView::cleanup()
{
    QCOMPARE(TestEnvironment::visibleTopLevels(), QStringList());
}

void TestCalendarView::calendarIsReworked()
{
    OrvaCalanderView view;
    QCalendarWidget* calendar = calendarOf(&view);
    QVERIFY(calendar);
    QCOMPARE(calendar->firstDayOfWeek(), Qt::Sunday);
    QCOMPARE(view.accessibleName(), str("accessible_calendar"));
    // Weekends are not painted red.
    QCOMPARE(calendar->weekdayTextFormat(Qt::Saturday).foreground().color(), QColor(Qt::black));
    QCOMPARE(calendar->weekdayTextFormat(Qt::Sunday).foreground().color(), QColor(Qt::black));

    QToolButton* prev = toolButtonOf(&view, "qt_calendar_prevmonth");
    QToolButton* next = toolButtonOf(&view, "qt_calendar_nextmonth");
    QVERIFY(prev && next);
    QCOMPARE(prev->accessibleName(), str("accessible_calendar_prev_month"));
    QCOMPARE(next->accessibleName(), str("accessible_calendar_next_month"));

    // The arrows are the theme's pictures at their logical size.
    const QPixmap backend = getGlobalImage("bt_pagebar_backend", ImageManager::Normal);
    QVERIFY(!backend.isNull());
    const double ratio = DPIinfo::getInstance()->getDPR();
    QCOMPARE(prev->iconSize(), QSize(qRound(backend.width() / ratio), qRound(backend.height() / ratio)));
    QImage shown = prev->icon().pixmap(backend.size()).toImage();
    QImage expected = backend.toImage();
    shown.setDevicePixelRatio(1);
    expected.setDevicePixelRatio(1);
    QCOMPARE(shown, expected);

    OrvaButton* today = todayButtonOf(&view);
    QVERIFY(today);
    QCOMPARE(today->text(), str("today"));
    QCOMPARE(today->maximumHeight(), TestEnvironment::scaled(24));
}

void TestCalendarView::weekdayHeaderShowsOneLetterSundayFirst()
{
    auto view = shownView();
    auto* header = view->findChild<QTableWidget*>(QStringLiteral("qt_calendar_weekdayview"));
    QVERIFY(header);
    QCOMPARE(header->rowCount(), 1);
    QCOMPARE(header->columnCount(), 7);
    const char* days[] = {"sunday", "monday", "tuesday", "wednesday", "thursday", "friday", "saturday"};
    for (int i = 0; i < 7; ++i) {
        QTableWidgetItem* item = header->item(0, i);
        QVERIFY(item);
        QCOMPARE(item->text(), str(days[i]).left(1));
    }
    QCOMPARE(header->focusPolicy(), Qt::NoFocus);

    // Directly under the navigation bar, above the day grid.
    auto y = [](QWidget* w) { return w->mapTo(w->window(), QPoint()).y(); };
    QWidget* navigation = view->findChild<QWidget*>(QStringLiteral("qt_calendar_navigationbar"));
    QVERIFY(navigation && header->isVisible());
    QVERIFY(y(navigation) + navigation->height() <= y(header));
    QVERIFY(y(header) + header->height() <= y(dayGridOf(view.get())));
}

void TestCalendarView::monthButtonAndMenuFollowThePage()
{
    auto view = shownView();
    QToolButton* month = toolButtonOf(view.get(), "qt_calendar_monthbutton");
    QVERIFY(month && month->menu());
    const char* keys[] = {"month_jan", "month_feb", "month_mar", "month_apr", "month_may", "month_jun",
                          "month_jul", "month_aug", "month_sep", "month_oct", "month_nov", "month_dec"};
    // The button shows the full name of this month, the menu the abbreviations.
    QCOMPARE(month->text(), str(keys[QDate::currentDate().month() - 1]));
    const QList<QAction*> actions = month->menu()->actions();
    QCOMPARE(actions.size(), 12);
    QAction* december = nullptr;
    for (QAction* action : actions) {
        const int m = action->data().toInt();
        QVERIFY(m >= 1 && m <= 12);
        QCOMPARE(action->text(), str(keys[m - 1]).left(3));
        if (m == 12)
            december = action;
    }

    view->setCurrentPage(2024, 2);
    QCOMPARE(month->text(), str("month_feb"));
    QToolButton* next = toolButtonOf(view.get(), "qt_calendar_nextmonth");
    QTest::mouseClick(next, Qt::LeftButton, Qt::NoModifier, next->rect().center());
    QCOMPARE(calendarOf(view.get())->monthShown(), 3);
    QCOMPARE(month->text(), str("month_mar"));

    // Picking a month from the menu turns the page and the name follows.
    december->trigger();
    QCOMPARE(calendarOf(view.get())->monthShown(), 12);
    QCOMPARE(month->text(), str("month_dec"));

    // The slot offered for month menus ignores what names no month.
    QAction nonsense(nullptr);
    nonsense.setData(13);
    view->slotMonthTriggered(&nonsense);
    view->slotMonthTriggered(nullptr);
    QCOMPARE(month->text(), str("month_dec"));
}

void TestCalendarView::itemViewOperationsAreInert()
{
    OrvaCalanderView view;
    QStandardItemModel model(3, 1);
    view.setModel(&model);
    const QModelIndex index = model.index(1, 0);
    QVERIFY(view.visualRect(index).isNull());
    QCOMPARE(view.indexAt(QPoint(10, 10)), QModelIndex());
    view.scrollTo(index);
    view.setCurrentIndex(index);
    view.keyboardSearch(QStringLiteral("x"));
    view.setModel(nullptr);
}

void TestCalendarView::clickingADayEmitsIt()
{
    auto view = shownView();
    view->setCurrentPage(2024, 2);
    QSignalSpy selected(view.get(), &OrvaCalanderView::sigDateSelect);
    QVERIFY(selected.isValid());

    QTableView* grid = dayGridOf(view.get());
    QVERIFY(grid);
    const QPoint nine = cellCentre(grid, 9);
    QVERIFY(grid->viewport()->rect().contains(nine));
    QTest::mouseClick(grid->viewport(), Qt::LeftButton, Qt::NoModifier, nine);
    QCOMPARE(selected.count(), 1);
    QCOMPARE(selected.at(0).at(0).toDate(), QDate(2024, 2, 9));
    QCOMPARE(calendarOf(view.get())->selectedDate(), QDate(2024, 2, 9));

    // A late day of the month, past the next month's leading days.
    QTest::mouseClick(grid->viewport(), Qt::LeftButton, Qt::NoModifier, cellCentre(grid, 28));
    QCOMPARE(selected.count(), 2);
    QCOMPARE(selected.at(1).at(0).toDate(), QDate(2024, 2, 28));
}

void TestCalendarView::doubleClickEmitsMoreThanOnce()
{
    auto view = shownView();
    view->setCurrentPage(2024, 2);
    QSignalSpy selected(view.get(), &OrvaCalanderView::sigDateSelect);
    QSignalSpy activated(calendarOf(view.get()), &QCalendarWidget::activated);

    // Through the window, as the platform delivers it: press, release, press
    // (which Qt turns into a double click), release.
    QTableView* grid = dayGridOf(view.get());
    const QPoint inWindow = grid->viewport()->mapTo(view.get(), cellCentre(grid, 14));
    QTest::mouseDClick(view->windowHandle(), Qt::LeftButton, Qt::NoModifier, inWindow);
    QCOMPARE(activated.count(), 1);
    QVERIFY2(selected.count() >= 2, qPrintable(QString::number(selected.count())));
    for (const QList<QVariant>& emission : qAsConst(selected))
        QCOMPARE(emission.at(0).toDate(), QDate(2024, 2, 14));
}

void TestCalendarView::enterEmitsTheSelectedDay()
{
    auto view = shownView(true);
    QCalendarWidget* calendar = calendarOf(view.get());
    calendar->setSelectedDate(QDate(2024, 2, 9));
    QSignalSpy selected(view.get(), &OrvaCalanderView::sigDateSelect);

    // Tabbing into the grid keeps the selection and picks nothing.
    toolButtonOf(view.get(), "qt_calendar_yearbutton")->setFocus();
    QTRY_COMPARE(focusName(), QStringLiteral("qt_calendar_yearbutton"));
    pressOnFocus(Qt::Key_Tab);
    QTableView* grid = dayGridOf(view.get());
    QVERIFY(grid->hasFocus());
    QCOMPARE(grid->currentIndex(), dayCell(grid, 9));
    QCOMPARE(selected.count(), 0);

    QTest::keyClick(grid, Qt::Key_Return);
    QCOMPARE(selected.count(), 1);
    QCOMPARE(selected.at(0).at(0).toDate(), QDate(2024, 2, 9));

    // Walk with the arrows, then Enter.
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
    OrvaButton* today = todayButtonOf(view.get());
    QVERIFY(today && today->isVisible());
    QTest::mouseClick(today, Qt::LeftButton, Qt::NoModifier, today->rect().center());
    QCOMPARE(selected.count(), 1);
    QCOMPARE(selected.at(0).at(0).toDate(), QDate::currentDate());
    QCOMPARE(calendar->selectedDate(), QDate::currentDate());
    QCOMPARE(calendar->monthShown(), QDate::currentDate().month());

    // Outside the range, today is still emitted; the calendar keeps to its range.
    const QDate limit = QDate::currentDate().addDays(-40);
    view->setMinimumDate(limit.addYears(-1));
    view->setMaximumDate(limit);
    QTest::mouseClick(today, Qt::LeftButton, Qt::NoModifier, today->rect().center());
    QCOMPARE(selected.count(), 2);
    QCOMPARE(selected.at(1).at(0).toDate(), QDate::currentDate());
    QCOMPARE(calendar->selectedDate(), limit);
}

void TestCalendarView::tabWalksTheCycle_data()
{
    QTest::addColumn<int>("key");
    QTest::addColumn<QStringList>("cycle");

    // The year editor is hidden until the year button is clicked, so Tab passes it by.
    const QStringList forward{QStringLiteral("qt_calendar_prevmonth"),   QStringLiteral("qt_calendar_nextmonth"),
                              QStringLiteral("qt_calendar_monthbutton"), QStringLiteral("qt_calendar_yearbutton"),
                              QStringLiteral("qt_calendar_calendarview"), QStringLiteral("qt_calendar_today_button"),
                              QStringLiteral("view")};
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
    QToolButton* yearButton = toolButtonOf(view.get(), "qt_calendar_yearbutton");
    auto* yearEdit = view->findChild<QSpinBox*>(QStringLiteral("qt_calendar_yearedit"));
    QVERIFY(yearButton && yearEdit);
    QVERIFY(!yearEdit->isVisible());

    QTest::mouseClick(yearButton, Qt::LeftButton, Qt::NoModifier, yearButton->rect().center());
    QTRY_VERIFY(yearEdit->isVisible());
    QTRY_VERIFY(yearEdit->hasFocus());

    pressOnFocus(Qt::Key_Tab);
    QCOMPARE(focusName(), QStringLiteral("qt_calendar_calendarview"));
    // Leaving the editor ends the year editing: the button is back.
    QTRY_VERIFY(!yearEdit->isVisible());
    QVERIFY(yearButton->isVisible());
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
    QVERIFY(view);
    QCOMPARE(static_cast<QAbstractItemView*>(view), selector.view());

    // A picked date turns the calendar's page; whatever comes, one item stays.
    selector.dateSelect(QDate(2024, 2, 9));
    QCOMPARE(calendarOf(view)->yearShown(), 2024);
    QCOMPARE(calendarOf(view)->monthShown(), 2);
    QCOMPARE(toolButtonOf(view, "qt_calendar_monthbutton")->text(), str("month_feb"));
    const QList<QDate> dates{QDate(2024, 2, 9), QDate(2024, 1, 31), QDate(), QDate(1999, 12, 31),
                             QDate(2024, 2, 29), QDate(), QDate(2100, 6, 15)};
    for (const QDate& date : dates) {
        selector.dateSelect(date);
        QCOMPARE(selector.count(), 1);
        QCOMPARE(selector.currentIndex(), 0);
        QCOMPARE(selector.itemData(0).toDate(), date);
        QCOMPARE(selector.currentText(),
                 date.isValid() ? date.toString(QStringLiteral("yyyy-MM-dd")) : QStringLiteral("Pick a date"));
    }

    OrvaDateSelector empty(QString{});
    QCOMPARE(empty.count(), 1);
    QCOMPARE(empty.currentText(), QString());

    // A replaced view deletes the calendar; the selector goes on without it.
    selector.setView(new QListView);
    QCOMPARE(selector.getCalendarView(), nullptr);
    selector.dateSelect(QDate(2024, 2, 9));
    QCOMPARE(selector.currentText(), QStringLiteral("2024-02-09"));
    selector.clearDate();
    QCOMPARE(selector.currentText(), QStringLiteral("Pick a date"));
    QCOMPARE(selector.count(), 1);
}

void TestCalendarView::invalidDateShowsThePlaceholder()
{
    SelectorFixture f;
    OrvaDateSelector* selector = f.selector;
    selector->dateSelect(QDate(2023, 7, 1));

    selector->showPopup();
    QTRY_VERIFY(selector->view()->isVisible());
    selector->dateSelect(QDate());
    QCOMPARE(selector->currentText(), QStringLiteral("Pick a date"));
    QVERIFY(selector->view()->isVisible()); // left open
    QCOMPARE(calendarOf(selector->getCalendarView())->monthShown(), 7);

    selector->dateSelect(QDate(2024, 2, 9));
    QTRY_VERIFY(!selector->view()->isVisible());
    QCOMPARE(selector->currentText(), QStringLiteral("2024-02-09"));
}

void TestCalendarView::pickingADayInThePopupClosesIt()
{
    SelectorFixture f;
    OrvaDateSelector* selector = f.selector;
    selector->getCalendarView()->setCurrentPage(2024, 2);

    QTest::mouseClick(selector, Qt::LeftButton, Qt::NoModifier, selector->rect().center());
    QTRY_VERIFY(selector->view()->isVisible());
    // The popup is the calendar at its own size, not a list of one row.
    QWidget* popup = selector->view()->window();
    QVERIFY(popup != f.window.get());
    QVERIFY(popup->width() >= TestEnvironment::scaled(280));
    QVERIFY(popup->height() >= TestEnvironment::scaled(260));

    QTableView* grid = dayGridOf(selector->getCalendarView());
    QVERIFY(grid->isVisible());
    QTest::mouseClick(grid->viewport(), Qt::LeftButton, Qt::NoModifier, cellCentre(grid, 20));
    QTRY_VERIFY(!selector->view()->isVisible());
    QCOMPARE(selector->count(), 1);
    QCOMPARE(selector->currentText(), QStringLiteral("2024-02-20"));

    // The today button inside the popup picks today.
    selector->showPopup();
    QTRY_VERIFY(selector->view()->isVisible());
    OrvaButton* today = todayButtonOf(selector->getCalendarView());
    QTest::mouseClick(today, Qt::LeftButton, Qt::NoModifier, today->rect().center());
    QTRY_VERIFY(!selector->view()->isVisible());
    QCOMPARE(selector->currentText(), QDate::currentDate().toString(QStringLiteral("yyyy-MM-dd")));
}

void TestCalendarView::enterInThePopupPicksTheDay()
{
    SelectorFixture f(true);
    OrvaDateSelector* selector = f.selector;
    calendarOf(selector->getCalendarView())->setSelectedDate(QDate(2024, 2, 9));

    selector->setFocus();
    QTest::keyClick(selector, Qt::Key_Down, Qt::AltModifier);
    QTRY_VERIFY(selector->view()->isVisible());
    QTableView* grid = dayGridOf(selector->getCalendarView());
    grid->setFocus();
    QTRY_VERIFY(grid->hasFocus());
    QTest::keyClick(grid, Qt::Key_Right);
    QTest::keyClick(grid, Qt::Key_Return);
    QTRY_VERIFY(!selector->view()->isVisible());
    QCOMPARE(selector->count(), 1);
    QCOMPARE(selector->currentText(), QStringLiteral("2024-02-10"));
}

void TestCalendarView::clearDateGoesBackToThePlaceholder()
{
    OrvaDateSelector selector(QStringLiteral("Pick a date"));
    QCalendarWidget* calendar = calendarOf(selector.getCalendarView());
    calendar->setSelectedDate(QDate(2019, 11, 3));
    selector.dateSelect(QDate(2019, 11, 3));
    QCOMPARE(calendar->monthShown(), 11);

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
