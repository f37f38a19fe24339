// The help windows and the HTML view against real servers on the loopback
// address: an HTTPS knowledge base with a certificate made for the run, and
// plain HTTP servers for the page images.

#include "testenvironment.h"
#include "testmain.h"
#include "warningcollector.h"

#include <orvacat/helpwindow.h>
#include <orvacat/htmltextbrowser.h>

#include <QElapsedTimer>
#include <QImage>
#include <QNetworkProxy>
#include <QProcess>
#include <QSslKey>
#include <QSslSocket>
#include <QTcpServer>
#include <QTemporaryDir>

#include <functional>

#include <sys/stat.h>
#include <unistd.h>

namespace {

QSslCertificate g_certificate;
QSslKey g_key;

void respond(QTcpSocket* socket, int status, const QByteArray& body)
{
    if (!socket)
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

// The query of a request target as a form-reading server sees it ('+' is a space).
QStringList formFields(const QByteArray& target)
{
    QStringList fields;
    for (QByteArray field : target.mid(target.indexOf('?') + 1).split('&')) {
        const int equals = field.replace('+', ' ').indexOf('=');
        fields << QString::fromUtf8(QByteArray::fromPercentEncoding(field.left(equals))) + '='
                + QString::fromUtf8(QByteArray::fromPercentEncoding(equals < 0 ? QByteArray() : field.mid(equals + 1)));
    }
    return fields;
}

// An HTTP/1.1 server on 127.0.0.1, over TLS or plain. It records the request
// targets and the most connections open at once; the handler answers (or
// keeps the socket in held, to answer later or never).
class TestServer : public QTcpServer
{
public:
    using Handler = std::function<void(QTcpSocket*, const QByteArray& target)>;
    explicit TestServer(bool secure = false) : m_secure(secure) { listen(QHostAddress::LocalHost, 0); }
    void setHandler(Handler handler) { m_handler = std::move(handler); }
    void serve(const QByteArray& body)
    {
        setHandler([body](QTcpSocket* socket, const QByteArray&) { respond(socket, 200, body); });
    }
    QString origin() const { return QStringLiteral("http://127.0.0.1:%1/").arg(serverPort()); }

    QList<QByteArray> targets;
    QList<QPointer<QTcpSocket>> held;
    int open = 0;
    int mostOpen = 0;

protected:
    void incomingConnection(qintptr descriptor) override
    {
        QTcpSocket* socket = m_secure ? new QSslSocket(this) : new QTcpSocket(this);
        socket->setSocketDescriptor(descriptor);
        if (auto* secure = qobject_cast<QSslSocket*>(socket)) {
            secure->setLocalCertificate(g_certificate);
            secure->setPrivateKey(g_key);
            secure->startServerEncryption();
        }
        mostOpen = qMax(mostOpen, ++open);
        connect(socket, &QTcpSocket::readyRead, this, [this, socket] {
            QByteArray buffer = socket->property("request").toByteArray() + socket->readAll();
            for (int end; (end = buffer.indexOf("\r\n\r\n")) >= 0; buffer.remove(0, end + 4)) {
                targets << buffer.left(buffer.indexOf("\r\n")).split(' ').value(1);
                m_handler ? m_handler(socket, targets.last()) : void(held << socket);
            }
            socket->setProperty("request", buffer);
        });
        connect(socket, &QTcpSocket::disconnected, this, [this, socket] {
            --open;
            socket->deleteLater();
        });
    }

private:
    bool m_secure;
    Handler m_handler;
};

struct ProbeHelpWindow : HelpWindow
{
    using HelpWindow::HelpWindow;
    void fallbackOffline() override { ++offlineCalls, HelpWindow::fallbackOffline(); }
    int offlineCalls = 0;
};

const QByteArray kEnglishText = "Offline English page";
const QByteArray kFrenchText = "Page hors ligne";
const QString kHelpCache = "/orvana_help/image";

} // namespace

class TestHelp : public QObject
{
    Q_OBJECT

    QTemporaryDir m_root;
    QByteArray m_tallPng; // a picture that makes a page taller than 400 pixels
    QList<ProbeHelpWindow*> m_windows;

