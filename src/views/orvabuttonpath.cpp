#include <orvacat/orvabuttonpath.h>

#include <orvacat/componentstrings.h>
#include <orvacat/imagemanager.h>
#include <orvacat/stylemanager.h>

#include "resources/dpiscaling_p.h"

#include <QAccessible>
#include <QAccessibleWidget>
#include <QAction>
#include <QApplication>
#include <QFontMetrics>
#include <QHeaderView>
#include <QKeyEvent>
#include <QMenu>
#include <QPushButton>
#include <QScrollBar>
#include <QSignalMapper>
#include <QToolButton>

namespace {

// Object names of the cell buttons, which the accessibility factory goes by.
const char folderButtonName[] = "button_path_folder";
const char arrowButtonName[] = "button_path_arrow";

QToolButton* changeFolderButtonOf(const OrvaButtonPath* bar)
{
    return bar->findChild<QToolButton*>(QString(), Qt::FindDirectChildrenOnly);
}

/** What a screen reader finds in the bar: the change-folder button while it shows, then every folder, from the root. */
QList<QWidget*> accessibleParts(const OrvaButtonPath* bar)
{
    QList<QWidget*> parts;
    QToolButton* changeFolder = changeFolderButtonOf(bar);
    if (changeFolder && !changeFolder->isHidden())
        parts << changeFolder;
    for (int column = 0; column < bar->columnCount(); column += 2) {
        if (QWidget* folder = bar->cellWidget(0, column))
            parts << folder;
    }
    return parts;
}

// The bar is a tool bar of folder buttons to a screen reader. Qt would show
// it as a table of empty cells, with the buttons out of reach and the arrows
// between them as unnamed buttons.
class ButtonPathAccessible : public QAccessibleWidget
{
public:
    explicit ButtonPathAccessible(OrvaButtonPath* bar)
        : QAccessibleWidget(bar, QAccessible::ToolBar)
    {
    }

    int childCount() const override { return accessibleParts(bar()).size(); }
    QAccessibleInterface* child(int index) const override
    {
        return QAccessible::queryAccessibleInterface(accessibleParts(bar()).value(index));
    }
    int indexOfChild(const QAccessibleInterface* child) const override
    {
        return child ? accessibleParts(bar()).indexOf(qobject_cast<QWidget*>(child->object())) : -1;
    }
    QAccessibleInterface* focusChild() const override
    {
        QWidget* focus = QApplication::focusWidget();
        return accessibleParts(bar()).contains(focus) ? QAccessible::queryAccessibleInterface(focus) : nullptr;
    }

private:
    OrvaButtonPath* bar() const { return static_cast<OrvaButtonPath*>(object()); }
};

// A folder button belongs to the bar, not to the viewport that Qt parents it
// to; scrolled out of sight, it says so.
class FolderButtonAccessible : public QAccessibleWidget
{
public:
    explicit FolderButtonAccessible(QPushButton* button)
        : QAccessibleWidget(button, QAccessible::PushButton)
    {
    }

    QAccessibleInterface* parent() const override
    {
        QWidget* viewport = widget()->parentWidget();
        auto* bar = qobject_cast<OrvaButtonPath*>(viewport ? viewport->parentWidget() : nullptr);
        return bar ? QAccessible::queryAccessibleInterface(bar) : QAccessibleWidget::parent();
    }
    QAccessible::State state() const override
    {
        QAccessible::State state = QAccessibleWidget::state();
        state.offscreen = state.offscreen || (widget()->isVisible() && widget()->visibleRegion().isEmpty());
        return state;
    }
    QStringList actionNames() const override
    {
        return QStringList(pressAction()) + QAccessibleWidget::actionNames();
    }
    void doAction(const QString& action) override
    {
        if (action == pressAction())
            static_cast<QPushButton*>(widget())->click();
        else
            QAccessibleWidget::doAction(action);
    }
};

QAccessibleInterface* buttonPathAccessibleFactory(const QString& className, QObject* object)
{
    if (className == QLatin1String("OrvaButtonPath")) {
        auto* bar = qobject_cast<OrvaButtonPath*>(object);
        return bar ? new ButtonPathAccessible(bar) : nullptr;
    }
    // Known by name alone: Qt may ask about a button before it is put into
    // its cell, and keeps the first answer.
    auto* button = qobject_cast<QPushButton*>(object);
    if (button && className == QLatin1String(object->metaObject()->className())
        && button->objectName() == QLatin1String(folderButtonName))
        return new FolderButtonAccessible(button);
    return nullptr;
}

} // namespace

