#include <orvacat/accessiblelist.h>

#include <QWidget>

AccessibleFilter::AccessibleFilter()
    : m_focusLevel(Qt::NoFocus)
{
}

AccessibleFilter::AccessibleFilter(const QList<QWidget*>& filterWidgets, Qt::FocusPolicy focusLevel)
    : m_filterWidgets(filterWidgets)
    , m_focusLevel(focusLevel)
{
}

QList<QWidget*>& AccessibleFilter::filterWidgets()
{
    return m_filterWidgets;
}

Qt::FocusPolicy AccessibleFilter::focusLevel()
{
    return m_focusLevel;
}

void AccessibleFilter::setFilterWidgets(const QList<QWidget*>& filterWidgets)
{
    m_filterWidgets = filterWidgets;
}

void AccessibleFilter::setFocusLevel(Qt::FocusPolicy focusLevel)
{
    m_focusLevel = focusLevel;
}

QList<QWidget*> accessibleList(QWidget* root, QList<QWidget*> filterWidgets)
{
    QList<QWidget*> result;
    if (!root || !root->isVisible())
        return result;
    if (root->focusPolicy() != Qt::NoFocus && !filterWidgets.contains(root))
        result.append(root);
    for (QObject* child : root->children()) {
        if (child->isWidgetType())
            result += accessibleList(static_cast<QWidget*>(child), filterWidgets);
    }
    return result;
}

QList<QWidget*> accessibleList(QWidget* root, AccessibleFilter filter)
{
    QList<QWidget*> result;
    if (!root || !root->isVisible())
        return result;
    // Compared as numbers on purpose: StrongFocus (11) and WheelFocus (15)
    // are above ClickFocus (2), so a level picks a band of policies, which a
    // bit test could not express.
    if (int(root->focusPolicy()) >= int(filter.focusLevel()) && !filter.filterWidgets().contains(root))
        result.append(root);
    for (QObject* child : root->children()) {
        if (child->isWidgetType())
            result += accessibleList(static_cast<QWidget*>(child), filter);
    }
    return result;
}

void adjustFocusPolicy(Qt::FocusPolicy policy, QList<QWidget*> widgets)
{
    for (QWidget* widget : qAsConst(widgets)) {
        // Null entries are the caller's business; skipping them costs nothing
        // and keeps a stray null from taking the process down.
        if (widget)
            widget->setFocusPolicy(policy);
    }
}
