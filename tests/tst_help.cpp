// The help windows and the HTML view against an HTTPS knowledge base and HTTP picture servers on 127.0.0.1.

#include "testenvironment.h"
#include "testmain.h"
#include "warningcollector.h"

#include <orvacat/helpwindow.h>
#include <orvacat/htmltextbrowser.h>

#include <QAbstractTextDocumentLayout>
#include <QBuffer>
#include <QImage>
#include <QNetworkProxy>
#include <QProcess>
#include <QSslKey>
#include <QSslSocket>
#include <QTcpServer>
#include <QTemporaryDir>

#include <functional>

#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

QSslCertificate g_certificate;
QSslKey g_key;
const QByteArray kEnglishText = "Offline English page";
const QByteArray kFrenchText = "Page hors ligne";

void respond(QTcpSocket* socket, int status, const QByteArray& body)
{
    if (!socket) // the client has gone already
        return;
    socket->write("HTTP/1.1 " + QByteArray::number(status) + (status == 200 ? " OK" : " Not Found")
                  + "\r\nContent-Length: " + QByteArray::number(body.size()) + "\r\nConnection: close\r\n\r\n" + body);
    socket->disconnectFromHost();
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

// The path and query fields of a request target as a form-reading server sees them ('+' is a space).
QStringList formFields(const QByteArray& target)
{
    QStringList fields{target.left(target.indexOf('?'))};
    for (QByteArray field : target.mid(target.indexOf('?') + 1).split('&')) {
        const QList<QByteArray> parts = field.replace('+', ' ').split('=');
        fields << QString::fromUtf8(QByteArray::fromPercentEncoding(parts[0]) + '=' + QByteArray::fromPercentEncoding(parts.value(1)));
    }
    return fields;
}

// An HTTP/1.1 server on 127.0.0.1, over TLS or plain, counting the connections open at once. The handler
// answers a request; without one the request is kept in held (to answer later, or never).
class TestServer : public QTcpServer
{
public:
    explicit TestServer(bool tls = false) : secure(tls) { listen(QHostAddress::LocalHost, 0); }
    void serve(const QByteArray& body) { handler = [body](QTcpSocket* socket, auto) { respond(socket, 200, body); }; }
    QString origin() const { return QString("http://127.0.0.1:%1/").arg(serverPort()); }

    const bool secure;
    std::function<void(QTcpSocket*, const QByteArray& target)> handler;
    QList<QByteArray> targets;
    QList<QPointer<QTcpSocket>> held;
    int open = 0, mostOpen = 0;

protected:
    void incomingConnection(qintptr descriptor) override
    {
        QTcpSocket* socket = secure ? new QSslSocket(this) : new QTcpSocket(this);
        socket->setSocketDescriptor(descriptor);
        if (auto* secure = qobject_cast<QSslSocket*>(socket)) {
            secure->setLocalCertificate(g_certificate);
            secure->setPrivateKey(g_key);
            secure->startServerEncryption();
        }
        mostOpen = qMax(mostOpen, ++open);
        connect(socket, &QTcpSocket::readyRead, this, [this, socket] {
            // A request head is small enough to arrive in one piece.
            targets << socket->readAll().split(' ').value(1);
            handler ? handler(socket, targets.last()) : void(held << socket);
        });
        connect(socket, &QTcpSocket::disconnected, this, [this, socket] { --open, socket->deleteLater(); });
    }
};

struct ProbeHelpWindow : HelpWindow
{
    using HelpWindow::HelpWindow;
    void fallbackOffline() override { ++offlineCalls, HelpWindow::fallbackOffline(); }
    int offlineCalls = 0;
};

// A run of this binary as a child: under a low descriptor limit, a page of 700 pictures, and a compressed bomb and an
// endless body both as a picture and as a page, from the parent's server. Prints its peak memory in KiB; exits 0 once
// every download and page has ended.
int runAsChild(const QString& origin)
{
    const rlimit limit{32, 32}; // a few more than the host itself needs
    ::setrlimit(RLIMIT_NOFILE, &limit);
    int argc = 1;
    char name[] = "tst_help", *argv[] = {name, nullptr};
    QApplication app(argc, argv);
    QNetworkProxy::setApplicationProxy(QNetworkProxy::NoProxy);
    QString html = "<html><head><base href=\"" + origin + "\"></head><img src=\"bomb.png\"><img src=\"endless.png\">";
    for (int i = 0; i < 700; ++i)
        html += QString("<img src=\"p%1.png\">").arg(i);
    HtmlTextBrowser view;
    view.setText(html);
    struct Window : BrowserWindow { void fallbackOffline() override { ++failed; } int failed = 0; } bomb, endless;
    bomb.reload(QUrl(origin + "bomb.html"));
    endless.reload(QUrl(origin + "endless.html"));
    QElapsedTimer clock;
    for (clock.start(); (!view.pendingDownloads().isEmpty() || !bomb.failed || !endless.failed) && clock.elapsed() < 60000;)
        QTest::qWait(20);
    // This process's own peak. getrusage's ru_maxrss also keeps the peak of
    // the memory a process ran on before exec, which for a child that Qt 6's
    // QProcess starts is the parent's (256 MB of bomb making above).
    long peak = -1;
    for (const QByteArray& line : fileContents("/proc/self/status").split('\n')) {
        if (line.startsWith("VmHWM:"))
            peak = line.mid(6).trimmed().split(' ').value(0).toLong();
    }
    std::printf("%ld\n", peak);
    return view.pendingDownloads().isEmpty() && bomb.failed == 1 && endless.failed == 1 ? 0 : 1;
}

const int g_child = qEnvironmentVariableIsSet("ORVACAT_HELP_CHILD") ? (std::exit(runAsChild(qEnvironmentVariable("ORVACAT_HELP_CHILD"))), 0) : 0;

} // namespace