OrvaButtonPath::OrvaButtonPath(QWidget* parent)
    : QTableWidget(parent)
    , m_changeFolderBtn(new QToolButton)
    , m_nameMapper(new QSignalMapper(this))
    , m_menuMapper(new QSignalMapper(this))
{
    // Before the first question about the bar: an interface is made once per
    // object and kept.
    static const bool accessible = (QAccessible::installFactory(&buttonPathAccessibleFactory), true);
    Q_UNUSED(accessible)

    insertRow(0);
    horizontalHeader()->hide();
    // Columns are as wide as their buttons, arrows far narrower than the
    // style's default minimum section.
    horizontalHeader()->setMinimumSectionSize(0);
    verticalHeader()->hide();
    setShowGrid(false);
    setSelectionMode(QAbstractItemView::NoSelection);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setHorizontalScrollMode(QAbstractItemView::ScrollPerPixel);
    // The folder buttons take the focus, one of them at a time a Tab stop;
    // the arrow keys move between them (eventFilter()).
    setFocusPolicy(Qt::NoFocus);
    setTabKeyNavigation(false);
    setFixedHeight(scaled(28));
    setAccessibleName(ComponentStrings::getInstance()->getString(
        QStringLiteral("accessible_button_path"), QStringLiteral("Folder path")));

    // Without a parent: a menu inside the bar would take the bar's and the
    // button's style sheets as well as its own.
    m_changeFolderMenu = new QMenu;
    m_changeFolderMenu->setStyleSheet(getStyleSheet("component.menu", false));
    m_changeFolderBtn->setMenu(m_changeFolderMenu);
    m_changeFolderBtn->setIcon(QIcon(getGlobalImage("folder", ImageManager::Normal)));
    m_changeFolderBtn->setIconSize(QSize(20, 20));
    m_changeFolderBtn->setPopupMode(QToolButton::InstantPopup);
    m_changeFolderBtn->hide();
    m_changeFolderBtn->setParent(this);
    m_changeFolderBtn->setStyleSheet(getStyleSheet("component.button_path_change_folder_btn", false));
    m_changeFolderBtn->setFixedSize(scaled(26), scaled(26));
    placeChangeFolderBtn();
    m_changeFolderBtn->setAccessibleName(
        ComponentStrings::getInstance()->getString(QStringLiteral("accessible_button_path_more"),
                                                   QStringLiteral("Hidden folders")));
    m_changeFolderMenu->setWindowTitle(m_changeFolderBtn->accessibleName());
    m_changeFolderBtn->installEventFilter(this);

    connect(m_nameMapper, &QSignalMapper::mappedInt, this, &OrvaButtonPath::slotPathBarClicked);
    connect(m_menuMapper, &QSignalMapper::mappedInt, this, &OrvaButtonPath::slotPathBarClicked);

    setStyleSheet(getStyleSheet("component.button_path", false));
}

OrvaButtonPath::~OrvaButtonPath()
{
    delete m_changeFolderMenu;
}

