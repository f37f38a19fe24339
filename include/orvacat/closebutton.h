#ifndef ORVACAT_CLOSEBUTTON_H
#define ORVACAT_CLOSEBUTTON_H

/**
 * @file
 * SHAPISetCloseButtonOfWindowEnable(), the one platform call: sheets disable
 * the window's close button while they block.
 */

#include <orvacat/orvacat_export.h>

class QWidget;

/**
 * Enables or disables the native close button of the window that contains
 * @p widget, leaving the window shown where it is. Does nothing for a null
 * widget, for a window that has no native handle yet, and on platforms
 * without such a button. Enabling restores the window's flags exactly as
 * they were before the matching disable. @p unused is never read.
 */
ORVACAT_EXPORT void SHAPISetCloseButtonOfWindowEnable(QWidget* widget, bool enable, void** unused);

#endif // ORVACAT_CLOSEBUTTON_H
