// The help windows and the HTML view against real servers on the loopback
// address: an HTTPS knowledge base with a certificate made for the run, and
// plain HTTP servers for the page images.

#include "testenvironment.h"
#include "testmain.h"
#include "warningcollector.h"

#include <orvacat/browserwindow.h>
#include <orvacat/helpwindow.h>
#include <orvacat/htmltextbrowser.h>

#include <QBuffer>
#include <QImage>
#include <QNetworkProxy>
#include <QPointer>
#include <QProcess>
#include <QSslCertificate>
#include <QSslConfiguration>
#include <QSslKey>
#include <QSslSocket>
#include <QTcpServer>
#include <QTcpSocket>
#include <QTemporaryDir>
#include <QTextDocument>
#include <QUrlQuery>

#include <functional>
#include <memory>

#include <sys/socket.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

void respond(QTcpSocket* socket, int status, const QByteArray& body,
             const QByteArray& type = "text/html; charset=utf-8")
{
    if (!socket)
        return;
    QByteArray head = "HTTP/1.1 " + QByteArray::number(status) + (status == 200 ? " OK" : " Not Found")
        + "\r\nContent-Type: " + type + "\r\nContent-Length: " + QByteArray::number(body.size())
        + "\r\nConnection: close\r\n\r\n";
    socket->write(head + body);
    socket->disconnectFromHost();
}

// The head of a page whose relative sources resolve against base.
QString pageWithBase(const QString& base)
{
    return QStringLiteral("<html><head><base href=\"") + base + QStringLiteral("\"></head>");
}

/**
 * A small HTTP/1.1 server on 127.0.0.1, over TLS or plain. Every request's
 * target is recorded; the handler answers it (or keeps the socket to answer
 * later, or never).
 */
class TestServer : public QTcpServer
{
public:
    using Handler = std::function<void(QTcpSocket*, const QByteArray& target)>;

    explicit TestServer(const QSslCertificate& certificate = QSslCertificate(), const QSslKey& key = QSslKey())
        : m_certificate(certificate)
        , m_key(key)
    {
        listen(QHostAddress::LocalHost, 0);
    }

    ~TestServer() override
    {
        // Sockets first: their disconnection reaches the lambdas that count it.
        const QList<QTcpSocket*> sockets = findChildren<QTcpSocket*>(QString(), Qt::FindDirectChildrenOnly);
        for (QTcpSocket* socket : sockets) {
            socket->disconnect(this);
            delete socket;
        }
    }

    void setHandler(Handler handler) { m_handler = std::move(handler); }
    void serve(const QByteArray& body, const QByteArray& type = "text/html; charset=utf-8")
    {
        setHandler([body, type](QTcpSocket* socket, const QByteArray&) { respond(socket, 200, body, type); });
    }
    // Keeps every request unanswered in held, for the test to answer later (or never).
    void holdRequests()
    {
        setHandler([this](QTcpSocket* socket, const QByteArray&) { held << socket; });
    }

    int port() const { return serverPort(); }
    QString origin() const { return QStringLiteral("http://127.0.0.1:%1").arg(port()); }

    QList<QByteArray> targets;
    int disconnections = 0;
    QList<QPointer<QTcpSocket>> held;

protected:
    void incomingConnection(qintptr descriptor) override
    {
        QTcpSocket* socket = nullptr;
        if (!m_certificate.isNull()) {
            auto* secure = new QSslSocket(this);
            secure->setSocketDescriptor(descriptor);
            secure->setLocalCertificate(m_certificate);
            secure->setPrivateKey(m_key);
            secure->setPeerVerifyMode(QSslSocket::VerifyNone);
            secure->startServerEncryption();
            socket = secure;
        } else {
            socket = new QTcpSocket(this);
            socket->setSocketDescriptor(descriptor);
        }
        connect(socket, &QTcpSocket::readyRead, this, [this, socket] { readRequest(socket); });
        connect(socket, &QTcpSocket::disconnected, this, [this, socket] {
            ++disconnections;
            socket->deleteLater();
        });
    }

private:
    void readRequest(QTcpSocket* socket)
    {
        QByteArray buffer = socket->property("request").toByteArray() + socket->readAll();
        int headerEnd;
        while ((headerEnd = buffer.indexOf("\r\n\r\n")) >= 0) {
            const QByteArray line = buffer.left(buffer.indexOf("\r\n"));
            buffer.remove(0, headerEnd + 4);
            const QList<QByteArray> words = line.split(' ');
            const QByteArray target = words.value(1);
            targets << target;
            if (m_handler)
                m_handler(socket, target);
        }
        socket->setProperty("request", buffer);
    }

    QSslCertificate m_certificate;
    QSslKey m_key;
    Handler m_handler;
};

// The connection is cut with a reset, not a clean close, part way into the body.
void resetMidBody(QTcpSocket* socket)
{
    socket->write("HTTP/1.1 200 OK\r\nContent-Type: text/html\r\nContent-Length: 100000\r\n\r\n<html><body><p>");
    socket->write(QByteArray(2000, 'x'));
    socket->flush();
    QPointer<QTcpSocket> guard(socket);
    QTimer::singleShot(100, socket, [guard] {
        if (!guard)
            return;
        struct linger hard = {1, 0};
        ::setsockopt(int(guard->socketDescriptor()), SOL_SOCKET, SO_LINGER, &hard, sizeof hard);
        guard->abort();
    });
}