class TestHelp : public QObject
{
    Q_OBJECT

    QTemporaryDir m_root;
    QString m_cache;
    QByteArray m_tallPng; // makes a page taller than 400 pixels
    QList<ProbeHelpWindow*> m_windows;

    ProbeHelpWindow* newHelpWindow(int port, QString language, QString link = "page.html", QString section = "", QString version = "1.0")
    {
        HelpWindow::setKnowledgeBaseHost("127.0.0.1", port);
        m_windows << new ProbeHelpWindow({language, m_root.filePath("help"), link, section, version});
        return m_windows.last();
    }

private Q_SLOTS:
    void initTestCase()
    {
        // Everything the toolkit puts in the temporary folder lands in ours.
        QVERIFY(QDir().mkpath(m_root.filePath("tmp")) && qputenv("TMPDIR", QFile::encodeName(m_root.filePath("tmp"))));
        QCOMPARE(m_cache = HtmlTextBrowser::imageCacheFolder(), m_root.filePath("tmp/orvana_help/image"));
        QNetworkProxy::setApplicationProxy(QNetworkProxy::NoProxy);
        TestEnvironment::installDefaultTheme();

        // A certificate for 127.0.0.1, trusted by this process only.
        QProcess openssl;
        openssl.setWorkingDirectory(m_root.path());
        openssl.start("openssl", QString("req -x509 -newkey rsa:2048 -nodes -days 2 -subj /CN=127.0.0.1 -addext "
                                         "subjectAltName=IP:127.0.0.1 -keyout key.pem -out cert.pem").split(' '));
        QVERIFY2(openssl.waitForFinished(60000) && openssl.exitCode() == 0, "openssl makes the test certificate");
        g_certificate = QSslCertificate(fileContents(m_root.filePath("cert.pem")));
        g_key = QSslKey(fileContents(m_root.filePath("key.pem")), QSsl::Rsa);
        QSslConfiguration trusting = QSslConfiguration::defaultConfiguration();
        trusting.setCaCertificates({g_certificate});
        QSslConfiguration::setDefaultConfiguration(trusting);

        // The offline help: English, with a picture shared by the languages, and French.
        QImage tall(30, 400, QImage::Format_Mono);
        QVERIFY(QDir().mkpath(m_root.filePath("help/image")) && tall.save(m_root.filePath("help/image/tall.png")));
        m_tallPng = fileContents(m_root.filePath("help/image/tall.png"));
        QVERIFY(writeFile(m_root.filePath("help/enu/page.html"), "<p>" + kEnglishText + "</p><img src=\"../image/tall.png\">"));
        QVERIFY(writeFile(m_root.filePath("help/fre/page.html"), "<p>" + kFrenchText + " \xc3\xa9t\xc3\xa9</p>"));
    }

