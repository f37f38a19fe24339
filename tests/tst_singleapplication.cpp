// The single-instance application, across real processes: a probe host
// (orvacat-singleapp-probe) is started as often as each case needs.

#include "testmain.h"

#include <orvacat/qtlocalpeer.h>
#include <orvacat/qtlockedfile.h>

#include <QDataStream>
#include <QLocalServer>
#include <QLocalSocket>
#include <QProcess>
#include <QRegularExpression>
#include <QTemporaryDir>

#include <algorithm>
#include <memory>
#include <unistd.h>

namespace {

const int startTimeout = 30000;

// The socket name a host with this id uses, from the naming rules alone.
QString expectedSocketName(const QString& id, bool defaultId, uint uid = ::getuid())
{
    QString prefix = defaultId ? id.section(QLatin1Char('/'), -1) : id;
    prefix.remove(QRegularExpression(QStringLiteral("[^a-zA-Z]")));
    prefix.truncate(6);
    const QByteArray bytes = id.toUtf8();
    const quint16 checksum = qChecksum(bytes.constData(), uint(bytes.size()), Qt::ChecksumIso3309);
    return QStringLiteral("qtsingleapp-%1-%2-%3").arg(prefix, QString::number(checksum, 16), QString::number(uid, 16));
}

QString lockFilePath(const QString& socketName)
{
    return QDir(QDir::tempPath()).absolutePath() + QLatin1Char('/') + socketName + QLatin1String("-lockfile");
}

QByteArray frame(const QByteArray& body)
{
    QByteArray bytes;
    QDataStream stream(&bytes, QIODevice::WriteOnly);
    stream.writeBytes(body.constData(), uint(body.size()));
    return bytes;
}

// Connects to a primary's socket as a host of the published component would and writes raw bytes.
std::unique_ptr<QLocalSocket> connectAndWrite(const QString& name, const QByteArray& bytes)
{
    auto socket = std::make_unique<QLocalSocket>();
    socket->connectToServer(name);
    if (socket->waitForConnected(startTimeout)) {
        socket->write(bytes);
        socket->waitForBytesWritten(startTimeout);
    }
    return socket;
}

// Plays another primary under this name: its lock held and its socket listening.
bool holdName(QtLP_Private::QtLockedFile& lock, QLocalServer& server, const QString& name)
{
    lock.setFileName(lockFilePath(name));
    return lock.open(QIODevice::ReadWrite) && lock.lock(QtLP_Private::QtLockedFile::WriteLock, false)
        && server.listen(name);
}

// Exposes what the peer derived from its id.
class InspectablePeer : public QtLocalPeer
{
public:
    using QtLocalPeer::QtLocalPeer;
    QString name() const { return socketName; }
    QString lockName() const { return lockFile.fileName(); }
};

/** One probe process and what it printed so far. */
class Probe
{
public:
    ~Probe()
    {
        if (m_process.state() != QProcess::NotRunning) {
            m_process.kill();
            m_process.waitForFinished(5000);
        }
    }

    void start(const QString& program, const QStringList& arguments) { m_process.start(program, arguments); }

    QStringList lines()
    {
        m_output += m_process.readAllStandardOutput();
        // Only whole lines: the last one may still be on its way.
        return QString::fromUtf8(m_output.left(m_output.lastIndexOf('\n') + 1)).split(QLatin1Char('\n'), Qt::SkipEmptyParts);
    }

    QString role() { return lines().value(0); }

    QList<QByteArray> messages()
    {
        QList<QByteArray> result;
        for (const QString& line : lines()) {
            if (line.startsWith(QLatin1String("message ")))
                result << QByteArray::fromBase64(line.mid(8).toLatin1());
        }
        return result;
    }

    QString errors() { return QString::fromUtf8(m_errors += m_process.readAllStandardError()); }

    void command(const QByteArray& text) { m_process.write(text + '\n'); }

    bool running() const { return m_process.state() == QProcess::Running; }
    bool finished() const { return m_process.state() == QProcess::NotRunning; }
    int exitCode() const { return m_process.exitCode(); }
    QProcess& process() { return m_process; }

private:
    QProcess m_process;
    QByteArray m_output;
    QByteArray m_errors;
};

} // namespace

