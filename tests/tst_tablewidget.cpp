// The table with the separate header strip and ratio columns.

#include "testmain.h"

#include "testenvironment.h"

#include <orvacat/dpiinfo.h>
#include <orvacat/orvatablewidget.h>

#include <QAccessible>
#include <QHeaderView>
#include <QLineEdit>
#include <QScrollBar>
#include <QVBoxLayout>

namespace {

using Widths = QList<int>;

// Worked widths are given at factor 1 (also with device-pixel ratio 2: the
// widths are logical) and at factor 4/3, the screens the suite runs on.
bool atFactorOne()
{
    return qFuzzyCompare(DPIinfo::getInstance()->getDPI(), 1.0);
}

// Name (200, share 0.6), Size (100, not resizable: its 0.3 is ignored),
// Kind (50, resizable without a share: keeps its width), Date (150, share 0.4).
OrvaTableColumnsInfo fileColumns()
{
    OrvaTableColumnsInfo columns;
    columns.addColumn(QStringLiteral("Name"), 200, true, 0.6);
    columns.addColumn(QStringLiteral("Size"), 100, false, 0.3);
    columns.addColumn(QStringLiteral("Kind"), 50, true, 0.0);
    columns.addColumn(QStringLiteral("Date"), 150, true, 0.4);
    return columns;
}

Widths sections(QHeaderView* header)
{
    Widths widths;
    for (int i = 0; i < header->count(); ++i)
        widths << header->sectionSize(i);
    return widths;
}

void dragEdge(QHeaderView* header, int section, int distance)
{
    QWidget* port = header->viewport();
    const QPoint edge(header->sectionViewportPosition(section) + header->sectionSize(section) - 1, header->height() / 2);
    const QPoint to = edge + QPoint(distance, 0);
    QTest::mousePress(port, Qt::LeftButton, Qt::NoModifier, edge);
    // QTest::mouseMove sends no buttons; the header needs the held one to resize.
    QMouseEvent move(QEvent::MouseMove, to, port->mapToGlobal(to), Qt::NoButton, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(port, &move);
    QTest::mouseRelease(port, Qt::LeftButton, Qt::NoModifier, to);
}

} // namespace

class TestTableWidget : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { TestEnvironment::installDefaultTheme(); }
    void cleanup() { QCOMPARE(TestEnvironment::visibleTopLevels(), QStringList()); }

    void headerShowsTheColumnsAndTakesDrags();
    void ratioColumnsShareTheFreeWidth_data();
    void ratioColumnsShareTheFreeWidth();
    void scrollBarsFollowTheRows();
    void oneTabStopNamedColumns();
};

void TestTableWidget::headerShowsTheColumnsAndTakesDrags()
{
    OrvaTableColumnsInfo info = fileColumns();
    OrvaTableWidget table(info);
    // The description is copied: a column added later does not reach the table.
    QCOMPARE(info.addColumn(QStringLiteral("Late"), 10, true, 0.1), 4);
    QHeaderView* header = table.getHeader();
    QHeaderView* body = table.getTable()->horizontalHeader();
    QCOMPARE(header->model()->headerData(3, Qt::Horizontal).toString(), QStringLiteral("Date"));
    QCOMPARE(header->model()->headerData(4, Qt::Horizontal).toString(), QString());
    // Before any sharing the columns have their own widths; the spare
    // section stands above the body's scroll bar.
    QCOMPARE(sections(header), atFactorOne() ? (Widths{200, 100, 50, 150, 12}) : (Widths{266, 133, 66, 200, 16}));
    QCOMPARE(table.getTable()->verticalHeader()->defaultSectionSize(), atFactorOne() ? 28 : 37);

    table.resize(TestEnvironment::scaled(700), 200);
    table.show();
    QVERIFY(QTest::qWaitForWindowExposed(&table));
    // Dragged, only the resizable column's edge gives way, and the body follows.
    Widths dragged = sections(header);
    dragged[2] += 40;
    for (const int section : {2, 1, 4})
        dragEdge(header, section, 40);
    QCOMPARE(sections(header), dragged);
    QCOMPARE(sections(body), dragged.mid(0, 4));
}

void TestTableWidget::ratioColumnsShareTheFreeWidth_data()
{
    QTest::addColumn<int>("width");
    QTest::addColumn<Widths>("atOne");
    QTest::addColumn<Widths>("atFourThirds");

    // The default theme's scroll bar keeps 10 pixels (13 at 4/3) beside the
    // rows even while hidden; the columns share what is left.
    QTest::newRow("1000 px") << 1000 << Widths{504, 100, 50, 336} << Widths{472, 133, 66, 314};
    QTest::newRow("520 px") << 520 << Widths{216, 100, 50, 150} << Widths{266, 133, 66, 200};
    QTest::newRow("350 px") << 350 << Widths{200, 100, 50, 150} << Widths{266, 133, 66, 200};
}

