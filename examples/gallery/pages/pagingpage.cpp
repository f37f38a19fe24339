// Gallery page: a paging bar under a list of generated orders. The page does
// what an application does with the bar: it keeps the rows, listens for
// page changes and fills the list with the page the model points at.

#include "gallerypages.h"
#include "pagebuilding.h"

#include <orvacat/orvacat.h>

#include <QApplication>
#include <QDir>
#include <QHeaderView>
#include <QLabel>
#include <QTableWidget>
#include <QVBoxLayout>

#include <vector>

namespace {

struct Order
{
    QString number;
    QString customer;
    QString city;
    QString amount;
};

/** Deterministic rows: the same batch always gives the same orders. */
std::vector<Order> generateOrders(int batch, int count)
{
    static const char* const first[] = {"Ada", "Grace", "Alan", "Edsger", "Barbara", "Ken", "Margaret", "Linus",
                                        "Frances", "Donald", "Radia", "Niklaus", "Hedy", "Tim", "Sophie"};
    static const char* const last[] = {"Lovelace", "Hopper", "Turing", "Dijkstra", "Liskov", "Thompson",
                                       "Hamilton", "Torvalds", "Allen", "Knuth", "Perlman", "Wirth", "Lamarr"};
    static const char* const cities[] = {"Lisbon", "Oslo", "Toronto", "Kyoto", "Porto Alegre", "Tallinn",
                                         "Nairobi", "Adelaide", "Valparaíso", "Ghent", "Lyon", "Pune"};
    std::vector<Order> orders;
    orders.reserve(std::size_t(count));
    quint32 seed = 2166136261u ^ quint32(batch * 7919);
    auto next = [&seed]() {
        seed = seed * 1664525u + 1013904223u;
        return seed >> 8;
    };
    for (int i = 0; i < count; ++i) {
        Order order;
        order.number = QStringLiteral("%1-%2").arg(batch, 2, 10, QLatin1Char('0')).arg(i + 1, 5, 10, QLatin1Char('0'));
        order.customer = QString::fromUtf8(first[next() % (sizeof(first) / sizeof(*first))]) + QLatin1Char(' ')
            + QString::fromUtf8(last[next() % (sizeof(last) / sizeof(*last))]);
        order.city = QString::fromUtf8(cities[next() % (sizeof(cities) / sizeof(*cities))]);
        const int cents = int(next() % 250000) + 500;
        order.amount = QStringLiteral("%1.%2").arg(cents / 100).arg(cents % 100, 2, 10, QLatin1Char('0'));
        orders.push_back(order);
    }
    return orders;
}

const int rowsPerPage = 50;

/** The application side of the bar: rows, model, list. */
class OrderList : public QWidget
{
public:
    OrderList()
        : m_model(rowsPerPage)
    {
        m_table = new QTableWidget(0, 4);
        m_table->setAccessibleName(QStringLiteral("Orders"));
        m_table->setHorizontalHeaderLabels({QStringLiteral("Order"), QStringLiteral("Customer"),
                                            QStringLiteral("City"), QStringLiteral("Amount")});
        m_table->setStyleSheet(getStyleSheet("component.table", false) + getStyleSheet("component.scrollbar", false));
        m_table->horizontalHeader()->setStyleSheet(getStyleSheet("component.table_header", false));
        m_table->verticalHeader()->hide();
        m_table->setEditTriggers(QAbstractItemView::NoEditTriggers);
        // One Tab stop, as the toolkit's table: the arrow keys walk the rows.
        m_table->setTabKeyNavigation(false);
        m_table->setSelectionBehavior(QAbstractItemView::SelectRows);
        m_table->setShowGrid(false);
        m_table->setAlternatingRowColors(true);
        m_table->setFrameShape(QFrame::NoFrame);
        m_table->horizontalHeader()->setSectionResizeMode(QHeaderView::Stretch);
        m_table->horizontalHeader()->setDefaultAlignment(Qt::AlignLeft | Qt::AlignVCenter);
        m_table->horizontalHeaderItem(3)->setTextAlignment(Qt::AlignRight | Qt::AlignVCenter);
        m_table->verticalHeader()->setDefaultSectionSize(px(24));

        m_bar = new OrvaPagingBar(&m_model);

        m_status = new QLabel;
        m_status->setStyleSheet(lookSheet(QStringLiteral("color: @quiet;")));

        auto* frame = new QFrame;
        frame->setObjectName(QStringLiteral("ordersFrame"));
        frame->setStyleSheet(lookSheet(QStringLiteral("QFrame#ordersFrame { border: 1px solid @line; background: transparent; }")));
        auto* frameLayout = new QVBoxLayout(frame);
        frameLayout->setContentsMargins(1, 1, 1, 1);
        frameLayout->setSpacing(0);
        frameLayout->addWidget(m_table, 1);
        frameLayout->addWidget(m_bar);

        auto* layout = new QVBoxLayout(this);
        layout->setContentsMargins(0, 0, 0, 0);
        layout->setSpacing(px(6));
        layout->addWidget(frame, 1);
        layout->addWidget(m_status);

        QObject::connect(m_bar, &OrvaPagingBar::sigPageChanged, this, [this] { showPage(); });
        QObject::connect(m_bar, &OrvaPagingBar::sigRefresh, this, [this] { regenerate(); });

        m_orders = generateOrders(m_batch, 3000);
        m_bar->setItemCount(int(m_orders.size()));
        showPage();
    }

private:
    // A refresh brings a new batch whose size differs a little, as a
    // server's answer would; the bar goes back to page 1 for it.
    void regenerate()
    {
        ++m_batch;
        m_orders = generateOrders(m_batch, 3000 - 37 * (m_batch % 5) + 11 * (m_batch % 3));
        m_bar->setItemCount(int(m_orders.size()));
        m_bar->reset();
    }

