// The breadcrumb bar: columns per path, clicks, overflow and its menu.

#include "testmain.h"

#include "testenvironment.h"

#include <orvacat/dpiinfo.h>
#include <orvacat/orvabuttonpath.h>

#include <QMenu>
#include <QPointer>
#include <QPushButton>
#include <QScrollBar>
#include <QTimer>
#include <QToolButton>

namespace {

QPushButton* cellButton(OrvaButtonPath& bar, int column)
{
    return qobject_cast<QPushButton*>(bar.cellWidget(0, column));
}

// What the user sees in each column: the element names, ">" for arrows.
QStringList shownColumns(OrvaButtonPath& bar)
{
    QStringList shown;
    for (int column = 0; column < bar.columnCount(); ++column) {
        QPushButton* button = cellButton(bar, column);
        if (!button)
            shown << QStringLiteral("<none>");
        else if (column % 2 == 1)
            shown << (button->text().isEmpty() ? QStringLiteral(">") : button->text());
        else
            shown << button->text().replace(QLatin1String("&&"), QLatin1String("&"));
    }
    return shown;
}

QToolButton* changeFolderButton(OrvaButtonPath& bar)
{
    return bar.findChild<QToolButton*>(QString(), Qt::FindDirectChildrenOnly);
}

/** Shows @p bar at @p width (unscaled); false when it did not show. */
bool showAt(OrvaButtonPath& bar, int width, bool active = false)
{
    bar.resize(TestEnvironment::scaled(width), bar.height());
    bar.show();
    return active ? QTest::qWaitForWindowActive(&bar) : QTest::qWaitForWindowExposed(&bar);
}

const QString longPath = QStringLiteral("/alpha/beta/gamma/delta/epsilon/zeta/eta");

} // namespace

class TestButtonPath : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void cleanup();

    void buildsOneColumnPerElement_data();
    void buildsOneColumnPerElement();
    void columnWidthsFollowTheText();
    void clickingAnElementEmitsThePathUpToIt_data();
    void clickingAnElementEmitsThePathUpToIt();
    void getPathOfOddColumns();
    void hostRefreshingFromTheClickIsSafe();
    void longPathOverflowsIntoTheMenu();
    void choosingAMenuEntryActsLikeItsButton();
};

void TestButtonPath::initTestCase()
{
    TestEnvironment::installDefaultTheme();
}

void TestButtonPath::cleanup()
{
    QCOMPARE(TestEnvironment::visibleTopLevels(), QStringList());
}

void TestButtonPath::buildsOneColumnPerElement_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<QStringList>("columns");
    QTest::addColumn<QString>("lastPath");

    QTest::newRow("empty") << "" << QStringList() << "";
    QTest::newRow("lone slash") << "/" << QStringList() << "";
    QTest::newRow("only slashes") << "////" << QStringList() << "";
    QTest::newRow("doubled and outer slashes") << "/a//b/" << QStringList{"a", ">", "b"} << "a/b";
    QTest::newRow("relative") << "x/y" << QStringList{"x", ">", "y"} << "x/y";
    QTest::newRow("ampersand") << "/home/R&D" << QStringList{"home", ">", "R&D"} << "home/R&D";
    QTest::newRow("double ampersand") << "/a&&b" << QStringList{"a&&b"} << "a&&b";
    QTest::newRow("lone ampersand") << "&" << QStringList{"&"} << "&";
    QTest::newRow("spaces kept") << "/ a / b c/" << QStringList{" a ", ">", " b c"} << " a / b c";
}

void TestButtonPath::buildsOneColumnPerElement()
{
    QFETCH(QString, path);
    QFETCH(QStringList, columns);
    QFETCH(QString, lastPath);

    OrvaButtonPath bar;
    QVERIFY(showAt(bar, 800));
    // Start from another path: a refresh must leave nothing of it.
    bar.refresh(QStringLiteral("/old/path/with/four"));
    bar.refresh(path);

    QCOMPARE(bar.rowCount(), 1);
    QCOMPARE(shownColumns(bar), columns);
    QCOMPARE(bar.getPath(bar.columnCount() - 1), lastPath);
    QVERIFY(!changeFolderButton(bar)->isVisible());
    QVERIFY(changeFolderButton(bar)->menu()->actions().isEmpty());

    // The ampersand is doubled on the button so that it is shown, not a mnemonic.
    for (int column = 0; column < bar.columnCount(); column += 2) {
        const QString element = columns.at(column);
        QCOMPARE(cellButton(bar, column)->text(), QString(element).replace(QStringLiteral("&"), QStringLiteral("&&")));
    }
    bar.hide();
}

