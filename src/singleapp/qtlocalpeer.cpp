#include <orvacat/qtlocalpeer.h>

#include <QCoreApplication>
#include <QDataStream>
#include <QDeadlineTimer>
#include <QDir>
#include <QFile>
#include <QLocalServer>
#include <QLocalSocket>
#include <QRegularExpression>
#include <QThread>
#include <QTimer>
#include <QtEndian>

#include <atomic>
#include <cstring>
#include <functional>
#include <fcntl.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

const char ack[] = "ack";
const int ackSize = 3;
const int countSize = 4;

// A message must be complete within the time a sender waits by default,
// counted from the connection: a byte now and then does not buy more time.
// After the acknowledgement the sender gets a second to hang up.
const int messageDeadline = 5000;
const int hangUpTimeout = 1000;

// Any local process can connect, so what the primary gives strangers is
// bounded: connections served at once (the rest are hung up on arrival, so
// that the descriptors needed to accept the next start are never used up),
// the size of one message, and the bytes held for all unfinished messages.
// Counts are only promises; a body grows with what really arrives.
const int maxConnections = 32;
const qint64 maxMessageSize = 16 << 20;
const qint64 maxBufferedTotal = 64 << 20;
std::atomic<int> openConnections{0};
std::atomic<qint64> bufferedBytes{0};

/**
 * One message arriving on one connection. The receiving side reads the
 * 4-byte count and the body as the data comes in (a stalled sender never
 * blocks the event loop), answers "ack" once the body is complete, and hands
 * the message on only after the sender has hung up (or had a second to), so
 * that the sender has its answer before the host gets busy with the message.
 */
class IncomingMessage : public QObject
{
public:
    IncomingMessage(QLocalSocket* socket, std::function<void(const QString&)> deliver)
        : QObject(socket)
        , m_socket(socket)
        , m_deliver(std::move(deliver))
    {
        m_timer.setSingleShot(true);
        QObject::connect(m_socket, &QLocalSocket::readyRead, this, [this] { read(); });
        QObject::connect(m_socket, &QLocalSocket::disconnected, this, [this] { senderGone(); });
        QObject::connect(&m_timer, &QTimer::timeout, this, [this] { timedOut(); });
        ++openConnections;
        m_timer.start(messageDeadline);
        // Data and hang-up that came before this object was connected: looked
        // at from the event loop, never inside receiveConnection().
        QMetaObject::invokeMethod(this, [this] {
            if (m_phase != Reading)
                return;
            read();
            if (m_socket->state() == QLocalSocket::UnconnectedState)
                senderGone();
        }, Qt::QueuedConnection);
    }

    ~IncomingMessage() override
    {
        --openConnections;
        bufferedBytes -= m_body.size();
    }

private:
    enum Phase { Reading, Acknowledged, Finished };

    void read()
    {
        if (m_phase != Reading) {
            if (m_socket->bytesAvailable() > 0)
                m_socket->readAll();
            return;
        }
        if (!m_haveCount) {
            if (m_socket->bytesAvailable() < countSize)
                return;
            char count[countSize];
            m_socket->read(count, countSize);
            m_expected = qFromBigEndian<quint32>(count);
            m_haveCount = true;
            if (m_expected > maxMessageSize) {
                fail(QStringLiteral("message too large"));
                return;
            }
        }
        // Only what has arrived: read(missing) would allocate the promised size up front.
        const qint64 chunk = qMin(qint64(m_expected) - m_body.size(), m_socket->bytesAvailable());
        if (chunk > 0) {
            if (bufferedBytes + chunk > maxBufferedTotal) {
                fail(QStringLiteral("too many bytes pending"));
                return;
            }
            bufferedBytes += chunk;
            m_body += m_socket->read(chunk);
        }
        if (m_body.size() < qint64(m_expected))
            return;
        m_phase = Acknowledged;
        if (m_socket->state() == QLocalSocket::ConnectedState) {
            m_socket->write(ack, ackSize);
            m_socket->flush();
        }
        m_timer.start(hangUpTimeout);
    }

    void senderGone()
    {
        if (m_phase == Reading) {
            // The last bytes may still sit in the buffer when the hang-up is seen.
            if (m_socket->bytesAvailable() > 0)
                read();
            if (m_phase == Reading) {
                if (m_haveCount) {
                    // A short body is dropped unanswered, never padded out.
                    fail(m_socket->errorString());
                    return;
                }
                qWarning("QtLocalPeer: Peer disconnected");
                finish();
                return;
            }
        }
        deliver();
    }

    void timedOut()
    {
        // A busy event loop may have let the timer fire before the last bytes were read.
        if (m_phase == Reading)
            read();
        if (m_phase == Reading) {
            fail(QStringLiteral("timed out after %1 bytes of %2").arg(m_body.size()).arg(m_expected));
            return;
        }
        // The sender has its answer; not hanging up does not undo the message.
        deliver();
    }

    void fail(const QString& reason)
    {
        qWarning("QtLocalPeer: Message reception failed %s", reason.toLatin1().constData());
        finish();
    }