QByteArray pngOf(int width, int height, QColor colour)
{
    QImage image(width, height, QImage::Format_RGB32);
    image.fill(colour);
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    image.save(&buffer, "PNG");
    return bytes;
}

QByteArray fileContents(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

bool writeFile(const QString& path, const QByteArray& data)
{
    QDir().mkpath(QFileInfo(path).absolutePath());
    QFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(data) == data.size();
}

// The last path segment of a request target: which picture was asked for.
QByteArray fileOfTarget(const QByteArray& target)
{
    return target.mid(target.lastIndexOf('/') + 1);
}

class ProbeHelpWindow : public HelpWindow
{
public:
    using HelpWindow::HelpWindow;
    int offlineCalls = 0;

protected:
    void fallbackOffline() override
    {
        ++offlineCalls;
        HelpWindow::fallbackOffline();
    }
};

class ProbeBrowser : public HtmlTextBrowser
{
public:
    using HtmlTextBrowser::HtmlTextBrowser;
    using HtmlTextBrowser::slotDownloadFinished;
};

const QByteArray kEnglishText = "Offline English page";
const QByteArray kFrenchText = "Page hors ligne";

} // namespace

class TestHelp : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void cleanup();

    void languageIsMapped_data();
    void languageIsMapped();
    void knowledgeBaseHostIsConfigurable();
    void queryNamesThePage_data();
    void queryNamesThePage();

    void goodPageShowsAndFetchesEachImageOnce();
    void failuresShowTheOfflinePage_data();
    void failuresShowTheOfflinePage();
    void replyBodyIsShownAsUtf8UpToNul();
    void silentServerTimesOutOnce();
    void reloadWhilePendingHandlesBothReplies();
    void closedWindowWithPendingRequest();

    void offlinePageComesFromTheLanguageFolder_data();
    void offlinePageComesFromTheLanguageFolder();

    void setTextStartsDownloads_data();
    void setTextStartsDownloads();
    void repeatedSetTextFetchesAgain();
    void staleTableEntryIsIgnored();
    void destroyedBrowserDownloadsFinishAlone();
    void manyImagesAndBrokenMarkup();

    void downloaderResults_data();
    void downloaderResults();
    void cacheFoldersArePrivate();
    void cacheFileLinkIsNotFollowed();
    void foreignCacheFolderIsRefused_data();
    void foreignCacheFolderIsRefused();

private:
    ProbeHelpWindow* newHelpWindow(TestServer* server, const QString& language = QStringLiteral("enu"),
                                   const QString& link = QStringLiteral("page.html"));
    int closedPort();

    QTemporaryDir m_root;
    QString m_helpRoot;
    QSslCertificate m_certificate;
    QSslKey m_key;
    QByteArray m_tallPng;
    std::vector<std::unique_ptr<QWidget>> m_windows;
};

void TestHelp::initTestCase()
{
    QVERIFY(m_root.isValid());
    // Everything the toolkit puts in the temporary folder lands in ours.
    const QString temp = m_root.filePath(QStringLiteral("tmp"));
    QVERIFY(QDir().mkpath(temp));
    qputenv("TMPDIR", QFile::encodeName(temp));
    QCOMPARE(QDir::tempPath(), QDir::cleanPath(temp));
    QNetworkProxy::setApplicationProxy(QNetworkProxy::NoProxy);
    TestEnvironment::installDefaultTheme();

    // A certificate for 127.0.0.1, trusted by this process only.
    QProcess openssl;
    openssl.setWorkingDirectory(m_root.path());
    openssl.start(QStringLiteral("openssl"),
                  {QStringLiteral("req"), QStringLiteral("-x509"), QStringLiteral("-newkey"), QStringLiteral("rsa:2048"),
                   QStringLiteral("-nodes"), QStringLiteral("-days"), QStringLiteral("2"), QStringLiteral("-subj"),
                   QStringLiteral("/CN=127.0.0.1"), QStringLiteral("-addext"), QStringLiteral("subjectAltName=IP:127.0.0.1"),
                   QStringLiteral("-keyout"), QStringLiteral("key.pem"), QStringLiteral("-out"), QStringLiteral("cert.pem")});
    QVERIFY2(openssl.waitForFinished(60000) && openssl.exitCode() == 0,
             "the openssl program is needed to make the test certificate");
    m_certificate = QSslCertificate(fileContents(m_root.filePath(QStringLiteral("cert.pem"))), QSsl::Pem);
    m_key = QSslKey(fileContents(m_root.filePath(QStringLiteral("key.pem"))), QSsl::Rsa, QSsl::Pem);
    QVERIFY(!m_certificate.isNull());
    QVERIFY(!m_key.isNull());
    QSslConfiguration trusting = QSslConfiguration::defaultConfiguration();
    trusting.addCaCertificates({m_certificate});
    QSslConfiguration::setDefaultConfiguration(trusting);

    // The offline help: English and French, sharing one picture.
    m_helpRoot = m_root.filePath(QStringLiteral("help"));
    m_tallPng = pngOf(30, 400, Qt::darkGreen);
    QVERIFY(writeFile(m_helpRoot + QStringLiteral("/enu/page.html"),
                      "<html><body><p>" + kEnglishText + "</p><img src=\"../image/tall.png\"></body></html>"));
    QVERIFY(writeFile(m_helpRoot + QStringLiteral("/fre/page.html"),
                      "<html><body><p>" + kFrenchText + " \xc3\xa9t\xc3\xa9</p></body></html>"));
    QVERIFY(writeFile(m_helpRoot + QStringLiteral("/image/tall.png"), m_tallPng));
}