    ProbeHelpWindow* newHelpWindow(int port, const QString& language, const QString& link = "page.html",
                                   const QString& section = "tools", const QString& version = "1.0")
    {
        HelpWindow::setKnowledgeBaseHost("127.0.0.1", port);
        m_windows << new ProbeHelpWindow({language, m_root.filePath("help"), link, section, version});
        return m_windows.last();
    }

private Q_SLOTS:
    void initTestCase()
    {
        QVERIFY(m_root.isValid());
        // Everything the toolkit puts in the temporary folder lands in ours.
        QVERIFY(QDir().mkpath(m_root.filePath("tmp")));
        qputenv("TMPDIR", QFile::encodeName(m_root.filePath("tmp")));
        QCOMPARE(HtmlTextBrowser::imageCacheFolder(), m_root.filePath("tmp") + kHelpCache);
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
        trusting.addCaCertificates({g_certificate});
        QSslConfiguration::setDefaultConfiguration(trusting);

        // The offline help: English, with a picture shared by the languages, and French.
        QImage tall(30, 400, QImage::Format_RGB32);
        tall.fill(Qt::darkGreen);
        QVERIFY(QDir().mkpath(m_root.filePath("help/image")) && tall.save(m_root.filePath("help/image/tall.png")));
        m_tallPng = fileContents(m_root.filePath("help/image/tall.png"));
        QVERIFY(writeFile(m_root.filePath("help/enu/page.html"),
                          "<p>" + kEnglishText + "</p><img src=\"../image/tall.png\">"));
        QVERIFY(writeFile(m_root.filePath("help/fre/page.html"), "<p>" + kFrenchText + " \xc3\xa9t\xc3\xa9</p>"));
    }

    void init()
    {
        QFile::remove(QDir::tempPath() + "/orvana_help");
        QDir(QDir::tempPath() + "/orvana_help").removeRecursively();
    }

    void cleanup()
    {
        qDeleteAll(m_windows);
        m_windows.clear();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        QCOMPARE(TestEnvironment::visibleTopLevels(), QStringList());
    }

    void queryNamesThePage()
    {
        const char* const mapping[][2] = {{"deu", "ger"}, {"esn", "spn"}, {"fra", "fre"}, {"dan", "enu"}, {"sve", "enu"},
                                          {"hun", "enu"}, {"trk", "enu"}, {"nor", "enu"}, {"ptg", "enu"}, {"ptb", "enu"},
                                          {"tha", "enu"}, {"jpn", "jpn"}, {"FRA", "FRA"}};
        for (const auto& pair : mapping)
            QCOMPARE(HelpWindow::helpLanguage(pair[0]), QString(pair[1]));
        HelpWindow::setKnowledgeBaseHost(QString(), 70000);
        QCOMPARE(HelpWindow::knowledgeBaseHost() + ':' + QString::number(HelpWindow::knowledgeBasePort()),
                 QString("kb.orvana.example:-1"));

        // Each context as language, link, section and version, then the fields a server reads.
        const QStringList contexts[][2] = {
            {{"", "", "", "1.0"}, {"section=", "lang=", "link=", "version=1.0"}},
            {{"fra", "set/page.html", "backup", "2.5"}, {"section=backup", "lang=fre", "link=set/page.html", "version=2.5"}},
            {{"jpn", "a+b & c=d#e%41 \u00e9t\u00e9.html", "x+y", "1.0;2"},
             {"section=x+y", "lang=jpn", "link=a+b & c=d#e%41 \u00e9t\u00e9.html", "version=1.0;2"}},
        };
        TestServer server(true);
        server.serve("<p>online page</p>");
        for (const auto& context : contexts) {
            const QStringList& c = context[0];
            ProbeHelpWindow* window = newHelpWindow(server.serverPort(), c[0], c[1], c[2], c[3]);
            QTRY_COMPARE(window->textBrowser()->toPlainText(), QString("online page"));
            QVERIFY(server.targets.last().startsWith("/cgi/knowledgebase/?"));
            QStringList fields = context[1];
            fields.insert(3, "unique=orvana_utility_help");
            QCOMPARE(formFields(server.targets.last()), QStringList{"action=findHelpFile"} + fields);
        }
        QCOMPARE(server.targets.size(), 3);
    }

