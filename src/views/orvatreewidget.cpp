#include <orvacat/orvatreewidget.h>

#include <orvacat/globals.h>
#include <orvacat/stylemanager.h>

#include "resources/dpiscaling_p.h"

#include <QAccessible>
#include <QCursor>
#include <QFocusEvent>
#include <QItemSelectionModel>
#include <QKeyEvent>
#include <QLineEdit>
#include <QMouseEvent>
#include <QPainter>
#include <QRegularExpression>
#include <QRegularExpressionValidator>
#include <QScrollBar>

#include <typeinfo>

OrvaTreeWidget::OrvaTreeWidget(QWidget* parent)
    : QTreeWidget(parent)
{
    // The hover highlight is painted from the pointer position: the rows
    // under the old and the new position must be repainted as it moves.
    viewport()->setAttribute(Qt::WA_Hover);
    setStyleSheet(getStyleSheet("component.tree", false));
}

void OrvaTreeWidget::setBackgroundColor(QColor selected, QColor hover)
{
    m_selectedColor = selected;
    m_hoverColor = hover;
    viewport()->update();
}

QColor OrvaTreeWidget::themeSelectedColor() const
{
    return m_themeSelectedColor;
}

void OrvaTreeWidget::setThemeSelectedColor(const QColor& color)
{
    m_themeSelectedColor = color;
    viewport()->update();
}

QColor OrvaTreeWidget::themeHoverColor() const
{
    return m_themeHoverColor;
}

void OrvaTreeWidget::setThemeHoverColor(const QColor& color)
{
    m_themeHoverColor = color;
    viewport()->update();
}

void OrvaTreeWidget::updateScrollArea(QTreeWidgetItem* item)
{
    if (!item)
        return;
    const int width = viewport()->width();
    const int value = horizontalScrollBar()->value();
    const int x = visualItemRect(item).left();
    if (x >= 0 && x + scaled(100) <= width)
        return;
    horizontalScrollBar()->setValue(value - width / 2 + x);
}

