#include <orvacat/orvapagingbar.h>

#include <orvacat/componentstrings.h>
#include <orvacat/globals.h>
#include <orvacat/orvabuttons.h>
#include <orvacat/stylemanager.h>

#include "resources/dpiscaling_p.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QSignalMapper>

#include <limits>

namespace {

const int pageButtonCount = 5;
const int middleButton = 2;

// Page arithmetic runs in 64 bits: hosts may hand us any int, and the
// neighbours of INT_MAX or INT_MIN must not overflow.
int saturated(qint64 value)
{
    if (value > std::numeric_limits<int>::max())
        return std::numeric_limits<int>::max();
    if (value < std::numeric_limits<int>::min())
        return std::numeric_limits<int>::min();
    return int(value);
}

} // namespace

OrvaPagingModel::OrvaPagingModel(int rowLimit, QObject* parent)
    : QObject(parent)
    , m_rowLimit(rowLimit)
{
}

int OrvaPagingModel::rowLimit() const
{
    return m_rowLimit;
}

void OrvaPagingModel::setRowLimit(int rowLimit)
{
    m_rowLimit = rowLimit;
}

int OrvaPagingModel::itemCount() const
{
    return m_itemCount;
}

void OrvaPagingModel::setItemCount(int itemCount)
{
    m_itemCount = itemCount;
}

int OrvaPagingModel::nowPage() const
{
    return m_nowPage;
}

void OrvaPagingModel::setNowPage(int nowPage)
{
    m_nowPage = nowPage;
}

int OrvaPagingModel::pageCount() const
{
    const qint64 items = m_itemCount;
    const qint64 limit = m_rowLimit;
    qint64 pages = items / limit + 1;
    if (items % limit == 0)
        --pages;
    return pages < 1 ? 1 : saturated(pages);
}

int OrvaPagingModel::startItem() const
{
    return saturated((qint64(m_nowPage) - 1) * m_rowLimit);
}

OrvaPagingBar::OrvaPagingBar(OrvaPagingModel* model, QWidget* parent)
    : QWidget(parent)
    , m_model(model)
{
    if (!model)
        qCWarning(debug_message) << "OrvaPagingBar has no model; it keeps its own";
    this->model()->setNowPage(1);
    this->model()->setItemCount(0);

    m_mapper = new QSignalMapper(this);

    m_firstButton = new OrvaIconButton(QStringLiteral("bt_pagebar_backend"));
    m_firstButton->setToolTip(ComponentStrings::getInstance()->getString(QStringLiteral("first_page")));
    m_backButton = new OrvaIconButton(QStringLiteral("bt_pagebar_back"));
    m_backButton->setToolTip(ComponentStrings::getInstance()->getString(QStringLiteral("prev_5_pages")));
    m_lastButton = new OrvaIconButton(QStringLiteral("bt_pagebar_nextend"));
    m_lastButton->setToolTip(ComponentStrings::getInstance()->getString(QStringLiteral("last_page")));
    m_nextButton = new OrvaIconButton(QStringLiteral("bt_pagebar_next"));
    m_nextButton->setToolTip(ComponentStrings::getInstance()->getString(QStringLiteral("next_5_pages")));

    m_mainLayout = new QHBoxLayout;
    m_mainLayout->setSpacing(scaled(0));
    m_mainLayout->setContentsMargins(scaled(0), scaled(0), scaled(0), scaled(0));
    m_mainLayout->addSpacing(scaled(50));
    m_mainLayout->addWidget(m_firstButton, 0, Qt::AlignLeft);
    m_mainLayout->addWidget(m_backButton, 0, Qt::AlignLeft);
    m_mainLayout->addStretch(0);

    for (int i = 0; i < pageButtonCount; ++i) {
        if (i > 0)
            m_mainLayout->addSpacing(scaled(4));
        // Only the middle button ever shows the current page, so the looks never change.
        auto* button = new OrvaButton(QString(), i == middleButton ? 2 : 3);
        button->setFixedHeight(scaled(27));
        button->setMinimumWidth(scaled(28));
        connect(button, &QPushButton::clicked, m_mapper, qOverload<>(&QSignalMapper::map));
        m_mainLayout->addWidget(button);
        m_mainLayout->setAlignment(button, Qt::AlignHCenter);
        m_mapper->setMapping(button, i);
        m_pageButtons[i] = button;
    }

    m_mainLayout->addStretch(0);
    m_pageButtons[middleButton]->setText(QStringLiteral("1"));
    connect(m_mapper, &QSignalMapper::mappedInt, this, &OrvaPagingBar::pageClick);

    m_mainLayout->addWidget(m_nextButton, 0, Qt::AlignRight);
    m_mainLayout->addWidget(m_lastButton, 0, Qt::AlignRight);

    m_refreshButton = new OrvaIconButton(QStringLiteral("bt_pagebar_refresh"));
    m_refreshButton->setAccessibleName(ComponentStrings::getInstance()->getString(QStringLiteral("pagebar_refresh")));
    m_refreshButton->setFixedSize(scaled(24), scaled(24));

    // Right to left: the refresh button is the rightmost item and every
    // footer label added later lands to the left of the previous one.
    m_footerLayout = new QHBoxLayout;
    m_footerLayout->setDirection(QBoxLayout::RightToLeft);
    m_footerLayout->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    m_footerLayout->setSpacing(scaled(0));
    m_footerLayout->setContentsMargins(scaled(0), scaled(2), scaled(0), scaled(0));
    m_footerLayout->addWidget(m_refreshButton, 0, Qt::AlignCenter);

    m_mainLayout->addSpacing(scaled(50));
    m_mainLayout->addLayout(m_footerLayout);

    auto* border = new QWidget;
    border->setLayout(m_mainLayout);
    border->setObjectName(QStringLiteral("PAGINGBARBORDER"));
    border->setStyleSheet(getStyleSheet("component.paging_bar_border", false));
    border->setFixedHeight(scaled(29));

    auto* layout = new QHBoxLayout(this);
    layout->setSpacing(scaled(0));
    layout->setContentsMargins(scaled(0), scaled(0), scaled(0), scaled(0));
    layout->addWidget(border);

    connect(m_refreshButton, &QToolButton::clicked, this, &OrvaPagingBar::sigRefresh);
    connect(m_firstButton, &QToolButton::clicked, this, &OrvaPagingBar::first_page);
    connect(m_lastButton, &QToolButton::clicked, this, &OrvaPagingBar::last_page);
    connect(m_nextButton, &QToolButton::clicked, this, &OrvaPagingBar::next_5_page);
    connect(m_backButton, &QToolButton::clicked, this, &OrvaPagingBar::prev_5_page);
}

