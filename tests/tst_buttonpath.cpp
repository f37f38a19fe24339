// The breadcrumb bar: columns per path, clicks, overflow and its menu.

#include "testmain.h"

#include "modalrun.h"
#include "testenvironment.h"

#include <orvacat/dpiinfo.h>
#include <orvacat/orvabuttonpath.h>

#include <QMenu>
#include <QPointer>
#include <QPushButton>
#include <QScrollBar>
#include <QToolButton>

namespace {

QPushButton* cell(OrvaButtonPath& bar, int column)
{
    return qobject_cast<QPushButton*>(bar.cellWidget(0, column));
}

// What the user reads: the element buttons' texts, ">" for the arrows between them.
QStringList shown(OrvaButtonPath& bar)
{
    QStringList texts;
    for (int column = 0; column < bar.columnCount(); ++column)
        texts << (column % 2 ? QStringLiteral(">") : cell(bar, column)->text());
    return texts;
}

QToolButton* changeFolderButton(OrvaButtonPath& bar)
{
    return bar.findChild<QToolButton*>(QString(), Qt::FindDirectChildrenOnly);
}

QStringList menuTexts(OrvaButtonPath& bar)
{
    QStringList texts;
    for (QAction* action : changeFolderButton(bar)->menu()->actions())
        texts << action->text();
    return texts;
}

} // namespace

class TestButtonPath : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void cleanup();

    void refreshBuildsOneButtonPerElement();
    void clickingAnElementEmitsThePathUpToIt();
    void longPathOverflowsIntoTheMenu();
};

void TestButtonPath::initTestCase()
{
    TestEnvironment::installDefaultTheme();
}

void TestButtonPath::cleanup()
{
    QCOMPARE(TestEnvironment::visibleTopLevels(), QStringList());
}

void TestButtonPath::refreshBuildsOneButtonPerElement()
{
    OrvaButtonPath bar;
    bar.resize(800, bar.height());
    bar.show();
    QVERIFY(QTest::qWaitForWindowExposed(&bar));
    // Each refresh leaves nothing of the path before it.
    for (const QString& empty : {QString(), QStringLiteral("/")}) {
        bar.refresh(QStringLiteral("/old/path"));
        bar.refresh(empty);
        QCOMPARE(bar.columnCount(), 0);
        QVERIFY(!changeFolderButton(bar)->isVisible());
    }
    bar.refresh(QStringLiteral("/a//b/"));
    QCOMPARE(shown(bar), (QStringList{"a", ">", "b"}));

    // The ampersand is doubled on its button, so that it shows instead of
    // marking a mnemonic, and single again in the path.
    bar.refresh(QStringLiteral("/i/Wide element name/R&D"));
    QCOMPARE(shown(bar), (QStringList{"i", ">", "Wide element name", ">", "R&&D"}));
    QCOMPARE(bar.getPath(4), QStringLiteral("i/Wide element name/R&D"));
    QCOMPARE(bar.getPath(0), QStringLiteral("i"));
    QCOMPARE(bar.getPath(3), QStringLiteral("i/Wide element name/"));
    QCOMPARE(bar.getPath(-1), QString());

    // A name column is its text plus 16 pixels, all scaled; an arrow column 6.
    const double factor = DPIinfo::getInstance()->getDPI();
    for (int column = 0; column < 5; column += 2) {
        QPushButton* button = cell(bar, column);
        const int text = button->fontMetrics().horizontalAdvance(bar.getPath(column).section('/', -1));
        QVERIFY2(qAbs(button->width() - factor * (text + 16)) < 1, qPrintable(button->text()));
        QCOMPARE(bar.columnWidth(column), button->width());
    }
    QCOMPARE(bar.columnWidth(1), TestEnvironment::scaled(6));
    QCOMPARE(bar.columnWidth(3), TestEnvironment::scaled(6));
    bar.hide();
}