class TestSingleApplication : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void cleanup();

    void socketNameFollowsTheId_data();
    void socketNameFollowsTheId();
    void defaultIdIsTheExecutable();
    void lockedFile();
    void primaryKeepsItsRoleAndSendsNothing();

    void sixteenStartsGiveOnePrimaryAndEveryMessageOnce();
    void messagesArriveIntact_data();
    void messagesArriveIntact();
    void killedPrimaryIsReplaced();
    void unlockHandsThePrimaryRoleOver();
    void differentIdsDoNotMeet();
    void otherUsersDoNotMeet();
    void speaksThePublishedFraming();
    void answersAPublishedSenderAndDropsShortReads();
    void messageActivatesTheWindow();

private:
    Probe* startProbe(const QStringList& arguments, const QString& program = QString());
    Probe* startPrimary(const QString& id, const QStringList& extra = QStringList());
    QString writeMessageFile(const QByteArray& bytes);
    bool sends(const QString& id, const QStringList& message);

    QTemporaryDir m_tmp;
    QString m_probe;
    std::vector<std::unique_ptr<Probe>> m_probes;
    int m_fileCounter = 0;
};

void TestSingleApplication::initTestCase()
{
    QVERIFY(m_tmp.isValid());
    // Lock files and sockets of this run only: nothing shared with other runs or users.
    qputenv("TMPDIR", QFile::encodeName(m_tmp.path()));
    QCOMPARE(QDir::tempPath(), QDir::cleanPath(m_tmp.path()));
    m_probe = QStringLiteral(ORVACAT_SINGLEAPP_PROBE);
    QVERIFY2(QFileInfo(m_probe).isExecutable(), qPrintable(m_probe));
}

void TestSingleApplication::cleanup()
{
    m_probes.clear();
}

Probe* TestSingleApplication::startProbe(const QStringList& arguments, const QString& program)
{
    m_probes.push_back(std::make_unique<Probe>());
    Probe* probe = m_probes.back().get();
    probe->start(program.isEmpty() ? m_probe : program, arguments);
    return probe;
}

Probe* TestSingleApplication::startPrimary(const QString& id, const QStringList& extra)
{
    Probe* probe = startProbe(QStringList{QStringLiteral("--id"), id} + extra);
    [&] { QTRY_VERIFY_WITH_TIMEOUT(!probe->role().isEmpty() || probe->finished(), startTimeout); }();
    return probe;
}

// Starts a secondary that sends one message; true once it ended reporting success.
bool TestSingleApplication::sends(const QString& id, const QStringList& message)
{
    Probe* sender = startProbe(QStringList{QStringLiteral("--id"), id} + message);
    QTest::qWaitFor([sender] { return sender->finished(); }, startTimeout);
    return sender->lines() == QStringList{QStringLiteral("secondary"), QStringLiteral("sent")} && sender->exitCode() == 0;
}

QString TestSingleApplication::writeMessageFile(const QByteArray& bytes)
{
    const QString path = m_tmp.filePath(QStringLiteral("message-%1.bin").arg(++m_fileCounter));
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size())
        return QString();
    return path;
}

void TestSingleApplication::socketNameFollowsTheId_data()
{
    QTest::addColumn<QString>("id");
    QTest::addColumn<QString>("expected");
    const QString uid = QString::number(::getuid(), 16);
    QTest::newRow("reverse domain") << "com.example.MyApp" << "qtsingleapp-comexa-ad6a-" + uid;
    // Given explicitly, a path is not cut at its last "/": only the default id is.
    QTest::newRow("path given as id") << "/usr/bin/myapp" << "qtsingleapp-usrbin-dbb2-" + uid;
    QTest::newRow("no letters") << "1234" << expectedSocketName(QStringLiteral("1234"), false);
    QTest::newRow("non-ASCII") << QString::fromUtf8("Grüße-Ω app") << expectedSocketName(QString::fromUtf8("Grüße-Ω app"), false);
}

void TestSingleApplication::socketNameFollowsTheId()
{
    QFETCH(QString, id);
    QFETCH(QString, expected);
    QCOMPARE(expectedSocketName(id, false), expected);
    InspectablePeer peer(nullptr, id);
    QCOMPARE(peer.name(), expected);
    QCOMPARE(peer.lockName(), lockFilePath(expected));
}