    void deliver()
    {
        if (m_phase != Acknowledged)
            return;
        // The body's own length, not QString::fromUtf8(QByteArray), which
        // would stop at the first NUL byte.
        const QString message = QString::fromUtf8(m_body.constData(), m_body.size());
        finish();
        m_deliver(message);
    }

    void finish()
    {
        m_phase = Finished;
        m_timer.stop();
        QObject::disconnect(m_socket, nullptr, this, nullptr);
        if (m_socket->state() != QLocalSocket::UnconnectedState)
            m_socket->abort();
        m_socket->deleteLater();
    }

    QLocalSocket* m_socket;
    std::function<void(const QString&)> m_deliver;
    QTimer m_timer;
    Phase m_phase = Reading;
    bool m_haveCount = false;
    quint32 m_expected = 0;
    QByteArray m_body;
};

bool fileIdentity(const QString& path, quint64* device, quint64* inode)
{
    struct stat info;
    if (::stat(QFile::encodeName(path).constData(), &info) != 0)
        return false;
    *device = quint64(info.st_dev);
    *inode = quint64(info.st_ino);
    return true;
}

// The temporary folder is shared by every user, so another user can make the
// lock file or the socket first, or lock our lock file (it is readable), and
// would be handed our command lines. Whatever is not this user's own counts
// as no primary at all.
bool ownedByAnotherUser(const QString& path)
{
    struct stat info;
    return ::lstat(QFile::encodeName(path).constData(), &info) == 0 && info.st_uid != ::geteuid();
}

bool lockHeldByAnotherUser(int fd)
{
#ifdef Q_OS_LINUX
    struct flock range;
    std::memset(&range, 0, sizeof(range));
    range.l_type = F_WRLCK;
    range.l_whence = SEEK_SET;
    if (fd < 0 || ::fcntl(fd, F_GETLK, &range) != 0 || range.l_type == F_UNLCK || range.l_pid <= 0)
        return false;
    return ownedByAnotherUser(QStringLiteral("/proc/%1").arg(range.l_pid));
#else
    Q_UNUSED(fd)
    return false;
#endif
}

bool peerIsAnotherUser(qintptr fd)
{
#if defined(Q_OS_LINUX)
    struct ucred peer;
    socklen_t size = sizeof(peer);
    return ::getsockopt(int(fd), SOL_SOCKET, SO_PEERCRED, &peer, &size) != 0 || peer.uid != ::geteuid();
#elif defined(Q_OS_DARWIN) || defined(Q_OS_FREEBSD) || defined(Q_OS_NETBSD) || defined(Q_OS_OPENBSD)
    uid_t uid;
    gid_t gid;
    return ::getpeereid(int(fd), &uid, &gid) != 0 || uid != ::geteuid();
#else
    Q_UNUSED(fd)
    return false;
#endif
}

// Servers whose socket name another process has taken over; see ~QtLocalPeer.
QList<QLocalServer*>& abandonedServers()
{
    static QList<QLocalServer*> servers;
    return servers;
}

} // namespace

QtLocalPeer::QtLocalPeer(QObject* parent, const QString& appId)
    : QObject(parent)
    , id(appId)
    , server(new QLocalServer(this))
{
    QString prefix = id;
    if (id.isEmpty()) {
        id = QCoreApplication::applicationFilePath();
        prefix = id.section(QLatin1Char('/'), -1);
    }
    static const QRegularExpression notALetter(QStringLiteral("[^a-zA-Z]"));
    prefix.remove(notALetter);
    prefix.truncate(6);

    const QByteArray idBytes = id.toUtf8();
    const quint16 checksum = qChecksum(idBytes.constData(), uint(idBytes.size()), Qt::ChecksumIso3309);
    socketName = QLatin1String("qtsingleapp-") + prefix + QLatin1Char('-') + QString::number(checksum, 16)
                 + QLatin1Char('-') + QString::number(::getuid(), 16);

    lockFile.setFileName(QDir(QDir::tempPath()).absolutePath() + QLatin1Char('/') + socketName
                         + QLatin1String("-lockfile"));
    lockFile.open(QIODevice::ReadWrite);
}

QtLocalPeer::~QtLocalPeer()
{
    // Messages still arriving die with the peer; their sockets must not
    // report a hang-up to it while it is being torn down.
    while (QLocalSocket* waiting = server->nextPendingConnection())
        delete waiting;
    const QList<QLocalSocket*> connections = server->findChildren<QLocalSocket*>(QString(), Qt::FindDirectChildrenOnly);
    for (QLocalSocket* connection : connections) {
        connection->disconnect();
        delete connection;
    }

    if (!server->isListening() || lockFile.isLocked())
        return;
    // After unlock() a successor may have replaced our socket file with its
    // own. Closing the server would delete whatever file is at that path now
    // and cut the successor off, so our server then lives on, unreachable,
    // until the process ends.
    quint64 device = 0;
    quint64 inode = 0;
    if (fileIdentity(server->fullServerName(), &device, &inode)
        && (device != m_socketDevice || inode != m_socketInode)) {
        server->disconnect();
        server->setParent(nullptr);
        abandonedServers().append(server);
    }
}

