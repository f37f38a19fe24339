#ifndef ORVACAT_ORVATABLEWIDGET_H
#define ORVACAT_ORVATABLEWIDGET_H

/**
 * @file
 * OrvaTableWidget, a table with a fixed header and columns sized by ratios,
 * with its column descriptions. Its looks come from the style sheet registry,
 * so initialize that before constructing one.
 */

#include <orvacat/orvacat_export.h>

#include <QList>
#include <QSize>
#include <QString>
#include <QTableWidget>
#include <QWidget>

class QHeaderView;
class QResizeEvent;
class QScrollArea;
class QVBoxLayout;

/**
 * The ordered column descriptions of an OrvaTableWidget. A plain value:
 * the table copies it when it is built, later changes do not reach it.
 */
class ORVACAT_EXPORT OrvaTableColumnsInfo
{
public:
    /** One column: its label, width, resizability and share of the free width. */
    struct ColumnInfo
    {
        /** The header label. */
        QString name;
        /** Initial width, and the smallest width of a ratio column, in unscaled pixels. */
        int width = 0;
        /** The user may drag the column's edge; with a ratio, the column shares the free width. */
        bool resizable = false;
        /** Share of the free width (0 keeps the width). Shares are not normalised. */
        double ratio = 0.0;
    };

    OrvaTableColumnsInfo();

    /** Appends a column and returns its index: 0, 1, 2 ... in call order. */
    int addColumn(const QString& name, int width, bool resizable, double ratio);

    /** The columns in addColumn() order; a host may also edit the list directly. */
    QList<ColumnInfo> columns;
};

/**
 * A QTableWidget that announces its new size before it handles a resize.
 * Created without a parent; put it in a layout.
 */
class ORVACAT_EXPORT ResizeSignalTableWidget : public QTableWidget
{
    Q_OBJECT

public:
    /** A table of @p rows by @p columns; negative counts are taken as 0. */
    ResizeSignalTableWidget(int rows, int columns);

Q_SIGNALS:
    /** The table's new size, on every resize, before the table lays itself out for it. */
    void sigResized(QSize size);

protected:
    /** Emits sigResized() first. */
    void resizeEvent(QResizeEvent* event) override;
};

/**
 * A table whose header stays put above vertically scrolling rows and whose
 * ratio columns share out the table's width whenever it is resized (never
 * narrower than their own scaled width; the table scrolls horizontally when
 * that is wider than the table). The header follows the body's horizontal
 * scrolling, the body follows the header's column widths, and the body's
 * vertical scroll bar is shown only when the rows do not fit.
 *
 * Fill the rows through getTable(); the columns are fixed at construction.
 * The body is one Tab stop (the arrow keys move inside it) and carries the
 * column names in its own hidden header, where assistive technology reads
 * them; name the body for it with getTable()->setAccessibleName().
 */
class ORVACAT_EXPORT OrvaTableWidget : public QWidget
{
    Q_OBJECT

public:
    /**
     * A table with a copy of @p columns, each at its scaled width, and no
     * rows. The rows are read-only and selected whole, 28 (scaled) pixels
     * high.
     */
    explicit OrvaTableWidget(const OrvaTableColumnsInfo& columns, QWidget* parent = nullptr);
    ~OrvaTableWidget() override;

    /** The body table (a ResizeSignalTableWidget) with one column per description. */
    QTableWidget* getTable();
    /** The header strip; its last section is a spare one above the body's vertical scroll bar. */
    QHeaderView* getHeader();

public Q_SLOTS:
    /** Makes the body's column @p logicalIndex follow the header's. */
    void slotSectionResized(int logicalIndex, int oldSize, int newSize);
    /** Shows the body's vertical scroll bar only when there is something to scroll. */
    void slotVerticalScrollRangeChanged(int min, int max);
    /** Shares the free width of a body of @p size among the ratio columns. */
    void slotTableResized(QSize size);

private:
    void initailze();

    QList<OrvaTableColumnsInfo::ColumnInfo> m_columns;
    QHeaderView* m_header = nullptr;
    QTableWidget* m_headerSource = nullptr;
    ResizeSignalTableWidget* m_table = nullptr;
    QScrollArea* m_headerArea = nullptr;
    QVBoxLayout* m_layout = nullptr;
};

#endif // ORVACAT_ORVATABLEWIDGET_H
