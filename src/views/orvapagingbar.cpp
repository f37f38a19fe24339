#include <orvacat/orvapagingbar.h>

#include <orvacat/componentstrings.h>
#include <orvacat/globals.h>
#include <orvacat/imagemanager.h>
#include <orvacat/orvabuttons.h>
#include <orvacat/stylemanager.h>

#include "resources/dpiscaling_p.h"

#include <QAccessible>
#include <QAccessibleWidget>
#include <QCoreApplication>
#include <QEvent>
#include <QHBoxLayout>
#include <QImage>
#include <QLabel>
#include <QSignalMapper>

#include <algorithm>
#include <iterator>
#include <limits>

/**
 * A page-number button. A class of its own so that assistive technology can
 * be told which page it stands for and which one is current; it looks and
 * behaves as any OrvaButton.
 */
class OrvaPagingBarPageButton : public OrvaButton
{
    Q_OBJECT

public:
    explicit OrvaPagingBarPageButton(bool middle)
        : OrvaButton(QString(), middle ? 2 : 3)
        , m_middle(middle)
    {
    }

    /** The middle button always holds the current page, when there is one. */
    bool isCurrentPage() const { return m_middle && isEnabled(); }
    /** A blank button stands for no page at all. */
    bool isBlank() const { return text().trimmed().isEmpty(); }

private:
    bool m_middle;
};

namespace {

const int pageButtonCount = 5;
const int middleButton = 2;

// Screen readers hear "Page 7" rather than "7", the current page as a checked
// button, and nothing of the blank buttons that pad the row at either end.
class PageButtonAccessible : public QAccessibleWidget
{
public:
    explicit PageButtonAccessible(OrvaPagingBarPageButton* button)
        : QAccessibleWidget(button, QAccessible::PushButton)
    {
    }

    QAccessible::State state() const override
    {
        QAccessible::State state = QAccessibleWidget::state();
        state.checkable = true;
        state.checked = button()->isCurrentPage();
        state.pressed = button()->isDown();
        state.invisible = state.invisible || button()->isBlank();
        return state;
    }

    QStringList actionNames() const override
    {
        QStringList names;
        if (button()->isEnabled())
            names << pressAction();
        return names + QAccessibleWidget::actionNames();
    }

    void doAction(const QString& action) override
    {
        if (action != pressAction())
            QAccessibleWidget::doAction(action);
        else if (button()->isEnabled())
            button()->click();
    }

private:
    OrvaPagingBarPageButton* button() const { return static_cast<OrvaPagingBarPageButton*>(object()); }
};

QAccessibleInterface* pageButtonAccessibleFactory(const QString& className, QObject* object)
{
    if (className != QLatin1String("OrvaPagingBarPageButton"))
        return nullptr;
    auto* button = qobject_cast<OrvaPagingBarPageButton*>(object);
    return button ? new PageButtonAccessible(button) : nullptr;
}

void installPageButtonAccessibility()
{
    static const bool installed = (QAccessible::installFactory(&pageButtonAccessibleFactory), true);
    Q_UNUSED(installed);
}

QPixmap mirrored(const QPixmap& pixmap)
{
    if (pixmap.isNull())
        return pixmap;
    QPixmap flipped = QPixmap::fromImage(pixmap.toImage().mirrored(true, false));
    flipped.setDevicePixelRatio(pixmap.devicePixelRatio());
    return flipped;
}

// The arrows point the reading way: under right to left the layout puts
// "first" at the right end, so its picture is turned round to point there.
void showArrow(OrvaIconButton* button, const QString& imageKey, bool rightToLeft)
{
    if (!rightToLeft) {
        button->setAllIcon(imageKey);
    } else {
        button->setDefaultIcon(mirrored(getGlobalImage(imageKey, ImageManager::Normal)));
        button->setHoverIcon(mirrored(getGlobalImage(imageKey, ImageManager::Hover)));
        button->setPressIcon(mirrored(getGlobalImage(imageKey, ImageManager::Click)));
        button->setDisableIcon(mirrored(getGlobalImage(imageKey, ImageManager::Disable)));
    }
    // The button shows a new set from its next state change only: a disabled
    // arrow would keep the enabled picture until then.
    QEvent stateChange(QEvent::EnabledChange);
    QCoreApplication::sendEvent(button, &stateChange);
}

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

    installPageButtonAccessibility();
    ComponentStrings* strings = ComponentStrings::getInstance();
    m_pageName = strings->getString(QStringLiteral("accessible_page"), QStringLiteral("Page %1"));
    m_currentPageDescription =
        strings->getString(QStringLiteral("accessible_current_page"), QStringLiteral("Current page"));

    m_mapper = new QSignalMapper(this);

