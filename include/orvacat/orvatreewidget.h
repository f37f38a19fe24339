#ifndef ORVACAT_ORVATREEWIDGET_H
#define ORVACAT_ORVATREEWIDGET_H

/**
 * @file
 * OrvaTreeWidget, its ItemDelegate and FileSystemTreeWidgetItem: the pieces of
 * a folder tree.
 */

#include <orvacat/orvacat_export.h>

#include <QColor>
#include <QItemDelegate>
#include <QString>
#include <QTreeWidget>
#include <QTreeWidgetItem>

class QFocusEvent;
class QKeyEvent;
class QMouseEvent;

/**
 * A tree for folders. It paints a rounded highlight behind the selected row,
 * and behind the row under the mouse pointer, in the colours given to
 * setBackgroundColor, or else in the theme's (nothing is painted while
 * neither gives one). Rows whose item is not
 * user-checkable are drawn in the disabled look, although they stay enabled
 * and selectable. Key presses and right clicks are reported before the tree
 * handles them.
 *
 * Assistive technology sees a tree of items named by their text, with their
 * check state, and hears a check box ticked or cleared; name the tree itself
 * with setAccessibleName().
 *
 * The tree's own item selection background still comes from the style: make
 * it transparent (for instance "QTreeView::item:selected { background:
 * transparent; }") to let the highlight show.
 */
class ORVACAT_EXPORT OrvaTreeWidget : public QTreeWidget
{
    Q_OBJECT
    /** The theme's selected-row highlight, used until the host calls setBackgroundColor(). */
    Q_PROPERTY(QColor themeSelectedColor READ themeSelectedColor WRITE setThemeSelectedColor)
    /** The theme's hovered-row highlight, used until the host calls setBackgroundColor(). */
    Q_PROPERTY(QColor themeHoverColor READ themeHoverColor WRITE setThemeHoverColor)

public:
    /**
     * An empty tree in the theme's look ("component.tree"): its check boxes,
     * and highlight colours until the host gives its own.
     */
    explicit OrvaTreeWidget(QWidget* parent = nullptr);

    /** The highlight colours of the selected row and of the hovered row; they win over the theme's. */
    void setBackgroundColor(QColor selected, QColor hover);

    /** The theme's selected-row colour (invalid when the theme sets none). */
    QColor themeSelectedColor() const;
    /** Sets the theme's selected-row colour; a style sheet does it with qproperty-themeSelectedColor. */
    void setThemeSelectedColor(const QColor& color);
    /** The theme's hovered-row colour (invalid when the theme sets none). */
    QColor themeHoverColor() const;
    /** Sets the theme's hovered-row colour; a style sheet does it with qproperty-themeHoverColor. */
    void setThemeHoverColor(const QColor& color);

    /**
     * Scrolls horizontally so that the left edge of @p item comes to the
     * middle of the view, unless its first 100 (scaled) pixels are already
     * visible. A null item does nothing.
     */
    void updateScrollArea(QTreeWidgetItem* item);

Q_SIGNALS:
    /** A right-button press, before the tree handles it (it may still change the selection). */
    void sigMouseRightClickEvent(QMouseEvent* event);
    /** Every key press, before the tree handles it. */
    void sigKeyPressEvent(QKeyEvent* event);

protected:
    /** Paints the rounded highlight first, and non-checkable rows in the disabled look. */
    void drawRow(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const override;
    /** Emits sigKeyPressEvent() first. */
    void keyPressEvent(QKeyEvent* event) override;
    /** Emits sigMouseRightClickEvent() first for a right-button press. */
    void mousePressEvent(QMouseEvent* event) override;
    /**
     * Re-announces the current item (set away and back), or makes the first
     * visible item current when there is none.
     */
    void focusInEvent(QFocusEvent* event) override;
    /** Tells assistive technology when a row's check box is ticked or cleared. */
    void dataChanged(const QModelIndex& topLeft, const QModelIndex& bottomRight,
                     const QVector<int>& roles = QVector<int>()) override;

private:
    QColor m_selectedColor;
    QColor m_hoverColor;
    QColor m_themeSelectedColor;
    QColor m_themeHoverColor;
};

/**
 * The delegate of folder trees: rows of a fixed (scaled) height of 28, an
 * in-place rename editor that accepts only valid file names (no leading dot;
 * none of \ / : * ? " < > | anywhere), a signal when Escape is pressed in the
 * editor, and the rectangle of the last check box drawn kept in g_check_rect.
 *
 * Created without a parent; the host owns it and must keep it alive as long
 * as a view uses it.
 */
class ORVACAT_EXPORT ItemDelegate : public QItemDelegate
{
    Q_OBJECT

public:
    ItemDelegate();

    /** The base width at a height of 28 (scaled) pixels. */
    QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override;
    /** Gives a line edit the file-name validator, the "component.tree_item" look and the whole text selected. */
    void setEditorData(QWidget* editor, const QModelIndex& index) const override;

Q_SIGNALS:
    /** Escape was pressed in an editor; the edit is cancelled afterwards as usual. */
    void sigKeyPressed(QKeyEvent* event);

protected:
    /** Emits sigKeyPressed() for Escape in an editor first. */
    bool eventFilter(QObject* object, QEvent* event) override;
    /** Stores @p rect in g_check_rect first. */
    void drawCheck(QPainter* painter, const QStyleOptionViewItem& option, const QRect& rect,
                   Qt::CheckState state) const override;
};

/**
 * A folder tree item whose ordering keeps the item of kind "home" in front:
 * no item sorts before it. Other items compare by the text of the sort
 * column. The home item's own kind is not consulted, so it compares by text
 * when it is on the left; the home item therefore stays first once it is
 * first (add it before the others), or when its text sorts first anyway.
 */
class ORVACAT_EXPORT FileSystemTreeWidgetItem : public QTreeWidgetItem
{
public:
    FileSystemTreeWidgetItem();

    /** @p other must be a FileSystemTreeWidgetItem, or std::bad_cast is thrown. */
    bool operator<(const QTreeWidgetItem& other) const override;

    /** Set by the host; "home" (case-sensitive) marks the home entry. */
    QString kind;
};

#endif // ORVACAT_ORVATREEWIDGET_H