bool QtLocalPeer::isClient()
{
    if (lockFile.isLocked())
        return false;
    const QString socketPath = QDir::cleanPath(QDir::tempPath()) + QLatin1Char('/') + socketName;
    // Running alone, without listening: the names are not ours to use.
    if (ownedByAnotherUser(lockFile.fileName())) {
        qWarning("QtLocalPeer: %s belongs to another user, running alone", qPrintable(lockFile.fileName()));
        return false;
    }
    if (!lockFile.lock(QtLP_Private::QtLockedFile::WriteLock, false)) {
        if (lockHeldByAnotherUser(lockFile.handle()) || ownedByAnotherUser(socketPath)) {
            qWarning("QtLocalPeer: %s is held by another user, running alone", qPrintable(socketPath));
            return false;
        }
        return true;
    }

    // Holding the lock makes the socket name ours: whatever file is there
    // belongs to an instance that died or gave up, or to our own earlier turn.
    if (server->isListening())
        server->close();
    bool listening = server->listen(socketName);
    if (!listening && server->serverError() == QAbstractSocket::AddressInUseError) {
        QFile::remove(socketPath);
        listening = server->listen(socketName);
    }
    if (listening)
        fileIdentity(server->fullServerName(), &m_socketDevice, &m_socketInode);
    else
        qWarning("QtSingleCoreApplication: listen on local socket failed, %s", qPrintable(server->errorString()));

    // QLocalServer closes its socket and removes the file when accept() fails,
    // as it does while the process has no descriptor to spare (the host's own
    // files count too), yet still reports itself listening (and asking it for
    // its descriptor then crashes). The missing file tells; the name stays
    // ours while we hold the lock, so listen again once there is room.
    const QString relistenName = QStringLiteral("orvacat-relisten");
    if (!findChild<QTimer*>(relistenName, Qt::FindDirectChildrenOnly)) {
        auto* relisten = new QTimer(this);
        relisten->setObjectName(relistenName);
        QObject::connect(relisten, &QTimer::timeout, this, [this] {
            quint64 device = 0;
            quint64 inode = 0;
            if (!lockFile.isLocked()
                || (fileIdentity(server->fullServerName(), &device, &inode) && device == m_socketDevice && inode == m_socketInode))
                return;
            server->close();
            if (server->listen(socketName))
                fileIdentity(server->fullServerName(), &m_socketDevice, &m_socketInode);
        });
        relisten->start(1000);
    }
    QObject::connect(server, &QLocalServer::newConnection, this, &QtLocalPeer::receiveConnection,
                     Qt::UniqueConnection);
    return false;
}

bool QtLocalPeer::sendMessage(const QString& message, int timeout)
{
    if (!isClient())
        return false;

    QLocalSocket socket;
    bool connected = false;
    // Twice: the primary may hold the lock but not listen yet.
    for (int attempt = 0; attempt < 2 && !connected; ++attempt) {
        if (attempt > 0)
            QThread::msleep(250);
        socket.connectToServer(socketName);
        connected = socket.waitForConnected(timeout < 0 ? -1 : timeout / 2);
    }
    if (!connected)
        return false;
    if (peerIsAnotherUser(socket.socketDescriptor())) {
        qWarning("QtLocalPeer: %s is served by another user, message not sent", qPrintable(socket.fullServerName()));
        socket.abort();
        return false;
    }

    const QByteArray body = message.toUtf8();
    {
        QDataStream stream(&socket);
        stream.writeBytes(body.constData(), uint(body.size()));
    }
    QDeadlineTimer deadline(timeout < 0 ? QDeadlineTimer::Forever : QDeadlineTimer(timeout));
    while (socket.bytesToWrite() > 0) {
        if (!socket.waitForBytesWritten(int(deadline.remainingTime())))
            return false;
    }

    QByteArray answer;
    deadline = timeout < 0 ? QDeadlineTimer(QDeadlineTimer::Forever) : QDeadlineTimer(timeout);
    while (answer.size() < ackSize) {
        if (socket.bytesAvailable() == 0 && !socket.waitForReadyRead(int(deadline.remainingTime())))
            break;
        answer += socket.read(ackSize - answer.size());
    }
    return answer == QByteArray(ack, ackSize);
}

bool QtLocalPeer::unlock()
{
    return lockFile.unlock();
}

void QtLocalPeer::receiveConnection()
{
    // Reported from the event loop with nothing of the socket on the stack,
    // so that a receiver may quit, or delete this peer, as it likes.
    auto deliver = [this](const QString& message) {
        QMetaObject::invokeMethod(this, [this, message] { Q_EMIT messageReceived(message); }, Qt::QueuedConnection);
    };
    int shed = 0;
    while (QLocalSocket* socket = server->nextPendingConnection()) {
        if (openConnections < maxConnections) {
            new IncomingMessage(socket, deliver);
            continue;
        }
        socket->abort();
        delete socket;
        ++shed;
    }
    if (shed > 0)
        qWarning("QtLocalPeer: Too many connections, %d dropped", shed);
}
