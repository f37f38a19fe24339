// The single-instance application across real processes (the probe host) and
// against peers that speak the published wire format: a 4-byte big-endian
// count, the UTF-8 text, answered by "ack".

#include "testmain.h"

#include <orvacat/qtlocalpeer.h>
#include <orvacat/qtlockedfile.h>

#include <QLocalServer>
#include <QLocalSocket>
#include <QProcess>
#include <QTemporaryDir>

#include <algorithm>
#include <csignal>
#include <cstring>
#include <fcntl.h>
#include <memory>
#include <sys/resource.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

using QtLP_Private::QtLockedFile;
const int timeout = 30000;
const QString sent = QStringLiteral("secondary\nsent\n");
const QByteArray tricky("tab\there\0\r\nGrüße 你好", 25); // NUL, line ends, non-ASCII

struct Peer : QtLocalPeer { // with the names it derived from its id
    using QtLocalPeer::QtLocalPeer;
    QString name() const { return socketName; }
    QString lockName() const { return lockFile.fileName(); }
};

// Connects as a host of the published component would and writes a framed body (or raw bytes).
std::unique_ptr<QLocalSocket> publishedSender(const QString& name, const QByteArray& body, bool framed = true)
{
    auto socket = std::make_unique<QLocalSocket>();
    socket->connectToServer(name);
    if (!socket->waitForConnected(timeout))
        return socket;
    const quint32 size = qToBigEndian(quint32(body.size()));
    socket->write((framed ? QByteArray(reinterpret_cast<const char*>(&size), 4) : QByteArray()) + body);
    socket->waitForBytesWritten(timeout);
    return socket;
}

/** One probe process and what it printed so far. */
struct Probe : QProcess {
    ~Probe() override { kill(); waitForFinished(5000); }
    QString text() { return QString::fromUtf8(out += readAllStandardOutput()); }
    QStringList messages() { return text().split(QLatin1Char('\n')).filter(QStringLiteral("message ")); }
    bool quiet() { return !readAllStandardError().contains("Qt"); } // the component's warnings name its classes
    QByteArray out;
};

QString printed(const QByteArray& message) { return "message " + QString::fromLatin1(message.toBase64()); }

// Another user ("nobody") waiting for a victim's command line under its names:
// it made the lock file and the socket, or holds the lock on a lock file and
// listens on a socket file that look like the victim's own, or only listens.
// It answers "ack" as a primary would and passes on whatever reaches it.
enum Squat { OwnsBoth, HoldsOurLock, ListensOnly };
pid_t squat(Squat how, const QByteArray& lockPath, const QByteArray& socketPath, int report)
{
    const pid_t pid = ::fork();
    if (pid != 0)
        return pid;
    ::alarm(60);
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    std::strncpy(address.sun_path, socketPath.constData(), sizeof(address.sun_path) - 1);
    const int server = ::socket(AF_UNIX, SOCK_STREAM, 0);
    const int lock = how == ListensOnly ? -1 : ::open(lockPath.constData(), O_RDWR | O_CREAT, 0644);
    flock range{};
    range.l_type = F_WRLCK;
    if ((lock >= 0 && ::fcntl(lock, F_SETLK, &range) != 0) || ::bind(server, reinterpret_cast<sockaddr*>(&address), sizeof(address)) != 0
        || (how == OwnsBoth && (::chown(lockPath.constData(), 65534, 65534) != 0 || ::chown(socketPath.constData(), 65534, 65534) != 0))
        || ::setgid(65534) != 0 || ::setuid(65534) != 0 || ::listen(server, 8) != 0 || ::write(report, "ready", 5) != 5)
        ::_exit(1);
    for (char buffer[256];;) {
        const int connection = ::accept(server, nullptr, nullptr);
        const ssize_t got = ::read(connection, buffer, sizeof(buffer));
        if (got <= 0 || ::write(report, buffer, size_t(got)) != got || ::write(connection, "ack", 3) != 3)
            ::_exit(1);
        ::close(connection);
    }
}

} // namespace

class TestSingleApplication : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    // Lock files and sockets of this run only, shared with no other run or user.
    void initTestCase() { QVERIFY(m_tmp.isValid()); qputenv("TMPDIR", QFile::encodeName(m_tmp.path())); }
    void cleanup() { m_probes.clear(); }

    void socketAndLockNamesFollowTheId();
    void primaryAnswersPublishedSenders();
    void sixteenStartsGiveOnePrimaryAndEveryMessageOnce();
    void primaryRolePassesOn();
    void sendsThePublishedFraming();
    void primaryOutlastsFloodsAndSlowSenders();
    void strangersNeverGetTheMessage();

