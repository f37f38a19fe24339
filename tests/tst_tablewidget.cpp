// The table with the separate header strip and ratio columns.

#include "testmain.h"

#include "factorone.h"
#include "testenvironment.h"
#include "warningcollector.h"

#include <orvacat/dpiinfo.h>
#include <orvacat/orvatablewidget.h>

#include <QHeaderView>
#include <QScrollArea>
#include <QScrollBar>

#include <cmath>
#include <limits>

namespace {

double factor()
{
    return DPIinfo::getInstance()->getDPI();
}

// Name (200, ratio 0.6), Size (100, fixed), Date (150, ratio 0.4).
OrvaTableColumnsInfo fileColumns()
{
    OrvaTableColumnsInfo columns;
    columns.addColumn(QStringLiteral("Name"), 200, true, 0.6);
    columns.addColumn(QStringLiteral("Size"), 100, false, 0);
    columns.addColumn(QStringLiteral("Date"), 150, true, 0.4);
    return columns;
}

// A resizable column without ratio and a fixed one with a ratio: both count as fixed.
OrvaTableColumnsInfo mixedColumns()
{
    OrvaTableColumnsInfo columns;
    columns.addColumn(QStringLiteral("Name"), 120, true, 0.5);
    columns.addColumn(QStringLiteral("Kind"), 80, true, 0.0);
    columns.addColumn(QStringLiteral("Size"), 60, false, 0.3);
    return columns;
}

// The width sharing, restated from the columns: what each header section
// must measure in a body of width @p bodyWidth.
QList<int> expectedSections(const OrvaTableColumnsInfo& info, int bodyWidth)
{
    const double d = factor();
    double fixedSum = 0;
    for (const auto& column : info.columns) {
        if (!(column.resizable && column.ratio != 0.0))
            fixedSum += column.width;
    }
    const double freeWidth = int(bodyWidth - fixedSum * d);
    QList<int> sections;
    for (const auto& column : info.columns) {
        const int minimum = int(column.width * d);
        if (column.resizable && column.ratio != 0.0)
            sections << qMax(minimum, int(column.ratio * freeWidth));
        else
            sections << minimum;
    }
    return sections;
}

QList<int> headerSections(OrvaTableWidget& table, int count)
{
    QList<int> sections;
    for (int i = 0; i < count; ++i)
        sections << table.getHeader()->sectionSize(i);
    return sections;
}

QList<int> bodySections(OrvaTableWidget& table, int count)
{
    QList<int> sections;
    for (int i = 0; i < count; ++i)
        sections << table.getTable()->horizontalHeader()->sectionSize(i);
    return sections;
}

void sendMouse(QWidget* widget, QEvent::Type type, const QPoint& pos, Qt::MouseButtons buttons)
{
    QMouseEvent event(type, pos, widget->mapToGlobal(pos), Qt::LeftButton, buttons, Qt::NoModifier);
    QApplication::sendEvent(widget, &event);
}

// Drags the right edge of @p section of @p header by @p distance, in two moves.
void dragEdge(QHeaderView* header, int section, int distance)
{
    QWidget* port = header->viewport();
    const QPoint edge(header->sectionViewportPosition(section) + header->sectionSize(section) - 1, header->height() / 2);
    sendMouse(port, QEvent::MouseButtonPress, edge, Qt::LeftButton);
    sendMouse(port, QEvent::MouseMove, edge + QPoint(distance / 2, 0), Qt::LeftButton);
    sendMouse(port, QEvent::MouseMove, edge + QPoint(distance, 0), Qt::LeftButton);
    sendMouse(port, QEvent::MouseButtonRelease, edge + QPoint(distance, 0), Qt::NoButton);
}

} // namespace