void OrvaButtonPath::refresh(QString path)
{
    // The focus stays in the bar when a folder button's click rebuilds it.
    QWidget* focus = QApplication::focusWidget();
    const bool hadFocus = focus && isAncestorOf(focus);
    if (hadFocus)
        focus->clearFocus();

    m_visibleWidth = horizontalScrollBar()->pageStep();
    m_changeFolderBtn->hide();
    // A click on a button or a menu entry may well lead here (the host
    // answers sigUpdatePath with a refresh): the sender must outlive its own
    // signal, so the old cells and entries go at the next turn of the loop.
    const QList<QAction*> actions = m_changeFolderMenu->actions();
    for (QAction* action : actions) {
        m_changeFolderMenu->removeAction(action);
        m_menuMapper->removeMappings(action);
        action->deleteLater();
    }
    for (QWidget* widget : qAsConst(m_cellWidgets)) {
        m_nameMapper->removeMappings(widget);
        widget->hide();
        widget->deleteLater();
    }
    m_cellWidgets.clear();
    clear();
    setColumnCount(0);

    const QStringList elements = path.split(QLatin1Char('/'), Qt::SkipEmptyParts, Qt::CaseSensitive);
    const double factor = DPIinfo::getInstance()->getDPI();
    for (int i = 0; i < elements.size(); ++i) {
        const QString& element = elements.at(i);
        const int column = 2 * i;

        if (i > 0) {
            auto* arrow = new QPushButton;
            arrow->setObjectName(QLatin1String(arrowButtonName));
            arrow->setIcon(arrowIcon());
            arrow->setFlat(true);
            // It leads nowhere: no Tab stop, nothing for a screen reader.
            arrow->setFocusPolicy(Qt::NoFocus);
            arrow->setStyleSheet(getStyleSheet("component.button_path_arrow", false));
            arrow->setFixedSize(scaled(6), scaled(28));
            m_cellWidgets.append(arrow);
            const int arrowColumn = columnCount();
            insertColumn(arrowColumn);
            setCellWidget(0, arrowColumn, arrow);
        }

        auto* button = new QPushButton;
        button->setObjectName(QLatin1String(folderButtonName));
        // Doubled so that the ampersand is shown instead of making a mnemonic.
        button->setText(QString(element).replace(QLatin1Char('&'), QLatin1String("&&")));
        button->setAccessibleName(element);
        button->installEventFilter(this);
        button->setFlat(true);
        button->setStyleSheet(getStyleSheet("component.button_path_name_button", false));
        button->setFixedHeight(scaled(26));
        // Measured in the font the style sheet gives the button.
        button->ensurePolished();
        const int textWidth = button->fontMetrics().horizontalAdvance(element);
        button->setFixedWidth(int(factor * (textWidth + 16)));
        connect(button, &QPushButton::clicked, m_nameMapper, qOverload<>(&QSignalMapper::map));
        m_nameMapper->setMapping(button, column);
        m_cellWidgets.append(button);
        insertColumn(column);
        setCellWidget(0, column, button);
        setColumnWidth(column, button->width());
    }

    updateColumnSize();
    updateKeyboardStops();
    if (hadFocus && !m_keyboardStops.isEmpty())
        m_keyboardStops.last()->setFocus(Qt::OtherFocusReason);
}

QString OrvaButtonPath::getPath(int column)
{
    QString path;
    if (column < 0 || column >= m_cellWidgets.size())
        return path;
    for (int k = 0; k <= column; ++k) {
        if (k % 2 == 1) {
            path += QLatin1Char('/');
        } else if (auto* button = qobject_cast<QPushButton*>(m_cellWidgets.at(k))) {
            path += button->text().replace(QLatin1String("&&"), QLatin1String("&"));
        }
    }
    return path;
}

void OrvaButtonPath::updateColumnSize()
{
    const int count = columnCount();
    if (count == 0) {
        if (m_visibleWidth < 0)
            setChangeFolderBtn(0);
        return;
    }

    int total = 0;
    for (int column = 0; column < count; ++column) {
        if (column % 2 == 1)
            setColumnWidth(column, scaled(6));
        total += columnWidth(column);
    }
    if (total > m_visibleWidth)
        setChangeFolderBtn(total);
}

void OrvaButtonPath::setChangeFolderBtn(int totalWidth)
{
    m_changeFolderBtn->show();
    const int overflow = totalWidth - m_visibleWidth;

    int x = 0;
    for (int column = 0; column < columnCount(); ++column) {
        const int width = columnWidth(column);
        if (column % 2 == 1) {
            x += width;
            continue;
        }
        auto* button = qobject_cast<QPushButton*>(cellWidget(0, column));
        auto* action = new QAction(button ? button->text() : QString(), m_changeFolderMenu);
        m_changeFolderMenu->addAction(action);
        connect(action, &QAction::triggered, m_menuMapper, qOverload<>(&QSignalMapper::map));
        m_menuMapper->setMapping(action, column);
        // The first element whose right edge shows is the last one listed.
        if (overflow < x + width)
            break;
        x += width;
    }

    // Column widths reach the scroll range only at the view's next delayed
    // layout; bring the range up to date before scrolling to its end.
    updateGeometries();
    horizontalScrollBar()->setValue(horizontalScrollBar()->maximum());
}