void TestHelp::init()
{
    const QString cacheRoot = QDir::tempPath() + QStringLiteral("/orvana_help");
    if (QFileInfo(cacheRoot).isSymLink() || QFileInfo(cacheRoot).isFile())
        QFile::remove(cacheRoot);
    QDir(cacheRoot).removeRecursively();
    HelpWindow::setKnowledgeBaseHost(QStringLiteral("127.0.0.1"), closedPort());
}

void TestHelp::cleanup()
{
    m_windows.clear();
    // Release what was handed to deleteLater() while the test ran.
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QCOMPARE(TestEnvironment::visibleTopLevels(), QStringList());
}

int TestHelp::closedPort()
{
    QTcpServer probe;
    probe.listen(QHostAddress::LocalHost, 0);
    const int port = probe.serverPort();
    probe.close();
    return port;
}

ProbeHelpWindow* TestHelp::newHelpWindow(TestServer* server, const QString& language, const QString& link)
{
    if (server)
        HelpWindow::setKnowledgeBaseHost(QStringLiteral("127.0.0.1"), server->port());
    HelpContext context;
    context.language = language;
    context.link = link;
    context.localHelpPath = m_helpRoot;
    context.section = QStringLiteral("tools");
    auto* window = new ProbeHelpWindow(context);
    m_windows.emplace_back(window);
    return window;
}

void TestHelp::languageIsMapped_data()
{
    QTest::addColumn<QString>("given");
    QTest::addColumn<QString>("used");
    QTest::newRow("deu renamed") << "deu" << "ger";
    QTest::newRow("esn renamed") << "esn" << "spn";
    QTest::newRow("fra renamed") << "fra" << "fre";
    for (const char* code : {"dan", "sve", "hun", "trk", "nor", "ptg", "ptb", "tha"})
        QTest::newRow(qPrintable(QStringLiteral("%1 shows English").arg(QLatin1String(code))))
            << QString::fromLatin1(code) << "enu";
    QTest::newRow("unknown kept") << "jpn" << "jpn";
    QTest::newRow("case kept") << "FRA" << "FRA";
    QTest::newRow("empty kept") << "" << "";
}

void TestHelp::languageIsMapped()
{
    QFETCH(QString, given);
    QFETCH(QString, used);
    QCOMPARE(HelpWindow::helpLanguage(given), used);
    ProbeHelpWindow* window = newHelpWindow(nullptr, given);
    QCOMPARE(window->helpContext().language, used);
    QCOMPARE(QUrlQuery(window->currentUrl()).queryItemValue(QStringLiteral("lang")), used);
}

void TestHelp::knowledgeBaseHostIsConfigurable()
{
    // Only addresses of this machine are ever asked: no window is built on a host name.
    HelpWindow::setKnowledgeBaseHost(QString());
    QCOMPARE(HelpWindow::knowledgeBaseHost(), QStringLiteral("kb.orvana.example"));
    QCOMPARE(HelpWindow::knowledgeBasePort(), -1);
    HelpWindow::setKnowledgeBaseHost(QStringLiteral("127.0.0.1"), 70000);
    QCOMPARE(HelpWindow::knowledgeBaseHost(), QStringLiteral("127.0.0.1"));
    QCOMPARE(HelpWindow::knowledgeBasePort(), -1);
    const int port = closedPort();
    HelpWindow::setKnowledgeBaseHost(QStringLiteral("127.0.0.1"), port);
    QCOMPARE(HelpWindow::knowledgeBasePort(), port);
    ProbeHelpWindow* window = newHelpWindow(nullptr);
    QCOMPARE(window->currentUrl().toString(QUrl::RemoveQuery),
             QStringLiteral("https://127.0.0.1:%1/cgi/knowledgebase/").arg(port));
    QTRY_COMPARE(window->offlineCalls, 1);
}

void TestHelp::queryNamesThePage_data()
{
    QTest::addColumn<QStringList>("context");
    QTest::addColumn<QByteArray>("query");
    QTest::newRow("default context") << QStringList()
                                     << QByteArray("action=findHelpFile&section=&lang=&link=&unique=orvana_utility_help&version=1.0");
    QTest::newRow("named page") << QStringList{"fra", "settings/page.html", "backup", "2.5"}
                                << QByteArray("action=findHelpFile&section=backup&lang=fre&link=settings/page.html"
                                              "&unique=orvana_utility_help&version=2.5");
    QTest::newRow("spaces encoded") << QStringList{"enu", "my page.html", "a b", "1.0"}
                                    << QByteArray("action=findHelpFile&section=a%20b&lang=enu&link=my%20page.html"
                                                  "&unique=orvana_utility_help&version=1.0");
}