    void cleanup()
    {
        qDeleteAll(std::exchange(m_windows, {}));
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        QCOMPARE(TestEnvironment::visibleTopLevels(), QStringList());
        QFile::remove(QDir::tempPath() + "/orvana_help"); // a planted link
        QDir(QDir::tempPath() + "/orvana_help").removeRecursively();
    }

    void onlinePageIsShown()
    {
        for (const QString pair : QString("deu:ger esn:spn fra:fre dan:enu sve:enu hun:enu trk:enu nor:enu ptg:enu ptb:enu tha:enu jpn:jpn FRA:FRA").split(' '))
            QCOMPARE(HelpWindow::helpLanguage(pair.left(3)), pair.mid(4));
        // Language, the language asked for, link, section and version: a server reads them as written.
        const QStringList contexts[] = {{"", "", "", "", "1.0"}, {"fra", "fre", "set/page.html", "backup", "2.5"},
                                        {"jpn", "jpn", "a+b & c=d#e%41 \u00e9t\u00e9.html", "x+y", "1.0;2"}};
        TestServer knowledgeBase(true);
        knowledgeBase.serve("<p>online page</p>");
        for (const QStringList& c : contexts) {
            ProbeHelpWindow* window = newHelpWindow(knowledgeBase.serverPort(), c[0], c[2], c[3], c[4]);
            QTRY_COMPARE(window->textBrowser()->toPlainText(), QString("online page"));
            QCOMPARE(formFields(knowledgeBase.targets.last()), QStringList({"/cgi/knowledgebase/", "action=findHelpFile", "section=" + c[3],
                     "lang=" + c[1], "link=" + c[2], "unique=orvana_utility_help", "version=" + c[4]}));
        }

        // A page with a base tag fetches each picture once into the cache; each but the tall one holds its request target.
        TestServer images;
        images.handler = [&](QTcpSocket* socket, const QByteArray& target) {
            respond(socket, 200, target.endsWith("tall.png") ? m_tallPng : target);
        };
        knowledgeBase.serve("<html><head><base href=\"" + images.origin().toUtf8() + "help/enu/\"></head><p>Online</p>"
                            "<img src=\"../image/tall.png\"><img src=\"plain.png\"><img src=\"../image/tall.png\">"
                            "<img src=\"../image/wide.png\"></html>");
        ProbeHelpWindow* window = newHelpWindow(knowledgeBase.serverPort(), "enu");
        window->show();
        HtmlTextBrowser* view = window->textBrowser();
        QTRY_VERIFY(view->toPlainText().contains("Online"));
        // The picture is laid out at its own height once it is on disk.
        QTRY_VERIFY(view->document()->size().height() > 400);
        QTRY_VERIFY(view->pendingDownloads().isEmpty());
        std::sort(images.targets.begin(), images.targets.end());
        QCOMPARE(images.targets, (QList<QByteArray>{"/help/enu/plain.png", "/help/image/tall.png", "/help/image/wide.png"}));
        QCOMPARE(fileContents(m_cache + "/tall.png"), m_tallPng);
        QCOMPARE(fileContents(m_cache + "/plain.png") + fileContents(m_cache + "/wide.png"), images.targets[0] + images.targets[2]);
        QCOMPARE(QFileInfo(m_cache).permissions() | QFileInfo(QDir::tempPath() + "/orvana_help").permissions(),
                 QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner | QFile::ReadUser | QFile::WriteUser | QFile::ExeUser);
        // The pictures too are the user's alone.
        QCOMPARE(QFileInfo(m_cache + "/tall.png").permissions(), QFile::ReadOwner | QFile::WriteOwner | QFile::ReadUser | QFile::WriteUser);

        // The body is UTF-8 up to its first NUL byte.
        const char raw[] = "<p>caf\xc3\xa9 \xff broken</p>\0<p>after the nul</p>";
        knowledgeBase.serve(QByteArray(raw, sizeof raw - 1));
        window->reload();
        QTRY_COMPARE(view->toPlainText(), QString("caf\u00e9 \ufffd broken"));
    }

