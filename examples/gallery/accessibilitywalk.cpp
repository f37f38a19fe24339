#include "accessibilitywalk.h"

#include "gallerypages.h"

#include <orvacat/orvacat.h>

#include <QAbstractButton>
#include <QAccessible>
#include <QApplication>
#include <QKeyEvent>
#include <QListWidget>
#include <QMenu>
#include <QPointer>
#include <QScrollArea>
#include <QStackedWidget>
#include <QTextStream>
#include <QTimer>
#include <QToolButton>

namespace {

// More than any page has stops: a walk this long went round in a circle.
const int maxTabStops = 300;
// Tabs pressed inside an open sheet or popup: more than any of them has stops.
const int tabsInsideModal = 12;

/** Whether a screen reader user can act on what @p iface stands for. */
bool isInteractive(QAccessibleInterface* iface)
{
    switch (iface->role()) {
    case QAccessible::PushButton:
    case QAccessible::CheckBox:
    case QAccessible::RadioButton:
    case QAccessible::ComboBox:
    case QAccessible::EditableText:
    case QAccessible::Link:
    case QAccessible::ButtonMenu:
    case QAccessible::ButtonDropDown:
    case QAccessible::ButtonDropGrid:
    case QAccessible::SpinBox:
    case QAccessible::Slider:
    case QAccessible::PageTab:
    case QAccessible::MenuItem:
    case QAccessible::PopupMenu:
    case QAccessible::List:
    case QAccessible::ListItem:
    case QAccessible::Table:
    case QAccessible::Tree:
    case QAccessible::TreeItem:
    case QAccessible::Cell:
    case QAccessible::ColumnHeader:
    case QAccessible::RowHeader:
    case QAccessible::Dialog:
    case QAccessible::AlertMessage:
        return true;
    default:
        return iface->state().focusable;
    }
}

/** How a problem line names @p widget: its class, object name and accessible name. */
QString describe(const QWidget* widget)
{
    if (!widget)
        return QStringLiteral("(nothing)");
    QString text = QString::fromLatin1(widget->metaObject()->className());
    if (!widget->objectName().isEmpty())
        text += QLatin1Char('#') + widget->objectName();
    QAccessibleInterface* iface = QAccessible::queryAccessibleInterface(const_cast<QWidget*>(widget));
    const QString name = iface ? iface->text(QAccessible::Name) : QString();
    if (!name.isEmpty())
        text += QStringLiteral(" \"%1\"").arg(name);
    return text;
}

bool isInside(const QWidget* widget, const QWidget* container)
{
    return widget && container && (widget == container || container->isAncestorOf(widget));
}

/** The sheet running over @p window, if one is. */
OrvaSheet* runningSheet(QWidget* window)
{
    for (OrvaSheet* sheet : window->findChildren<OrvaSheet*>()) {
        if (sheet->isVisible())
            return sheet;
    }
    return nullptr;
}

} // namespace

AccessibilityWalk::AccessibilityWalk(QWidget* window, QListWidget* pageList, QStackedWidget* pages, QTextStream& out)
    : m_window(window)
    , m_pageList(pageList)
    , m_pages(pages)
    , m_out(out)
{
}

int AccessibilityWalk::run()
{
    m_window->show();
    m_window->activateWindow();
    QApplication::processEvents();
    const QList<GalleryPage> pages = GalleryPages::all();
    for (int i = 0; i < pages.size(); ++i) {
        const QString name = pages.at(i).name;
        m_pageList->setCurrentRow(i);
        QApplication::processEvents();
        reportUnnamed(QAccessible::queryAccessibleInterface(m_window), name);
        QWidget* page = static_cast<QScrollArea*>(m_pages->widget(i))->widget();
        // Menus are windows of their own: walk each of the page's open.
        for (QMenu* menu : page->findChildren<QMenu*>()) {
            menu->popup(m_window->mapToGlobal(QPoint(0, 0)));
            QApplication::processEvents();
            reportUnnamed(QAccessible::queryAccessibleInterface(menu), name + QLatin1String(" menu"));
            menu->hide();
        }
        walkKeyboard(name, true);
        walkKeyboard(name, false);
        if (name == QLatin1String("messages"))
            walkSheets(page);
        walkDateSelectorPopup(page);
        walkBreadcrumbMenu(page);
    }
    // Once more on a laptop's screen (1366 x 768, less the panels), where
    // the longer pages scroll and the focus must take the page along.
    m_window->resize(m_window->size().boundedTo(QSize(1229, 691)));
    for (int i = 0; i < pages.size(); ++i) {
        m_pageList->setCurrentRow(i);
        QApplication::processEvents();
        walkKeyboard(pages.at(i).name + QLatin1String(" (small window)"), true);
        walkKeyboard(pages.at(i).name + QLatin1String(" (small window)"), false);
    }
    m_out.flush();
    return m_problems;
}

