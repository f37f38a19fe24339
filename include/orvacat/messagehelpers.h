#ifndef ORVACAT_MESSAGEHELPERS_H
#define ORVACAT_MESSAGEHELPERS_H

#include <orvacat/orvacat_export.h>
#include <orvacat/orvamessagesheet.h>

#include <QString>

class QWidget;

/**
 * @file
 * One-call modal messages. With a parent the message is an OrvaMessageSheet
 * over a faint mask that covers the parent's window, as wide as the window
 * allows (the title is not shown, but names the sheet for assistive
 * technology); without a parent it is a styled QMessageBox window titled
 * with the title. Each call returns when the user
 * has answered. Captions, icons and looks come from the registries, so
 * initialize them first.
 */

/** Shows @p text with the information icon and Ok. */
ORVACAT_EXPORT void showInfoMsg(const QString& title, const QString& text, QWidget* parent);
/** Shows @p text with the warning icon and Ok. */
ORVACAT_EXPORT void showWarningMsg(const QString& title, const QString& text, QWidget* parent);
/** As above, with @p informativeText under the text (left out when empty). */
ORVACAT_EXPORT void showWarningMsg(const QString& title, const QString& text, const QString& informativeText,
                                   QWidget* parent);

/**
 * Asks a question with Ok and cancel. Returns 1024 (QMessageBox::Ok) for Ok;
 * cancel is 8388608 (QMessageBox::Discard) on a sheet and 4194304
 * (QMessageBox::Cancel) in the parentless box, so test for 1024. 0 when the
 * parent's window was destroyed while the question was up.
 */
ORVACAT_EXPORT int showConfirmMsg(const QString& title, const QString& text, QWidget* parent);
/** showConfirmMsg() with the buttons captioned by @p captions (empty: default caption). */
ORVACAT_EXPORT int showConfirmMsgCustomBtn(const QString& title, const QString& text,
                                           const MsgBoxCustomBtnText& captions, QWidget* parent);
/**
 * Announces an upgrade. On a sheet Ok is captioned "wizard_client_upgrade" and
 * a cancel button follows; the box has Ok only. The answer is dropped.
 */
ORVACAT_EXPORT void showUpgradingMsg(const QString& title, const QString& text, QWidget* parent);

#endif // ORVACAT_MESSAGEHELPERS_H