    void failuresShowTheOfflinePage()
    {
        TestServer server(true);
        QPointer<QTcpSocket> overtakenSocket;
        bool overtakenAsked = false;
        server.handler = [&](QTcpSocket* socket, const QByteArray& target) {
            const QString failure = formFields(target).value(2).mid(8); // after "section="
            if (failure == "status")
                respond(socket, 404, "<p>Not here</p>");
            else if (failure == "errortext")
                respond(socket, 200, "<html><body><h1>Help</h1><p>Sorry. Fail to get help content.</p></body></html>");
            else if (failure == "cut")
                socket->write("HTTP/1.1 200 OK\r\nContent-Length: 100000\r\n\r\n<p>"), socket->disconnectFromHost();
            else if (failure == "deep") // nested beyond what the layout takes in reasonable time
                respond(socket, 200, QByteArray("<table><tr><td>").repeated(20000) + "<img src=\"deep.png\">");
            else if (failure == "overtaken")
                std::exchange(overtakenAsked, true) ? respond(socket, 200, "<p>newer page</p>") : void(overtakenSocket = socket);
        }; // "silent" is never answered
        struct Case { const char *failure, *language, *link, *folder; QByteArray shown; };
        const Case cases[] = {{"silent", "fra", "page.html", "fre", kFrenchText}, {"refused", "tha", "page.html", "enu", kEnglishText},
                              {"status", "jpn", "page.html", "enu", kEnglishText}, {"cut", "deu", "page.html", "enu", kEnglishText},
                              {"errortext", "fra", "page.html", "fre", kFrenchText}, {"deep", "enu", "page.html", "enu", kEnglishText},
                              {"errortext", "fra", "absent.html", "enu", QByteArray()}};
        const qint64 started = QDateTime::currentMSecsSinceEpoch();
        QList<ProbeHelpWindow*> windows;
        for (const Case& c : cases)
            windows << newHelpWindow(qstrcmp(c.failure, "refused") ? server.serverPort() : 1, c.language, c.link, c.failure);
        ProbeHelpWindow* silent = windows.first();
        HtmlTextBrowser silentPicture; // a picture is given the page's ten seconds too
        silentPicture.setText("<html><base href=\"https://127.0.0.1:" + QString::number(server.serverPort()) + "/\"><img src=\"silent.png\">");
        QSignalSpy aborts(silent, &BrowserWindow::sigAbortRequest);
        silent->reload(); // the overtaken request must neither stop the clock nor come back
        for (ProbeHelpWindow* window : windows.mid(1))
            QTRY_COMPARE(window->offlineCalls, 1);

        // A request overtaken by a reload that fails late changes nothing.
        ProbeHelpWindow* overtaken = newHelpWindow(server.serverPort(), "enu", "page.html", "overtaken");
        QTRY_VERIFY(overtakenAsked);
        overtaken->reload();
        QTRY_COMPARE(overtaken->textBrowser()->toPlainText(), QString("newer page"));
        respond(overtakenSocket, 404, "late failure");

        // A server that never answers is given its ten seconds, then dropped once.
        QCOMPARE(silent->offlineCalls, 0);
        QTRY_COMPARE_WITH_TIMEOUT(silent->offlineCalls, 1, 15000);
        QVERIFY(QDateTime::currentMSecsSinceEpoch() - started > 9400);
        QCOMPARE(aborts.count(), 1);
        QTRY_COMPARE(server.open, 0);
        QVERIFY(silentPicture.pendingDownloads().isEmpty());
        QCOMPARE(overtaken->textBrowser()->toPlainText(), QString("newer page"));
        for (int i = 0; i < windows.size(); ++i) {
            QCOMPARE(windows[i]->offlineCalls, 1);
            QCOMPARE(windows[i]->offlineFolder(), m_root.filePath("help/") + cases[i].folder);
            QVERIFY(windows[i]->textBrowser()->toPlainText().startsWith(cases[i].shown));
            QCOMPARE(windows[i]->textBrowser()->searchPaths(), cases[i].shown.isEmpty() ? QStringList() : QStringList{windows[i]->offlineFolder()});
        }
    }