    // The tooltips double as the names: the pictures alone say nothing to a screen reader.
    const auto named = [strings](OrvaIconButton* button, const char* key) {
        const QString caption = strings->getString(QLatin1String(key));
        button->setToolTip(caption);
        button->setAccessibleName(caption);
        return button;
    };
    m_firstButton = named(new OrvaIconButton(QStringLiteral("bt_pagebar_backend")), "first_page");
    m_backButton = named(new OrvaIconButton(QStringLiteral("bt_pagebar_back")), "prev_5_pages");
    m_lastButton = named(new OrvaIconButton(QStringLiteral("bt_pagebar_nextend")), "last_page");
    m_nextButton = named(new OrvaIconButton(QStringLiteral("bt_pagebar_next")), "next_5_pages");

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
        auto* button = new OrvaPagingBarPageButton(i == middleButton);
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
    m_pageButtons[middleButton]->setAccessibleName(pageName(1));
    m_pageButtons[middleButton]->setAccessibleDescription(m_currentPageDescription);
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

    if (isRightToLeft())
        showArrows();
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

QString OrvaPagingBar::pageName(qint64 page) const
{
    const QString number = QString::number(page);
    return m_pageName.contains(QLatin1String("%1")) ? m_pageName.arg(number) : m_pageName + QLatin1Char(' ') + number;
}

void OrvaPagingBar::setPage(int page)
{
    const int count = pageCount();
    bool live[pageButtonCount];
    for (int i = 0; i < pageButtonCount; ++i) {
        const qint64 n = qint64(page) - middleButton + i;
        live[i] = n > 0 && n <= count;
        OrvaButton* button = m_pageButtons[i];
        button->setText(live[i] ? QString::number(n) : QStringLiteral(" "));
        const QString name = live[i] ? pageName(n) : QString();
        if (button->accessibleName() != name)
            button->setAccessibleName(name);
    }
    const bool atEnd = count <= page;
    const bool atStart = page == 1;
    OrvaButton* middle = m_pageButtons[middleButton];
    const bool wasCurrent = middle->isEnabled();

    // Before anything is disabled: Qt would pass the focus of a disabled
    // button on to the next in the chain, unseen, e.g. to refresh.
    keepFocus(live, atStart, atEnd);

    for (int i = 0; i < pageButtonCount; ++i)
        m_pageButtons[i]->setEnabled(live[i]);
    if (wasCurrent != live[middleButton]) {
        middle->setAccessibleDescription(live[middleButton] ? m_currentPageDescription : QString());
        QAccessible::State changed;
        changed.checked = true;
        QAccessibleStateChangeEvent event(middle, changed);
        QAccessible::updateAccessibility(&event);
    }

    m_nextButton->setEnabled(!atEnd);
    m_lastButton->setEnabled(!atEnd);
    m_backButton->setEnabled(!atStart);
    m_firstButton->setEnabled(!atStart);

    model()->setNowPage(page);
}

void OrvaPagingBar::keepFocus(const bool live[], bool atStart, bool atEnd)
{
    QWidget* focused = window()->focusWidget();
    if (!focused || !isAncestorOf(focused))
        return;
    const auto page = std::find(std::begin(m_pageButtons), std::end(m_pageButtons), focused);
    const bool onPage = page != std::end(m_pageButtons);
    const bool goingOff = (onPage && !live[page - std::begin(m_pageButtons)])
        || (atEnd && (focused == m_nextButton || focused == m_lastButton))
        || (atStart && (focused == m_backButton || focused == m_firstButton));
    // On a page button the focus follows the current page, which is always in the middle.
    if (!onPage && !goingOff)
        return;

    QWidget* target = nullptr;
    for (const int i : {middleButton, 1, 3, 0, 4}) {
        if (live[i]) {
            target = m_pageButtons[i];
            break;
        }
    }
    if (!target && !atStart)
        target = m_backButton;
    if (!target && !atEnd)
        target = m_nextButton;
    if (!target || target == focused)
        return;
    target->setEnabled(true);
    target->setFocus(Qt::OtherFocusReason);
}

void OrvaPagingBar::showArrows()
{
    const bool rightToLeft = isRightToLeft();
    showArrow(m_firstButton, QStringLiteral("bt_pagebar_backend"), rightToLeft);
    showArrow(m_backButton, QStringLiteral("bt_pagebar_back"), rightToLeft);
    showArrow(m_nextButton, QStringLiteral("bt_pagebar_next"), rightToLeft);
    showArrow(m_lastButton, QStringLiteral("bt_pagebar_nextend"), rightToLeft);
}

void OrvaPagingBar::changeEvent(QEvent* event)
{
    if (event->type() == QEvent::LayoutDirectionChange)
        showArrows();
    QWidget::changeEvent(event);
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

#include "orvapagingbar.moc"