void TestSingleApplication::defaultIdIsTheExecutable()
{
    QCOMPARE(expectedSocketName(QStringLiteral("/usr/bin/myapp"), true, 1000), QStringLiteral("qtsingleapp-myapp-dbb2-3e8"));

    // A host started without an id: its name comes from its own file name.
    QVERIFY(QDir(m_tmp.path()).mkpath(QStringLiteral("bin")));
    const QString copy = m_tmp.filePath(QStringLiteral("bin/my-app2"));
    QVERIFY(QFile::copy(m_probe, copy));
    const QString name = expectedSocketName(QFileInfo(copy).canonicalFilePath(), true);
    QVERIFY2(name.startsWith(QLatin1String("qtsingleapp-myapp-")), qPrintable(name));
    const QString socketPath = QDir::tempPath() + QLatin1Char('/') + name;

    Probe* primary = startProbe(QStringList(), copy);
    QTRY_COMPARE_WITH_TIMEOUT(primary->role(), QStringLiteral("primary"), startTimeout);
    QVERIFY(QFileInfo::exists(lockFilePath(name)));
    QVERIFY(QFileInfo::exists(socketPath));

    Probe* second = startProbe({QStringLiteral("--send"), QStringLiteral("hello")}, copy);
    QTRY_VERIFY_WITH_TIMEOUT(second->finished(), startTimeout);
    QCOMPARE(second->lines(), (QStringList{QStringLiteral("secondary"), QStringLiteral("sent")}));
    QTRY_COMPARE_WITH_TIMEOUT(primary->messages(), QList<QByteArray>{"hello"}, startTimeout);

    // Quitting removes the socket but never the lock file.
    primary->command("quit");
    QTRY_VERIFY_WITH_TIMEOUT(primary->finished(), startTimeout);
    QCOMPARE(primary->exitCode(), 0);
    QVERIFY(!QFileInfo::exists(socketPath));
    QVERIFY(QFileInfo::exists(lockFilePath(name)));
}

void TestSingleApplication::lockedFile()
{
    using QtLP_Private::QtLockedFile;
    const QString path = m_tmp.filePath(QStringLiteral("plain-lock"));
    {
        QFile seed(path);
        QVERIFY(seed.open(QIODevice::WriteOnly));
        seed.write("keep");
    }
    QtLockedFile file(path);
    QTest::ignoreMessage(QtWarningMsg, "QtLockedFile::lock(): file is not opened");
    QVERIFY(!file.lock(QtLockedFile::WriteLock, false));
    QTest::ignoreMessage(QtWarningMsg, "QtLockedFile::open(): Truncate mode not allowed.");
    QVERIFY(!file.open(QIODevice::ReadWrite | QIODevice::Truncate));
    QVERIFY(!file.isOpen());
    QCOMPARE(QFileInfo(path).size(), qint64(4));

    QVERIFY(file.open(QIODevice::ReadWrite));
    QVERIFY(file.unlock());
    QVERIFY(file.lock(QtLockedFile::ReadLock, false));
    QVERIFY(file.lock(QtLockedFile::WriteLock, false));
    QCOMPARE(file.lockMode(), QtLockedFile::WriteLock);
    QVERIFY(file.lock(QtLockedFile::NoLock));
    QVERIFY(!file.isLocked());

    // Another process sees our lock; a second start with this lock held is a secondary.
    const QString id = QStringLiteral("held-by-the-test");
    QtLockedFile held(lockFilePath(expectedSocketName(id, false)));
    QVERIFY(held.open(QIODevice::ReadWrite));
    QVERIFY(held.lock(QtLockedFile::WriteLock, false));
    Probe* probe = startProbe({QStringLiteral("--id"), id});
    QTRY_VERIFY_WITH_TIMEOUT(probe->finished(), startTimeout);
    QCOMPARE(probe->lines(), QStringList{QStringLiteral("secondary")});
    // ... and once we let go, the next start is the primary, which we cannot lock out.
    QVERIFY(held.unlock());
    QCOMPARE(startPrimary(id)->role(), QStringLiteral("primary"));
    QVERIFY(!held.lock(QtLockedFile::WriteLock, false));
    QVERIFY(!held.lock(QtLockedFile::ReadLock, false));
    QVERIFY(!held.isLocked());
}