class TestTableWidget : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void cleanup();

    void buildsHeaderAndBodyFromColumns();
    void ratioColumnsShareTheWidthOnResize_data();
    void ratioColumnsShareTheWidthOnResize();
    void workedExamplesAtFactorOne_data();
    void workedExamplesAtFactorOne();
    void draggingAHeaderEdgeResizesTheBodyColumn();
    void verticalScrollBarOnlyWhenRowsOverflow();
    void headerFollowsHorizontalScrolling();
    void nonsenseColumnsDoNotCrash_data();
    void nonsenseColumnsDoNotCrash();
};

void TestTableWidget::initTestCase()
{
    TestEnvironment::installDefaultTheme();
}

void TestTableWidget::cleanup()
{
    QCOMPARE(TestEnvironment::visibleTopLevels(), QStringList());
}

void TestTableWidget::buildsHeaderAndBodyFromColumns()
{
    OrvaTableColumnsInfo info = fileColumns();
    OrvaTableWidget table(info);
    // Later changes to the description do not reach the table.
    info.addColumn(QStringLiteral("Late"), 10, true, 0.1);

    QHeaderView* header = table.getHeader();
    QTableWidget* body = table.getTable();
    QVERIFY(header);
    QCOMPARE(header->count(), 4);
    QCOMPARE(body->columnCount(), 3);

    const QStringList names = {QStringLiteral("Name"), QStringLiteral("Size"), QStringLiteral("Date"), QString()};
    for (int i = 0; i < names.size(); ++i)
        QCOMPARE(header->model()->headerData(i, Qt::Horizontal).toString(), names.at(i));

    QCOMPARE(header->sectionSize(0), TestEnvironment::scaled(200));
    QCOMPARE(header->sectionSize(1), TestEnvironment::scaled(100));
    QCOMPARE(header->sectionSize(2), TestEnvironment::scaled(150));
    QCOMPARE(header->sectionSize(3), TestEnvironment::scaled(12));
    QCOMPARE(header->size(), QSize(TestEnvironment::scaled(20000), TestEnvironment::scaled(30)));
    QVERIFY(body->horizontalHeader()->isHidden());
    QVERIFY(body->verticalHeader()->isHidden());
    QCOMPARE(body->verticalHeader()->defaultSectionSize(), TestEnvironment::scaled(28));

    auto* area = table.findChild<QScrollArea*>();
    QVERIFY(area);
    QCOMPARE(area->widget(), header);
    QCOMPARE(area->height(), TestEnvironment::scaled(30));
}

void TestTableWidget::ratioColumnsShareTheWidthOnResize_data()
{
    QTest::addColumn<int>("width");
    QTest::addColumn<bool>("mixed");

    // Unscaled widths; the run's factor applies to the widget.
    QTest::newRow("wide") << 1000 << false;
    QTest::newRow("medium") << 500 << false;
    QTest::newRow("below Name's minimum") << 350 << false;
    QTest::newRow("below both minimums") << 200 << false;
    QTest::newRow("narrower than the fixed columns") << 60 << false;
    QTest::newRow("resizable without ratio, fixed with ratio") << 900 << true;
}

void TestTableWidget::ratioColumnsShareTheWidthOnResize()
{
    QFETCH(int, width);
    QFETCH(bool, mixed);

    const OrvaTableColumnsInfo info = mixed ? mixedColumns() : fileColumns();
    OrvaTableWidget table(info);
    table.resize(TestEnvironment::scaled(1600), TestEnvironment::scaled(300));
    table.show();
    QVERIFY(QTest::qWaitForWindowExposed(&table));
    auto* body = qobject_cast<ResizeSignalTableWidget*>(table.getTable());
    QSignalSpy resized(body, &ResizeSignalTableWidget::sigResized);
    QVERIFY(resized.isValid());

    // Shrink from a wide table: the sharing must follow the latest size only.
    table.resize(TestEnvironment::scaled(width), TestEnvironment::scaled(300));
    QTRY_COMPARE(body->width(), TestEnvironment::scaled(width));
    QApplication::processEvents();

    // The body reports its own size and, as every scroll area does, its
    // viewport's; the last report is the one the columns follow.
    QVERIFY(!resized.isEmpty());
    const int reported = resized.last().at(0).toSize().width();
    QVERIFY2(reported == body->width() || reported == body->viewport()->width(), qPrintable(QString::number(reported)));
    const QList<int> expected = expectedSections(info, reported);
    QCOMPARE(headerSections(table, 3), expected);
    QCOMPARE(bodySections(table, 3), expected);
    QCOMPARE(table.getHeader()->sectionSize(3), TestEnvironment::scaled(12));
    // A column never shrinks below its scaled width.
    for (int i = 0; i < 3; ++i)
        QVERIFY(expected.at(i) >= TestEnvironment::scaled(info.columns.at(i).width));
    if (width >= 1000) {
        // Wide enough: the ratio columns fill the body, give or take the truncation.
        int sum = 0;
        for (int section : expected)
            sum += section;
        QVERIFY(qAbs(reported - sum) <= 2);
    }
}

