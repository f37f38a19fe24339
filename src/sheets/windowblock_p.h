#ifndef ORVACAT_WINDOWBLOCK_P_H
#define ORVACAT_WINDOWBLOCK_P_H

//
//  W A R N I N G
//  -------------
//
// This file is not part of the public API.
//

#include <orvacat/closebutton.h>

#include <QVariant>
#include <QWidget>

// The close button of a window is shared by every sheet blocking it: a sheet
// opened from inside another one's run must not give the button back when it
// ends while the outer sheet is still up. The window counts its blocking
// sheets, and only the first takes the button away and the last gives it back.

namespace SheetWindowBlock {

inline const char* counterProperty()
{
    return "_orvacat_blocking_sheets";
}

/** Takes the close button of @p sheet's window away; returns that window. */
inline QWidget* block(QWidget* sheet, void** state)
{
    QWidget* window = sheet->window();
    const int count = window->property(counterProperty()).toInt();
    window->setProperty(counterProperty(), count + 1);
    if (count == 0)
        SHAPISetCloseButtonOfWindowEnable(window, false, state);
    return window;
}

/** Gives the close button of @p window back once no sheet blocks it any more. */
inline void release(QWidget* window, void** state)
{
    if (!window)
        return;
    const int count = window->property(counterProperty()).toInt() - 1;
    window->setProperty(counterProperty(), count > 0 ? QVariant(count) : QVariant());
    if (count <= 0)
        SHAPISetCloseButtonOfWindowEnable(window, true, state);
}

} // namespace SheetWindowBlock

#endif // ORVACAT_WINDOWBLOCK_P_H
