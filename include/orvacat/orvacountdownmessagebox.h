#ifndef ORVACAT_ORVACOUNTDOWNMESSAGEBOX_H
#define ORVACAT_ORVACOUNTDOWNMESSAGEBOX_H

/**
 * @file
 * OrvaCountdownMessageBox, a message box that answers Ok by itself. Its
 * captions and looks come from the registries, so initialize them before
 * constructing one.
 */

#include <orvacat/orvacat_export.h>

#include <QMessageBox>
#include <QTimer>

/**
 * A message box whose Ok button counts seconds down, "OK(2)", and clicks
 * itself when the count runs out, @p seconds seconds after the box is shown,
 * unless the user answers first. The cancel button is the standard Discard
 * button (8388608) and is never clicked automatically. Set icon and texts
 * with the QMessageBox calls, then exec(). Assistive technology sees a modal
 * dialog (an alert with the warning, critical or question icon) named by its
 * accessible name, else its window title, else the first line of its text.
 */
class ORVACAT_EXPORT OrvaCountdownMessageBox : public QMessageBox
{
    Q_OBJECT

public:
    /** A negative @p seconds counts as 0: Ok is clicked right after showing. */
    OrvaCountdownMessageBox(int seconds, QWidget* parent);

    /** Ok's caption: the "ok" string followed by the shown count in brackets. */
    void updateButtonText();

public Q_SLOTS:
    /**
     * One second of the countdown, called by the box's timer while it is
     * shown: lowers the count and Ok's caption, and once the count has run
     * out clicks Ok. A hidden box stops its timer instead.
     */
    void slotTick();
    /** Runs the box; while it runs, a second call warns and returns 0 at once. */
    int exec() override;
    /** Ends the showing with @p result; later calls until the next showing are ignored. */
    void done(int result) override;

protected:
    /** A new showing takes an answer again; the first second goes at once, then the one-second timer starts. */
    void showEvent(QShowEvent* event) override;

private:
    QTimer m_timer;
    int m_seconds;
    bool m_running = false;
    bool m_answered = false;
};

#endif // ORVACAT_ORVACOUNTDOWNMESSAGEBOX_H