void OrvaTreeWidget::drawRow(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const
{
    const bool selected = selectionModel() && selectionModel()->isRowSelected(index.row(), index.parent());
    QTreeWidgetItem* item = itemFromIndex(index);

    if (item) {
        bool highlight = selected;
        if (!selected) {
            // Measured against the tree itself, not its viewport, one pixel
            // lower than the row: hosts tuned their row look to this.
            const QRect hoverRect = option.rect.adjusted(0, 1, 0, 1);
            highlight = hoverRect.contains(mapFromGlobal(QCursor::pos()));
        }
        // The host's colour, once it gave one, wins over the theme's.
        const QColor host = selected ? m_selectedColor : m_hoverColor;
        const QColor fill = host.isValid() ? host : (selected ? m_themeSelectedColor : m_themeHoverColor);
        if (highlight && fill.isValid()) {
            const double factor = DPIinfo::getInstance()->getDPI();
            const int radius = scaled(3);
            painter->save();
            painter->setRenderHint(QPainter::Antialiasing, true);
            painter->setBrush(QBrush(fill, Qt::SolidPattern));
            // A rim in the view's own background, so it is unseen on any theme.
            painter->setPen(palette().color(QPalette::Base));
            painter->drawRoundedRect(QRect(option.rect.x(), option.rect.y(), int(option.rect.width() - 3 * factor),
                                           option.rect.height()),
                                     radius, radius);
            painter->restore();
        }
    }

    QStyleOptionViewItem rowOption = option;
    if (item && !(item->flags() & Qt::ItemIsUserCheckable))
        rowOption.state &= ~QStyle::State_Enabled;
    QTreeWidget::drawRow(painter, rowOption, index);
}

void OrvaTreeWidget::dataChanged(const QModelIndex& topLeft, const QModelIndex& bottomRight, const QVector<int>& roles)
{
    QTreeWidget::dataChanged(topLeft, bottomRight, roles);
    // Qt tells assistive technology nothing when a check box is ticked, with
    // Space or the mouse, and the user would hear no answer. An item changes
    // one row at a time; wider changes are a host's, read when asked for.
    if (!QAccessible::isActive() || !topLeft.isValid() || topLeft.parent() != bottomRight.parent()
        || topLeft.row() != bottomRight.row() || !(roles.isEmpty() || roles.contains(Qt::CheckStateRole)))
        return;
    // The tree's accessible children run row by row over the rows shown
    // (not those under a collapsed parent), after one row of column headers.
    const QModelIndex changedRow = topLeft.sibling(topLeft.row(), 0);
    int shownRow = 0;
    QModelIndex row = model()->index(0, 0, rootIndex());
    while (row.isValid() && row != changedRow) {
        row = indexBelow(row);
        ++shownRow;
    }
    if (!row.isValid())
        return;
    const int columns = model()->columnCount(rootIndex());
    for (int column = topLeft.column(); column <= bottomRight.column(); ++column) {
        if (!(topLeft.sibling(topLeft.row(), column).flags() & Qt::ItemIsUserCheckable))
            continue;
        QAccessible::State changed;
        changed.checked = true;
        QAccessibleStateChangeEvent event(this, changed);
        event.setChild((shownRow + 1) * columns + column);
        QAccessible::updateAccessibility(&event);
    }
}

void OrvaTreeWidget::keyPressEvent(QKeyEvent* event)
{
    Q_EMIT sigKeyPressEvent(event);
    QTreeWidget::keyPressEvent(event);
}

void OrvaTreeWidget::mousePressEvent(QMouseEvent* event)
{
    if (event->button() == Qt::RightButton)
        Q_EMIT sigMouseRightClickEvent(event);
    QTreeWidget::mousePressEvent(event);
}

void OrvaTreeWidget::focusInEvent(QFocusEvent* event)
{
    Q_UNUSED(event)
    // Setting the current item away and back makes the view announce it
    // again (accessibility, hosts listening to currentItemChanged). The base
    // handling is skipped: it would pick an item of its own.
    if (QTreeWidgetItem* current = currentItem()) {
        setCurrentItem(itemAt(QPoint(-1, -1)));
        setCurrentItem(current);
    } else {
        setCurrentItem(itemAt(QPoint(0, 0)));
    }
}

ItemDelegate::ItemDelegate()
    : QItemDelegate()
{
}

QSize ItemDelegate::sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const
{
    return QSize(QItemDelegate::sizeHint(option, index).width(), scaled(28));
}

void ItemDelegate::setEditorData(QWidget* editor, const QModelIndex& index) const
{
    if (!editor)
        return;
    if (auto* lineEdit = qobject_cast<QLineEdit*>(editor)) {
        // Anchored at both ends by the validator, so it accepts and refuses
        // exactly what QRegExpValidator did with the same pattern.
        const QRegularExpression name(QStringLiteral("^[^\\.\\\\\\/:*?\"<>|][^\\\\\\/:*?\"<>|]*"));
        // Owned by the editor so that it goes with it; an editor may be
        // given data more than once, each time with a fresh validator.
        lineEdit->setValidator(new QRegularExpressionValidator(name, lineEdit));
        lineEdit->setStyleSheet(getStyleSheet("component.tree_item", false));
        lineEdit->setAttribute(Qt::WA_MacShowFocusRect, false);
        lineEdit->selectAll();
    }
    QItemDelegate::setEditorData(editor, index);
}

bool ItemDelegate::eventFilter(QObject* object, QEvent* event)
{
    if (event->type() == QEvent::KeyPress) {
        auto* keyEvent = static_cast<QKeyEvent*>(event);
        if (keyEvent->key() == Qt::Key_Escape)
            Q_EMIT sigKeyPressed(keyEvent);
    }
    return QItemDelegate::eventFilter(object, event);
}

void ItemDelegate::drawCheck(QPainter* painter, const QStyleOptionViewItem& option, const QRect& rect,
                             Qt::CheckState state) const
{
    g_check_rect = rect;
    QItemDelegate::drawCheck(painter, option, rect, state);
}

FileSystemTreeWidgetItem::FileSystemTreeWidgetItem()
    : QTreeWidgetItem(QTreeWidgetItem::Type)
{
}

bool FileSystemTreeWidgetItem::operator<(const QTreeWidgetItem& other) const
{
    const auto& item = dynamic_cast<const FileSystemTreeWidgetItem&>(other);
    if (item.kind == QLatin1String("home"))
        return false;
    return QTreeWidgetItem::operator<(other);
}
