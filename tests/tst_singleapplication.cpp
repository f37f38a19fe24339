// The single-instance application across real processes (the probe host is
// started as often as a case needs) and against peers that speak the
// published wire format: a 4-byte big-endian count, the UTF-8 text, "ack".

#include "testmain.h"

#include <orvacat/qtlocalpeer.h>
#include <orvacat/qtlockedfile.h>

#include <QLocalServer>
#include <QLocalSocket>
#include <QProcess>
#include <QTemporaryDir>

#include <algorithm>
#include <memory>
#include <unistd.h>

namespace {

const int startTimeout = 30000;
const QString sent = QStringLiteral("secondary\nsent\n");
const char tricky[] = "tab\there\0\r\nGrüße 你好"; // NUL, line ends, non-ASCII

// Exposes the names the peer derived from its id.
class InspectablePeer : public QtLocalPeer
{
public:
    using QtLocalPeer::QtLocalPeer;
    QString name() const { return socketName; }
    QString lockName() const { return lockFile.fileName(); }
};

QString socketName(const QString& id) { return InspectablePeer(nullptr, id).name(); }

// Connects as a host of the published component would and writes a framed body (or raw bytes).
std::unique_ptr<QLocalSocket> publishedSender(const QString& name, const QByteArray& body, bool framed = true)
{
    auto socket = std::make_unique<QLocalSocket>();
    socket->connectToServer(name);
    if (socket->waitForConnected(startTimeout)) {
        const quint32 size = qToBigEndian(quint32(body.size()));
        socket->write((framed ? QByteArray(reinterpret_cast<const char*>(&size), 4) : QByteArray()) + body);
        socket->waitForBytesWritten(startTimeout);
    }
    return socket;
}

/** One probe process and what it printed so far. */
struct Probe : QProcess {
    ~Probe() override
    {
        kill();
        waitForFinished(5000);
    }
    QString text() { return QString::fromUtf8(out += readAllStandardOutput()); }
    QList<QByteArray> messages()
    {
        const QString whole = text();
        QList<QByteArray> result;
        for (const QString& line : whole.left(whole.lastIndexOf(QLatin1Char('\n'))).split(QLatin1Char('\n'))) {
            if (line.startsWith(QLatin1String("message ")))
                result << QByteArray::fromBase64(line.mid(8).toLatin1());
        }
        return result;
    }
    // Nothing of the component's warnings (a failed listen, a broken message).
    bool quiet()
    {
        const QByteArray errors = readAllStandardError();
        return !errors.contains("QtLocalPeer") && !errors.contains("listen on local socket failed");
    }
    QByteArray out;
};

} // namespace

class TestSingleApplication : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void cleanup() { m_probes.clear(); }

    void socketAndLockNamesFollowTheId();
    void primaryAnswersPublishedSenders();
    void lockedFileDecidesTheRole();
    void sixteenStartsGiveOnePrimaryAndEveryMessageOnce();
    void killedPrimaryIsReplaced();
    void unlockHandsThePrimaryRoleOver();
    void sendsThePublishedFraming();
    void messageActivatesTheWindow();

private:
    Probe* start(const QString& id, const QStringList& extra = QStringList());
    Probe* startPrimary(const QString& id, const QStringList& extra = QStringList());
    bool sends(const QString& id, const QString& text);

    QTemporaryDir m_tmp;
    std::vector<std::unique_ptr<Probe>> m_probes;
};

void TestSingleApplication::initTestCase()
{
    QVERIFY(m_tmp.isValid());
    // Lock files and sockets of this run only, shared with no other run or user.
    qputenv("TMPDIR", QFile::encodeName(m_tmp.path()));
    QCOMPARE(QDir::tempPath(), QDir::cleanPath(m_tmp.path()));
}

Probe* TestSingleApplication::start(const QString& id, const QStringList& extra)
{
    m_probes.push_back(std::make_unique<Probe>());
    m_probes.back()->start(QStringLiteral(ORVACAT_SINGLEAPP_PROBE), QStringList{QStringLiteral("--id"), id} + extra);
    return m_probes.back().get();
}