void TestButtonPath::clickingAnElementEmitsThePathUpToIt()
{
    OrvaButtonPath bar;
    bar.resize(800, bar.height());
    bar.show();
    QVERIFY(QTest::qWaitForWindowExposed(&bar));
    bar.refresh(QStringLiteral("/x/R&D/z"));
    QSignalSpy spy(&bar, &OrvaButtonPath::sigUpdatePath);
    QVERIFY(spy.isValid());

    for (int column : {4, 3, 2, 1, 0})
        QTest::mouseClick(cell(bar, column), Qt::LeftButton);
    // Arrows lead nowhere.
    QCOMPARE(spy.count(), 3);
    QCOMPARE(spy.at(0).at(0).toString(), QStringLiteral("x/R&D/z"));
    QCOMPARE(spy.at(1).at(0).toString(), QStringLiteral("x/R&D"));
    QCOMPARE(spy.at(2).at(0).toString(), QStringLiteral("x"));

    // A host that goes to the folder at once rebuilds the bar under the
    // button being clicked.
    connect(&bar, &OrvaButtonPath::sigUpdatePath, &bar,
            [&bar](const QString& path) { bar.slotUpdatePath(QLatin1Char('/') + path); });
    QPointer<QPushButton> clicked = cell(bar, 2);
    QTest::mouseClick(clicked, Qt::LeftButton);
    QCOMPARE(shown(bar), (QStringList{"x", ">", "R&&D"}));
    QTRY_VERIFY(!clicked);
    bar.hide();
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
    QToolButton* change = changeFolderButton(bar);
    QVERIFY(change->isVisible());
    QVERIFY(bar.horizontalScrollBar()->maximum() > 0);
    QCOMPARE(bar.horizontalScrollBar()->value(), bar.horizontalScrollBar()->maximum());
    QCOMPARE(bar.columnViewportPosition(14) + bar.columnWidth(14), bar.viewport()->width());

    // The menu lists, from the left, the elements that are scrolled out,
    // whole or in part, up to the first one whose right end shows.
    QStringList hidden;
    for (int column = 0; column < bar.columnCount(); column += 2) {
        hidden << cell(bar, column)->text();
        if (bar.columnViewportPosition(column) + bar.columnWidth(column) > 0)
            break;
    }
    QCOMPARE(menuTexts(bar), hidden);
    QVERIFY(hidden.size() >= 4 && hidden.size() < 8);
    QCOMPARE(hidden.at(3), QStringLiteral("R&&D"));

    // The user opens the menu and picks its second entry.
    const int run = ModalRun::run(
        [&]() {
            QTest::mouseClick(change, Qt::LeftButton);
            return 0;
        },
        []() {
            auto* menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
            if (menu)
                QTest::mouseClick(menu, Qt::LeftButton, Qt::NoModifier,
                                  menu->actionGeometry(menu->actions().at(1)).center());
        },
        []() {
            if (QWidget* popup = QApplication::activePopupWidget())
                popup->close();
        });
    QCOMPARE(run, 0);
    QTRY_COMPARE(spy.count(), 1);
    QCOMPARE(spy.at(0).at(0).toString(), QStringLiteral("home/ada"));

    // A short path puts the bar back at its start without the menu button.
    bar.slotUpdatePath(QStringLiteral("/home"));
    QVERIFY(!change->isVisible());
    QCOMPARE(menuTexts(bar), QStringList());
    QCOMPARE(bar.horizontalScrollBar()->value(), 0);

    // The overflow is judged at refresh: a bar widened later keeps its
    // menu button until the next one.
    bar.refresh(longPath);
    bar.resize(TestEnvironment::scaled(3000), bar.height());
    QVERIFY(change->isVisible());
    bar.refresh(longPath);
    QVERIFY(!change->isVisible());
    bar.hide();
}

ORVACAT_TEST_MAIN(TestButtonPath)
#include "tst_buttonpath.moc"
