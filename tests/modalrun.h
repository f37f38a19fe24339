#ifndef ORVACAT_TESTS_MODALRUN_H
#define ORVACAT_TESTS_MODALRUN_H

// Driving modal runs the way a user does: the test schedules its actions,
// starts the run, and the actions fire from inside the run's event loop.
// A watchdog ends any run that the actions failed to end.

#include <QApplication>
#include <QKeyEvent>
#include <QPointer>
#include <QTest>
#include <QTimer>
#include <QWidget>

#include <functional>

namespace ModalRun {

/** How long a run may take before the watchdog ends it. */
constexpr int watchdogMs = 8000;

/**
 * Calls @p action once the run that the caller starts next is spinning.
 * The action is queued, so it runs from inside the nested loop.
 */
inline void whenRunning(std::function<void()> action)
{
    QTimer::singleShot(0, qApp, std::move(action));
}

/**
 * Ends a run that hangs: after watchdogMs calls @p end (which must end the
 * run) and sets fired. Destroying the watchdog disarms it.
 */
class Watchdog
{
public:
    explicit Watchdog(std::function<void()> end)
    {
        m_timer.setSingleShot(true);
        QObject::connect(&m_timer, &QTimer::timeout, [this, end]() {
            fired = true;
            end();
        });
        m_timer.start(watchdogMs);
    }

    bool fired = false;

private:
    QTimer m_timer;
};

/** The widget that a key press from the user reaches: the focus widget, else @p fallback. */
inline QWidget* keyTarget(QWidget* fallback)
{
    QWidget* focus = QApplication::focusWidget();
    return focus ? focus : fallback;
}

/** A key press and release as the user types it, sent where the keyboard focus is. */
inline void press(QWidget* fallback, Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier)
{
    QTest::keyClick(keyTarget(fallback), key, modifiers);
}

/** Whether @p widget is @p ancestor or lies inside it. */
inline bool isInside(const QWidget* widget, const QWidget* ancestor)
{
    for (const QWidget* w = widget; w; w = w->parentWidget()) {
        if (w == ancestor)
            return true;
    }
    return false;
}

} // namespace ModalRun

#endif // ORVACAT_TESTS_MODALRUN_H
