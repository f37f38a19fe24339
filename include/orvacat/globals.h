#ifndef ORVACAT_GLOBALS_H
#define ORVACAT_GLOBALS_H

/**
 * @file
 * The toolkit's exported globals: its logging category and the last drawn
 * check box rectangle.
 */

#include <orvacat/orvacat_export.h>

#include <QEnterEvent>
#include <QLoggingCategory>
#include <QRect>

#include <type_traits>

/**
 * The toolkit's logging category, named "debug.message". Every diagnostic of
 * the toolkit is a warning on it; disable its warning level to silence them,
 * debug_message.setEnabled(QtWarningMsg, false) or a filter rule
 * "debug.message.warning=false". Not const, so that hosts can do the former.
 */
ORVACAT_EXPORT extern QLoggingCategory debug_message;

/**
 * The rectangle of the check box that ItemDelegate drew last. Nothing in the
 * toolkit reads it; hosts hit-test mouse clicks against it. Null until the
 * first check box is drawn.
 */
ORVACAT_EXPORT extern QRect g_check_rect;

/**
 * The parameter type of QWidget::enterEvent: QEvent under Qt 5, QEnterEvent
 * under Qt 6. The toolkit's enterEvent overrides take it, and so can a host
 * widget that derives from them and builds against either Qt.
 */
using OrvaEnterEvent = std::conditional_t<(QT_VERSION_MAJOR >= 6), QEnterEvent, QEvent>;

#endif // ORVACAT_GLOBALS_H