    void onlinePageShowsItsPictures()
    {
        TestServer images; // each picture but the tall one holds its own request target
        images.setHandler([&](QTcpSocket* socket, const QByteArray& target) {
            respond(socket, 200, target.endsWith("tall.png") ? m_tallPng : target);
        });
        TestServer knowledgeBase(true);
        knowledgeBase.serve("<html><head><base href=\"" + images.origin().toUtf8() + "help/enu/\"></head><p>Online</p>"
                            "<img src=\"../image/tall.png\"><img src=\"plain.png\"><img src=\"../image/tall.png\">"
                            "<img src=\"../image/wide.png\"></html>");
        ProbeHelpWindow* window = newHelpWindow(knowledgeBase.serverPort(), "enu");
        window->resize(TestEnvironment::scaled(400), TestEnvironment::scaled(300));
        window->show();
        HtmlTextBrowser* view = window->textBrowser();
        QTRY_VERIFY(view->toPlainText().contains("Online"));
        QCOMPARE(view->baseUrl(), images.origin() + "help/enu/");
        const QString cache = QDir::tempPath() + kHelpCache;
        QCOMPARE(view->searchPaths().value(0), cache);
        // The picture is laid out at its own height once it is on disk.
        QTRY_VERIFY(view->document()->size().height() > 400);
        QTRY_VERIFY(view->pendingDownloads().isEmpty());
        std::sort(images.targets.begin(), images.targets.end());
        QCOMPARE(images.targets, (QList<QByteArray>{"/help/enu/plain.png", "/help/image/tall.png", "/help/image/wide.png"}));
        QCOMPARE(fileContents(cache + "/tall.png"), m_tallPng);
        QCOMPARE(fileContents(cache + "/plain.png") + fileContents(cache + "/wide.png"), images.targets[0] + images.targets[2]);
        struct stat root, folder;
        QVERIFY(::lstat(QFile::encodeName(QDir::tempPath() + "/orvana_help"), &root) == 0 && (root.st_mode & 0777) == 0700);
        QVERIFY(::lstat(QFile::encodeName(cache), &folder) == 0 && S_ISDIR(folder.st_mode) && (folder.st_mode & 0777) == 0700);

        // The body is UTF-8 up to its first NUL byte; an empty body is a page too.
        static const char raw[] = "<p>caf\xc3\xa9 \xff broken</p>\0<p>after the nul</p>";
        knowledgeBase.serve(QByteArray(raw, int(sizeof raw) - 1));
        window->reload();
        QTRY_COMPARE(view->toPlainText(), QString("caf\u00e9 \ufffd broken"));
        knowledgeBase.serve(QByteArray());
        window->reload();
        QTRY_VERIFY(view->toPlainText().isEmpty());
        QCOMPARE(window->offlineCalls, 0);
    }