    void showPage()
    {
        const int total = int(m_orders.size());
        const int first = qBound(0, m_model.startItem(), total);
        const int end = qMin(total, first + m_model.rowLimit());
        m_table->setRowCount(end - first);
        for (int row = 0; row < end - first; ++row) {
            const Order& order = m_orders[std::size_t(first + row)];
            const QStringList cells{order.number, order.customer, order.city, order.amount};
            for (int column = 0; column < cells.size(); ++column) {
                auto* item = new QTableWidgetItem(cells.at(column));
                if (column == 3)
                    item->setTextAlignment(Qt::AlignRight | Qt::AlignVCenter);
                m_table->setItem(row, column, item);
            }
        }
        m_table->scrollToTop();
        m_bar->setFooterText(total == 0 ? QStringLiteral("No rows")
                                        : QStringLiteral("Rows %1-%2 of %3").arg(first + 1).arg(end).arg(total));
        m_status->setText(QStringLiteral("Page %1 of %2 · batch %3 · the list starts at row index %4")
                              .arg(m_model.nowPage())
                              .arg(m_model.pageCount())
                              .arg(m_batch)
                              .arg(m_model.startItem()));
    }

    OrvaPagingModel m_model;
    OrvaPagingBar* m_bar = nullptr;
    QTableWidget* m_table = nullptr;
    QLabel* m_status = nullptr;
    std::vector<Order> m_orders;
    int m_batch = 1;
};

QWidget* createPage()
{
    auto* page = new QWidget;
    auto* layout = pageLayout(page);
    layout->setSpacing(px(10));
    layout->addWidget(note(QStringLiteral(
        "3,000 generated orders, 50 to a page. The current page always sits in the middle button; the arrows "
        "jump to the first page, five pages back, five on and to the last page. Refresh fetches a new batch "
        "and starts again at page 1.")));
    layout->addWidget(new OrderList, 1);
    return page;
}

// Deep in the list, where all five page buttons are in use.
void middleScreenshot(QWidget* window, QWidget* page, const QString& dir)
{
    auto* bar = page->findChild<OrvaPagingBar*>();
    if (!bar)
        return;
    for (int i = 0; i < 5; ++i)
        bar->next_5_page();
    QApplication::processEvents();
    window->grab().save(QDir(dir).filePath(QStringLiteral("paging-page26.png")));
    bar->first_page();
}

GalleryPageRegistration registration("paging", "Paging", 52, &createPage, &middleScreenshot);

} // namespace