void TestSingleApplication::primaryKeepsItsRoleAndSendsNothing()
{
    const QString id = QStringLiteral("org.orvacat.in-process");
    const QString socketPath = QDir::tempPath() + QLatin1Char('/') + expectedSocketName(id, false);
    {
        InspectablePeer peer(nullptr, id);
        QSignalSpy received(&peer, &QtLocalPeer::messageReceived);
        QVERIFY(!peer.isClient());
        QVERIFY(!peer.isClient());
        QVERIFY(QFileInfo::exists(socketPath));
        QVERIFY(!peer.sendMessage(QStringLiteral("to myself"), 1000));

        // Given up and taken again within one process: listening anew, no warning.
        QVERIFY(peer.unlock());
        QVERIFY(peer.unlock());
        QVERIFY(!peer.isClient());
        QVERIFY(QFileInfo::exists(socketPath));

        auto socket = connectAndWrite(peer.name(), frame("in process"));
        QTRY_COMPARE_WITH_TIMEOUT(socket->bytesAvailable(), qint64(3), startTimeout);
        socket->disconnectFromServer();
        QTRY_COMPARE_WITH_TIMEOUT(received.count(), 1, startTimeout);
        QCOMPARE(received.at(0).at(0).toString(), QStringLiteral("in process"));
    }
    // The socket goes with its primary; the lock file stays.
    QVERIFY(!QFileInfo::exists(socketPath));
    QVERIFY(QFileInfo::exists(lockFilePath(expectedSocketName(id, false))));
}

void TestSingleApplication::sixteenStartsGiveOnePrimaryAndEveryMessageOnce()
{
    const QString id = QStringLiteral("org.orvacat.sixteen");
    QList<Probe*> probes;
    for (int i = 0; i < 16; ++i) {
        probes << startProbe({QStringLiteral("--id"), id, QStringLiteral("--send"), QStringLiteral("from %1").arg(i),
                              QStringLiteral("--attempts"), QStringLiteral("3")});
    }
    // Every secondary ends on its own; the primary stays until told to quit.
    QTRY_VERIFY_WITH_TIMEOUT(std::count_if(probes.cbegin(), probes.cend(), [](Probe* p) { return p->finished(); }) == 15,
                             120000);
    Probe* primary = nullptr;
    QSet<QByteArray> expected;
    for (int i = 0; i < probes.size(); ++i) {
        Probe* probe = probes.at(i);
        if (probe->running()) {
            QVERIFY(!primary);
            primary = probe;
            QTRY_COMPARE_WITH_TIMEOUT(probe->role(), QStringLiteral("primary"), startTimeout);
            continue;
        }
        QCOMPARE(probe->lines(), (QStringList{QStringLiteral("secondary"), QStringLiteral("sent")}));
        QCOMPARE(probe->exitCode(), 0);
        expected.insert(QStringLiteral("from %1").arg(i).toUtf8());
    }
    QVERIFY(primary);
    QTRY_COMPARE_WITH_TIMEOUT(primary->messages().size(), 15, startTimeout);
    const QList<QByteArray> received = primary->messages();
    QCOMPARE(QSet<QByteArray>(received.cbegin(), received.cend()), expected);
    QVERIFY2(!primary->errors().contains(QLatin1String("QtLocalPeer")), qPrintable(primary->errors()));
}

void TestSingleApplication::messagesArriveIntact_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::newRow("empty") << QByteArray();
    QTest::newRow("non-ASCII") << QString::fromUtf8("Grüße, 你好, Ωmega \xF0\x9F\x98\x80 done").toUtf8();
    QTest::newRow("embedded NUL") << QByteArray("before\0after", 12);
    QTest::newRow("lines and tabs") << QByteArray("--open\n/tmp/a b.txt\t\"quoted\"\r\n");
    QByteArray big;
    for (int i = 0; big.size() < (1 << 20); ++i)
        big += QByteArray::number(i) + ' ';
    big.truncate(1 << 20);
    QTest::newRow("1 MB") << big;
}

void TestSingleApplication::messagesArriveIntact()
{
    QFETCH(QByteArray, bytes);
    const QString id = QStringLiteral("org.orvacat.intact");
    Probe* primary = startPrimary(id);
    QCOMPARE(primary->role(), QStringLiteral("primary"));
    const QString file = writeMessageFile(bytes);
    QVERIFY(!file.isEmpty());
    QVERIFY(sends(id, {QStringLiteral("--send-file"), file}));
    QTRY_COMPARE_WITH_TIMEOUT(primary->messages().size(), 1, startTimeout);
    const QByteArray received = primary->messages().first();
    QCOMPARE(received.size(), bytes.size());
    QVERIFY(received == bytes);
}

