// The breadcrumb bar: columns per path, clicks, overflow and its menu.

#include "testmain.h"

#include "testenvironment.h"

#include <orvacat/dpiinfo.h>
#include <orvacat/imagemanager.h>
#include <orvacat/orvabuttonpath.h>

#include <QAccessible>
#include <QLineEdit>
#include <QMenu>
#include <QMetaEnum>
#include <QPointer>
#include <QPushButton>
#include <QScrollBar>
#include <QToolButton>
#include <QVBoxLayout>

namespace {

QPushButton* cell(OrvaButtonPath& bar, int column)
{
    return qobject_cast<QPushButton*>(bar.cellWidget(0, column));
}

// What the user finds: the element buttons' texts, ">" for the arrows
// between them, then the change-folder button and its menu's entries.
QStringList shown(OrvaButtonPath& bar)
{
    QStringList texts;
    for (int column = 0; column < bar.columnCount(); ++column)
        texts << (column % 2 ? QStringLiteral(">") : cell(bar, column)->text());
    auto* change = bar.findChild<QToolButton*>(QString(), Qt::FindDirectChildrenOnly);
    if (change->isVisible())
        texts << QStringLiteral("folder button");
    for (QAction* action : change->menu()->actions())
        texts << QStringLiteral("menu: ") + action->text();
    return texts;
}

// The menu a user should find: from the left, the elements scrolled out
// whole or in part, up to the first one whose right end shows.
QStringList expectedMenu(OrvaButtonPath& bar)
{
    QStringList menu{QStringLiteral("folder button")};
    for (int column = 0; column < bar.columnCount(); column += 2) {
        menu << QStringLiteral("menu: ") + cell(bar, column)->text();
        if (bar.columnViewportPosition(column) + bar.columnWidth(column) > 0)
            break;
    }
    return menu;
}

/** What a screen reader finds in the bar: role and name, then its children's; "(stray)" if one disowns it. */
QString outline(QWidget* bar)
{
    QAccessibleInterface* iface = QAccessible::queryAccessibleInterface(bar);
    QStringList parts;
    for (QAccessibleInterface* i : {iface, iface->child(0), iface->child(1), iface->child(2), iface->child(3)}) {
        if (i)
            parts << QMetaEnum::fromType<QAccessible::Role>().valueToKey(i->role()) + QStringLiteral(" '")
                         + i->text(QAccessible::Name) + "'" + (i->state().offscreen ? " offscreen" : "")
                         + (i == iface || i->parent() == iface ? "" : " (stray)");
    }
    return parts.join(", ") + (iface->childCount() > 4 ? " ..." : "");
}

/** Presses @p key where the focus is and names where it went: a button by its caption, a field by its name. */
QString pressOnFocus(Qt::Key key)
{
    if (!QApplication::focusWidget())
        return QStringLiteral("nothing");
    QTest::keyClick(QApplication::focusWidget(), key);
    QWidget* focus = QApplication::focusWidget();
    if (auto* button = qobject_cast<QAbstractButton*>(focus))
        return button->text().isEmpty() ? QStringLiteral("folder button") : button->text();
    return focus ? focus->objectName() : QStringLiteral("nothing");
}

} // namespace

class TestButtonPath : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { TestEnvironment::installDefaultTheme(); }
    void cleanup() { QCOMPARE(TestEnvironment::visibleTopLevels(), QStringList()); }

    void elementsBecomeButtonsThatEmitTheirPath();
    void longPathOverflowsIntoTheMenu();
    void oneTabStopAndArrowsBetweenFolders();
    void rightToLeftRunsFromTheRight();
};