    void setTextStartsDownloads()
    {
        const QString base = "http://127.0.0.1:1/doc/", page = "<html><head><base href=\"" + base + "\"></head>";
        // The HTML, then the downloads it starts; a lone "-": the view is left alone; none: a page without pictures.
        const QStringList cases[][2] = {
            {{"just <words> and <base href=\"x\"><img src=\"a.png\">"}, {"-"}},
            {{"<html><base href=\"http://127.0.0.1:1/<img src=a.png>"}, {"-"}},
            {{page + "<p>text</p></html>"}, {}},
            {{page + "<img src=\"../image/a.png\"><img src=\"b.png\"><img alt=\"x\" src=\"../image/a.png\"><img src=\"b.png\">"},
             {base + "../image/a.png", base + "b.png"}},
            {{page + "<img src=\"c.png\"><img src=\"d.png"}, {base + "c.png", base + "d.png"}},
            {{page + "<img src=\"\"><img src=\"..\"><img src=\"x/.\"><img src=\"e/\"><img src=\"../../../f.png\">"},
             {base + "../../../f.png"}},
            // Only http and https, to the base's own host.
            {{"<html><base href=\"http://127.0.0.1:1\"><img src=\"@127.0.0.2:1/g.png\"><img src=\"/h.png\">"}, {"http://127.0.0.1:1/h.png"}},
            {{"<html><base href=\"\"><img src=\"http://127.0.0.1:1/i.png\"><img src=\"file:///etc/passwd\">"}, {}},
            {{"<html><base href=\"file:///proc/self/fd/\"><img src=\"0\"><base href=\"ftp://127.0.0.1:1/\"><img src=\"j.png\">"}, {}},
        };
        WarningCollector warnings;
        for (const auto& c : cases) {
            cleanup();
            const bool alone = c[1] == QStringList{"-"};
            HtmlTextBrowser view;
            view.setSearchPaths({"/help/pages"});
            view.setText(c[0][0]);
            QCOMPARE(view.pendingDownloads().keys(), alone ? QStringList() : c[1]);
            for (ImageDownloader* downloader : view.pendingDownloads())
                QCOMPARE(downloader->localPath(), m_cache + "/../image/" + downloader->url().section('/', -1));
            QCOMPARE(view.searchPaths(), (alone ? QStringList{"/help/pages"} : QStringList{m_cache, "/help/pages"}));
            QTRY_VERIFY(view.pendingDownloads().isEmpty()); // port 1 refuses
        }
        // Ten nested tables and 256 nested elements are laid out; deeper nesting is shown as its bare text.
        const QString tables = QString("<table><tr><td>").repeated(10), elements = QString("<p><div>").repeated(256);
        warnings.clear();
        const std::pair<QString, bool> nestings[] = {{tables, true}, {elements, true}, {tables + "<table>", false},
                                                     {elements + "<b>", false}, {QString("<table><tr><td>").repeated(20000), false}};
        for (const auto& [html, shown] : nestings) {
            HtmlTextBrowser view;
            view.setText(page + html + "<img src=\"deep.png\">the end");
            QCOMPARE(view.pendingDownloads().keys(), shown ? QStringList{base + "deep.png"} : QStringList());
            QCOMPARE(view.toPlainText().trimmed(), QString(shown ? "\ufffcthe end" : "the end"));
            view.document()->setTextWidth(300); // laid out in good time
            QVERIFY(view.document()->size().height() > 0);
        }
        QCOMPARE(warnings.count(), 3);

        // Pictures from the network go to the page's host only; an offline page downloads nothing and reads regular files
        // of its folder only. Neither reads a pipe, nor a picture declaring more than 8192 pixels a side.
        QVERIFY(writeFile(m_root.filePath("help/image/wide.pgm"), "P5 8193 1 255\n" + QByteArray(8193, '\x80')));
        QVERIFY(writeFile(m_root.filePath("outside/tall.png"), m_tallPng) && QFile::link(m_root.filePath("outside"), m_root.filePath("help/link")));
        QVERIFY(::mkfifo(QFile::encodeName(m_root.filePath("help/image/fifo.png")), 0600) == 0);
        const QString pictures[] = {"../image/tall.png", "../image/fifo.png", "../image/wide.pgm", "../link/tall.png", m_root.filePath("outside/tall.png")};
        QString offline = page;
        for (const QString& picture : pictures)
            offline += "<p><img src=\"" + picture + "\"></p>";
        for (const QUrl& origin : {QUrl::fromLocalFile(m_root.filePath("help")), QUrl("https://kb.orvana.example/x")}) {
            HtmlTextBrowser view;
            view.setPageOrigin(origin);
            view.setSearchPaths({m_root.filePath("help/enu")});
            view.setText(offline);
            QCOMPARE(view.pendingDownloads().size(), 0);
            view.document()->setTextWidth(300);
            QCOMPARE(view.document()->size().height() > 400, origin.isLocalFile());
            for (const QString& picture : pictures)
                QCOMPARE(view.document()->resource(QTextDocument::ImageResource, picture).value<QPixmap>().height() == 400, origin.isLocalFile() && picture == pictures[0]);
        }
        QFile::remove(m_root.filePath("help/image/fifo.png"));
    }