void TestTableWidget::workedExamplesAtFactorOne_data()
{
    QTest::addColumn<int>("width");
    QTest::addColumn<int>("name");
    QTest::addColumn<int>("date");

    QTest::newRow("1000 px") << 1000 << 540 << 360;
    QTest::newRow("500 px") << 500 << 240 << 160;
    QTest::newRow("350 px: both minimums") << 350 << 200 << 150;
}

void TestTableWidget::workedExamplesAtFactorOne()
{
    QFETCH(int, width);
    QFETCH(int, name);
    QFETCH(int, date);

    if (!qFuzzyCompare(factor(), 1.0)) {
        // These figures hold at factor 1 only: run this function in a child
        // pinned to 72 dpi. The data-driven sharing test above covers this factor.
        FactorOne::runInChild("workedExamplesAtFactorOne");
        return;
    }

    OrvaTableWidget table(fileColumns());
    table.slotTableResized(QSize(width, 300));
    QCOMPARE(table.getHeader()->sectionSize(0), name);
    QCOMPARE(table.getHeader()->sectionSize(1), 100);
    QCOMPARE(table.getHeader()->sectionSize(2), date);
    QCOMPARE(table.getTable()->horizontalHeader()->sectionSize(0), name);
    QCOMPARE(table.getTable()->horizontalHeader()->sectionSize(2), date);
}

void TestTableWidget::draggingAHeaderEdgeResizesTheBodyColumn()
{
    OrvaTableColumnsInfo info;
    info.addColumn(QStringLiteral("Name"), 150, true, 0.0);
    info.addColumn(QStringLiteral("Size"), 100, false, 0.0);
    OrvaTableWidget table(info);
    table.resize(TestEnvironment::scaled(600), TestEnvironment::scaled(200));
    table.show();
    QVERIFY(QTest::qWaitForWindowExposed(&table));

    QHeaderView* header = table.getHeader();
    const int drag = TestEnvironment::scaled(40);
    dragEdge(header, 0, drag);
    QCOMPARE(header->sectionSize(0), TestEnvironment::scaled(150) + drag);
    QCOMPARE(table.getTable()->horizontalHeader()->sectionSize(0), header->sectionSize(0));

    // The fixed column does not give way to a drag.
    dragEdge(header, 1, drag);
    QCOMPARE(header->sectionSize(1), TestEnvironment::scaled(100));
    QCOMPARE(table.getTable()->horizontalHeader()->sectionSize(1), TestEnvironment::scaled(100));
}