Probe* TestSingleApplication::startPrimary(const QString& id, const QStringList& extra)
{
    Probe* probe = start(id, extra);
    [&] { QTRY_COMPARE_WITH_TIMEOUT(probe->text(), QStringLiteral("primary\n"), startTimeout); }();
    return probe;
}

bool TestSingleApplication::sends(const QString& id, const QString& text)
{
    Probe* sender = start(id, {QStringLiteral("--send"), text});
    return sender->waitForFinished(startTimeout) && sender->exitCode() == 0 && sender->text() == sent;
}

void TestSingleApplication::socketAndLockNamesFollowTheId()
{
    // A host of the published component with the same id must find us: letters
    // of the id (six at most), its CRC-16 in hex, the user id in hex.
    const QString uid = QString::number(::getuid(), 16);
    QCOMPARE(socketName(QStringLiteral("com.example.MyApp")), "qtsingleapp-comexa-ad6a-" + uid);
    QCOMPARE(socketName(QStringLiteral("/usr/bin/myapp")), "qtsingleapp-usrbin-dbb2-" + uid);
    InspectablePeer peer(nullptr, QStringLiteral("com.example.MyApp"));
    QCOMPARE(peer.lockName(), QDir::tempPath() + QLatin1Char('/') + peer.name() + QLatin1String("-lockfile"));

    // Without an id: the executable's path, the prefix from its file name alone.
    const QString path = QCoreApplication::applicationFilePath();
    QCOMPARE(socketName(QString()), QLatin1String("qtsingleapp-tstsin-") + socketName(path).section(QLatin1Char('-'), 2));
    QCOMPARE(InspectablePeer(nullptr, QString()).applicationId(), path);
}

void TestSingleApplication::primaryAnswersPublishedSenders()
{
    QStringList received;
    QString socketPath;
    {
        InspectablePeer peer(nullptr, QStringLiteral("org.orvacat.in-process"));
        socketPath = QDir::tempPath() + QLatin1Char('/') + peer.name();
        QObject::connect(&peer, &QtLocalPeer::messageReceived, [&](const QString& text) { received << text; });
        QVERIFY(!peer.isClient());
        QVERIFY(!peer.isClient());
        QVERIFY(!peer.sendMessage(QStringLiteral("to myself"), 1000));
        // Given up and taken again within one process: listening anew.
        QVERIFY(peer.unlock());
        QVERIFY(!peer.isClient());
        QVERIFY(QFileInfo::exists(socketPath));

        // One sender stays connected after its answer, the next hangs up at once:
        // a hang-up delivers at once, silence after the answer only after a while.
        auto stays = publishedSender(peer.name(), "stays");
        QTRY_COMPARE_WITH_TIMEOUT(stays->peek(8), QByteArray("ack"), startTimeout);
        const QByteArray text(tricky, sizeof(tricky) - 1);
        auto leaves = publishedSender(peer.name(), text);
        QTRY_COMPARE_WITH_TIMEOUT(leaves->peek(8), QByteArray("ack"), startTimeout);
        QVERIFY(received.isEmpty());
        leaves->disconnectFromServer();
        QTRY_COMPARE_WITH_TIMEOUT(received, QStringList{QString::fromUtf8(text.constData(), text.size())}, 5000);
        QTRY_COMPARE_WITH_TIMEOUT(received.size(), 2, 5000);
        QCOMPARE(received.last(), QStringLiteral("stays"));

        // Broken senders are dropped with a warning, and the peer serves on.
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression(QStringLiteral("^QtLocalPeer: Message reception failed")));
        publishedSender(peer.name(), QByteArray("\0\0\0\x0a" "abcd", 8), false);
        QTest::ignoreMessage(QtWarningMsg, "QtLocalPeer: Peer disconnected");
        publishedSender(peer.name(), QByteArray("\0\0", 2), false);
        auto whole = publishedSender(peer.name(), QByteArray());
        QTRY_COMPARE_WITH_TIMEOUT(whole->peek(8), QByteArray("ack"), startTimeout);
        whole->disconnectFromServer();
        QTRY_COMPARE_WITH_TIMEOUT(received.size(), 3, 5000);
        QCOMPARE(received.last(), QString());
    }
    // The socket goes with its primary; the lock file stays.
    QVERIFY(!QFileInfo::exists(socketPath));
    QVERIFY(QFileInfo::exists(socketPath + QLatin1String("-lockfile")));
}