    void failuresShowTheOfflinePage()
    {
        TestServer server(true);
        server.setHandler([](QTcpSocket* socket, const QByteArray& target) {
            const QString failure = formFields(target).value(1).mid(8); // after "section="
            if (failure == "status")
                respond(socket, 404, "<p>Not here</p>");
            else if (failure == "errortext")
                respond(socket, 200, "<html><body><h1>Help</h1><p>Sorry. Fail to get help content.</p></body></html>");
            else if (failure == "huge")
                respond(socket, 200, "<html><body>" + QByteArray(5 << 20, 'a'));
            else if (failure == "cut")
                socket->write("HTTP/1.1 200 OK\r\nContent-Length: 100000\r\n\r\n<p>" + QByteArray(2000, 'x')),
                    socket->disconnectFromHost();
        }); // "silent" is never answered
        const struct
        {
            const char *failure, *language, *link, *folder;
            QByteArray shown;
        } cases[] = {{"silent", "fra", "page.html", "fre", kFrenchText}, {"refused", "tha", "page.html", "enu", kEnglishText},
                     {"status", "jpn", "page.html", "enu", kEnglishText}, {"cut", "deu", "page.html", "enu", kEnglishText},
                     {"huge", "enu", "page.html", "enu", kEnglishText}, {"errortext", "fra", "page.html", "fre", kFrenchText},
                     {"errortext", "fra", "absent.html", "enu", QByteArray()}};
        QElapsedTimer clock;
        clock.start();
        QList<ProbeHelpWindow*> windows;
        for (const auto& c : cases)
            windows << newHelpWindow(qstrcmp(c.failure, "refused") ? server.serverPort() : 1, c.language, c.link, c.failure);
        ProbeHelpWindow* silent = windows.first();
        QSignalSpy aborts(silent, &BrowserWindow::sigAbortRequest);
        silent->reload(); // the overtaken request must neither stop the clock nor come back
        for (ProbeHelpWindow* window : windows.mid(1))
            QTRY_COMPARE(window->offlineCalls, 1);
        // A server that never answers is given its ten seconds, then dropped once.
        QCOMPARE(silent->offlineCalls, 0);
        QTRY_COMPARE_WITH_TIMEOUT(silent->offlineCalls, 1, 15000);
        QVERIFY2(clock.elapsed() > 9400, qPrintable(QString::number(clock.elapsed())));
        QCOMPARE(aborts.count(), 1);
        QTRY_COMPARE(server.open, 0);
        for (int i = 0; i < windows.size(); ++i) {
            HtmlTextBrowser* view = windows[i]->textBrowser();
            QCOMPARE(windows[i]->offlineCalls, 1);
            QCOMPARE(windows[i]->offlineFolder(), m_root.filePath("help/") + cases[i].folder);
            QVERIFY(view->toPlainText().startsWith(cases[i].shown));
            QCOMPARE(view->searchPaths(), cases[i].shown.isEmpty() ? QStringList() : QStringList{windows[i]->offlineFolder()});
        }
        // "../image/tall.png" of the English page resolves through its folder to the shared picture.
        windows[1]->show();
        QTRY_VERIFY(windows[1]->textBrowser()->document()->size().height() > 400);
    }

    void overtakenRequestNeverChangesThePage()
    {
        TestServer server(true);
        server.setHandler([&](QTcpSocket* socket, const QByteArray&) {
            server.targets.size() == 2 ? respond(socket, 200, "<p>second</p>") : void(server.held << socket);
        });
        ProbeHelpWindow* window = newHelpWindow(server.serverPort(), "enu");
        QTRY_COMPARE(server.held.size(), 1);
        window->reload();
        QTRY_COMPARE(window->textBrowser()->toPlainText(), QString("second"));
        respond(server.held[0], 404, "late failure");
        QTest::qWait(300);
        QCOMPARE(window->textBrowser()->toPlainText(), QString("second"));
        QCOMPARE(window->offlineCalls, 0);
        // A window closed while it waits drops its request.
        window->reload();
        QTRY_COMPARE(server.held.size(), 2);
        qDeleteAll(m_windows);
        m_windows.clear();
        QTRY_VERIFY(!server.held[1]);
    }

    void setTextStartsDownloads_data()
    {
        QTest::addColumn<QString>("html");
        QTest::addColumn<QStringList>("urls"); // none: the page is left alone; one empty: a page without pictures
        const QString base = "http://127.0.0.1:1/doc/";
        const QString page = "<html><head><base href=\"" + base + "\"></head>";
        QTest::newRow("plain text") << "just <words> and <base href=\"x\"><img src=\"a.png\">" << QStringList();
        QTest::newRow("rich, no base tag") << "<html><body><img src=\"a.png\"></body></html>" << QStringList();
        QTest::newRow("base tag unterminated") << "<html><base href=\"http://127.0.0.1:1/<img src=a.png>" << QStringList();
        QTest::newRow("base tag, no images") << page + "<p>text</p></html>" << QStringList{QString()};
        QTest::newRow("duplicates and no slash")
            << page + "<img src=\"../image/a.png\"><img src=\"b.png\"><img alt=\"x\" src=\"../image/a.png\"><img src=\"b.png\">"
            << QStringList{base + "../image/a.png", base + "b.png"};
        QTest::newRow("unterminated source") << page + "<img src=\"c.png\"><img src=\"d.png"
                                             << QStringList{base + "c.png", base + "d.png"};
        QTest::newRow("sources naming no file")
            << page + "<img src=\"\"><img src=\"..\"><img src=\"x/.\"><img src=\"e/\"><img src=\"../../../f.png\">"
            << QStringList{base + "../../../f.png"};
    }