OrvaPagingBar::~OrvaPagingBar() = default;

OrvaPagingModel* OrvaPagingBar::model()
{
    if (m_model)
        return m_model;
    // A host that passed no model, or deleted it too early, gets a bar that
    // still works on a private one instead of a crash.
    if (!m_fallbackModel)
        m_fallbackModel = new OrvaPagingModel(1, this);
    return m_fallbackModel;
}

int OrvaPagingBar::pageCount()
{
    return model()->pageCount();
}

void OrvaPagingBar::setPage(int page)
{
    const int count = pageCount();
    for (int i = 0; i < pageButtonCount; ++i) {
        const qint64 n = qint64(page) - middleButton + i;
        const bool exists = n > 0 && n <= count;
        m_pageButtons[i]->setText(exists ? QString::number(n) : QStringLiteral(" "));
        m_pageButtons[i]->setEnabled(exists);
    }

    const bool atEnd = count <= page;
    m_nextButton->setEnabled(!atEnd);
    m_lastButton->setEnabled(!atEnd);

    const bool atStart = page == 1;
    m_backButton->setEnabled(!atStart);
    m_firstButton->setEnabled(!atStart);

    model()->setNowPage(page);
}

void OrvaPagingBar::setItemCount(int count)
{
    model()->setItemCount(count);
    setPage(model()->nowPage());
}

void OrvaPagingBar::reset()
{
    setPage(1);
    Q_EMIT sigPageChanged();
}

void OrvaPagingBar::setFooterText(const QString& text)
{
    setFooterInfo({text, 0});
}

void OrvaPagingBar::setFooterInfo(const PagingFooterInfo& info)
{
    setFooterInfos({info});
}

void OrvaPagingBar::setFooterInfos(const std::vector<PagingFooterInfo>& infos)
{
    for (std::size_t i = 0; i < infos.size(); ++i) {
        const PagingFooterInfo& info = infos[i];
        int width = info.width;
        if (width < 0) {
            qCWarning(debug_message) << "OrvaPagingBar: negative footer width" << width << "for" << info.text;
            width = 0;
        }
        if (int(i) < m_footerLabels.size()) {
            QLabel* label = m_footerLabels.at(int(i));
            label->setText(info.text);
            if (width != 0)
                label->setFixedWidth(scaled(width));
            continue;
        }
        auto* label = new QLabel(info.text);
        label->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
        label->setFixedHeight(scaled(19));
        if (width != 0)
            label->setFixedWidth(scaled(width));
        // Decided once, when the label is made: hiding the refresh button
        // later leaves the existing labels as they are.
        const bool rightmost = i == 0 && m_refreshButton->isHidden();
        label->setStyleSheet(getStyleSheet(rightmost ? "component.paging_bar_rightmost_label"
                                                     : "component.paging_bar_label",
                                           false));
        m_footerLabels.append(label);
        m_footerLayout->addWidget(label);
    }

    while (m_footerLabels.size() > int(infos.size())) {
        // Kept as a hidden child rather than deleted: hosts may still hold it.
        QLabel* label = m_footerLabels.takeLast();
        label->hide();
        m_footerLayout->removeWidget(label);
    }
}

void OrvaPagingBar::setRefreshButtonHidden(bool hidden)
{
    m_refreshButton->setHidden(hidden);
}

void OrvaPagingBar::pageClick(int index)
{
    if (index < 0 || index >= pageButtonCount) {
        qCWarning(debug_message) << "OrvaPagingBar: no page button" << index;
        return;
    }
    bool ok = false;
    const int page = m_pageButtons[index]->text().toInt(&ok, 10);
    if (!ok) {
        // A blank button stands for no page; a host calling the slot by hand gets nothing.
        return;
    }
    setPage(page);
    Q_EMIT sigPageChanged();
}

void OrvaPagingBar::next_5_page()
{
    const int count = pageCount();
    qint64 page = qint64(model()->nowPage()) + 5;
    if (page > count)
        page = count;
    setPage(int(page));
    Q_EMIT sigPageChanged();
}

void OrvaPagingBar::prev_5_page()
{
    const int now = model()->nowPage();
    setPage(now > 5 ? now - 5 : 1);
    Q_EMIT sigPageChanged();
}

void OrvaPagingBar::first_page()
{
    setPage(1);
    Q_EMIT sigPageChanged();
}

void OrvaPagingBar::last_page()
{
    setPage(pageCount());
    Q_EMIT sigPageChanged();
}