void TestButtonPath::columnWidthsFollowTheText()
{
    OrvaButtonPath bar;
    QVERIFY(showAt(bar, 900));
    bar.refresh(QStringLiteral("/i/Wide element name/R&D"));
    QCOMPARE(bar.columnCount(), 5);
    QCOMPARE(bar.height(), TestEnvironment::scaled(28));

    const double d = DPIinfo::getInstance()->getDPI();
    const QStringList elements{"i", "Wide element name", "R&D"};
    for (int i = 0; i < elements.size(); ++i) {
        QPushButton* button = cellButton(bar, 2 * i);
        const int expected = int(d * (button->fontMetrics().horizontalAdvance(elements.at(i)) + 16));
        QCOMPARE(button->width(), expected);
        QCOMPARE(bar.columnWidth(2 * i), expected);
        QCOMPARE(button->height(), TestEnvironment::scaled(26));
    }
    for (int column = 1; column < bar.columnCount(); column += 2) {
        QCOMPARE(bar.columnWidth(column), TestEnvironment::scaled(6));
        QCOMPARE(cellButton(bar, column)->size(), QSize(TestEnvironment::scaled(6), TestEnvironment::scaled(28)));
    }
    // The wider element takes the wider column.
    QVERIFY(bar.columnWidth(2) > bar.columnWidth(0));
    bar.hide();
}

void TestButtonPath::clickingAnElementEmitsThePathUpToIt_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<int>("element");
    QTest::addColumn<QString>("emitted");

    QTest::newRow("third of /x/y/z") << "/x/y/z" << 2 << "x/y/z";
    QTest::newRow("first of /x/y/z") << "/x/y/z" << 0 << "x";
    QTest::newRow("second of /x/y/z") << "/x/y/z" << 1 << "x/y";
    QTest::newRow("ampersand element") << "/Projects/R&D/2026" << 1 << "Projects/R&D";
}

void TestButtonPath::clickingAnElementEmitsThePathUpToIt()
{
    QFETCH(QString, path);
    QFETCH(int, element);
    QFETCH(QString, emitted);

    OrvaButtonPath bar;
    QVERIFY(showAt(bar, 800));
    bar.refresh(path);
    QSignalSpy spy(&bar, &OrvaButtonPath::sigUpdatePath);
    QVERIFY(spy.isValid());

    QPushButton* button = cellButton(bar, 2 * element);
    QVERIFY(button && button->isVisible());
    QTest::mouseClick(button, Qt::LeftButton);
    QCOMPARE(spy.count(), 1);
    QCOMPARE(spy.at(0).at(0).toString(), emitted);

    // Arrows lead nowhere.
    if (bar.columnCount() > 1) {
        QTest::mouseClick(cellButton(bar, 1), Qt::LeftButton);
        QCOMPARE(spy.count(), 1);
    }
    bar.hide();
}

void TestButtonPath::getPathOfOddColumns()
{
    OrvaButtonPath bar;
    QCOMPARE(bar.getPath(0), QString());
    bar.refresh(QStringLiteral("/a/b/c"));
    QCOMPARE(bar.getPath(0), QStringLiteral("a"));
    QCOMPARE(bar.getPath(4), QStringLiteral("a/b/c"));
    QCOMPARE(bar.getPath(-1), QString());
    QCOMPARE(bar.getPath(-100), QString());
    // An arrow column ends with the separator.
    QCOMPARE(bar.getPath(3), QStringLiteral("a/b/"));
    QCOMPARE(bar.getPath(5), QString());
    QCOMPARE(bar.getPath(1000), QString());

    QSignalSpy spy(&bar, &OrvaButtonPath::sigUpdatePath);
    bar.slotPathBarClicked(2);
    bar.slotPathBarClicked(-1);
    QCOMPARE(spy.count(), 2);
    QCOMPARE(spy.at(0).at(0).toString(), QStringLiteral("a/b"));
    QCOMPARE(spy.at(1).at(0).toString(), QString());
}

void TestButtonPath::hostRefreshingFromTheClickIsSafe()
{
    OrvaButtonPath bar;
    QVERIFY(showAt(bar, 800));
    // A host that goes to the folder at once, leading slash added.
    connect(&bar, &OrvaButtonPath::sigUpdatePath, &bar,
            [&bar](const QString& path) { bar.slotUpdatePath(QLatin1Char('/') + path); });
    bar.refresh(QStringLiteral("/x/y/z"));

    QPointer<QPushButton> clicked = cellButton(bar, 2);
    QTest::mouseClick(clicked, Qt::LeftButton);
    QCOMPARE(shownColumns(bar), (QStringList{"x", ">", "y"}));
    QTRY_VERIFY(!clicked);

    QTest::mouseClick(cellButton(bar, 0), Qt::LeftButton);
    QCOMPARE(shownColumns(bar), QStringList{"x"});
    QCOMPARE(bar.getPath(0), QStringLiteral("x"));
    bar.hide();
}

