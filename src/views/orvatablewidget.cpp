#include <orvacat/orvatablewidget.h>

#include <orvacat/stylemanager.h>

#include "resources/dpiscaling_p.h"

#include <QHeaderView>
#include <QResizeEvent>
#include <QScrollArea>
#include <QScrollBar>
#include <QStringList>
#include <QVBoxLayout>

#include <cmath>
#include <limits>

namespace {

bool isRatioColumn(const OrvaTableColumnsInfo::ColumnInfo& column)
{
    return column.resizable && column.ratio != 0.0;
}

} // namespace

OrvaTableColumnsInfo::OrvaTableColumnsInfo() = default;

int OrvaTableColumnsInfo::addColumn(const QString& name, int width, bool resizable, double ratio)
{
    ColumnInfo column;
    column.name = name;
    column.width = width;
    column.resizable = resizable;
    column.ratio = ratio;
    columns.append(column);
    return columns.size() - 1;
}

ResizeSignalTableWidget::ResizeSignalTableWidget(int rows, int columns)
    : QTableWidget(qMax(0, rows), qMax(0, columns))
{
}

void ResizeSignalTableWidget::resizeEvent(QResizeEvent* event)
{
    Q_EMIT sigResized(event->size());
    QTableWidget::resizeEvent(event);
}

OrvaTableWidget::OrvaTableWidget(const OrvaTableColumnsInfo& columns, QWidget* parent)
    : QWidget(parent)
    , m_columns(columns.columns)
{
    initailze();
}

OrvaTableWidget::~OrvaTableWidget()
{
    // The header's model lives in this table, which belongs to nobody else.
    m_header->setModel(nullptr);
    delete m_headerSource;
}

QTableWidget* OrvaTableWidget::getTable()
{
    return m_table;
}

QHeaderView* OrvaTableWidget::getHeader()
{
    return m_header;
}

void OrvaTableWidget::initailze()
{
    const int count = m_columns.size();
    const double factor = DPIinfo::getInstance()->getDPI();

    QStringList labels;
    for (const OrvaTableColumnsInfo::ColumnInfo& column : qAsConst(m_columns))
        labels << column.name;
    labels << QString();

    m_headerSource = new QTableWidget(0, count + 1);
    m_header = new QHeaderView(Qt::Horizontal);
    m_header->setModel(m_headerSource->model());
    m_header->setDefaultAlignment(Qt::AlignLeft | Qt::AlignVCenter);
    m_header->setHorizontalScrollMode(QAbstractItemView::ScrollPerPixel);
    m_header->setStyleSheet(getStyleSheet("component.table_header", false));
    // Far wider than any table: the scroll area slides it under its window.
    m_header->setFixedSize(scaled(20000), scaled(30));
    m_headerSource->setHorizontalHeaderLabels(labels);

    m_table = new ResizeSignalTableWidget(0, count);
    // The body's own header stays hidden under the strip, but it is where
    // assistive technology reads the column names from.
    m_table->setHorizontalHeaderLabels(labels.mid(0, count));
    // The style's default minimum (about a line of text) would widen the
    // spare section past the scroll bar it stands above; both headers share
    // the same floor so that the body's columns always match the header's.
    m_header->setMinimumSectionSize(scaled(12));
    m_table->horizontalHeader()->setMinimumSectionSize(scaled(12));

    for (int i = 0; i < count; ++i) {
        const OrvaTableColumnsInfo::ColumnInfo& column = m_columns.at(i);
        const int width = saturatedInt(column.width * factor);
        m_header->resizeSection(i, width);
        m_headerSource->horizontalHeader()->resizeSection(i, width);
        m_table->horizontalHeader()->resizeSection(i, width);
        const QHeaderView::ResizeMode mode = column.resizable ? QHeaderView::Interactive : QHeaderView::Fixed;
        m_header->setSectionResizeMode(i, mode);
        m_table->horizontalHeader()->setSectionResizeMode(i, mode);
    }

    // The spare last section stands above the body's vertical scroll bar.
    m_header->resizeSection(count, scaled(12));
    m_headerSource->horizontalHeader()->resizeSection(count, scaled(12));
    m_header->setSectionResizeMode(count, QHeaderView::Fixed);

    m_table->setSelectionBehavior(QAbstractItemView::SelectRows);
    // One Tab stop for the whole table; the arrow keys move inside it.
    m_table->setTabKeyNavigation(false);
    m_table->setEditTriggers(QAbstractItemView::NoEditTriggers);
    m_table->verticalHeader()->hide();
    m_table->horizontalHeader()->hide();
    // Always on keeps the scroll bar's place reserved (the header's spare
    // section sits above it); its visibility follows the scroll range.
    m_table->setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOn);
    m_table->verticalScrollBar()->hide();
    m_table->setVerticalScrollMode(QAbstractItemView::ScrollPerPixel);
    m_table->setHorizontalScrollMode(QAbstractItemView::ScrollPerPixel);
    m_table->verticalHeader()->setDefaultSectionSize(scaled(28));
    m_table->setStyleSheet(getStyleSheet("component.table", false) + getStyleSheet("component.scrollbar", false));
    m_table->setShowGrid(false);

    m_layout = new QVBoxLayout(this);
    m_layout->setSpacing(scaled(0));
    m_layout->setContentsMargins(scaled(0), scaled(0), scaled(0), scaled(0));

    m_headerArea = new QScrollArea;
    m_headerArea->setFixedHeight(scaled(30));
    m_headerArea->setFocusPolicy(Qt::NoFocus);
    m_headerArea->setWidget(m_header);
    m_headerArea->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    m_headerArea->setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    m_headerArea->setStyleSheet(QStringLiteral("QScrollArea { border: none; }"));

    m_layout->addWidget(m_headerArea);
    m_layout->addWidget(m_table);

    connect(m_header, &QHeaderView::sectionResized, this, &OrvaTableWidget::slotSectionResized);
    connect(m_table->verticalScrollBar(), &QScrollBar::rangeChanged, this,
            &OrvaTableWidget::slotVerticalScrollRangeChanged);
    connect(m_table->horizontalScrollBar(), &QScrollBar::valueChanged, m_headerArea->horizontalScrollBar(),
            &QScrollBar::setValue);
    connect(m_table, &ResizeSignalTableWidget::sigResized, this, &OrvaTableWidget::slotTableResized);
}

void OrvaTableWidget::slotSectionResized(int logicalIndex, int oldSize, int newSize)
{
    Q_UNUSED(oldSize)
    m_table->horizontalHeader()->resizeSection(logicalIndex, newSize);
}

void OrvaTableWidget::slotVerticalScrollRangeChanged(int min, int max)
{
    Q_UNUSED(min)
    m_table->verticalScrollBar()->setVisible(max != 0);
}

void OrvaTableWidget::slotTableResized(QSize size)
{
    const double factor = DPIinfo::getInstance()->getDPI();

    double fixedSum = 0;
    for (const OrvaTableColumnsInfo::ColumnInfo& column : qAsConst(m_columns)) {
        if (!isRatioColumn(column))
            fixedSum += column.width;
    }
    const double freeWidth = saturatedInt(size.width() - fixedSum * factor);

    for (int i = 0; i < m_columns.size(); ++i) {
        const OrvaTableColumnsInfo::ColumnInfo& column = m_columns.at(i);
        if (!isRatioColumn(column))
            continue;
        const int share = saturatedInt(column.ratio * freeWidth);
        const int minimum = saturatedInt(column.width * factor);
        m_header->resizeSection(i, minimum > share ? minimum : share);
    }
}