    void setTextStartsDownloads()
    {
        QFETCH(QString, html);
        QFETCH(QStringList, urls);
        const bool cached = !urls.isEmpty();
        urls.removeAll(QString());
        WarningCollector warnings;
        HtmlTextBrowser view;
        view.setSearchPaths({"/help/pages"});
        view.setText(html);
        QCOMPARE(view.pendingDownloads().keys(), urls);
        const QString cache = QDir::tempPath() + kHelpCache;
        for (ImageDownloader* downloader : view.pendingDownloads())
            QCOMPARE(downloader->localPath(), cache + "/../image/" + downloader->url().section('/', -1));
        QCOMPARE(view.searchPaths(), (cached ? QStringList{cache, "/help/pages"} : QStringList{"/help/pages"}));
        QCOMPARE(QFileInfo::exists(cache), cached);
        // Port 1 refuses: every download ends, and the view forgets it.
        QTRY_VERIFY(view.pendingDownloads().isEmpty());
        QVERIFY(!QFileInfo::exists(QDir::tempPath() + "/f.png"));
    }

    void downloadsOfAPage()
    {
        TestServer images;
        const QString cache = QDir::tempPath() + kHelpCache;
        const QString page = "<html><head><base href=\"" + images.origin() + "\"></head>";
        const QString url = images.origin() + "pic.png";
        // Every page fetches its pictures again; an overtaken download leaves the newer one in place.
        HtmlTextBrowser view;
        view.setText(page + "<img src=\"pic.png\">");
        QTRY_COMPARE(images.held.size(), 1);
        QPointer<ImageDownloader> older = view.pendingDownloads().value(url);
        view.setText(page + "<img src=\"pic.png\">");
        QTRY_COMPARE(images.held.size(), 2);
        QPointer<ImageDownloader> newer = view.pendingDownloads().value(url);
        QVERIFY(older && newer && older != newer);
        QCOMPARE(view.searchPaths(), (QStringList{cache, cache}));
        respond(images.held[0], 200, m_tallPng);
        QTRY_VERIFY(!older);
        QCOMPARE(view.pendingDownloads().value(url), newer.data());
        respond(images.held[1], 200, m_tallPng);
        QTRY_VERIFY(!newer && view.pendingDownloads().isEmpty());
        QCOMPARE(fileContents(cache + "/pic.png"), m_tallPng);

        // Downloads outlive the browser that started them and release themselves.
        auto* gone = new HtmlTextBrowser;
        QString html = page;
        for (int i = 0; i < 8; ++i)
            html += QString("<img src=\"../image/orphan%1.png\">").arg(i);
        gone->setText(html);
        QList<QPointer<ImageDownloader>> orphans;
        for (ImageDownloader* downloader : gone->pendingDownloads())
            orphans << downloader;
        QTRY_VERIFY(images.held.size() > 2);
        delete gone;
        images.serve(m_tallPng);
        for (QTcpSocket* socket : qAsConst(images.held))
            respond(socket, 200, m_tallPng);
        for (int i = 0; i < 8; ++i) {
            QTRY_VERIFY(!orphans[i]);
            QCOMPARE(fileContents(cache + QString("/orphan%1.png").arg(i)), m_tallPng);
        }

        // Hundreds of pictures, each named twice: every one arrives, once, over a few connections.
        images.targets.clear();
        html = page;
        for (int i = 0; i < 300; ++i)
            html += QString("<img src=\"../image/many%1.png\"><img src=\"../image/many%1.png\">").arg(i);
        view.setText(html + "<img src=\"../image/cut.png<p alt=\"");
        QCOMPARE(view.pendingDownloads().size(), 301);
        QTRY_VERIFY_WITH_TIMEOUT(view.pendingDownloads().isEmpty(), 30000);
        QCOMPARE(images.targets.size(), 301);
        QCOMPARE(fileContents(cache + "/many299.png"), m_tallPng);
        QVERIFY2(images.mostOpen <= 6, qPrintable(QString::number(images.mostOpen)));
    }

