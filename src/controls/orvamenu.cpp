#include <orvacat/orvamenu.h>

#include <QAbstractButton>
#include <QAccessible>
#include <QGuiApplication>
#include <QScreen>

OrvaMenu::OrvaMenu(QWidget* parent)
    : QMenu(parent)
{
}

void OrvaMenu::showEvent(QShowEvent* event)
{
    QWidget::showEvent(event);

    // A popup is named by its window title, which a menu rarely has: the
    // menu's title, else the button it hangs on, says what it is for.
    if (windowTitle().isEmpty() || windowTitle() == m_derivedTitle) {
        QString name = title();
        auto* button = qobject_cast<QAbstractButton*>(parentWidget());
        if (name.isEmpty() && button) {
            if (QAccessibleInterface* iface = QAccessible::queryAccessibleInterface(button))
                name = iface->text(QAccessible::Name);
        }
        m_derivedTitle = name;
        setWindowTitle(name);
    }

    QScreen* primary = QGuiApplication::primaryScreen();
    const bool virtualDesktop = primary && primary->virtualSiblings().size() > 1;
    QScreen* target = virtualDesktop ? QGuiApplication::screenAt(pos()) : screen();
    if (!target)
        target = screen();
    if (!target)
        target = primary;
    if (!target)
        return;
    const QRect available = target->availableGeometry();

    const int x = pos().x();
    const int y = pos().y();
    // Past the left or top edge the menu goes to 0 of the whole desktop, not
    // to this screen's edge: the established placement, kept on purpose.
    const int newX = x < available.left() ? 0
                   : (x + width() > available.right() ? available.right() - width() : x);
    const int newY = y < available.top() ? 0
                   : (y + height() > available.bottom() ? available.bottom() - height() : y);
    if (newX != x || newY != y)
        move(newX, newY);
}
