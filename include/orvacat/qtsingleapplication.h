#ifndef ORVACAT_QTSINGLEAPPLICATION_H
#define ORVACAT_QTSINGLEAPPLICATION_H

/**
 * @file
 * QtSingleApplication, the application object that knows about its other
 * instances. Create it in place of QApplication, first thing in main().
 */

#include <orvacat/orvacat_export.h>

#include <QApplication>
#include <QPointer>

class QtLocalPeer;

/**
 * A QApplication that knows whether another instance with the same id is
 * already running for this user, and can pass it a message (for example the
 * command line of a second start):
 *
 *     QtSingleApplication app(argc, argv);
 *     if (app.isRunning())
 *         return app.sendMessage(args) ? 0 : 1;
 *
 * The id defaults to the executable's path.
 */
class ORVACAT_EXPORT QtSingleApplication : public QApplication
{
    Q_OBJECT

public:
    /** @p GUIenabled is accepted for compatibility; Qt 5 applications always have a GUI. */
    QtSingleApplication(int& argc, char** argv, bool GUIenabled = true);
    /** As above, with @p id in place of the executable's path; instances meet by it. */
    QtSingleApplication(const QString& id, int& argc, char** argv);
    ~QtSingleApplication() override;

    /**
     * True when another instance with this id runs. The first call decides
     * the role: when it returns false this process has become the primary
     * instance and receives the others' messages.
     */
    bool isRunning();
    /** The application id: the one given, or the executable's path. */
    QString id() const;

    /**
     * The window that activateWindow() brings to the front; with
     * @p activateOnMessage it is activated on every received message (after
     * messageReceived was emitted).
     */
    void setActivationWindow(QWidget* aw, bool activateOnMessage = true);
    /** The window set with setActivationWindow(); null before, or once it was deleted. */
    QWidget* activationWindow() const;

    /** Same as isRunning(); kept for hosts written against older versions. */
    void initialize(bool dummy = true)
    {
        Q_UNUSED(dummy)
        isRunning();
    }

    /** Gives up the primary role; see QtLocalPeer::unlock(). */
    bool unlock();

public Q_SLOTS:
    /**
     * Sends @p message to the primary instance and waits up to @p timeout ms
     * for it to be acknowledged. False in the primary itself, or when no
     * primary answered.
     */
    bool sendMessage(const QString& message, int timeout = 5000);
    /** Clears the minimized state of the activation window, raises and activates it. */
    void activateWindow();

Q_SIGNALS:
    /** In the primary instance, once per message another instance sent. */
    void messageReceived(const QString& message);

private:
    void sysInit(const QString& appId = QString());

    QtLocalPeer* peer = nullptr;
    QPointer<QWidget> actWin;
};

#endif // ORVACAT_QTSINGLEAPPLICATION_H