void TestButtonPath::elementsBecomeButtonsThatEmitTheirPath()
{
    OrvaButtonPath bar;
    bar.resize(800, bar.height());
    bar.show();
    QVERIFY(QTest::qWaitForWindowExposed(&bar));
    // Each refresh leaves nothing of the path before it; empty elements make no button.
    for (const QString& empty : {QString(), QStringLiteral("/")}) {
        bar.refresh(QStringLiteral("/old/path"));
        bar.refresh(empty);
        QCOMPARE(shown(bar), QStringList());
    }
    bar.refresh(QStringLiteral("/a//b/"));
    QCOMPARE(shown(bar), (QStringList{"a", ">", "b"}));
    // The ampersand is doubled on its button, so that it shows instead of marking a mnemonic.
    bar.refresh(QStringLiteral("/i/Wide element name/R&D"));
    QCOMPARE(shown(bar), (QStringList{"i", ">", "Wide element name", ">", "R&&D"}));
    QCOMPARE(cell(bar, 0)->mapTo(&bar, QPoint(0, 0)), QPoint(0, 0));
    // A name column is its text plus 16 pixels, all scaled; an arrow column 6.
    const double factor = DPIinfo::getInstance()->getDPI();
    for (const int column : {0, 2, 4}) {
        const int text = cell(bar, column)->fontMetrics().horizontalAdvance(bar.getPath(column).section('/', -1));
        QVERIFY2(qAbs(bar.columnWidth(column) - factor * (text + 16)) < 1, qPrintable(cell(bar, column)->text()));
        QCOMPARE(cell(bar, column)->width(), bar.columnWidth(column));
        QCOMPARE(cell(bar, column)->height(), TestEnvironment::scaled(26));
    }
    QVERIFY(!bar.showGrid()); // no lines between the folders
    QCOMPARE(bar.columnWidth(3), TestEnvironment::scaled(6));

    // A click asks for the path up to the element, ampersand single again; arrows lead nowhere.
    QSignalSpy spy(&bar, &OrvaButtonPath::sigUpdatePath);
    QVERIFY(spy.isValid());
    for (const int column : {4, 3, 2, 1, 0})
        QTest::mouseClick(cell(bar, column), Qt::LeftButton);
    QCOMPARE(QList<QVariantList>(spy), (QList<QVariantList>{{"i/Wide element name/R&D"}, {"i/Wide element name"}, {"i"}}));
    // A host that goes to the folder at once rebuilds the bar under the button being clicked.
    connect(&bar, &OrvaButtonPath::sigUpdatePath, &bar,
            [&bar](const QString& path) { bar.slotUpdatePath(QLatin1Char('/') + path); });
    QPointer<QPushButton> clicked = cell(bar, 2);
    QTest::mouseClick(clicked, Qt::LeftButton);
    QCOMPARE(shown(bar), (QStringList{"i", ">", "Wide element name"}));
    QTRY_VERIFY(!clicked);
}

void TestButtonPath::longPathOverflowsIntoTheMenu()
{
    const QString longPath = QStringLiteral("/home/ada/Projects/R&D/2026/Quarterly reports/Drafts/Final");
    OrvaButtonPath bar;
    bar.resize(TestEnvironment::scaled(260), bar.height());
    bar.show();
    QVERIFY(QTest::qWaitForWindowActive(&bar));
    bar.refresh(longPath);
    QSignalSpy spy(&bar, &OrvaButtonPath::sigUpdatePath);
    QVERIFY(spy.isValid());

    // Scrolled to the end: the last element shows whole.
    QCOMPARE(bar.horizontalScrollBar()->value(), bar.horizontalScrollBar()->maximum());
    QCOMPARE(bar.columnViewportPosition(14) + bar.columnWidth(14), bar.viewport()->width());
    QCOMPARE(shown(bar).mid(15), expectedMenu(bar));
    auto* change = bar.findChild<QToolButton*>(QString(), Qt::FindDirectChildrenOnly);
    QCOMPARE(change->geometry(), QRect(TestEnvironment::scaled(1), TestEnvironment::scaled(1),
                                       TestEnvironment::scaled(26), TestEnvironment::scaled(26)));

    // A screen reader finds the change-folder button first, then every folder; the keyboard reaches the
    // button and the folders that show whole, Home and End at either end.
    QCOMPARE(outline(&bar), QStringLiteral("ToolBar 'Folder path', ButtonMenu 'Hidden folders', "
                                           "Button 'home' offscreen, Button 'ada' offscreen, "
                                           "Button 'Projects' offscreen ..."));
    cell(bar, 14)->setFocus();
    QCOMPARE(pressOnFocus(Qt::Key_Home), QStringLiteral("folder button"));
    QCOMPARE(pressOnFocus(Qt::Key_Right), cell(bar, expectedMenu(bar).size() * 2 - 2)->text());
    QCOMPARE(pressOnFocus(Qt::Key_End), QStringLiteral("Final"));

    // Picking an entry acts like clicking its element.
    change->menu()->actions().at(1)->trigger();
    QCOMPARE(QList<QVariantList>(spy), (QList<QVariantList>{{"home/ada"}}));

    // An element that ends right at the left edge is scrolled out whole: the next one is listed as well.
    const int end = bar.horizontalScrollBar()->value() + bar.columnViewportPosition(4) + bar.columnWidth(4);
    bar.resize(bar.width() + bar.horizontalScrollBar()->maximum() - end, bar.height());
    bar.refresh(longPath);
    QCOMPARE(bar.columnViewportPosition(4) + bar.columnWidth(4), 0);
    QCOMPARE(shown(bar).mid(15), expectedMenu(bar));
    QCOMPARE(shown(bar).size(), 15 + 5);

    // A short path puts the bar back at its start without the menu.
    bar.slotUpdatePath(QStringLiteral("/home"));
    QCOMPARE(shown(bar), QStringList{"home"});
    QCOMPARE(bar.horizontalScrollBar()->value(), 0);
}