void TestHelp::queryNamesThePage()
{
    QFETCH(QStringList, context);
    QFETCH(QByteArray, query);
    TestServer server(m_certificate, m_key);
    QVERIFY(server.isListening());
    server.serve("<p>online page</p>");
    HelpWindow::setKnowledgeBaseHost(QStringLiteral("127.0.0.1"), server.port());
    HelpContext help;
    if (!context.isEmpty()) {
        help.language = context.at(0);
        help.link = context.at(1);
        help.section = context.at(2);
        help.version = context.at(3);
    }
    auto* window = new ProbeHelpWindow(help);
    m_windows.emplace_back(window);
    QTRY_COMPARE(window->textBrowser()->toPlainText(), QStringLiteral("online page"));
    QCOMPARE(server.targets.size(), 1);
    const QByteArray target = server.targets.first();
    QVERIFY(target.startsWith("/cgi/knowledgebase/?"));
    // Empty values may be sent as "key" or "key=": both read back as empty.
    QList<QPair<QString, QString>> sent = QUrlQuery(QString::fromUtf8(target.mid(target.indexOf('?') + 1))).queryItems();
    QList<QPair<QString, QString>> expected = QUrlQuery(QString::fromUtf8(query)).queryItems();
    QCOMPARE(sent, expected);
    for (const QByteArray& encoded : query.split('&')) {
        if (encoded.contains('%'))
            QVERIFY2(target.contains(encoded), target.constData());
    }
    QCOMPARE(window->offlineCalls, 0);
}

void TestHelp::goodPageShowsAndFetchesEachImageOnce()
{
    TestServer images;
    const QByteArray wide = pngOf(200, 20, Qt::blue);
    images.setHandler([&](QTcpSocket* socket, const QByteArray& target) {
        respond(socket, 200, fileOfTarget(target) == "wide.png" ? wide : m_tallPng, "image/png");
    });
    const QByteArray page = "<html><head><base href=\"" + images.origin().toUtf8()
        + "/help/enu/\"></head><body><p>Online help</p>"
          "<img src=\"../image/tall.png\"><img src=\"plain.png\"><img src=\"../image/tall.png\">"
          "<img src=\"../image/wide.png\"></body></html>";
    TestServer knowledgeBase(m_certificate, m_key);
    knowledgeBase.serve(page);

    ProbeHelpWindow* window = newHelpWindow(&knowledgeBase);
    window->resize(TestEnvironment::scaled(400), TestEnvironment::scaled(300));
    window->show();
    HtmlTextBrowser* view = window->textBrowser();
    QTRY_VERIFY(view->toPlainText().contains(QStringLiteral("Online help")));
    QCOMPARE(view->baseUrl(), images.origin() + QStringLiteral("/help/enu/"));
    const QString cache = HtmlTextBrowser::imageCacheFolder();
    QCOMPARE(view->searchPaths().value(0), cache);
    // The picture is laid out at its own height once it is on disk.
    QTRY_VERIFY(view->pendingDownloads().isEmpty());
    QTRY_VERIFY(view->document()->size().height() > 400);

    QList<QByteArray> asked;
    for (const QByteArray& target : qAsConst(images.targets))
        asked << fileOfTarget(target);
    std::sort(asked.begin(), asked.end());
    QCOMPARE(asked, (QList<QByteArray>{"plain.png", "tall.png", "wide.png"}));
    QCOMPARE(fileContents(cache + QStringLiteral("/tall.png")), m_tallPng);
    QCOMPARE(fileContents(cache + QStringLiteral("/plain.png")), m_tallPng);
    QCOMPARE(fileContents(cache + QStringLiteral("/wide.png")), wide);
    QCOMPARE(window->offlineCalls, 0);
}

void TestHelp::failuresShowTheOfflinePage_data()
{
    QTest::addColumn<QString>("failure");
    QTest::newRow("error status") << "status";
    QTest::newRow("refused connection") << "refused";
    QTest::newRow("reset mid body") << "reset";
    QTest::newRow("help error text") << "errortext";
    QTest::newRow("huge body") << "huge";
}

void TestHelp::failuresShowTheOfflinePage()
{
    QFETCH(QString, failure);
    TestServer server(m_certificate, m_key);
    server.setHandler([failure](QTcpSocket* socket, const QByteArray&) {
        if (failure == QLatin1String("status"))
            respond(socket, 404, "<html><body><p>Not here</p></body></html>");
        else if (failure == QLatin1String("reset"))
            resetMidBody(socket);
        else if (failure == QLatin1String("errortext"))
            respond(socket, 200, "<html><body><h1>Help</h1><p>Sorry. Fail to get help content.</p></body></html>");
        else if (failure == QLatin1String("huge"))
            respond(socket, 200, "<html><body>" + QByteArray(40 * 1024 * 1024, 'a') + "</body></html>");
    });
    ProbeHelpWindow* window = newHelpWindow(failure == QLatin1String("refused") ? nullptr : &server);
    QTRY_COMPARE(window->offlineCalls, 1);
    QVERIFY(window->textBrowser()->toPlainText().startsWith(QString::fromUtf8(kEnglishText)));
    QCOMPARE(window->offlineFolder(), m_helpRoot + QStringLiteral("/enu"));
    QCOMPARE(window->textBrowser()->searchPaths(), QStringList{m_helpRoot + QStringLiteral("/enu")});
    if (failure != QLatin1String("refused"))
        QCOMPARE(server.targets.size(), 1);
}

