// A help page with 300 pictures from a local server, of which it downloads the
// first 256 (the most a page starts), against the same 256 downloads without
// a page to show them.

#include <orvacat/htmltextbrowser.h>

#include <benchmark/benchmark.h>

#include <QAbstractTextDocumentLayout>
#include <QBuffer>
#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QImage>
#include <QNetworkAccessManager>
#include <QNetworkProxy>
#include <QPainter>
#include <QSharedPointer>
#include <QTcpServer>
#include <QTcpSocket>
#include <QThread>
#include <QTimer>

#include <algorithm>
#include <memory>

#include <time.h>

namespace {

const int kPagePictures = 300;
const int kDownloaded = 256;

// An HTTP server on 127.0.0.1 in a thread of its own, so that its work does
// not count as the GUI thread's; every request gets the same picture.
class PictureServer
{
public:
    PictureServer()
    {
        QImage image(240, 160, QImage::Format_RGB32);
        image.fill(Qt::white);
        QPainter painter(&image);
        for (int i = 0; i < 40; ++i)
            painter.fillRect(i * 6, (i * 37) % 140, 5, 20, QColor::fromHsv(i * 9, 200, 200));
        painter.end();
        QBuffer buffer(&m_png);
        buffer.open(QIODevice::WriteOnly);
        image.save(&buffer, "PNG");

        m_thread.reset(QThread::create([this] {
            QTcpServer server;
            server.listen(QHostAddress::LocalHost, 0);
            QObject::connect(&server, &QTcpServer::newConnection, &server, [&server, this] {
                while (QTcpSocket* socket = server.nextPendingConnection()) {
                    QObject::connect(socket, &QTcpSocket::readyRead, socket, [socket, this] {
                        // One request at a time per connection; keep-alive as a real server would.
                        socket->readAll();
                        socket->write("HTTP/1.1 200 OK\r\nContent-Type: image/png\r\nContent-Length: "
                                      + QByteArray::number(m_png.size()) + "\r\n\r\n" + m_png);
                    });
                    QObject::connect(socket, &QTcpSocket::disconnected, socket, &QObject::deleteLater);
                }
            });
            m_port = server.serverPort();
            QEventLoop loop; // ended by quit()
            loop.exec();
        }));
        m_thread->start();
        while (!m_port)
            QThread::msleep(1);
    }
    ~PictureServer()
    {
        m_thread->quit();
        m_thread->wait();
    }
    QString origin() const { return QStringLiteral("http://127.0.0.1:%1/").arg(m_port); }

private:
    QByteArray m_png;
    std::unique_ptr<QThread> m_thread;
    QAtomicInt m_port = 0;
};

qint64 threadCpuUs()
{
    timespec now{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now);
    return qint64(now.tv_sec) * 1000000 + now.tv_nsec / 1000;
}

// The longest time the GUI thread went without coming back to its event loop:
// on the wall clock, and in the thread's own CPU time (what it computed in
// one go, however busy the machine).
class GapMeter
{
public:
    GapMeter()
    {
        QObject::connect(&m_timer, &QTimer::timeout, [this] {
            m_longest = qMax(m_longest, m_clock.restart());
            const qint64 cpu = threadCpuUs();
            m_longestBusyUs = qMax(m_longestBusyUs, cpu - m_lastCpu);
            m_lastCpu = cpu;
        });
        m_timer.start(1);
        m_clock.start();
        m_lastCpu = threadCpuUs();
    }
    qint64 longest() const { return m_longest; }
    double longestBusyMs() const { return m_longestBusyUs / 1000.0; }

private:
    QTimer m_timer;
    QElapsedTimer m_clock;
    qint64 m_longest = 0;
    qint64 m_lastCpu = 0;
    qint64 m_longestBusyUs = 0;
};

// Records when the page's height last changed (a picture took its place)
// and when a paint last ended (the pictures in sight were drawn).
class TimedView : public HtmlTextBrowser
{
public:
    explicit TimedView(const QElapsedTimer& clock)
        : m_clock(clock)
    {
        QObject::connect(document()->documentLayout(), &QAbstractTextDocumentLayout::documentSizeChanged, this,
                         [this] { lastResize = m_clock.elapsed(); });
    }
    qint64 lastResize = 0;
    qint64 lastPaint = 0;

protected:
    void paintEvent(QPaintEvent* event) override
    {
        HtmlTextBrowser::paintEvent(event);
        lastPaint = m_clock.elapsed();
    }

private:
    const QElapsedTimer& m_clock;
};

QString pageOf(const QString& origin, int round)
{
    QString html = QStringLiteral("<html><head><base href=\"%1\"></head><body>").arg(origin);
    for (int i = 0; i < kPagePictures; ++i)
        html += QStringLiteral("<p>Step %1 of the task, as the picture shows.<br><img src=\"../image/bench%2_%1.png\"></p>").arg(i).arg(round);
    return html + QStringLiteral("</body></html>");
}

void BM_HelpPage_Shown(benchmark::State& state)
{
    QNetworkProxy::setApplicationProxy(QNetworkProxy::NoProxy);
    PictureServer server;
    qint64 longestGap = 0;
    double longestBusy = 0;
    int round = 0;
    for (auto _ : state) {
        QElapsedTimer clock;
        TimedView view(clock);
        view.resize(800, 600);
        view.show();
        QCoreApplication::processEvents();
        GapMeter gaps;
        clock.start();
        view.lastResize = view.lastPaint = 0;
        view.setText(pageOf(server.origin(), ++round));
        while (!view.pendingDownloads().isEmpty())
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
        const qint64 downloaded = clock.elapsed();
        // Complete: the last change of the page's height or paint, after 300 ms without either.
        auto complete = [&] { return qMax(qMax(downloaded, view.lastResize), view.lastPaint); };
        while (clock.elapsed() < complete() + 300)
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents, 5);
        state.SetIterationTime(complete() / 1000.0);
        longestGap = qMax(longestGap, gaps.longest());
        longestBusy = qMax(longestBusy, gaps.longestBusyMs());
    }
    QDir(HtmlTextBrowser::imageCacheFolder()).removeRecursively();
    state.counters["longest_gap_ms"] = double(longestGap);
    state.counters["longest_busy_ms"] = longestBusy;
}
BENCHMARK(BM_HelpPage_Shown)->Name("BM_HelpPage/Shown")->UseManualTime()->Unit(benchmark::kMillisecond)->Iterations(5);