void TestSingleApplication::lockedFileDecidesTheRole()
{
    using QtLP_Private::QtLockedFile;
    const QString id = QStringLiteral("held-by-the-test");
    QtLockedFile held(InspectablePeer(nullptr, id).lockName());
    QTest::ignoreMessage(QtWarningMsg, "QtLockedFile::lock(): file is not opened");
    QVERIFY(!held.lock(QtLockedFile::WriteLock, false));
    QTest::ignoreMessage(QtWarningMsg, "QtLockedFile::open(): Truncate mode not allowed.");
    QVERIFY(!held.open(QIODevice::ReadWrite | QIODevice::Truncate));
    QVERIFY(held.open(QIODevice::ReadWrite));
    QVERIFY(held.lock(QtLockedFile::ReadLock, false));
    QVERIFY(held.lock(QtLockedFile::WriteLock, false));
    QCOMPARE(held.lockMode(), QtLockedFile::WriteLock);

    // While the test holds the lock a start is a secondary, and once it lets go
    // the next one is the primary, which the test cannot lock out.
    Probe* probe = start(id);
    QVERIFY(probe->waitForFinished(startTimeout));
    QCOMPARE(probe->text(), QStringLiteral("secondary\n"));
    QVERIFY(held.lock(QtLockedFile::NoLock));
    QVERIFY(!held.isLocked());
    startPrimary(id);
    QVERIFY(!held.lock(QtLockedFile::ReadLock, false));
    QVERIFY(!held.isLocked());
}

void TestSingleApplication::sixteenStartsGiveOnePrimaryAndEveryMessageOnce()
{
    // Messages that a careless framing would break: empty, 1 MB, NUL and non-ASCII.
    const QString id = QStringLiteral("org.orvacat.sixteen");
    QList<QByteArray> messages{QByteArray(), QByteArray(1 << 20, 'x')};
    for (int i = 2; i < 16; ++i)
        messages << QByteArray::number(i) + QByteArray(tricky, sizeof(tricky) - 1);
    for (int i = 0; i < 16; ++i) {
        QFile file(m_tmp.filePath(QString::number(i)));
        QVERIFY(file.open(QIODevice::WriteOnly) && file.write(messages.at(i)) == messages.at(i).size());
        start(id, {QStringLiteral("--send-file"), file.fileName(), QStringLiteral("--attempts"), QStringLiteral("3")});
    }
    // Every secondary ends on its own; the primary stays until told to quit.
    const auto running = [this] {
        return int(std::count_if(m_probes.cbegin(), m_probes.cend(), [](auto& p) { return p->state() != QProcess::NotRunning; }));
    };
    QTRY_COMPARE_WITH_TIMEOUT(running(), 1, 120000);
    QList<QByteArray> expected;
    Probe* primary = nullptr;
    for (int i = 0; i < 16; ++i) {
        Probe* probe = m_probes.at(size_t(i)).get();
        if (probe->state() == QProcess::NotRunning) {
            QCOMPARE(probe->text(), sent);
            expected << messages.at(i);
        } else {
            primary = probe;
        }
    }
    QTRY_COMPARE_WITH_TIMEOUT(primary->messages().size(), 15, startTimeout);
    QList<QByteArray> received = primary->messages();
    std::sort(received.begin(), received.end());
    std::sort(expected.begin(), expected.end());
    QVERIFY(received == expected);
    QVERIFY(primary->text().startsWith(QLatin1String("primary\n")));
    QVERIFY(primary->quiet());
}