void TestHelp::replyBodyIsShownAsUtf8UpToNul()
{
    TestServer server(m_certificate, m_key);
    server.serve(QByteArray());
    ProbeHelpWindow* window = newHelpWindow(&server);
    window->textBrowser()->setText(QStringLiteral("shown before the reply"));
    // An empty page is a page: it clears the view, no offline fallback.
    QTRY_COMPARE(server.disconnections, 1);
    QTRY_VERIFY(window->textBrowser()->toPlainText().isEmpty());

    static const char raw[] = "<html><body><p>caf\xc3\xa9 \xff\xfe broken</p>\0<p>after the nul</p></body></html>";
    server.serve(QByteArray(raw, int(sizeof raw) - 1));
    window->reload();
    QTRY_VERIFY(window->textBrowser()->toPlainText().startsWith(QStringLiteral("caf\u00e9 ")));
    const QString shown = window->textBrowser()->toPlainText();
    QVERIFY(shown.contains(QChar(QChar::ReplacementCharacter)));
    QVERIFY(shown.contains(QStringLiteral("broken")));
    QVERIFY(!shown.contains(QStringLiteral("after the nul")));
    QCOMPARE(window->offlineCalls, 0);
}

void TestHelp::silentServerTimesOutOnce()
{
    TestServer server(m_certificate, m_key);
    ProbeHelpWindow* window = newHelpWindow(&server, QStringLiteral("fra"));
    QSignalSpy aborts(window, &BrowserWindow::sigAbortRequest);
    QTRY_COMPARE(server.targets.size(), 1);
    QCOMPARE(window->offlineCalls, 0);
    QTRY_COMPARE_WITH_TIMEOUT(window->offlineCalls, 1, 15000);
    QCOMPARE(aborts.count(), 1);
    QVERIFY(window->textBrowser()->toPlainText().contains(QString::fromUtf8(kFrenchText)));
    QCOMPARE(window->offlineFolder(), m_helpRoot + QStringLiteral("/fre"));
    // The aborted request is gone from the server too, and nothing comes after it.
    QTRY_COMPARE(server.disconnections, 1);
    QCoreApplication::processEvents();
    QCOMPARE(window->offlineCalls, 1);
}

void TestHelp::reloadWhilePendingHandlesBothReplies()
{
    TestServer server(m_certificate, m_key);
    server.setHandler([&](QTcpSocket* socket, const QByteArray&) {
        if (server.targets.size() == 1)
            server.held << socket;
        else
            respond(socket, 200, "<p>second reply</p>");
    });
    ProbeHelpWindow* window = newHelpWindow(&server);
    QTRY_COMPARE(server.held.size(), 1);
    window->reload();
    QTRY_COMPARE(window->textBrowser()->toPlainText(), QStringLiteral("second reply"));
    QCOMPARE(server.targets.size(), 2);
    QCOMPARE(server.targets.at(0), server.targets.at(1));
    // The older reply is still connected and is shown when it arrives.
    respond(server.held.first(), 200, "<p>first reply</p>");
    QTRY_COMPARE(window->textBrowser()->toPlainText(), QStringLiteral("first reply"));
    QCOMPARE(window->offlineCalls, 0);
}

void TestHelp::closedWindowWithPendingRequest()
{
    TestServer server(m_certificate, m_key);
    server.holdRequests();
    QPointer<ProbeHelpWindow> window = newHelpWindow(&server);
    window->show();
    QVERIFY(QTest::qWaitForWindowExposed(window));
    QTRY_COMPARE(server.held.size(), 1);
    window->close();
    m_windows.clear();
    QVERIFY(!window);
    // The server finds the request gone; answering it reaches nobody.
    QTRY_COMPARE(server.disconnections, 1);
    respond(server.held.first(), 200, "<p>too late</p>");
    QCoreApplication::processEvents();
}

void TestHelp::offlinePageComesFromTheLanguageFolder_data()
{
    QTest::addColumn<QString>("language");
    QTest::addColumn<QString>("link");
    QTest::addColumn<QString>("folder");
    QTest::addColumn<QString>("shown");
    QTest::newRow("mapped folder") << "fra" << "page.html" << "fre" << QString::fromUtf8(kFrenchText);
    QTest::newRow("mapped to English") << "tha" << "page.html" << "enu" << QString::fromUtf8(kEnglishText);
    QTest::newRow("no folder, English") << "jpn" << "page.html" << "enu" << QString::fromUtf8(kEnglishText);
    QTest::newRow("both missing") << "fra" << "absent.html" << "enu" << QString();
    QTest::newRow("no link") << "enu" << "" << "enu" << QString();
}