private:
    Probe* start(const QString& id, const QStringList& extra = QStringList())
    {
        m_probes.push_back(std::make_unique<Probe>());
        m_probes.back()->start(QStringLiteral(ORVACAT_SINGLEAPP_PROBE), QStringList(id) + extra);
        return m_probes.back().get();
    }
    Probe* startPrimary(const QString& id)
    {
        Probe* probe = start(id);
        [&] { QTRY_COMPARE_WITH_TIMEOUT(probe->text(), QStringLiteral("primary\n"), timeout); }();
        return probe;
    }
    Probe* startSender(const QString& id, const QByteArray& message, const QString& attempts = QStringLiteral("1"))
    {
        QFile file(m_tmp.filePath(QString::number(m_probes.size())));
        if (!file.open(QIODevice::WriteOnly) || file.write(message) != message.size() || !file.flush())
            return nullptr;
        return start(id, {file.fileName(), attempts});
    }

    QTemporaryDir m_tmp;
    std::vector<std::unique_ptr<Probe>> m_probes;
};

void TestSingleApplication::socketAndLockNamesFollowTheId()
{
    // Where a published host with this id looks: its letters (six at most), CRC-16 and user id.
    const QString uid = QString::number(::getuid(), 16);
    QCOMPARE(Peer(nullptr, QStringLiteral("com.example.MyApp")).name(), "qtsingleapp-comexa-ad6a-" + uid);
    QCOMPARE(Peer(nullptr, QStringLiteral("/usr/bin/myapp")).lockName(), QDir::tempPath() + "/qtsingleapp-usrbin-dbb2-" + uid + "-lockfile");

    // Without an id: the executable's path, the prefix from its file name alone.
    const QString executable = QCoreApplication::applicationFilePath();
    QCOMPARE(Peer(nullptr, QString()).name(), "qtsingleapp-tstsin-" + Peer(nullptr, executable).name().section(QLatin1Char('-'), 2));
}

void TestSingleApplication::primaryAnswersPublishedSenders()
{
    QStringList received;
    QString socketPath;
    {
        Peer peer(nullptr, QStringLiteral("org.orvacat.in-process"));
        socketPath = QDir::tempPath() + QLatin1Char('/') + peer.name();
        QObject::connect(&peer, &QtLocalPeer::messageReceived, [&](const QString& text) { received << text; });
        QVERIFY(!peer.isClient() && !peer.sendMessage(QStringLiteral("to myself"), 1000)); // the primary sends nothing

        // Broken senders are dropped with a warning; one promising too much is hung up on.
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression(QStringLiteral("^QtLocalPeer: Message reception failed")));
        publishedSender(peer.name(), QByteArray("\0\0\0\x0a" "abcd", 8), false);
        QTest::ignoreMessage(QtWarningMsg, "QtLocalPeer: Peer disconnected");
        publishedSender(peer.name(), QByteArray("\0\0", 2), false);
        QTest::ignoreMessage(QtWarningMsg, "QtLocalPeer: Message reception failed message too large");
        auto huge = publishedSender(peer.name(), "\xff\xff\xff\xff", false);
        QTRY_COMPARE_WITH_TIMEOUT(huge->state(), QLocalSocket::UnconnectedState, timeout);

        // One sender stays connected after its answer, the next hangs up: a
        // hang-up delivers at once, silence after the answer only after a while.
        auto stays = publishedSender(peer.name(), QByteArray());
        QTRY_COMPARE_WITH_TIMEOUT(stays->peek(8), QByteArray("ack"), timeout);
        auto leaves = publishedSender(peer.name(), tricky);
        QTRY_COMPARE_WITH_TIMEOUT(leaves->peek(8), QByteArray("ack"), timeout);
        QVERIFY(received.isEmpty());
        leaves->disconnectFromServer();
        QTRY_COMPARE_WITH_TIMEOUT(received, QStringList{QString::fromUtf8(tricky.constData(), tricky.size())}, 5000);
        QTRY_COMPARE_WITH_TIMEOUT(received.size(), 2, 5000);
        QCOMPARE(received.last(), QString());
    }
    // The socket goes with its primary.
    QVERIFY(!QFileInfo::exists(socketPath));
}