void TestSingleApplication::killedPrimaryIsReplaced()
{
    const QString id = QStringLiteral("org.orvacat.killed");
    Probe* first = startPrimary(id);
    first->kill();
    QVERIFY(first->waitForFinished(startTimeout));
    QVERIFY2(QFileInfo::exists(QDir::tempPath() + QLatin1Char('/') + socketName(id)), "a killed primary leaves its socket file");

    Probe* second = startPrimary(id);
    QVERIFY(sends(id, QStringLiteral("after kill")));
    QTRY_COMPARE_WITH_TIMEOUT(second->messages(), QList<QByteArray>{"after kill"}, startTimeout);
    QVERIFY(second->quiet());
}

void TestSingleApplication::unlockHandsThePrimaryRoleOver()
{
    const QString id = QStringLiteral("org.orvacat.unlock");
    Probe* old = startPrimary(id);
    old->write("unlock\n");
    QTRY_COMPARE_WITH_TIMEOUT(old->text(), QStringLiteral("primary\nunlocked 1\n"), startTimeout);

    Probe* successor = startPrimary(id);
    QVERIFY(sends(id, QStringLiteral("to the new one")));
    QTRY_COMPARE_WITH_TIMEOUT(successor->messages(), QList<QByteArray>{"to the new one"}, startTimeout);

    // The old instance ending must not take the successor's socket with it.
    old->write("quit\n");
    QVERIFY(old->waitForFinished(startTimeout));
    QCOMPARE(old->exitCode(), 0);
    QVERIFY(sends(id, QStringLiteral("still there")));
    QTRY_COMPARE_WITH_TIMEOUT(successor->messages().size(), 2, startTimeout);
    QVERIFY(old->messages().isEmpty());
}

void TestSingleApplication::sendsThePublishedFraming()
{
    // The test plays a primary written against the published component.
    const QString id = QStringLiteral("org.orvacat.framing");
    // Named first: closing any handle on the lock file would drop the test's lock.
    const InspectablePeer names(nullptr, id);
    QtLP_Private::QtLockedFile lock(names.lockName());
    QLocalServer server;
    QVERIFY(lock.open(QIODevice::ReadWrite) && lock.lock(QtLP_Private::QtLockedFile::WriteLock, false));
    QVERIFY(server.listen(names.name()));

    QFile file(m_tmp.filePath(QStringLiteral("umlaut")));
    QVERIFY(file.open(QIODevice::WriteOnly) && file.write("\xC3\xA4rger") == 6);
    file.close();
    for (const char* answer : {"ack", "nak"}) {
        Probe* sender = start(id, {QStringLiteral("--send-file"), file.fileName()});
        QTRY_VERIFY_WITH_TIMEOUT(server.hasPendingConnections(), startTimeout);
        QLocalSocket* socket = server.nextPendingConnection();
        QTRY_COMPARE_WITH_TIMEOUT(socket->bytesAvailable(), qint64(10), startTimeout);
        QCOMPARE(socket->readAll(), QByteArray("\0\0\0\x06\xC3\xA4rger", 10));
        // Only "ack" counts as delivered.
        socket->write(answer);
        socket->flush();
        QVERIFY(sender->waitForFinished(startTimeout));
        QCOMPARE(sender->text(), qstrcmp(answer, "ack") == 0 ? sent : QStringLiteral("secondary\nfailed\n"));
    }
}

void TestSingleApplication::messageActivatesTheWindow()
{
    const QString id = QStringLiteral("org.orvacat.activate");
    Probe* primary = startPrimary(id, {QStringLiteral("--window")});
    QVERIFY(sends(id, QStringLiteral("wake up")));
    // The host hears the message first, then the window is back.
    const QString expected = "primary\nmessage " + QString::fromLatin1(QByteArray("wake up").toBase64()) + "\nwindow normal\n";
    QTRY_COMPARE_WITH_TIMEOUT(primary->text(), expected, startTimeout);
}

ORVACAT_TEST_MAIN(TestSingleApplication)
#include "tst_singleapplication.moc"
