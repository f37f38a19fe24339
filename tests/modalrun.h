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
#include <limits>

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

/** What run() answers when the watchdog had to end the run. */
constexpr int watchdogFired = std::numeric_limits<int>::min();

/**
 * Starts a run through @p start with @p action queued into its loop and a
 * watchdog that calls @p end; answers the run's result, or watchdogFired.
 */
inline int run(const std::function<int()>& start, std::function<void()> action, std::function<void()> end)
{
    if (action)
        whenRunning(std::move(action));
    Watchdog watchdog(std::move(end));
    const int result = start();
    return watchdog.fired ? watchdogFired : result;
}

/** run() for anything with exec() and quit(); the watchdog leaves one that is gone alone. */
template <typename Sheet>
int runSheet(Sheet* sheet, std::function<void()> action = {})
{
    QPointer<Sheet> guard(sheet);
    return run([sheet]() { return sheet->exec(); }, std::move(action), [guard]() {
        if (guard)
            guard->quit();
    });
}

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
