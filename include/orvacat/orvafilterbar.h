#ifndef ORVACAT_ORVAFILTERBAR_H
#define ORVACAT_ORVAFILTERBAR_H

/**
 * @file
 * OrvaFilterBar, the search field with its search-options button. Its picture
 * and looks come from the registries, so initialize them before constructing one.
 */

#include <orvacat/orvacat_export.h>

#include <QLineEdit>
#include <QString>

class OrvaIconButton;
class QEvent;
class QMenu;
class QResizeEvent;

/**
 * A search field with a search button inside its left end (its right end
 * under a right-to-left layout), named "Search" and "Search options" for
 * assistive technology (component strings "accessible_search" and
 * "accessible_search_options"). The keyword
 * goes out through sigKeywordChanged() when the user presses Return, not
 * while typing. The Down key opens the button's menu of search options, if
 * it has one, and is never passed to the field.
 */
class ORVACAT_EXPORT OrvaFilterBar : public QLineEdit
{
    Q_OBJECT

public:
    /** An empty field, 28 (scaled) pixels high, whose search button has no menu yet. */
    explicit OrvaFilterBar(QWidget* parent = nullptr);

    /** Gives the search button a drop-down menu; the menu stays the caller's. */
    void setMenu(QMenu* menu);

public Q_SLOTS:
    /** Emits sigKeywordChanged() with the current text; Return calls it. */
    void slotKeywordChange();

Q_SIGNALS:
    /** The field's text when the user pressed Return, empty included, even if unchanged. */
    void sigKeywordChanged(QString keyword);

protected:
    /** Takes Down to open the search button's menu, if any; other keys go to the field. */
    void keyPressEvent(QKeyEvent* event) override;
    /** Keeps the search button at the end where the text starts. */
    void resizeEvent(QResizeEvent* event) override;
    /** Moves the search button to the other end when the layout direction changes. */
    void changeEvent(QEvent* event) override;

private:
    ORVACAT_NO_EXPORT void placeSearchButton();

    OrvaIconButton* m_searchButton = nullptr;
};

#endif // ORVACAT_ORVAFILTERBAR_H
