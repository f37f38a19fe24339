#ifndef ORVACAT_ACCESSIBLELIST_H
#define ORVACAT_ACCESSIBLELIST_H

/**
 * @file
 * accessibleList() and adjustFocusPolicy(), which build and set up the focus
 * chain that sheets keep Tab and Backtab inside, with AccessibleFilter.
 */

#include <orvacat/orvacat_export.h>

#include <QList>
#include <Qt>

class QWidget;

/**
 * What accessibleList() leaves out: the widgets in filterWidgets(), and
 * widgets whose focus policy, compared as a number, is below focusLevel().
 * The default (empty list, Qt::NoFocus) lists every visible widget.
 */
class ORVACAT_EXPORT AccessibleFilter
{
public:
    AccessibleFilter();
    /** Leaves out @p filterWidgets and the widgets whose policy is below @p focusLevel. */
    AccessibleFilter(const QList<QWidget*>& filterWidgets, Qt::FocusPolicy focusLevel);

    /** The widgets to leave out, by reference. */
    QList<QWidget*>& filterWidgets();
    /** The lowest focus policy listed (Qt::NoFocus lists every policy). */
    Qt::FocusPolicy focusLevel();

    /** Replaces the widgets to leave out. */
    void setFilterWidgets(const QList<QWidget*>& filterWidgets);
    /** Sets the lowest focus policy listed. */
    void setFocusLevel(Qt::FocusPolicy focusLevel);

private:
    QList<QWidget*> m_filterWidgets;
    Qt::FocusPolicy m_focusLevel;
};

/**
 * The visible widgets of the tree under @p root (root first, then the
 * children depth first in creation order) whose focus policy is not
 * Qt::NoFocus, leaving out the widgets in @p filterWidgets. Hidden widgets
 * hide their whole subtree; an excluded widget's children are still listed.
 */
ORVACAT_EXPORT QList<QWidget*> accessibleList(QWidget* root, QList<QWidget*> filterWidgets);

/**
 * As above, but a widget is listed when its focus policy, compared as a
 * number, is at least the filter's level: Qt::TabFocus admits every
 * focusable widget, Qt::ClickFocus leaves out tab-only ones, Qt::StrongFocus
 * admits only strong and wheel focus.
 */
ORVACAT_EXPORT QList<QWidget*> accessibleList(QWidget* root, AccessibleFilter filter);

/** Gives every widget of @p widgets the focus policy @p policy, in order. */
ORVACAT_EXPORT void adjustFocusPolicy(Qt::FocusPolicy policy, QList<QWidget*> widgets);

#endif // ORVACAT_ACCESSIBLELIST_H
