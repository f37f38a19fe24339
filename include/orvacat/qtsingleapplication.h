#ifndef ORVACAT_QTSINGLEAPPLICATION_H
#define ORVACAT_QTSINGLEAPPLICATION_H

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
    QtSingleApplication(const QString& id, int& argc, char** argv);
    ~QtSingleApplication() override;

    /**
     * True when another instance with this id runs. The first call decides
     * the role: when it returns false this process has become the primary
     * instance and receives the others' messages.
     */
    bool isRunning();
    QString id() const;

    /**
     * The window that activateWindow() brings to the front; with
     * @p activateOnMessage it is activated on every received message (after
     * messageReceived was emitted).
     */
    void setActivationWindow(QWidget* aw, bool activateOnMessage = true);
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
    bool sendMessage(const QString& message, int timeout = 5000);
    /** Clears the minimized state of the activation window, raises and activates it. */
    void activateWindow();

Q_SIGNALS:
    void messageReceived(const QString& message);

private:
    void sysInit(const QString& appId = QString());

    QtLocalPeer* peer = nullptr;
    QPointer<QWidget> actWin;
};

#endif // ORVACAT_QTSINGLEAPPLICATION_H