void OrvaButtonPath::updateKeyboardStops()
{
    // The keyboard reaches what shows whole: the change-folder button, which
    // stands for the folders scrolled out, and the folder buttons after them.
    m_keyboardStops.clear();
    if (!m_changeFolderBtn->isHidden())
        m_keyboardStops << m_changeFolderBtn;
    for (int column = 0; column < columnCount(); column += 2) {
        QWidget* folder = cellWidget(0, column);
        if (!folder)
            continue;
        if (m_menuMapper->mapping(column))
            folder->setFocusPolicy(Qt::NoFocus);
        else
            m_keyboardStops << folder;
    }

    // QWidget::setTabOrder() leaves alone a widget that takes no focus, as the
    // bar does; for a moment it takes some, so that its buttons follow it in
    // the window's chain: made after the bar, they would come last there.
    const Qt::FocusPolicy policy = focusPolicy();
    setFocusPolicy(Qt::ClickFocus);
    QWidget* previous = this;
    for (QWidget* stop : qAsConst(m_keyboardStops)) {
        stop->setFocusPolicy(Qt::ClickFocus);
        QWidget::setTabOrder(previous, stop);
        previous = stop;
    }
    setFocusPolicy(policy);

    // Tab first reaches the folder shown last, the one the path leads to.
    if (!m_keyboardStops.isEmpty())
        makeKeyboardStop(m_keyboardStops.last());
}

void OrvaButtonPath::makeKeyboardStop(QWidget* stop)
{
    for (QWidget* widget : qAsConst(m_keyboardStops))
        widget->setFocusPolicy(widget == stop ? Qt::StrongFocus : Qt::ClickFocus);
}

bool OrvaButtonPath::eventFilter(QObject* watched, QEvent* event)
{
    auto* stop = qobject_cast<QWidget*>(watched);
    const int at = m_keyboardStops.indexOf(stop);
    if (at < 0)
        return QTableWidget::eventFilter(watched, event);

    if (event->type() == QEvent::FocusIn) {
        makeKeyboardStop(stop);
    } else if (event->type() == QEvent::KeyPress) {
        auto* keyEvent = static_cast<QKeyEvent*>(event);
        if (keyEvent->modifiers() & ~Qt::KeypadModifier)
            return false;
        int next = -1;
        switch (keyEvent->key()) {
        case Qt::Key_Left:
        case Qt::Key_Right:
            // Towards the root is the way the arrows point: left, or right
            // under a right-to-left layout.
            next = ((keyEvent->key() == Qt::Key_Left) != isRightToLeft()) ? at - 1 : at + 1;
            break;
        case Qt::Key_Home:
            next = 0;
            break;
        case Qt::Key_End:
            next = m_keyboardStops.size() - 1;
            break;
        case Qt::Key_Return:
        case Qt::Key_Enter:
            if (stop == m_changeFolderBtn)
                m_changeFolderBtn->showMenu();
            else if (auto* button = qobject_cast<QPushButton*>(stop))
                button->click();
            return true;
        default:
            return false;
        }
        if (next >= 0 && next < m_keyboardStops.size())
            m_keyboardStops.at(next)->setFocus(next < at ? Qt::BacktabFocusReason : Qt::TabFocusReason);
        return true;
    }
    return QTableWidget::eventFilter(watched, event);
}

void OrvaButtonPath::resizeEvent(QResizeEvent* event)
{
    QTableWidget::resizeEvent(event);
    placeChangeFolderBtn();
}

void OrvaButtonPath::changeEvent(QEvent* event)
{
    QTableWidget::changeEvent(event);
    if (event->type() != QEvent::LayoutDirectionChange)
        return;
    placeChangeFolderBtn();
    const QIcon icon = arrowIcon();
    for (int column = 1; column < columnCount(); column += 2) {
        if (auto* arrow = qobject_cast<QPushButton*>(cellWidget(0, column)))
            arrow->setIcon(icon);
    }
}

void OrvaButtonPath::placeChangeFolderBtn()
{
    // Over the end of the bar where the folders scroll out: the left end, or
    // the right one under a right-to-left layout.
    const int x = isRightToLeft() ? width() - scaled(1) - m_changeFolderBtn->width() : scaled(1);
    m_changeFolderBtn->move(x, scaled(1));
}

QIcon OrvaButtonPath::arrowIcon() const
{
    // The theme draws the arrow pointing right, the reading way of a
    // left-to-right layout; mirrored, it points the other reading way.
    const QPixmap arrow = getGlobalImage("bt_next", ImageManager::Normal);
    if (!isRightToLeft() || arrow.isNull())
        return QIcon(arrow);
    QImage mirrored = arrow.toImage().mirrored(true, false);
    mirrored.setDevicePixelRatio(arrow.devicePixelRatio());
    return QIcon(QPixmap::fromImage(mirrored));
}

void OrvaButtonPath::slotUpdatePath(QString path)
{
    refresh(path);
}

void OrvaButtonPath::slotPathBarClicked(int column)
{
    Q_EMIT sigUpdatePath(getPath(column));
}