void TestSingleApplication::sixteenStartsGiveOnePrimaryAndEveryMessageOnce()
{
    // Messages that a careless framing breaks: empty, 1 MB, NUL and non-ASCII.
    QList<QByteArray> messages{QByteArray(), QByteArray(1 << 20, 'x')};
    for (int i = 2; i < 16; ++i)
        messages << QByteArray::number(i) + tricky;
    for (const QByteArray& message : messages)
        QVERIFY(startSender(QStringLiteral("org.orvacat.sixteen"), message, QStringLiteral("3")));
    // Every secondary ends on its own; the primary stays until told to quit.
    const auto ended = [](const std::unique_ptr<Probe>& probe) { return probe->state() == QProcess::NotRunning; };
    QTRY_COMPARE_WITH_TIMEOUT(std::count_if(m_probes.cbegin(), m_probes.cend(), ended), std::ptrdiff_t(15), 120000);
    Probe* primary = std::find_if_not(m_probes.cbegin(), m_probes.cend(), ended)->get();
    QStringList expected;
    for (size_t i = 0; i < 16; ++i)
        if (m_probes[i].get() != primary && m_probes[i]->text() == sent)
            expected << printed(messages.at(int(i)));
    QCOMPARE(expected.size(), 15);
    expected.sort();
    const auto received = [primary] { QStringList lines = primary->messages(); lines.sort(); return lines; };
    QTRY_VERIFY_WITH_TIMEOUT(received() == expected, timeout); // holds a 1 MB line: not printed on failure
    QVERIFY(primary->text().startsWith(QLatin1String("primary\n")) && primary->quiet());
}

void TestSingleApplication::primaryRolePassesOn()
{
    // Handed over: the old primary gives up its lock and the next start takes the name.
    const QString id = QStringLiteral("org.orvacat.succession");
    Probe* old = startPrimary(id);
    old->write("unlock\n");
    QTRY_COMPARE_WITH_TIMEOUT(old->text(), QStringLiteral("primary\nunlocked 1\n"), timeout);
    Probe* successor = startPrimary(id);
    startSender(id, "to the new one");
    QTRY_COMPARE_WITH_TIMEOUT(successor->messages(), QStringList{printed("to the new one")}, timeout);
    // The old one ending must not take the successor's socket with it.
    old->closeWriteChannel();
    QVERIFY(old->waitForFinished(timeout));
    QVERIFY(QFileInfo::exists(QDir::tempPath() + QLatin1Char('/') + Peer(nullptr, id).name())); // not even for a moment
    startSender(id, "still there");
    QTRY_COMPARE_WITH_TIMEOUT(successor->messages().size(), 2, timeout);

    // Killed, it leaves its socket behind; the next start takes the name over,
    // and a message brings its window back after the host heard it.
    successor->kill();
    QVERIFY(successor->waitForFinished(timeout));
    QVERIFY(QFileInfo::exists(QDir::tempPath() + QLatin1Char('/') + Peer(nullptr, id).name()));
    Probe* third = startPrimary(id);
    startSender(id, "wake up");
    QTRY_COMPARE_WITH_TIMEOUT(third->text(), "primary\n" + printed("wake up") + "\nwindow normal\n", timeout);
    QVERIFY(third->quiet() && old->messages().isEmpty());
}

void TestSingleApplication::sendsThePublishedFraming()
{
    // The test plays a primary written against the published component, named
    // first: closing any handle on the lock file would drop the test's lock.
    const Peer names(nullptr, QStringLiteral("org.orvacat.framing"));
    QtLockedFile lock(names.lockName());
    QVERIFY(lock.open(QIODevice::ReadWrite) && lock.lock(QtLockedFile::WriteLock, false));
    QLocalServer server;
    QVERIFY(server.listen(names.name()));

    for (const char* answer : {"ack", "nak"}) { // only "ack" counts as delivered
        Probe* sender = startSender(names.applicationId(), "\xC3\xA4rger");
        QTRY_VERIFY_WITH_TIMEOUT(server.hasPendingConnections(), timeout);
        QLocalSocket* socket = server.nextPendingConnection();
        QTRY_COMPARE_WITH_TIMEOUT(socket->peek(16), QByteArray("\0\0\0\x06\xC3\xA4rger", 10), timeout);
        socket->write(answer);
        socket->flush();
        QVERIFY(sender->waitForFinished(timeout));
        QCOMPARE(sender->text(), qstrcmp(answer, "ack") == 0 ? sent : QStringLiteral("secondary\nfailed\n"));
    }
    // Once the test lets go, the next start is the primary, which the test cannot lock out.
    QVERIFY(lock.lock(QtLockedFile::NoLock) && !lock.isLocked() && lock.unlock()); // nothing left to release
    startPrimary(names.applicationId());
    QVERIFY(!lock.lock(QtLockedFile::ReadLock, false));
}

