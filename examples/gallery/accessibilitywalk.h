#ifndef ORVACAT_GALLERY_ACCESSIBILITYWALK_H
#define ORVACAT_GALLERY_ACCESSIBILITYWALK_H

#include <QString>

class QAccessibleInterface;
class QListWidget;
class QStackedWidget;
class QTextStream;
class QWidget;

/**
 * The gallery's check mode: every page walked as a screen reader and a
 * keyboard user walk it. On each page: no shown interactive object without a
 * name (the page's menus opened too), and Tab and Shift+Tab from the page
 * list come back to it through stops that are shown, enabled and on screen.
 * On the pages that open something: every sheet and message box of the
 * Messages page run, the date selector's calendar dropped down and the
 * breadcrumb's folder menu opened, each checked while it is up.
 */
class AccessibilityWalk
{
public:
    AccessibilityWalk(QWidget* window, QListWidget* pageList, QStackedWidget* pages, QTextStream& out);

    /** Walks every page; writes one line per problem and returns how many. */
    int run();

private:
    void reportUnnamed(QAccessibleInterface* iface, const QString& where, int depth = 0);
    void problem(const QString& where, const QString& text);

    void walkKeyboard(const QString& where, bool forward);
    /** Why the focus stop @p widget cannot be seen, or an empty string. */
    QString hiddenStop(QWidget* widget);
    void pressKey(int key, Qt::KeyboardModifiers modifiers = Qt::NoModifier);

    void walkSheets(QWidget* page);
    /** Clicks @p button and checks the sheet or box it runs, from inside its modal loop. */
    void walkModal(const QString& where, QWidget* button);
    void checkRunningSheet(const QString& where, QWidget* sheet);
    void walkDateSelectorPopup(QWidget* page);
    void walkBreadcrumbMenu(QWidget* page);

    QWidget* m_window;
    QListWidget* m_pageList;
    QStackedWidget* m_pages;
    QTextStream& m_out;
    int m_problems = 0;
};

#endif // ORVACAT_GALLERY_ACCESSIBILITYWALK_H