void TestSingleApplication::killedPrimaryIsReplaced()
{
    const QString id = QStringLiteral("org.orvacat.killed");
    Probe* first = startPrimary(id);
    QCOMPARE(first->role(), QStringLiteral("primary"));
    first->process().kill();
    QVERIFY(first->process().waitForFinished(startTimeout));
    QVERIFY2(QFileInfo::exists(QDir::tempPath() + QLatin1Char('/') + expectedSocketName(id, false)),
             "SIGKILL should leave the socket file behind");

    Probe* second = startPrimary(id);
    QCOMPARE(second->role(), QStringLiteral("primary"));
    QVERIFY2(!second->errors().contains(QLatin1String("listen on local socket failed")), qPrintable(second->errors()));
    QVERIFY(sends(id, {QStringLiteral("--send"), QStringLiteral("after kill")}));
    QTRY_COMPARE_WITH_TIMEOUT(second->messages(), QList<QByteArray>{"after kill"}, startTimeout);
}

void TestSingleApplication::unlockHandsThePrimaryRoleOver()
{
    const QString id = QStringLiteral("org.orvacat.unlock");
    Probe* old = startPrimary(id);
    QCOMPARE(old->role(), QStringLiteral("primary"));
    old->command("unlock");
    QTRY_VERIFY_WITH_TIMEOUT(old->lines().contains(QStringLiteral("unlocked 1")), startTimeout);

    Probe* successor = startPrimary(id);
    QCOMPARE(successor->role(), QStringLiteral("primary"));
    QVERIFY(old->running());
    QVERIFY(sends(id, {QStringLiteral("--send"), QStringLiteral("to the new one")}));
    QTRY_COMPARE_WITH_TIMEOUT(successor->messages(), QList<QByteArray>{"to the new one"}, startTimeout);
    QVERIFY(old->messages().isEmpty());

    // The old instance ending must not take the successor's socket with it.
    old->command("quit");
    QTRY_VERIFY_WITH_TIMEOUT(old->finished(), startTimeout);
    QCOMPARE(old->exitCode(), 0);
    QVERIFY(sends(id, {QStringLiteral("--send"), QStringLiteral("still there")}));
    QTRY_COMPARE_WITH_TIMEOUT(successor->messages().size(), 2, startTimeout);
    QCOMPARE(successor->messages().last(), QByteArray("still there"));
}

void TestSingleApplication::differentIdsDoNotMeet()
{
    // alpha and beta differ in the prefix; app1 and app2 only in the checksum.
    QMap<QString, Probe*> primaries;
    for (const char* id : {"org.orvacat.alpha", "org.orvacat.beta", "app1", "app2"}) {
        primaries[QLatin1String(id)] = startPrimary(QLatin1String(id));
        QCOMPARE(primaries[QLatin1String(id)]->role(), QStringLiteral("primary"));
    }
    QVERIFY(sends(QStringLiteral("app2"), {QStringLiteral("--send"), QStringLiteral("two")}));
    QTRY_COMPARE_WITH_TIMEOUT(primaries.value(QStringLiteral("app2"))->messages(), QList<QByteArray>{"two"}, startTimeout);
    QVERIFY(primaries.value(QStringLiteral("app1"))->messages().isEmpty());
}

void TestSingleApplication::otherUsersDoNotMeet()
{
    // Another user's instance, as far as names go.
    const QString id = QStringLiteral("org.orvacat.users");
    const QString foreignName = expectedSocketName(id, false, ::getuid() + 1);
    QtLP_Private::QtLockedFile foreignLock;
    QLocalServer foreign;
    QVERIFY(holdName(foreignLock, foreign, foreignName));

    Probe* ours = startPrimary(id);
    QCOMPARE(ours->role(), QStringLiteral("primary"));
    QVERIFY(sends(id, {QStringLiteral("--send"), QStringLiteral("mine")}));
    QTRY_COMPARE_WITH_TIMEOUT(ours->messages(), QList<QByteArray>{"mine"}, startTimeout);
    QVERIFY(!foreign.hasPendingConnections());
}