void AccessibilityWalk::problem(const QString& where, const QString& text)
{
    m_out << where << ": " << text << '\n';
    ++m_problems;
}

void AccessibilityWalk::reportUnnamed(QAccessibleInterface* iface, const QString& where, int depth)
{
    if (!iface || !iface->isValid() || iface->state().invisible || depth > 64)
        return;
    // A separator names nothing and needs no name.
    const bool separator = iface->role() == QAccessible::Separator;
    if (!separator && isInteractive(iface) && iface->text(QAccessible::Name).trimmed().isEmpty()) {
        const QObject* object = iface->object();
        problem(where, QStringLiteral("unnamed role 0x%1 %2 %3 under \"%4\"")
                           .arg(QString::number(iface->role(), 16),
                                object ? QString::fromLatin1(object->metaObject()->className()) : QStringLiteral("(item)"),
                                object ? object->objectName() : QString(),
                                iface->parent() ? iface->parent()->text(QAccessible::Name) : QString()));
    }
    for (int i = 0; i < iface->childCount(); ++i)
        reportUnnamed(iface->child(i), where, depth + 1);
}

void AccessibilityWalk::pressKey(int key, Qt::KeyboardModifiers modifiers)
{
    // Where the platform would deliver it: an open popup, else the focus.
    QWidget* target = QApplication::activePopupWidget();
    if (!target)
        target = QApplication::focusWidget();
    if (!target)
        target = m_window;
    QPointer<QWidget> guard(target);
    QKeyEvent press(QEvent::KeyPress, key, modifiers);
    QApplication::sendEvent(target, &press);
    QKeyEvent release(QEvent::KeyRelease, key, modifiers);
    if (guard)
        QApplication::sendEvent(target, &release);
    QApplication::processEvents();
}

void AccessibilityWalk::walkKeyboard(const QString& where, bool forward)
{
    const QString keyName = forward ? QStringLiteral("Tab") : QStringLiteral("Shift+Tab");
    QWidget* start = m_pageList;
    // A message box that has come and gone took the activation with it.
    m_window->activateWindow();
    start->setFocus(Qt::TabFocusReason);
    QApplication::processEvents();
    if (QApplication::focusWidget() != start) {
        problem(where, QStringLiteral("the page list does not take the focus"));
        return;
    }
    QList<QWidget*> stops;
    for (int i = 0; i < maxTabStops; ++i) {
        pressKey(forward ? Qt::Key_Tab : Qt::Key_Backtab, forward ? Qt::NoModifier : Qt::ShiftModifier);
        QWidget* now = QApplication::focusWidget();
        if (now == start) {
            m_out << where << ": " << keyName << " comes back to the page list after " << stops.size() << " stops\n";
            return;
        }
        if (!now) {
            problem(where, QStringLiteral("%1 after %2 leaves the focus nowhere").arg(keyName, describe(stops.value(i - 1))));
            return;
        }
        if (!stops.isEmpty() && stops.last() == now) {
            problem(where, QStringLiteral("%1 does not leave %2 (trap)").arg(keyName, describe(now)));
            return;
        }
        if (stops.contains(now)) {
            problem(where, QStringLiteral("%1 goes round %2 stops from %3 without coming back to the page list (trap)")
                               .arg(keyName)
                               .arg(stops.size() - stops.indexOf(now))
                               .arg(describe(now)));
            return;
        }
        stops << now;
        const QString why = hiddenStop(now);
        if (!why.isEmpty())
            problem(where, QStringLiteral("%1 stop %2 %3 is %4").arg(keyName).arg(stops.size()).arg(describe(now), why));
    }
    problem(where, QStringLiteral("%1 never comes back to the page list (trap)").arg(keyName));
}

