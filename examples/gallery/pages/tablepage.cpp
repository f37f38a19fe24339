// Gallery page: a file table whose Name and Modified columns share the free
// width by ratios. Drag the splitter (or resize the window) to see them give
// and take, down to their minimums, after which the table scrolls sideways.

#include "gallerypages.h"
#include "pagebuilding.h"

#include <orvacat/orvacat.h>

#include <QDateTime>
#include <QFrame>
#include <QHeaderView>
#include <QLabel>
#include <QSplitter>
#include <QTableWidget>
#include <QVBoxLayout>

namespace {

QString sizeText(qint64 bytes)
{
    if (bytes < 1024)
        return QStringLiteral("%1 B").arg(bytes);
    if (bytes < 1024 * 1024)
        return QStringLiteral("%1 KB").arg(bytes / 1024);
    return QStringLiteral("%1 MB").arg(QString::number(bytes / (1024.0 * 1024.0), 'f', 1));
}

// A few hundred plausible files, the same on every run.
void fillRows(QTableWidget* table)
{
    const QStringList stems = {
        QStringLiteral("Quarterly report"), QStringLiteral("Invoice"),       QStringLiteral("Holiday photo"),
        QStringLiteral("Meeting notes"),    QStringLiteral("Budget"),        QStringLiteral("Site plan"),
        QStringLiteral("Interview"),        QStringLiteral("Contract draft"), QStringLiteral("Product shot"),
        QStringLiteral("Backup"),
    };
    struct Kind
    {
        QString suffix;
        QString name;
    };
    const QList<Kind> kinds = {
        {QStringLiteral("pdf"), QStringLiteral("PDF document")}, {QStringLiteral("xlsx"), QStringLiteral("Spreadsheet")},
        {QStringLiteral("jpg"), QStringLiteral("JPEG image")},   {QStringLiteral("docx"), QStringLiteral("Document")},
        {QStringLiteral("mp4"), QStringLiteral("Video")},        {QStringLiteral("zip"), QStringLiteral("Archive")},
    };
    const QDateTime start(QDate(2026, 1, 5), QTime(9, 0));
    const int rows = 300;
    table->setRowCount(rows);
    quint32 seed = 2026;
    for (int row = 0; row < rows; ++row) {
        seed = seed * 1664525u + 1013904223u;
        const Kind& kind = kinds.at(int(seed % quint32(kinds.size())));
        const QString name = QStringLiteral("%1 %2.%3")
                                 .arg(stems.at(row % stems.size()))
                                 .arg(row / stems.size() + 1, 3, 10, QLatin1Char('0'))
                                 .arg(kind.suffix);
        const qint64 bytes = qint64((seed >> 8) % 50000000u) + 300;
        const QDateTime modified = start.addSecs(qint64(row) * 5317 + (seed % 3600));
        table->setItem(row, 0, new QTableWidgetItem(name));
        auto* size = new QTableWidgetItem(sizeText(bytes));
        size->setTextAlignment(Qt::AlignRight | Qt::AlignVCenter);
        table->setItem(row, 1, size);
        table->setItem(row, 2, new QTableWidgetItem(kind.name));
        table->setItem(row, 3, new QTableWidgetItem(modified.toString(QStringLiteral("yyyy-MM-dd HH:mm"))));
    }
}

QWidget* createPage()
{
    OrvaTableColumnsInfo columns;
    columns.addColumn(QStringLiteral("Name"), 220, true, 0.6);
    columns.addColumn(QStringLiteral("Size"), 90, false, 0.0);
    columns.addColumn(QStringLiteral("Kind"), 110, true, 0.0);
    columns.addColumn(QStringLiteral("Modified"), 130, true, 0.4);

    auto* table = new OrvaTableWidget(columns);
    fillRows(table->getTable());
    table->getTable()->setAccessibleName(QStringLiteral("Files"));

    // Beside the table, what the columns measure right now.
    auto* widths = new QLabel;
    widths->setAlignment(Qt::AlignLeft | Qt::AlignTop);
    widths->setTextFormat(Qt::RichText);
    auto* side = new QWidget;
    auto* sideLayout = new QVBoxLayout(side);
    sideLayout->setContentsMargins(px(14), 0, 0, 0);
    sideLayout->addWidget(widths);
    sideLayout->addWidget(note(QStringLiteral("Name takes 60 % and Modified 40 % of what Size and Kind leave free. "
                                              "Kind can be dragged but keeps its width on resize; Size is fixed.")));
    sideLayout->addStretch(1);
    const auto showWidths = [table, widths, columns]() {
        QString text = QStringLiteral("<b>Column widths</b><table cellspacing='4'>");
        for (int i = 0; i < columns.columns.size(); ++i) {
            text += QStringLiteral("<tr><td>%1</td><td align='right'>%2 px</td></tr>")
                        .arg(columns.columns.at(i).name)
                        .arg(table->getHeader()->sectionSize(i));
        }
        text += QStringLiteral("<tr><td>Table</td><td align='right'>%1 px</td></tr></table>").arg(table->getTable()->width());
        widths->setText(text);
    };
    QObject::connect(table->getHeader(), &QHeaderView::sectionResized, widths, showWidths);
    QObject::connect(qobject_cast<ResizeSignalTableWidget*>(table->getTable()), &ResizeSignalTableWidget::sigResized,
                     widths, showWidths);
    showWidths();

    // A hairline around the table: its own style has no border.
    auto* frame = new QFrame;
    frame->setObjectName(QStringLiteral("tableFrame"));
    frame->setStyleSheet(lookSheet(QStringLiteral("QFrame#tableFrame { border: 1px solid @line; background: @card; }")));
    auto* frameLayout = new QVBoxLayout(frame);
    frameLayout->setContentsMargins(1, 1, 1, 1);
    frameLayout->addWidget(table);

    auto* splitter = new QSplitter(Qt::Horizontal);
    splitter->addWidget(frame);
    splitter->addWidget(side);
    splitter->setStretchFactor(0, 1);
    splitter->setStretchFactor(1, 0);
    splitter->setChildrenCollapsible(false);
    side->setMinimumWidth(px(190));
    side->setMaximumWidth(px(260));

    auto* page = new QWidget;
    auto* layout = pageLayout(page);
    layout->setSpacing(px(10));
    layout->addWidget(note(QStringLiteral("300 generated files. The header stays put while the rows scroll; drag the "
                                          "splitter to narrow the table below its columns' minimums and it scrolls "
                                          "sideways, header and all.")));
    layout->addWidget(splitter, 1);
    return page;
}

GalleryPageRegistration registration("table", "Table", 54, &createPage);

} // namespace