void TestSingleApplication::primaryOutlastsFloodsAndSlowSenders()
{
#ifndef Q_OS_LINUX
    QSKIP("needs prlimit() and /proc to hold the primary to few descriptors and read its size");
#else
    const QString id = QStringLiteral("org.orvacat.flood");
    Probe* primary = startPrimary(id);
    const rlimit few{64, 64};
    QVERIFY(::prlimit(pid_t(primary->processId()), RLIMIT_NOFILE, &few, nullptr) == 0);
    const auto mapped = [primary] { // the most address space the primary ever had, in MiB
        QFile status(QStringLiteral("/proc/%1/status").arg(primary->processId()));
        const QByteArray text = status.open(QIODevice::ReadOnly) ? status.readAll() : QByteArray();
        return text.mid(text.indexOf("VmPeak:") + 7).trimmed().split(' ').value(0).toLongLong() >> 10;
    };
    const qint64 before = mapped();
    const QString name = Peer(nullptr, id).name();
    auto slow = publishedSender(name, QByteArray("\0\0\0\x64" "a", 5), false);
    QElapsedTimer clock;
    clock.start();
    // More connections than the primary may have open; the first 16 promise 64 MiB and send 64 KiB of it.
    std::vector<std::unique_ptr<QLocalSocket>> flood;
    for (int i = 0; i < 116; ++i)
        flood.push_back(publishedSender(name, i < 16 ? QByteArray("\x04\0\0\0", 4) + QByteArray(1 << 16, 'x') : QByteArray(), false));
    const QString socketPath = QDir::tempPath() + QLatin1Char('/') + name;
    QVERIFY(QFileInfo::exists(socketPath)); // still listening
    // A byte every half second does not keep the slow one connected past the deadline.
    for (int i = 0; i < 16 && slow->state() == QLocalSocket::ConnectedState; ++i) {
        slow->write("a");
        QTest::qWait(500);
    }
    QVERIFY2(clock.elapsed() > 4000 && clock.elapsed() < 7000, qPrintable(QString::number(clock.elapsed())));
    QVERIFY2(mapped() - before < 256, qPrintable(QString::number(mapped() - before)));
    // A socket file lost (to a cleaner of the temporary folder, or to an
    // accept() that failed) comes back, and the next start's message arrives.
    QVERIFY(QFile::remove(socketPath));
    QTRY_VERIFY_WITH_TIMEOUT(QFileInfo::exists(socketPath), 3000);
    startSender(id, "after the flood", QStringLiteral("3"));
    QTRY_COMPARE_WITH_TIMEOUT(primary->messages(), QStringList{printed("after the flood")}, timeout);
#endif
}

void TestSingleApplication::strangersNeverGetTheMessage()
{
#ifndef Q_OS_LINUX
    QSKIP("needs SO_PEERCRED and /proc to tell another user's peer");
#else
    if (::geteuid() != 0)
        QSKIP("only root can make files and listeners of another user here");
    // A temporary folder that every user may write to, as /tmp.
    const QString id = QStringLiteral("org.orvacat.squatted");
    QTemporaryDir shared(m_tmp.filePath(QStringLiteral("shared-XXXXXX")));
    QVERIFY(::chmod(QFile::encodeName(m_tmp.path()), 0711) == 0 && ::chmod(QFile::encodeName(shared.path()), 01777) == 0);
    const QByteArray socketPath = QFile::encodeName(shared.filePath(Peer(nullptr, id).name()));
    const QByteArray lockPath = socketPath + "-lockfile";
    // Names another user holds mean no primary of ours: the start runs alone.
    // A listener of another user behind our own lock is refused the message.
    for (const auto& [how, outcome] : {std::make_pair(OwnsBoth, "primary\n"), std::make_pair(HoldsOurLock, "primary\n"),
                                       std::make_pair(ListensOnly, "secondary\nfailed\n")}) {
        QFile::remove(QFile::decodeName(socketPath));
        QFile::remove(QFile::decodeName(lockPath));
        QtLockedFile ours(QFile::decodeName(lockPath));
        QVERIFY(how != ListensOnly || (ours.open(QIODevice::ReadWrite) && ours.lock(QtLockedFile::WriteLock, false)));
        int report[2];
        char heard[256];
        QVERIFY(::pipe(report) == 0);
        const pid_t squatter = squat(how, lockPath, socketPath, report[1]);
        ::close(report[1]);
        QCOMPARE(::read(report[0], heard, sizeof(heard)), ssize_t(5)); // ready
        qputenv("TMPDIR", QFile::encodeName(shared.path()));
        Probe* victim = startSender(id, "secret");
        qputenv("TMPDIR", QFile::encodeName(m_tmp.path()));
        QTRY_COMPARE_WITH_TIMEOUT(victim->text(), QString::fromLatin1(outcome), timeout);
        ::kill(squatter, SIGKILL);
        ::waitpid(squatter, nullptr, 0);
        const ssize_t leaked = ::read(report[0], heard, sizeof(heard));
        ::close(report[0]);
        QCOMPARE(leaked, ssize_t(0));
    }
#endif
}

ORVACAT_TEST_MAIN(TestSingleApplication)
#include "tst_singleapplication.moc"