void TestSingleApplication::speaksThePublishedFraming()
{
    // The test plays a primary written against the published component.
    const QString id = QStringLiteral("org.orvacat.framing");
    QtLP_Private::QtLockedFile lock;
    QLocalServer server;
    QVERIFY(holdName(lock, server, expectedSocketName(id, false)));

    const QByteArray text = QString::fromUtf8("ärger").toUtf8();
    const QString file = writeMessageFile(text);
    QVERIFY(!file.isEmpty());
    Probe* sender = startProbe({QStringLiteral("--id"), id, QStringLiteral("--send-file"), file});
    QTRY_VERIFY_WITH_TIMEOUT(server.hasPendingConnections(), startTimeout);
    QLocalSocket* socket = server.nextPendingConnection();
    QTRY_VERIFY_WITH_TIMEOUT(socket->bytesAvailable() >= 4 + text.size(), startTimeout);
    QCOMPARE(socket->readAll(), QByteArray("\0\0\0\x06", 4) + text);

    // Without the answer the sender keeps waiting; "ack" completes it.
    QVERIFY(!sender->finished());
    socket->write("ack");
    QTRY_VERIFY_WITH_TIMEOUT(sender->finished(), startTimeout);
    QCOMPARE(sender->lines(), (QStringList{QStringLiteral("secondary"), QStringLiteral("sent")}));
    QCOMPARE(sender->exitCode(), 0);

    // Anything but "ack" is a failure.
    sender = startProbe({QStringLiteral("--id"), id, QStringLiteral("--send"), QStringLiteral("x")});
    QTRY_VERIFY_WITH_TIMEOUT(server.hasPendingConnections(), startTimeout);
    socket = server.nextPendingConnection();
    QTRY_VERIFY_WITH_TIMEOUT(socket->bytesAvailable() >= 5, startTimeout);
    socket->write("nak");
    socket->disconnectFromServer();
    QTRY_VERIFY_WITH_TIMEOUT(sender->finished(), startTimeout);
    QCOMPARE(sender->lines(), (QStringList{QStringLiteral("secondary"), QStringLiteral("failed")}));
}

void TestSingleApplication::answersAPublishedSenderAndDropsShortReads()
{
    const QString id = QStringLiteral("org.orvacat.answers");
    const QString name = expectedSocketName(id, false);
    Probe* primary = startPrimary(id);
    QCOMPARE(primary->role(), QStringLiteral("primary"));

    const QByteArray body("tab\there\0and on", 15);
    auto socket = connectAndWrite(name, frame(body));
    QTRY_COMPARE_WITH_TIMEOUT(socket->bytesAvailable(), qint64(3), startTimeout);
    QCOMPARE(socket->readAll(), QByteArray("ack"));
    // Delivered only once the sender has gone.
    QVERIFY(primary->messages().isEmpty());
    socket->disconnectFromServer();
    QTRY_COMPARE_WITH_TIMEOUT(primary->messages(), QList<QByteArray>{body}, startTimeout);

    // Promises ten bytes, sends four, hangs up.
    connectAndWrite(name, QByteArray("\0\0\0\x0a" "abcd", 8));
    QTRY_VERIFY_WITH_TIMEOUT(primary->errors().contains(QLatin1String("QtLocalPeer: Message reception failed")),
                             startTimeout);
    // Hangs up before the count is complete.
    connectAndWrite(name, QByteArray("\0\0", 2));
    QTRY_VERIFY_WITH_TIMEOUT(primary->errors().contains(QLatin1String("QtLocalPeer: Peer disconnected")), startTimeout);

    // Still serving, and nothing of the broken ones was delivered.
    QVERIFY(sends(id, {QStringLiteral("--send"), QStringLiteral("whole")}));
    QTRY_COMPARE_WITH_TIMEOUT(primary->messages(), (QList<QByteArray>{body, "whole"}), startTimeout);
}

void TestSingleApplication::messageActivatesTheWindow()
{
    const QString id = QStringLiteral("org.orvacat.activate");
    Probe* primary = startPrimary(id, {QStringLiteral("--window")});
    QCOMPARE(primary->role(), QStringLiteral("primary"));
    QVERIFY(sends(id, {QStringLiteral("--send"), QStringLiteral("wake up")}));
    QTRY_COMPARE_WITH_TIMEOUT(primary->lines().size(), 3, startTimeout);
    // The host hears the message first, then the window is back.
    QCOMPARE(primary->lines().at(1), QStringLiteral("message ") + QString::fromLatin1(QByteArray("wake up").toBase64()));
    QCOMPARE(primary->lines().at(2), QStringLiteral("window normal"));
}

ORVACAT_TEST_MAIN(TestSingleApplication)
#include "tst_singleapplication.moc"