    void downloaderResults()
    {
        TestServer images;
        images.setHandler([&](QTcpSocket* socket, const QByteArray& target) {
            respond(socket, target.endsWith("404") ? 404 : 200, target.endsWith("huge") ? QByteArray(20 << 20, 'p') : m_tallPng);
        });
        const struct
        {
            const char *name, *local;
            int result;
            bool written;
        } cases[] = {{"ok", "picture.png", 0, true}, {"404", "missing.png", -1, false},
                     {"ok", "no/such/folder.png", 0, false}, {"huge", "huge.png", -1, false}};
        for (const auto& c : cases) {
            ImageDownloader downloader(m_root.filePath(c.local), images.origin() + c.name);
            QSignalSpy finished(&downloader, &ImageDownloader::sigDownloadFinish);
            downloader.start();
            downloader.start();
            QTRY_COMPARE(finished.count(), 1);
            QVERIFY(downloader.isFinished());
            QCOMPARE(finished[0], (QVariantList{downloader.url(), c.result}));
            QCOMPARE(fileContents(downloader.localPath()), c.written ? m_tallPng : QByteArray());
        }
        QCOMPARE(images.targets.size(), 4);
    }

    void cacheRefusesPlantedFolders_data()
    {
        QTest::addColumn<QString>("planted");
        QTest::newRow("link in place of a picture") << "filelink";
        QTest::newRow("cache root is a link") << "rootlink";
        QTest::newRow("image folder is a link") << "imagelink";
        QTest::newRow("image folder is a file") << "imagefile";
        QTest::newRow("cache root of another user") << "foreign";
    }

    void cacheRefusesPlantedFolders()
    {
        QFETCH(QString, planted);
        const QString root = QDir::tempPath() + "/orvana_help", cache = root + "/image";
        const QString elsewhere = m_root.filePath("elsewhere");
        QDir(elsewhere).removeRecursively();
        QVERIFY(QDir().mkpath(elsewhere + "/image") && writeFile(elsewhere + "/precious.png", "keep me"));
        if (planted == "filelink")
            QVERIFY(QDir().mkpath(cache) && QFile::link(elsewhere + "/precious.png", cache + "/evil.png"));
        else if (planted == "rootlink")
            QVERIFY(QFile::link(elsewhere, root));
        else if (planted == "imagelink")
            QVERIFY(QDir().mkpath(root) && QFile::link(elsewhere + "/image", cache));
        else if (planted == "imagefile")
            QVERIFY(writeFile(cache, "not a folder"));
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
        QCOMPARE(fileContents(elsewhere + "/precious.png"), QByteArray("keep me"));
        QVERIFY(QDir(elsewhere + "/image").isEmpty());
        if (planted == "filelink") {
            // Only the planted link is refused: the rest of the page is cached.
            QVERIFY(QFileInfo(cache + "/evil.png").isSymLink());
            QCOMPARE(fileContents(cache + "/honest.png"), m_tallPng);
            return;
        }
        QCOMPARE(images.targets.size(), 0);
        QCOMPARE(view.searchPaths(), QStringList{"/help/pages"});
        // A downloader aimed into the cache by hand is refused as well.
        ImageDownloader downloader(cache + "/../image/evil.png", images.origin() + "evil.png");
        QSignalSpy finished(&downloader, &ImageDownloader::sigDownloadFinish);
        downloader.start();
        QTRY_COMPARE(finished.count(), 1);
        QCOMPARE(downloader.result(), 0);
        QVERIFY(QDir(elsewhere + "/image").isEmpty());
    }
};

ORVACAT_TEST_MAIN(TestHelp)
#include "tst_help.moc"