void TestHelp::offlinePageComesFromTheLanguageFolder()
{
    QFETCH(QString, language);
    QFETCH(QString, link);
    QFETCH(QString, folder);
    QFETCH(QString, shown);
    ProbeHelpWindow* window = newHelpWindow(nullptr, language, link);
    window->show();
    QTRY_COMPARE(window->offlineCalls, 1);
    QCOMPARE(window->offlineFolder(), m_helpRoot + QLatin1Char('/') + folder);
    QVERIFY(window->textBrowser()->toPlainText().startsWith(shown));
    if (shown.isEmpty()) {
        QVERIFY(window->textBrowser()->toPlainText().isEmpty());
        QCOMPARE(window->textBrowser()->searchPaths(), QStringList());
        return;
    }
    QCOMPARE(window->textBrowser()->searchPaths(), QStringList{window->offlineFolder()});
    if (folder == QLatin1String("enu")) {
        // "../image/tall.png" resolves through the language folder to the shared picture.
        QTRY_VERIFY(window->textBrowser()->document()->size().height() > 400);
    }
}

void TestHelp::setTextStartsDownloads_data()
{
    QTest::addColumn<QString>("html");
    QTest::addColumn<QStringList>("urls");
    QTest::addColumn<bool>("cacheSearched");
    const QString base = QStringLiteral("http://127.0.0.1:1/doc/");
    QTest::newRow("plain text") << "just <words> and <base href=\"x\"><img src=\"a.png\">"
                                << QStringList() << false;
    QTest::newRow("rich, no base tag") << "<html><body><img src=\"a.png\"></body></html>" << QStringList() << false;
    QTest::newRow("base tag without closing quote") << "<html><head><base href=\"http://127.0.0.1:1/<img src=a.png>"
                                                    << QStringList() << false;
    QTest::newRow("base tag, no images") << pageWithBase(base) + "<p>text</p></html>"
                                         << QStringList() << true;
    QTest::newRow("duplicates and no slash")
        << pageWithBase(base) + "<img src=\"../image/a.png\"><img src=\"b.png\">"
           "<img alt=\"x\" src=\"../image/a.png\"><img src=\"b.png\"></html>"
        << QStringList{base + "../image/a.png", base + "b.png"} << true;
    QTest::newRow("unterminated source")
        << pageWithBase(base) + "<img src=\"c.png\"><img src=\"d.png"
        << QStringList{base + "c.png", base + "d.png"} << true;
    QTest::newRow("sources naming no file")
        << pageWithBase(base) + "<img src=\"\"><img src=\"..\"><img src=\"x/.\">"
           "<img src=\"e/\"><img src=\"../../../f.png\"></html>"
        << QStringList{base + "../../../f.png"} << true;
}

void TestHelp::setTextStartsDownloads()
{
    QFETCH(QString, html);
    QFETCH(QStringList, urls);
    QFETCH(bool, cacheSearched);
    WarningCollector warnings;
    ProbeBrowser view;
    view.setSearchPaths({QStringLiteral("/help/pages")});
    view.setText(html);
    QStringList pending = view.pendingDownloads().keys();
    std::sort(urls.begin(), urls.end());
    QCOMPARE(pending, urls);
    const QString cache = HtmlTextBrowser::imageCacheFolder();
    for (ImageDownloader* downloader : view.pendingDownloads()) {
        QCOMPARE(QFileInfo(downloader->localPath()).absolutePath(), cache);
        QVERIFY(downloader->localPath().startsWith(cache + QStringLiteral("/../image/")));
    }
    const QStringList expectedPaths = cacheSearched ? QStringList{cache, QStringLiteral("/help/pages")}
                                                    : QStringList{QStringLiteral("/help/pages")};
    QCOMPARE(view.searchPaths(), expectedPaths);
    QCOMPARE(QFileInfo::exists(cache), cacheSearched);
    // Port 1 refuses: every download ends, and the view forgets it.
    QTRY_VERIFY(view.pendingDownloads().isEmpty());
    QVERIFY(!QFileInfo::exists(QDir::tempPath() + QStringLiteral("/f.png")));
}

void TestHelp::repeatedSetTextFetchesAgain()
{
    TestServer images;
    images.serve(m_tallPng, "image/png");
    const QString html = pageWithBase(images.origin() + "/") + "<img src=\"../image/again.png\"></html>";
    ProbeBrowser view;
    view.setText(html);
    QTRY_VERIFY(view.pendingDownloads().isEmpty());
    QFile::remove(HtmlTextBrowser::imageCacheFolder() + QStringLiteral("/again.png"));
    view.setText(html);
    QTRY_VERIFY(view.pendingDownloads().isEmpty());
    QCOMPARE(images.targets.size(), 2);
    QCOMPARE(fileContents(HtmlTextBrowser::imageCacheFolder() + QStringLiteral("/again.png")), m_tallPng);
    // The cache folder is put in front again, once per call.
    QCOMPARE(view.searchPaths(), (QStringList{HtmlTextBrowser::imageCacheFolder(), HtmlTextBrowser::imageCacheFolder()}));
}