void TestButtonPath::longPathOverflowsIntoTheMenu()
{
    OrvaButtonPath bar;
    QVERIFY(showAt(bar, 260));
    const QString path = QStringLiteral("/home/ada/Projects/R&D/2026/Quarterly reports/Drafts/Final");
    bar.refresh(path);

    QCOMPARE(bar.columnCount(), 15);
    QToolButton* change = changeFolderButton(bar);
    QVERIFY(change->isVisible());
    QCOMPARE(change->size(), QSize(TestEnvironment::scaled(26), TestEnvironment::scaled(26)));
    QCOMPARE(change->pos(), QPoint(TestEnvironment::scaled(1), TestEnvironment::scaled(1)));
    QCOMPARE(change->popupMode(), QToolButton::InstantPopup);

    // Scrolled to the end: the last element is fully in view.
    QScrollBar* scroll = bar.horizontalScrollBar();
    QVERIFY(scroll->maximum() > 0);
    QCOMPARE(scroll->value(), scroll->maximum());
    QPushButton* last = cellButton(bar, 14);
    const QRect lastRect(last->mapTo(&bar, QPoint(0, 0)), last->size());
    QVERIFY(bar.viewport()->geometry().contains(lastRect));

    // The menu: every element scrolled out from the left, and the first one cut by the edge.
    int total = 0;
    for (int column = 0; column < bar.columnCount(); ++column)
        total += bar.columnWidth(column);
    const int overflow = total - scroll->pageStep();
    QVERIFY(overflow > 0);
    const QList<QAction*> actions = change->menu()->actions();
    QVERIFY(!actions.isEmpty());
    QCOMPARE(actions.first()->text(), QStringLiteral("home"));
    int x = 0;
    QStringList expected;
    for (int column = 0; column < bar.columnCount(); column += 2) {
        expected << cellButton(bar, column)->text();
        if (overflow < x + bar.columnWidth(column))
            break;
        x += bar.columnWidth(column) + bar.columnWidth(column + 1);
    }
    QStringList listed;
    for (QAction* action : actions)
        listed << action->text();
    QCOMPARE(listed, expected);
    QVERIFY(listed.size() < 8);
    // The ampersand stays doubled so that the menu shows it.
    if (listed.size() >= 4)
        QCOMPARE(listed.at(3), QStringLiteral("R&&D"));
    bar.hide();
}

void TestButtonPath::choosingAMenuEntryActsLikeItsButton()
{
    OrvaButtonPath bar;
    QVERIFY(showAt(bar, 200, true));
    bar.refresh(longPath);
    QToolButton* change = changeFolderButton(bar);
    QVERIFY(change->isVisible());
    const QList<QAction*> actions = change->menu()->actions();
    QVERIFY(actions.size() >= 2);
    QSignalSpy spy(&bar, &OrvaButtonPath::sigUpdatePath);

    // The user opens the menu and picks its second entry; a watchdog closes
    // the menu should the pick fail.
    bool picked = false;
    QTimer::singleShot(0, &bar, [&]() {
        auto* menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
        if (!menu)
            return;
        QTest::mouseClick(menu, Qt::LeftButton, Qt::NoModifier, menu->actionGeometry(menu->actions().at(1)).center());
        picked = true;
    });
    QTimer watchdog;
    watchdog.setSingleShot(true);
    connect(&watchdog, &QTimer::timeout, &bar, []() {
        if (QWidget* popup = QApplication::activePopupWidget())
            popup->close();
    });
    watchdog.start(5000);
    QTest::mouseClick(change, Qt::LeftButton);
    QTRY_VERIFY(picked);
    QTRY_COMPARE(spy.count(), 1);
    QCOMPARE(spy.at(0).at(0).toString(), QStringLiteral("alpha/beta"));
    QTRY_VERIFY(!QApplication::activePopupWidget());
    watchdog.stop();

    bar.slotUpdatePath(longPath);
    changeFolderButton(bar)->menu()->actions().first()->trigger();
    QCOMPARE(spy.count(), 2);
    QCOMPARE(spy.at(1).at(0).toString(), QStringLiteral("alpha"));

    // A short path after the long one hides the menu button and empties its menu.
    bar.slotUpdatePath(QStringLiteral("/alpha"));
    QVERIFY(!changeFolderButton(bar)->isVisible());
    QVERIFY(changeFolderButton(bar)->menu()->actions().isEmpty());
    QCOMPARE(bar.horizontalScrollBar()->value(), 0);

    // The overflow decision is taken at refresh: a bar widened later keeps it until the next one.
    bar.resize(TestEnvironment::scaled(100), bar.height());
    bar.slotUpdatePath(longPath);
    QVERIFY(changeFolderButton(bar)->isVisible());
    bar.resize(TestEnvironment::scaled(3000), bar.height());
    QVERIFY(changeFolderButton(bar)->isVisible());
    bar.refresh(longPath);
    QVERIFY(!changeFolderButton(bar)->isVisible());
    bar.hide();
}

ORVACAT_TEST_MAIN(TestButtonPath)
#include "tst_buttonpath.moc"