    void downloadsOfAPage()
    {
        TestServer images;
        const QString page = "<html><head><base href=\"" + images.origin() + "\"></head>";
        // Downloads outlive the browser that started them and release themselves.
        auto* gone = new HtmlTextBrowser;
        gone->setText(page + "<img src=\"../image/o0.png\"><img src=\"o1.png\"><img src=\"o2.png\"><img src=\"o3.png\">"
                             "<img src=\"o4.png\"><img src=\"o5.png\"><img src=\"o6.png\"><img src=\"o7.png\">");
        const QList<ImageDownloader*> started = gone->pendingDownloads().values();
        const QList<QPointer<ImageDownloader>> orphans(started.cbegin(), started.cend());
        QTRY_VERIFY(!images.held.isEmpty());
        delete gone;
        images.serve(m_tallPng);
        for (QTcpSocket* socket : qAsConst(images.held))
            respond(socket, 200, m_tallPng);
        for (int i = 0; i < 8; ++i) {
            QTRY_VERIFY(!orphans[i]);
            QCOMPARE(fileContents(m_cache + QString("/o%1.png").arg(i)), m_tallPng);
        }

        // Hundreds of pictures, each named twice: the first 256 arrive, once, over a few connections; the rest are refused.
        WarningCollector warnings;
        HtmlTextBrowser view;
        QString html = page;
        for (int i = 0; i < 300; ++i)
            html += QString("<img src=\"../image/many%1.png\"><img src=\"../image/many%1.png\">").arg(i);
        view.show();
        view.setText(html);
        QSignalSpy relayouts(view.document()->documentLayout(), &QAbstractTextDocumentLayout::update);
        QVERIFY(relayouts.isValid());
        QTRY_VERIFY_WITH_TIMEOUT(view.pendingDownloads().isEmpty(), 30000);
        QTRY_VERIFY(relayouts.count() > 0);
        QVERIFY2(relayouts.count() < 256 / 4, qPrintable(QString::number(relayouts.count()))); // they share relayouts
        QCOMPARE(images.targets.size(), 8 + 256);
        QVERIFY(images.targets.contains("/image/many255.png") && !images.targets.contains("/image/many256.png"));
        // Six at a time; one just closed by the client may not have reached the server yet.
        QVERIFY2(images.mostOpen <= 8, qPrintable(QString::number(images.mostOpen)));
        QCOMPARE(warnings.count(), 1);

        // Bombs, endless bodies and hundreds of pictures under a low descriptor limit: the host lives, its memory stays near the caps.
        const QByteArray bomb = qCompress(QByteArray(256 << 20, '\0'), 9).mid(4);
        images.handler = [&](QTcpSocket* socket, const QByteArray& target) {
            if (target.startsWith("/bomb"))
                return void(socket->write("HTTP/1.1 200 OK\r\nContent-Encoding: deflate\r\nContent-Length: " + QByteArray::number(bomb.size())
                                          + "\r\nConnection: close\r\n\r\n" + bomb));
            if (!target.startsWith("/endless"))
                return respond(socket, 200, m_tallPng);
            socket->write("HTTP/1.1 200 OK\r\nConnection: close\r\n\r\n");
            auto feed = [socket, left = 16384]() mutable { // at most 1 GiB
                if (socket->bytesToWrite() < (1 << 20) && left-- > 0)
                    socket->write(QByteArray(64 << 10, 'x'));
            };
            connect(socket, &QTcpSocket::bytesWritten, socket, feed);
            feed();
        };
        QProcess child;
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert("ORVACAT_HELP_CHILD", images.origin());
        child.setProcessEnvironment(environment);
        child.start(QCoreApplication::applicationFilePath(), QStringList());
        QTRY_COMPARE_WITH_TIMEOUT(child.state(), QProcess::NotRunning, 90000);
        const QByteArray peak = child.readAllStandardOutput().trimmed();
        QCOMPARE(child.exitStatus(), QProcess::NormalExit);
        QCOMPARE(child.exitCode(), 0);
#ifndef __SANITIZE_ADDRESS__ // the sanitizer's own shadow and quarantine would be counted
        QVERIFY2(peak.toLong() < 150 * 1024, peak.constData());
#endif
        QCOMPARE(std::count_if(images.targets.cbegin(), images.targets.cend(), [](const QByteArray& t) { return t.startsWith("/p"); }), 254);
        QVERIFY(QFile::exists(m_cache + "/p0.png") && !QFile::exists(m_cache + "/bomb.png") && !QFile::exists(m_cache + "/endless.png"));

        // A downloader alone: 0 once a reply came (written or not), -1 after a network error.
        for (const QString name : {"alone.png", "no/such/folder.png", "refused.png"}) {
            ImageDownloader downloader(m_root.filePath(name), name == "refused.png" ? "http://127.0.0.1:1/" : images.origin() + name);
            QSignalSpy finished(&downloader, &ImageDownloader::sigDownloadFinish);
            downloader.start();
            QTRY_COMPARE(finished, (QList<QVariantList>{{downloader.url(), name == "refused.png" ? -1 : 0}}));
            QCOMPARE(fileContents(downloader.localPath()), name == "alone.png" ? m_tallPng : QByteArray());
        }
    }