void TestHelp::staleTableEntryIsIgnored()
{
    TestServer images;
    images.holdRequests();
    const QString url = images.origin() + QStringLiteral("/pic.png");
    const QString html = pageWithBase(images.origin() + "/") + "<img src=\"pic.png\"></html>";
    ProbeBrowser view;
    view.setText(html);
    QTRY_COMPARE(images.held.size(), 1);
    QPointer<ImageDownloader> older = view.pendingDownloads().value(url);
    view.setText(html);
    QTRY_COMPARE(images.held.size(), 2);
    QPointer<ImageDownloader> newer = view.pendingDownloads().value(url);
    QVERIFY(older && newer && older != newer);

    // A finish for a URL that is not in the table changes nothing.
    view.slotDownloadFinished(QStringLiteral("http://127.0.0.1:1/unknown.png"), 0);
    QCOMPARE(view.pendingDownloads().value(url), newer.data());

    // The older download ends first: the entry stays with the newer one.
    respond(images.held.at(0), 200, m_tallPng, "image/png");
    QTRY_VERIFY(!older);
    QCOMPARE(view.pendingDownloads().value(url), newer.data());
    QVERIFY(!newer->isFinished());
    respond(images.held.at(1), 200, m_tallPng, "image/png");
    QTRY_VERIFY(view.pendingDownloads().isEmpty());
    QTRY_VERIFY(!newer);
}

void TestHelp::destroyedBrowserDownloadsFinishAlone()
{
    TestServer images;
    images.holdRequests();
    QString html = pageWithBase(images.origin() + "/");
    for (int i = 0; i < 5; ++i)
        html += QStringLiteral("<img src=\"../image/orphan%1.png\">").arg(i);
    auto* view = new ProbeBrowser;
    view->setText(html);
    QList<QPointer<ImageDownloader>> downloaders;
    for (ImageDownloader* downloader : view->pendingDownloads())
        downloaders << downloader;
    QCOMPARE(downloaders.size(), 5);
    QTRY_COMPARE(images.held.size(), 5);
    delete view;
    for (QTcpSocket* socket : qAsConst(images.held))
        respond(socket, 200, m_tallPng, "image/png");
    for (const QPointer<ImageDownloader>& downloader : qAsConst(downloaders))
        QTRY_VERIFY(!downloader);
    for (int i = 0; i < 5; ++i)
        QCOMPARE(fileContents(HtmlTextBrowser::imageCacheFolder() + QStringLiteral("/orphan%1.png").arg(i)), m_tallPng);
}

void TestHelp::manyImagesAndBrokenMarkup()
{
    TestServer images;
    const QByteArray small = pngOf(4, 4, Qt::red);
    images.serve(small, "image/png");
    QString html = pageWithBase(images.origin() + "/") + "<body>";
    for (int i = 0; i < 300; ++i)
        html += QStringLiteral("<img src=\"../image/many%1.png\"><img src=\"../image/many%1.png\">").arg(i);
    html += QStringLiteral("<img src=\"../image/cut.png<p alt=\"");
    ProbeBrowser view;
    view.setText(html);
    QCOMPARE(view.pendingDownloads().size(), 301);
    QTRY_VERIFY_WITH_TIMEOUT(view.pendingDownloads().isEmpty(), 30000);
    QCOMPARE(images.targets.size(), 301);
    QCOMPARE(fileContents(HtmlTextBrowser::imageCacheFolder() + QStringLiteral("/many299.png")), small);

    // Bytes that are no UTF-8 at all, as a page might carry them.
    view.setText(QString::fromUtf8("<html><head><base href=\"\xff\xfe\"></head><img src=\"\xc3\"></html>"));
    QTRY_VERIFY(view.pendingDownloads().isEmpty());
    view.setText(QStringLiteral("<html><head><base href=\"unterminated"));
    QVERIFY(view.pendingDownloads().isEmpty());
}

void TestHelp::downloaderResults_data()
{
    QTest::addColumn<QString>("scenario");
    QTest::addColumn<int>("result");
    QTest::addColumn<bool>("written");
    QTest::newRow("good reply") << "ok" << 0 << true;
    QTest::newRow("error status") << "404" << -1 << false;
    QTest::newRow("refused") << "refused" << -1 << false;
    QTest::newRow("unwritable file") << "unwritable" << 0 << false;
    QTest::newRow("too large") << "huge" << -1 << false;
}

void TestHelp::downloaderResults()
{
    QFETCH(QString, scenario);
    QFETCH(int, result);
    QFETCH(bool, written);
    TestServer images;
    images.setHandler([&](QTcpSocket* socket, const QByteArray&) {
        if (scenario == QLatin1String("404"))
            respond(socket, 404, "missing");
        else if (scenario == QLatin1String("huge"))
            respond(socket, 200, QByteArray(20 * 1024 * 1024, 'p'), "image/png");
        else
            respond(socket, 200, m_tallPng, "image/png");
    });
    const QString folder = m_root.filePath(QStringLiteral("downloads"));
    QVERIFY(QDir().mkpath(folder));
    const QString local = scenario == QLatin1String("unwritable") ? folder + QStringLiteral("/no/such/folder.png")
                                                                  : folder + QStringLiteral("/picture.png");
    QFile::remove(local);
    const QString url = scenario == QLatin1String("refused") ? QStringLiteral("http://127.0.0.1:%1/p.png").arg(closedPort())
                                                            : images.origin() + QStringLiteral("/p.png");
    ImageDownloader downloader(local, url);
    QSignalSpy finished(&downloader, &ImageDownloader::sigDownloadFinish);
    downloader.start();
    downloader.start();
    QTRY_COMPARE(finished.count(), 1);
    QVERIFY(downloader.isFinished());
    QCOMPARE(finished.at(0).at(0).toString(), url);
    QCOMPARE(finished.at(0).at(1).toInt(), result);
    QCOMPARE(QFileInfo::exists(local), written);
    if (written)
        QCOMPARE(fileContents(local), m_tallPng);
    if (scenario != QLatin1String("refused"))
        QCOMPARE(images.targets.size(), 1);
}