void TestButtonPath::oneTabStopAndArrowsBetweenFolders()
{
    QWidget window;
    auto* layout = new QVBoxLayout(&window);
    auto* bar = new OrvaButtonPath;
    for (const char* name : {"before", "after"}) {
        layout->addWidget(new QLineEdit(&window));
        layout->itemAt(layout->count() - 1)->widget()->setObjectName(name);
        if (layout->count() == 1)
            layout->addWidget(bar);
    }
    window.resize(800, 200);
    window.show();
    QVERIFY(QTest::qWaitForWindowActive(&window));
    bar->refresh(QStringLiteral("/home/ada/R&D"));
    QCOMPARE(outline(bar), QStringLiteral("ToolBar 'Folder path', Button 'home', Button 'ada', Button 'R&D'"));

    // One Tab stop, on the folder the path leads to; the arrows move between the folders and no further.
    window.findChild<QLineEdit*>("before")->setFocus();
    QStringList stops;
    for (const Qt::Key key : {Qt::Key_Tab, Qt::Key_Tab, Qt::Key_Backtab, Qt::Key_Left, Qt::Key_Left, Qt::Key_Left,
                              Qt::Key_Right, Qt::Key_Tab, Qt::Key_Backtab, Qt::Key_Backtab})
        stops << pressOnFocus(key);
    QCOMPARE(stops.join(" | "), QStringLiteral("R&&D | after | R&&D | ada | home | home | ada | after | ada | before"));

    // Space and Enter press the focused folder; rebuilt for it, the bar keeps the focus on its new end.
    QSignalSpy spy(bar, &OrvaButtonPath::sigUpdatePath);
    QVERIFY(spy.isValid());
    connect(bar, &OrvaButtonPath::sigUpdatePath, bar, [bar](const QString& path) { bar->refresh('/' + path); });
    QCOMPARE(pressOnFocus(Qt::Key_Tab), QStringLiteral("ada"));
    QCOMPARE(pressOnFocus(Qt::Key_Space), QStringLiteral("ada"));
    QCOMPARE(pressOnFocus(Qt::Key_Left), QStringLiteral("home"));
    QCOMPARE(pressOnFocus(Qt::Key_Return), QStringLiteral("home"));
    QCOMPARE(QList<QVariantList>(spy), (QList<QVariantList>{{"home/ada"}, {"home"}}));
}

void TestButtonPath::rightToLeftRunsFromTheRight()
{
    OrvaButtonPath bar;
    bar.setLayoutDirection(Qt::RightToLeft);
    bar.resize(TestEnvironment::scaled(260), bar.height());
    bar.show();
    QVERIFY(QTest::qWaitForWindowActive(&bar));
    bar.refresh(QStringLiteral("/home/ada"));
    QVERIFY(cell(bar, 0)->mapTo(&bar, QPoint(0, 0)).x() > cell(bar, 2)->mapTo(&bar, QPoint(0, 0)).x());
    // The arrow points left, the reading way, and Left moves away from the root.
    const QImage arrow = getGlobalImage("bt_next", ImageManager::Normal).toImage();
    QVERIFY(cell(bar, 1)->icon().pixmap(arrow.size()).toImage() == arrow.mirrored(true, false));
    cell(bar, 0)->setFocus();
    QCOMPARE(pressOnFocus(Qt::Key_Left), QStringLiteral("ada"));

    // The change-folder button stands at the right end, over the folders scrolled out there.
    bar.refresh(QStringLiteral("/home/ada/Projects/R&D/2026/Quarterly reports/Drafts/Final"));
    auto* change = bar.findChild<QToolButton*>(QString(), Qt::FindDirectChildrenOnly);
    QVERIFY(change->isVisible());
    QCOMPARE(change->geometry().right(), bar.width() - 1 - TestEnvironment::scaled(1));
    QCOMPARE(cell(bar, 14)->mapTo(&bar, QPoint(0, 0)).x(), 0);
}

ORVACAT_TEST_MAIN(TestButtonPath)
#include "tst_buttonpath.moc"