    void picturesShowInPageOrder()
    {
        // Pictures of their own colours and sizes, one named twice and one that fails between them.
        const QColor colours[] = {Qt::red, Qt::green, Qt::blue};
        QMap<QByteArray, QByteArray> pictures;
        for (int i = 0; i < 3; ++i) {
            QImage image(40 + 20 * i, 30 + 10 * i, QImage::Format_RGB32);
            image.fill(colours[i]);
            QBuffer buffer(&pictures["/c" + QByteArray::number(i) + ".png"]);
            QVERIFY(buffer.open(QIODevice::WriteOnly) && image.save(&buffer, "PNG"));
        }
        TestServer images;
        images.handler = [&](QTcpSocket* socket, const QByteArray& target) { respond(socket, pictures.contains(target) ? 200 : 404, pictures.value(target)); };
        HtmlTextBrowser view;
        view.resize(300, 400);
        view.show();
        view.setText("<html><base href=\"" + images.origin() + "\"><p><img src=\"c0.png\"></p><p><img src=\"c1.png\"></p>"
                     "<p><img src=\"gone.png\"></p><p><img src=\"c2.png\"></p><p><img src=\"c0.png\"></p>");
        QTRY_VERIFY(view.pendingDownloads().isEmpty());
        // Down the left edge of the pictures: each in its place at its own height, in page order.
        auto shown = [&] {
            const QImage grabbed = view.viewport()->grab().toImage();
            QStringList runs;
            QRgb previous = 0;
            for (int y = 0; y < grabbed.height(); ++y) {
                const QRgb pixel = grabbed.pixel(10, y);
                const int colour = std::find(std::begin(colours), std::end(colours), QColor(pixel)) - std::begin(colours);
                if (colour < 3 && pixel == previous)
                    runs.last() = QString("%1:%2").arg(colour).arg(runs.last().section(':', 1).toInt() + 1);
                else if (colour < 3)
                    runs << QString("%1:1").arg(colour);
                previous = pixel;
            }
            return runs;
        };
        QTRY_COMPARE(shown(), QStringList({"0:30", "1:40", "2:50", "0:30"}));
        std::sort(images.targets.begin(), images.targets.end());
        QCOMPARE(images.targets, (QList<QByteArray>{"/c0.png", "/c1.png", "/c2.png", "/gone.png"}));
    }

