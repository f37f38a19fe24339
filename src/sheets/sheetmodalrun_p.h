#ifndef ORVACAT_SHEETMODALRUN_P_H
#define ORVACAT_SHEETMODALRUN_P_H

//
//  W A R N I N G
//  -------------
//
// This file is not part of the public API.
//

#include <QList>
#include <QPointer>
#include <QWidget>

class QAbstractButton;
class QEvent;
class QEventLoop;
class QPushButton;

/**
 * The modal showing that the message and the input sheet share: the sheet
 * watches its window's events and may take the window's close button away
 * while it is up, runs a nested loop in exec(), and ends each showing once.
 * Held by the sheet's private part; the sheet itself is the event filter.
 */
class SheetModalRun
{
public:
    explicit SheetModalRun(QWidget* sheet);

    /**
     * Shows the sheet and starts watching its window; with
     * @p blockCloseButton also takes the window's close button away. The
     * rest of the window is disabled until the end, so that neither the
     * mouse, shortcuts nor assistive technology reach it, and the widget
     * that had the focus gets it back then.
     */
    void start(bool blockCloseButton);
    /** Whether exec() is inside its loop. */
    bool isRunning() const;
    /**
     * Runs the loop until finish(); returns its result, or 0 when the sheet
     * was destroyed during the run (this object is gone with it then).
     */
    int exec();
    /**
     * Ends this showing: gives the close button back, ends the loop with
     * @p result, stops watching the window, hides the sheet, gives the rest
     * of the window back and the focus to where it was. Returns false, doing
     * nothing, when this showing has been ended already; a sheet never shown
     * ends once too. The caller reports the end only on true.
     */
    bool finish(int result);
    /** To be called from the sheet's destructor. */
    void sheetDestroyed();

    /** Whether @p event is a close request that the blocking sheet refuses. */
    static bool refusesClose(bool blocking, QEvent* event);
    /**
     * A key that reached the sheet's watch: Return, Enter and Space click
     * @p ok, Escape clicks @p cancel (either may be null); the sheet takes
     * every key it is shown this way, answered or not.
     */
    static void answerKey(int key, QPushButton* ok, QPushButton* cancel);
    /**
     * Return, Enter or Space on one of @p buttons (the one with the focus)
     * click that button, whatever the keys mean elsewhere in the sheet: a
     * user who tabbed to cancel must not get Ok. Returns whether it did.
     */
    static bool clickFocusedButton(QObject* watched, int key, const QList<QAbstractButton*>& buttons);

private:
    void blockRestOfWindow();
    void unblockRestOfWindow();
    void giveFocusBack();

    QWidget* m_sheet;
    QEventLoop* m_eventLoop;
    void* m_closeButtonState;
    // Whether exec() is inside its loop, and whether this showing has been
    // ended already (a second finish() must not change what the running
    // exec() returns, nor report the end twice), hidden or not.
    bool m_running;
    bool m_exitRequested;
    // The window whose close button this showing took away, and the window
    // that is watched: finish() gives back and stops watching those, even if
    // the sheet was moved to another window meanwhile.
    QPointer<QWidget> m_blockedWindow;
    QPointer<QWidget> m_filteredWindow;
    // The widgets beside the sheet (or beside its mask, and so on up to the
    // window) that this showing disabled; those the host had disabled are
    // not among them and stay as they were.
    QList<QPointer<QWidget>> m_disabled;
    QPointer<QWidget> m_focusBefore;
    bool m_announced;
};

#endif // ORVACAT_SHEETMODALRUN_P_H