void TestTableWidget::ratioColumnsShareTheFreeWidth()
{
    QFETCH(int, width);
    QFETCH(Widths, atOne);
    QFETCH(Widths, atFourThirds);

    OrvaTableWidget table(fileColumns());
    table.resize(width, 300);
    table.show();
    QVERIFY(QTest::qWaitForWindowExposed(&table));

    const Widths expected = (atFactorOne() ? atOne : atFourThirds) << (atFactorOne() ? 12 : 16);
    QCOMPARE(sections(table.getHeader()), expected);
    QCOMPARE(sections(table.getTable()->horizontalHeader()), expected.mid(0, 4));
    // No grid: a cell's right edge looks like the rest of it.
    table.getTable()->setRowCount(1);
    const QImage row = table.getTable()->viewport()->grab().toImage();
    QCOMPARE(TestEnvironment::pixelAt(row, QPoint(expected.first() - 1, 5)), TestEnvironment::pixelAt(row, QPoint(5, 5)));
}

void TestTableWidget::scrollBarsFollowTheRows()
{
    OrvaTableWidget table(fileColumns());
    // Narrower than the columns' minimums: the body scrolls sideways.
    table.resize(250, 300);
    table.show();
    QVERIFY(QTest::qWaitForWindowExposed(&table));
    QTableWidget* body = table.getTable();
    QScrollBar* bar = body->verticalScrollBar();
    // The rows start right under the header strip; a click selects a whole row.
    QCOMPARE(body->pos(), QPoint(0, atFactorOne() ? 30 : 40));
    body->setRowCount(2);
    QTest::mouseClick(body->viewport(), Qt::LeftButton, {}, body->visualRect(body->model()->index(1, 0)).center());
    QCOMPARE(body->selectionModel()->selectedIndexes().size(), 4);
    QTRY_VERIFY(bar->maximum() == 0 && !bar->isVisible());
    body->setRowCount(40);
    QTRY_VERIFY(bar->isVisible());
    body->setRowCount(1);
    QTRY_VERIFY(!bar->isVisible());

    // Scrolled to its right end, the body keeps each label over its column.
    QTRY_VERIFY(body->horizontalScrollBar()->maximum() > 0);
    body->horizontalScrollBar()->setValue(body->horizontalScrollBar()->maximum());
    QCOMPARE(table.getHeader()->mapTo(&table, QPoint(table.getHeader()->sectionPosition(3), 0)).x(),
             body->viewport()->mapTo(&table, QPoint(body->columnViewportPosition(3), 0)).x());
}

void TestTableWidget::oneTabStopNamedColumns()
{
    QWidget window;
    auto* layout = new QVBoxLayout(&window);
    auto* before = new QLineEdit;
    auto* table = new OrvaTableWidget(fileColumns());
    auto* after = new QLineEdit;
    for (QWidget* w : QWidgetList{before, table, after})
        layout->addWidget(w);
    QTableWidget* body = table->getTable();
    body->setRowCount(300);
    window.show();
    QVERIFY(QTest::qWaitForWindowActive(&window));

    // A screen reader reads the columns by their captions, not by their numbers.
    QAccessibleTableInterface* access = QAccessible::queryAccessibleInterface(body)->tableInterface();
    QStringList captions;
    for (int i = 0; i < access->columnCount(); ++i)
        captions << access->columnDescription(i);
    QCOMPARE(captions, (QStringList{"Name", "Size", "Kind", "Date"}));

    // Tab enters the table once; the arrows move inside; Tab and Shift+Tab leave it.
    const auto press = [](Qt::Key key) {
        QTest::keyClick(QApplication::focusWidget(), key);
        return QApplication::focusWidget();
    };
    before->setFocus();
    QCOMPARE(press(Qt::Key_Tab), body);
    press(Qt::Key_Down);
    press(Qt::Key_Right);
    QCOMPARE(QPoint(body->currentRow(), body->currentColumn()), QPoint(1, 1));
    QCOMPARE(press(Qt::Key_Tab), after);
    QCOMPARE(press(Qt::Key_Backtab), body);
    QCOMPARE(press(Qt::Key_Backtab), before);
}

ORVACAT_TEST_MAIN(TestTableWidget)
#include "tst_tablewidget.moc"
