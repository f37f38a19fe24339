#include <orvacat/qtsingleapplication.h>

#include <orvacat/qtlocalpeer.h>

#include <QWidget>

QtSingleApplication::QtSingleApplication(int& argc, char** argv, bool GUIenabled)
    : QApplication(argc, argv)
{
    Q_UNUSED(GUIenabled)
    sysInit();
}

QtSingleApplication::QtSingleApplication(const QString& id, int& argc, char** argv)
    : QApplication(argc, argv)
{
    sysInit(id);
}

QtSingleApplication::~QtSingleApplication() = default;

void QtSingleApplication::sysInit(const QString& appId)
{
    peer = new QtLocalPeer(this, appId);
    // Forwarded before any activation is connected, so that the host sees the
    // message before its window comes to the front.
    connect(peer, SIGNAL(messageReceived(QString)), this, SIGNAL(messageReceived(QString)));
}

bool QtSingleApplication::isRunning()
{
    return peer->isClient();
}

QString QtSingleApplication::id() const
{
    return peer->applicationId();
}

void QtSingleApplication::setActivationWindow(QWidget* aw, bool activateOnMessage)
{
    actWin = aw;
    if (activateOnMessage)
        connect(peer, SIGNAL(messageReceived(QString)), this, SLOT(activateWindow()), Qt::UniqueConnection);
    else
        disconnect(peer, SIGNAL(messageReceived(QString)), this, SLOT(activateWindow()));
}

QWidget* QtSingleApplication::activationWindow() const
{
    return actWin;
}

bool QtSingleApplication::unlock()
{
    return peer->unlock();
}

bool QtSingleApplication::sendMessage(const QString& message, int timeout)
{
    return peer->sendMessage(message, timeout);
}

void QtSingleApplication::activateWindow()
{
    if (!actWin)
        return;
    actWin->setWindowState(actWin->windowState() & ~Qt::WindowMinimized);
    actWin->raise();
    actWin->activateWindow();
}