    void cacheRefusesPlantedFolders_data()
    {
        QTest::addColumn<QString>("planted");
        for (const char* planted : {"link in place of a picture", "cache root is a link", "image folder is a link", "cache root of another user"})
            QTest::newRow(planted) << QString(planted);
    }

    void cacheRefusesPlantedFolders()
    {
        QFETCH(QString, planted);
        const QString root = QDir::tempPath() + "/orvana_help", elsewhere = m_root.filePath("elsewhere");
        QDir(elsewhere).removeRecursively();
        QVERIFY(QDir().mkpath(elsewhere + "/image") && writeFile(elsewhere + "/precious.png", "keep me"));
        if (planted.startsWith("link"))
            QVERIFY(QDir().mkpath(m_cache) && QFile::link(elsewhere + "/precious.png", m_cache + "/evil.png"));
        else if (planted == "cache root is a link")
            QVERIFY(QFile::link(elsewhere, root));
        else if (planted == "image folder is a link")
            QVERIFY(QDir().mkpath(root) && QFile::link(elsewhere + "/image", m_cache));
        else if (::geteuid() != 0)
            QSKIP("handing a folder to another user needs root");
        else
            QVERIFY(QDir().mkpath(root) && ::chown(QFile::encodeName(root).constData(), 65534, 65534) == 0);
        TestServer images;
        images.serve(m_tallPng);
        WarningCollector warnings;
        HtmlTextBrowser view;
        view.setSearchPaths({"/help/pages"});
        view.setText("<html><head><base href=\"" + images.origin() + "\"></head><p>shown anyway</p>"
                     "<img src=\"../image/evil.png\"><img src=\"../image/honest.png\"></html>");
        QVERIFY(view.toPlainText().contains("shown anyway"));
        QTRY_VERIFY(view.pendingDownloads().isEmpty());
        QCOMPARE(warnings.count(), 1);
        // A downloader aimed into the cache by hand is refused as well.
        ImageDownloader downloader(m_cache + "/../image/evil.png", images.origin() + "evil.png");
        downloader.start();
        QTRY_VERIFY(downloader.isFinished());
        QCOMPARE(fileContents(elsewhere + "/precious.png"), QByteArray("keep me"));
        QVERIFY(QDir(elsewhere + "/image").isEmpty());
        // Only a planted picture link leaves the rest of the page to be cached.
        const bool cached = planted.startsWith("link");
        QCOMPARE(QFileInfo(m_cache + "/evil.png").isSymLink(), cached);
        QCOMPARE(fileContents(m_cache + "/honest.png"), cached ? m_tallPng : QByteArray());
        QCOMPARE(view.searchPaths(), (cached ? QStringList{m_cache, "/help/pages"} : QStringList{"/help/pages"}));
        QCOMPARE(images.targets.size(), cached ? 3 : 1);
    }
};

ORVACAT_TEST_MAIN(TestHelp)
#include "tst_help.moc"
