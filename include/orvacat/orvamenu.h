#ifndef ORVACAT_ORVAMENU_H
#define ORVACAT_ORVAMENU_H

/**
 * @file
 * OrvaMenu, a menu that keeps itself on its screen.
 */

#include <orvacat/orvacat_export.h>

#include <QMenu>

/**
 * A menu that moves itself back onto the available area of its screen when
 * it is shown partly outside it. A menu past the left or top edge goes to
 * x 0 or y 0 of the whole desktop, not to the screen's edge. No style sheet
 * is set: the host styles it ("component.menu").
 *
 * Screen readers name a popup menu by its window title. Unless the host sets
 * one, the menu takes its title(), else the name of the button that is its
 * parent, each time it is shown.
 */
class ORVACAT_EXPORT OrvaMenu : public QMenu
{
    Q_OBJECT

public:
    /** An empty QMenu, without a style sheet of its own. */
    explicit OrvaMenu(QWidget* parent = nullptr);

protected:
    /** Moves the menu back onto its screen's available area when it sticks out. */
    void showEvent(QShowEvent* event) override;

private:
    // The window title this menu gave itself, replaced at the next show.
    QString m_derivedTitle;
};

#endif // ORVACAT_ORVAMENU_H