void TestTableWidget::verticalScrollBarOnlyWhenRowsOverflow()
{
    OrvaTableWidget table(fileColumns());
    table.resize(TestEnvironment::scaled(600), TestEnvironment::scaled(300));
    table.show();
    QVERIFY(QTest::qWaitForWindowExposed(&table));
    QTableWidget* body = table.getTable();
    QScrollBar* bar = body->verticalScrollBar();

    QVERIFY(!bar->isVisible());

    // A few rows that fit.
    body->setRowCount(2);
    for (int row = 0; row < 2; ++row)
        body->setItem(row, 0, new QTableWidgetItem(QStringLiteral("file %1").arg(row)));
    QApplication::processEvents();
    QTRY_COMPARE(bar->maximum(), 0);
    QVERIFY(!bar->isVisible());

    // Past the visible height.
    const int rows = 3 * table.height() / TestEnvironment::scaled(28);
    body->setRowCount(rows);
    QTRY_VERIFY(bar->maximum() > 0);
    QTRY_VERIFY(bar->isVisible());

    // Scrolled to the end, then the rows go away again.
    body->scrollToBottom();
    QTRY_COMPARE(bar->value(), bar->maximum());
    body->setRowCount(1);
    QTRY_COMPARE(bar->maximum(), 0);
    QTRY_VERIFY(!bar->isVisible());
}

void TestTableWidget::headerFollowsHorizontalScrolling()
{
    OrvaTableWidget table(fileColumns());
    table.resize(TestEnvironment::scaled(250), TestEnvironment::scaled(200));
    table.show();
    QVERIFY(QTest::qWaitForWindowExposed(&table));
    QTableWidget* body = table.getTable();
    body->setRowCount(3);

    auto* area = table.findChild<QScrollArea*>();
    QVERIFY(area);
    // At 250 px the minimums (450 px) are wider than the body.
    QTRY_VERIFY(body->horizontalScrollBar()->maximum() > 0);
    const int target = body->horizontalScrollBar()->maximum();
    body->horizontalScrollBar()->setValue(target);
    QCOMPARE(area->horizontalScrollBar()->value(), target);
    QCOMPARE(table.getHeader()->mapTo(&table, QPoint(0, 0)).x(), -target);
    body->horizontalScrollBar()->setValue(0);
    QCOMPARE(area->horizontalScrollBar()->value(), 0);
}

void TestTableWidget::nonsenseColumnsDoNotCrash_data()
{
    QTest::addColumn<int>("width");
    QTest::addColumn<bool>("resizable");
    QTest::addColumn<double>("ratio");

    QTest::newRow("no columns") << -1 << false << 0.0;
    QTest::newRow("zero width ratio column") << 0 << true << 0.5;
    QTest::newRow("zero width fixed column") << 0 << false << 0.0;
    QTest::newRow("negative width") << -50 << true << 0.5;
    QTest::newRow("huge width") << std::numeric_limits<int>::max() << true << 0.5;
    QTest::newRow("negative ratio") << 100 << true << -3.0;
    QTest::newRow("huge ratio") << 100 << true << 1e300;
    QTest::newRow("not a number") << 100 << true << std::nan("");
}

void TestTableWidget::nonsenseColumnsDoNotCrash()
{
    QFETCH(int, width);
    QFETCH(bool, resizable);
    QFETCH(double, ratio);

    OrvaTableColumnsInfo info;
    if (width != -1 || resizable) {
        info.addColumn(QStringLiteral("Odd"), width, resizable, ratio);
        info.addColumn(QStringLiteral("Plain"), 80, true, 0.5);
    }
    OrvaTableWidget table(info);
    table.resize(TestEnvironment::scaled(400), TestEnvironment::scaled(200));
    table.show();
    QVERIFY(QTest::qWaitForWindowExposed(&table));
    table.getTable()->setRowCount(30);
    table.resize(TestEnvironment::scaled(100), TestEnvironment::scaled(100));
    table.slotTableResized(QSize(-10, -10));
    table.slotTableResized(QSize(std::numeric_limits<int>::max(), 10));
    table.slotSectionResized(-1, 0, 10);
    table.slotSectionResized(99, 0, 10);
    QApplication::processEvents();

    QCOMPARE(table.getHeader()->count(), info.columns.size() + 1);
    QCOMPARE(table.getTable()->columnCount(), info.columns.size());
    for (int i = 0; i < info.columns.size(); ++i)
        QVERIFY(table.getHeader()->sectionSize(i) >= 0);
}

ORVACAT_TEST_MAIN(TestTableWidget)
#include "tst_tablewidget.moc"