QString AccessibilityWalk::hiddenStop(QWidget* widget)
{
    if (widget->window() != m_window)
        return QStringLiteral("in another window");
    if (!widget->isVisible())
        return QStringLiteral("hidden");
    if (widget->width() <= 0 || widget->height() <= 0)
        return QStringLiteral("zero-sized");
    if (!widget->isEnabled())
        return QStringLiteral("disabled");

    // The part of it that can be seen, in window coordinates.
    QRect seen(widget->mapTo(m_window, QPoint(0, 0)), widget->size());
    auto* scroll = qobject_cast<QScrollArea*>(m_pages->currentWidget());
    if (scroll && isInside(widget, scroll->widget())) {
        QWidget* viewport = scroll->viewport();
        const QRect view(viewport->mapTo(m_window, QPoint(0, 0)), viewport->size());
        const bool fits = seen.width() <= view.width() && seen.height() <= view.height();
        if (!view.intersects(seen))
            return QStringLiteral("outside the page's visible part");
        if (fits && !view.contains(seen))
            return QStringLiteral("partly outside the page's visible part");
        seen &= view;
    }
    QWidget* hit = m_window->childAt(seen.center());
    if (hit && !isInside(hit, widget) && !hit->isAncestorOf(widget))
        return QStringLiteral("covered by %1").arg(describe(hit));
    return QString();
}

void AccessibilityWalk::walkSheets(QWidget* page)
{
    QStringList seen;
    for (QAbstractButton* button : page->findChildren<QAbstractButton*>()) {
        if (!qobject_cast<OrvaButton*>(button) || !button->isVisible())
            continue;
        // The helpers' second button calls them without a parent.
        const QString where = QStringLiteral("messages \"%1\"%2")
                                  .arg(button->text(), seen.contains(button->text()) ? QStringLiteral(" without parent")
                                                                                     : QString());
        seen << button->text();
        walkModal(where, button);
        m_window->activateWindow();
        QApplication::processEvents();
    }
}

void AccessibilityWalk::walkModal(const QString& where, QWidget* button)
{
    bool opened = false;
    QTimer inside;
    inside.setSingleShot(true);
    QObject::connect(&inside, &QTimer::timeout, [&]() {
        QWidget* sheet = runningSheet(m_window);
        QPointer<QWidget> modal = sheet ? sheet : QApplication::activeModalWidget();
        if (!modal)
            return;
        opened = true;
        checkRunningSheet(where, modal);
        pressKey(Qt::Key_Escape);
        if (modal && modal->isVisible()) {
            // Sheets without a cancel button end when their caller ends them.
            m_out << where << ": note: Escape leaves it open\n";
            QMetaObject::invokeMethod(modal, "done", Q_ARG(int, 0));
        }
    });
    // The click returns when the run it starts has ended.
    inside.start(50);
    static_cast<QAbstractButton*>(button)->click();
    inside.stop();
    QApplication::processEvents();
    if (!opened)
        m_out << where << ": note: opens nothing modal\n";
    if (runningSheet(m_window) || QApplication::activeModalWidget())
        problem(where, QStringLiteral("still open after its run"));
}

