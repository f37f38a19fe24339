#ifndef ORVACAT_SHEETMODALRUN_P_H
#define ORVACAT_SHEETMODALRUN_P_H

//
//  W A R N I N G
//  -------------
//
// This file is not part of the public API.
//

#include <QPointer>
#include <QWidget>

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
     * @p blockCloseButton also takes the window's close button away.
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
     * @p result and stops watching the window. Returns false, doing nothing,
     * when this showing has been ended already; a sheet never shown ends
     * once too. The caller hides the sheet and reports the end only on true.
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

private:
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
};

#endif // ORVACAT_SHEETMODALRUN_P_H