void BM_HelpPage_DownloadsOnly(benchmark::State& state)
{
    QNetworkProxy::setApplicationProxy(QNetworkProxy::NoProxy);
    PictureServer server;
    const QString folder = HtmlTextBrowser::imageCacheFolder();
    QDir().mkpath(folder);
    qint64 longestGap = 0;
    double longestBusy = 0;
    int round = 0;
    for (auto _ : state) {
        GapMeter gaps;
        QElapsedTimer clock;
        clock.start();
        ++round;
        QSharedPointer<QNetworkAccessManager> manager(new QNetworkAccessManager, &QObject::deleteLater);
        std::vector<std::unique_ptr<ImageDownloader>> downloads;
        for (int i = 0; i < kDownloaded; ++i) {
            const QString name = QStringLiteral("bench%1_%2.png").arg(round).arg(i);
            downloads.emplace_back(new ImageDownloader(folder + QLatin1Char('/') + name, server.origin() + name));
            downloads.back()->start(manager);
        }
        auto finished = [&] {
            return std::all_of(downloads.cbegin(), downloads.cend(), [](const auto& d) { return d->isFinished(); });
        };
        while (!finished())
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
        state.SetIterationTime(clock.elapsed() / 1000.0);
        longestGap = qMax(longestGap, gaps.longest());
        longestBusy = qMax(longestBusy, gaps.longestBusyMs());
    }
    QDir(folder).removeRecursively();
    state.counters["longest_gap_ms"] = double(longestGap);
    state.counters["longest_busy_ms"] = longestBusy;
}
BENCHMARK(BM_HelpPage_DownloadsOnly)->Name("BM_HelpPage/DownloadsOnly")->UseManualTime()->Unit(benchmark::kMillisecond)->Iterations(5);

} // namespace