void TestHelp::cacheFoldersArePrivate()
{
    ProbeBrowser view;
    view.setText(QStringLiteral("<html><head><base href=\"http://127.0.0.1:1/\"></head></html>"));
    for (const QString& path : {QDir::tempPath() + QStringLiteral("/orvana_help"), HtmlTextBrowser::imageCacheFolder()}) {
        struct stat info;
        QCOMPARE(::lstat(QFile::encodeName(path).constData(), &info), 0);
        QVERIFY(S_ISDIR(info.st_mode));
        QCOMPARE(int(info.st_mode & 0777), 0700);
        QCOMPARE(info.st_uid, ::geteuid());
    }
}

void TestHelp::cacheFileLinkIsNotFollowed()
{
    TestServer images;
    images.serve(m_tallPng, "image/png");
    const QString cache = HtmlTextBrowser::imageCacheFolder();
    QVERIFY(QDir().mkpath(cache));
    const QString target = m_root.filePath(QStringLiteral("precious.txt"));
    QVERIFY(writeFile(target, "keep me"));
    QVERIFY(QFile::link(target, cache + QStringLiteral("/planted.png")));

    WarningCollector warnings;
    ProbeBrowser view;
    view.setText(pageWithBase(images.origin() + "/") + "<img src=\"../image/planted.png\">"
                 "<img src=\"../image/honest.png\"></html>");
    QTRY_VERIFY(view.pendingDownloads().isEmpty());
    QCOMPARE(images.targets.size(), 2);
    QCOMPARE(fileContents(target), QByteArray("keep me"));
    QVERIFY(QFileInfo(cache + QStringLiteral("/planted.png")).isSymLink());
    QCOMPARE(fileContents(cache + QStringLiteral("/honest.png")), m_tallPng);
    QCOMPARE(warnings.count(), 1);
}

void TestHelp::foreignCacheFolderIsRefused_data()
{
    QTest::addColumn<QString>("planted");
    QTest::newRow("cache root is a link") << "rootlink";
    QTest::newRow("image folder is a link") << "imagelink";
    QTest::newRow("image folder is a file") << "imagefile";
    QTest::newRow("cache root of another user") << "foreign";
}

void TestHelp::foreignCacheFolderIsRefused()
{
    QFETCH(QString, planted);
    const QString root = QDir::tempPath() + QStringLiteral("/orvana_help");
    const QString elsewhere = m_root.filePath(QStringLiteral("elsewhere"));
    QDir(elsewhere).removeRecursively();
    QVERIFY(QDir().mkpath(elsewhere + QStringLiteral("/image")));
    if (planted == QLatin1String("rootlink")) {
        QVERIFY(QFile::link(elsewhere, root));
    } else if (planted == QLatin1String("imagelink")) {
        QVERIFY(QDir().mkpath(root));
        QVERIFY(QFile::link(elsewhere + QStringLiteral("/image"), root + QStringLiteral("/image")));
    } else if (planted == QLatin1String("imagefile")) {
        QVERIFY(writeFile(root + QStringLiteral("/image"), "not a folder"));
    } else {
        if (::geteuid() != 0)
            QSKIP("handing a folder to another user needs root");
        QVERIFY(QDir().mkpath(root));
        QCOMPARE(::chown(QFile::encodeName(root).constData(), 65534, 65534), 0);
    }

    TestServer images;
    images.serve(m_tallPng, "image/png");
    WarningCollector warnings;
    ProbeBrowser view;
    view.setSearchPaths({QStringLiteral("/help/pages")});
    const QString html = pageWithBase(images.origin() + "/") + "<p>shown anyway</p>"
                         "<img src=\"../image/evil.png\"></html>";
    view.setText(html);
    QVERIFY(view.pendingDownloads().isEmpty());
    QCOMPARE(view.searchPaths(), QStringList{QStringLiteral("/help/pages")});
    QVERIFY(view.toPlainText().contains(QStringLiteral("shown anyway")));
    QCOMPARE(warnings.count(), 1);
    QVERIFY(QDir(elsewhere + QStringLiteral("/image")).isEmpty());

    // A downloader aimed into the cache by hand is refused as well.
    ImageDownloader downloader(HtmlTextBrowser::imageCacheFolder() + QStringLiteral("/../image/evil.png"),
                               images.origin() + QStringLiteral("/evil.png"));
    QSignalSpy finished(&downloader, &ImageDownloader::sigDownloadFinish);
    downloader.start();
    QTRY_COMPARE(finished.count(), 1);
    QCOMPARE(downloader.result(), 0);
    QVERIFY(QDir(elsewhere + QStringLiteral("/image")).isEmpty());
    QDir(root).removeRecursively();
    QFile::remove(root);
}

ORVACAT_TEST_MAIN(TestHelp)
#include "tst_help.moc"