void AccessibilityWalk::checkRunningSheet(const QString& where, QWidget* sheet)
{
    QAccessibleInterface* iface = QAccessible::queryAccessibleInterface(sheet);
    if (!iface) {
        problem(where, QStringLiteral("%1 has no accessible interface").arg(describe(sheet)));
        return;
    }
    if (iface->role() != QAccessible::Dialog && iface->role() != QAccessible::AlertMessage)
        problem(where, QStringLiteral("announced as role 0x%1, not a dialog or an alert").arg(QString::number(iface->role(), 16)));
    // A dialog window's modality is the platform's to tell; a sheet must say it.
    if (!sheet->isWindow() && !iface->state().modal)
        problem(where, QStringLiteral("not announced as modal"));
    if (iface->text(QAccessible::Name).trimmed().isEmpty())
        problem(where, QStringLiteral("%1 has no name").arg(describe(sheet)));
    m_out << where << ": announced as " << (iface->role() == QAccessible::AlertMessage ? "alert" : "dialog") << " \""
          << iface->text(QAccessible::Name) << "\"\n";
    reportUnnamed(iface, where);

    // A sheet lies over its window: everything behind it must be out of reach.
    if (!sheet->isWindow()) {
        int reachable = 0;
        for (QWidget* widget : m_window->findChildren<QWidget*>()) {
            if (widget->isVisible() && widget->isEnabled() && !widget->isWindow() && !isInside(widget, sheet)
                && !widget->isAncestorOf(sheet) && widget->focusPolicy() != Qt::NoFocus) {
                if (++reachable <= 3)
                    problem(where, QStringLiteral("%1 behind the sheet is enabled").arg(describe(widget)));
            }
        }
    }

    // The focus is in it and stays in it.
    if (!isInside(QApplication::focusWidget(), sheet))
        problem(where, QStringLiteral("the focus is on %1, outside it").arg(describe(QApplication::focusWidget())));
    for (int i = 0; i < tabsInsideModal; ++i) {
        pressKey(Qt::Key_Tab);
        QWidget* now = QApplication::focusWidget();
        if (!isInside(now, sheet)) {
            problem(where, QStringLiteral("Tab leaves it for %1").arg(describe(now)));
            break;
        }
        const QString why = sheet->isWindow() ? QString() : hiddenStop(now);
        if (!why.isEmpty())
            problem(where, QStringLiteral("Tab stops on %1, which is %2").arg(describe(now), why));
    }
}

void AccessibilityWalk::walkDateSelectorPopup(QWidget* page)
{
    for (OrvaDateSelector* selector : page->findChildren<OrvaDateSelector*>()) {
        const QString where = QStringLiteral("%1 calendar popup").arg(page->objectName());
        selector->showPopup();
        QApplication::processEvents();
        QWidget* popup = selector->view()->window();
        if (!popup->isVisible()) {
            problem(where, QStringLiteral("does not open"));
            continue;
        }
        reportUnnamed(QAccessible::queryAccessibleInterface(popup), where);
        m_out << where << ": opens with the focus on " << describe(QApplication::focusWidget()) << '\n';
        if (!isInside(QApplication::focusWidget(), popup))
            problem(where, QStringLiteral("the focus is on %1, outside it").arg(describe(QApplication::focusWidget())));
        // Inside the popup Tab goes round its controls, and every stop is shown.
        for (int i = 0; i < tabsInsideModal && popup->isVisible(); ++i) {
            pressKey(Qt::Key_Tab);
            QWidget* now = QApplication::focusWidget();
            if (!isInside(now, popup)) {
                problem(where, QStringLiteral("Tab leaves it for %1").arg(describe(now)));
                break;
            }
            if (!now->isVisible() || !now->isEnabled() || now->size().isEmpty())
                problem(where, QStringLiteral("Tab stops on %1, which cannot be seen or used").arg(describe(now)));
        }
        pressKey(Qt::Key_Escape);
        if (popup->isVisible()) {
            problem(where, QStringLiteral("Escape does not close it"));
            selector->hidePopup();
        }
    }
}

void AccessibilityWalk::walkBreadcrumbMenu(QWidget* page)
{
    for (OrvaButtonPath* bar : page->findChildren<OrvaButtonPath*>()) {
        auto* button = bar->findChild<QToolButton*>(QString(), Qt::FindDirectChildrenOnly);
        if (!button || !button->isVisible() || !button->menu())
            continue;
        const QString where = QStringLiteral("%1 folder menu").arg(page->objectName());
        bool opened = false;
        QTimer inside;
        inside.setSingleShot(true);
        QObject::connect(&inside, &QTimer::timeout, [&]() {
            QPointer<QWidget> menu = QApplication::activePopupWidget();
            if (!menu)
                return;
            opened = true;
            reportUnnamed(QAccessible::queryAccessibleInterface(menu), where);
            pressKey(Qt::Key_Escape);
            if (menu && menu->isVisible()) {
                problem(where, QStringLiteral("Escape does not close it"));
                menu->close();
            }
        });
        inside.start(50);
        button->showMenu();
        inside.stop();
        QApplication::processEvents();
        if (!opened)
            problem(where, QStringLiteral("does not open"));
    }
}
