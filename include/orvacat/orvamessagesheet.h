#ifndef ORVACAT_ORVAMESSAGESHEET_H
#define ORVACAT_ORVAMESSAGESHEET_H

/**
 * @file
 * OrvaMessageSheet, the message drawn inside its window, and its button
 * captions. Its pictures, captions and looks come from the registries, so
 * initialize them before constructing one.
 */

#include <orvacat/orvacat_export.h>
#include <orvacat/orvasheet.h>

#include <QMessageBox>
#include <QString>

class QAbstractButton;
class QKeyEvent;
class QPixmap;
class QPushButton;
class OrvaMessageSheetPrivate;

/**
 * The captions of a message's two buttons. An empty caption means the
 * default one: "ok" (or "wizard_client_upgrade" for an upgrade message) and
 * "cancel" from the component strings.
 */
struct ORVACAT_EXPORT MsgBoxCustomBtnText
{
    QString okText;     ///< the Ok button's caption
    QString cancelText; ///< the cancel button's caption
};

/**
 * A message drawn inside its window: icon, text, optional informative text
 * and up to two buttons, Ok (1024) and a cancel button that is the standard
 * Discard button (8388608). Construct it with the widget it belongs to as
 * parent (its width follows the parent's: 40 logical pixels narrower, at most
 * 540) and lay it over the window, usually with OrvaMask::createMask.
 *
 * exec() runs a nested event loop until a button, a key or done() ends the
 * sheet. While the sheet is up, close requests for the window are ignored,
 * the rest of the window is disabled, Tab and Backtab stay inside the sheet,
 * Return/Enter/Space click Ok (or the button that has the focus) and Escape
 * clicks the cancel button; exec() also disables the window's close button
 * until the sheet ends (see setBlockWindowButton()). When it ends, the focus
 * goes back to the widget that had it.
 *
 * Assistive technology sees a modal dialog, an alert for the warning and
 * question types, named by the sheet's accessible name, else its window
 * title, else the first line of its text, and described by its texts.
 */
class ORVACAT_EXPORT OrvaMessageSheet : public OrvaSheet
{
    Q_OBJECT

public:
    /** What the message is: it picks the icon, the buttons and the look. */
    enum MessageType {
        AppMessage = 0,             ///< the application's picture ("app_img"), no buttons
        InformationMessage = 1,     ///< the information icon, Ok
        WarningMessage = 2,         ///< the warning icon, Ok
        QuestionMessage = 3,        ///< the question icon, Ok and cancel
        UpgradeMessage = 4,         ///< the information icon, Ok captioned "wizard_client_upgrade", and cancel
        WarningQuestionMessage = 5, ///< the warning icon, Ok and cancel
        ProcessingMessage = 6       ///< no icon of its own, no buttons: the busy sheet
    };
    Q_ENUM(MessageType)

    /**
     * A hidden sheet of @p type showing @p text, its buttons captioned by
     * @p captions; show it with exec() or showSheet().
     */
    OrvaMessageSheet(MessageType type, const QString& text, const MsgBoxCustomBtnText& captions, QWidget* parent);
    /** A hidden sheet of @p type without text yet; give it one with setText(). */
    OrvaMessageSheet(MessageType type, QWidget* parent);
    /** A hidden sheet of @p type showing @p text with the default captions. */
    OrvaMessageSheet(MessageType type, const QString& text, QWidget* parent);
    /** As above, with @p informativeText under the text (left out when empty). */
    OrvaMessageSheet(MessageType type, const QString& text, const QString& informativeText, QWidget* parent);
    /**
     * The busy sheet: no buttons, an animation read from @p moviePath (any
     * format QMovie reads) beside @p text. It is started by exec(); a file
     * that cannot be read leaves the icon place empty. End it with done().
     */
    OrvaMessageSheet(const QString& text, const QString& moviePath, QWidget* parent);
    ~OrvaMessageSheet() override;

    /** The message, rich text allowed; links open in the desktop's browser. */
    void setText(const QString& text);
    /** An empty text removes the informative line. */
    void setInformativeText(const QString& text);
    /** Replaces the type's icon; a null pixmap leaves the sheet without one. */
    void setIcon(const QPixmap& pixmap);
    /** Rebuilds icon, buttons and captions for @p type (default captions). */
    void setMessageType(MessageType type);
    /** Makes @p button a default button; null is ignored. Ok is the default from the start. */
    void setDefaultButton(QPushButton* button);
    /** The Ok or Discard (cancel) button, or null when the sheet has none. */
    QPushButton* button(QMessageBox::StandardButton which) const;
    /**
     * With @p block (the default) close events of the window are ignored
     * while the sheet is up, and exec() and showSheetWithBlock() disable the
     * window's close button until done().
     */
    void setBlockWindowButton(bool block);

    /** Shows the sheet and starts watching the window's keys; returns at once. */
    void showSheet();
    /** As showSheet(), and disables the window's close button when blocking. */
    void showSheetWithBlock();

    /**
     * Shows the sheet and returns the code given to done(): 1024 for Ok,
     * 8388608 for cancel, 0 for quit(). Returns 0 at once when the sheet is
     * already running, and 0 when the sheet is destroyed during the run (for
     * example with its window); the caller must then not touch it again.
     */
    int exec();

    /**
     * While blocking, refuses the window's close events; while shown, takes
     * every key press in its window: Tab and Backtab go round the sheet,
     * Return, Enter and Space click the focused button, else Ok, Escape
     * clicks cancel.
     */
    bool eventFilter(QObject* watched, QEvent* event) override;

public Q_SLOTS:
    /**
     * Ends the sheet: the running exec() returns @p result, the sheet hides
     * and emits finished(result). Only the first call for one showing counts;
     * later calls until the sheet is shown again are ignored.
     */
    void done(int result);
    /** done(0). */
    void quit();
    /** done() with the standard-button value of @p button; the button box calls it. */
    void buttonClick(QAbstractButton* button);

protected:
    /** Follows its content's height when the layout asks. */
    bool event(QEvent* event) override;
    /** Makes the two buttons focusable and gathers the widgets that Tab goes round. */
    void showEvent(QShowEvent* event) override;

private:
    void markFirstFocusWidget();
    void markLastFocusWidget();
    void restrictedFocus(QObject* watched, QKeyEvent* event);

    OrvaMessageSheetPrivate* d;
    bool m_blockWindowButton;

    friend class OrvaMessageSheetPrivate;
};

#endif // ORVACAT_ORVAMESSAGESHEET_H
