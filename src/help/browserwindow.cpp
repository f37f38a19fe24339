#include <orvacat/browserwindow.h>

#include "helppagebounds_p.h"

#include <orvacat/globals.h>
#include <orvacat/htmltextbrowser.h>
#include <orvacat/stylemanager.h>

#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QNetworkRequest>
#include <QTimer>
#include <QVBoxLayout>

#include <utility>

namespace {

const int kQueryTimeoutMs = 10000;
const qint64 kReadChunk = 64 * 1024;
const char* const kHelpErrorText = "Fail to get help content";

} // namespace

BrowserWindow::BrowserWindow(QWidget* parent)
    : QDialog(parent)
{
    m_textBrowser = new HtmlTextBrowser(this);
    m_textBrowser->setOpenExternalLinks(true);
    init();

    auto* layout = new QVBoxLayout(this);
    layout->addWidget(m_textBrowser);
    setLayout(layout);

    setWindowModality(Qt::ApplicationModal);
    setStyleSheet(getStyleSheet("component.scrollbar", false));
}

BrowserWindow::~BrowserWindow()
{
    // Deleting the manager takes the pending replies with it; none of them
    // may reach a window that is half destroyed.
    if (m_manager) {
        m_manager->disconnect(this);
        delete m_manager;
        m_manager = nullptr;
    }
    delete m_timer;
    m_timer = nullptr;
}

void BrowserWindow::init()
{
    if (m_manager)
        return;
    m_manager = new QNetworkAccessManager;
    connect(m_manager, &QNetworkAccessManager::finished, this, &BrowserWindow::slotReceiveReply);
    m_timer = new QTimer;
    m_timer->setSingleShot(true);
    connect(m_timer, &QTimer::timeout, this, &BrowserWindow::slotQueryTimeout);
}

void BrowserWindow::reload(const QUrl& url)
{
    m_url = url;
    reload();
}

void BrowserWindow::reload()
{
    m_timer->stop();
    m_timer->setInterval(0);
    query();
}

QUrl BrowserWindow::currentUrl() const
{
    return m_url;
}

HtmlTextBrowser* BrowserWindow::textBrowser() const
{
    return m_textBrowser;
}

qint64 BrowserWindow::maxContentSize()
{
    return qint64(4) * 1024 * 1024;
}

void BrowserWindow::query()
{
    // Only the latest request may change the page. The one it overtakes is
    // dropped now: answered or failed later, it would replace a good page.
    if (QNetworkReply* overtaken = m_reply) {
        m_reply = nullptr;
        overtaken->abort();
    }
    m_timer->start(kQueryTimeoutMs);
    m_body.clear();
    QNetworkRequest request(m_url);
    // Asked for, a compressed page reaches us as it is and counts at its
    // size; left to Qt, it would be inflated whole before any check.
    request.setRawHeader("Accept-Encoding", "identity");
    QNetworkReply* reply = m_manager->get(request);
    m_reply = reply;
    connect(this, &BrowserWindow::sigAbortRequest, reply, &QNetworkReply::abort);
    // A help page is small; an endless body would only fill the memory and
    // then freeze the view, so it is cut off and treated as unreachable.
    // Read as it comes, it never waits in Qt's buffers beyond a chunk.
    reply->setReadBufferSize(kReadChunk);
    connect(reply, &QNetworkReply::readyRead, this, [this, reply] {
        if (reply != m_reply || !reply->isOpen())
            return;
        m_body += reply->read(maxContentSize() + 1 - m_body.size());
        if (m_body.size() > maxContentSize() && !reply->isFinished()) {
            qCWarning(debug_message) << "Help content too large, request stopped:" << reply->url().toString();
            m_body.clear();
            reply->abort();
        }
    });
}

void BrowserWindow::fallbackOffline()
{
}

void BrowserWindow::slotReceiveReply(QNetworkReply* reply)
{
    if (!reply)
        return;
    reply->deleteLater();
    if (reply != m_reply)
        return;
    m_reply = nullptr;
    m_timer->stop();
    if (reply->error() != QNetworkReply::NoError) {
        fallbackOffline();
        return;
    }
    if (reply->isOpen())
        m_body += reply->read(maxContentSize() + 1 - m_body.size());
    const QByteArray body = std::exchange(m_body, QByteArray());
    const QByteArray encoding = reply->rawHeader("Content-Encoding").trimmed().toLower();
    if (body.size() > maxContentSize() || (!encoding.isEmpty() && encoding != "identity")) {
        qCWarning(debug_message) << "Help content too large or sent encoded, not shown:" << reply->url().toString();
        fallbackOffline();
        return;
    }
    // The text ends at the first NUL byte, as a C string would.
    const QString text = QString::fromUtf8(body.constData());
    if (text.contains(QLatin1String(kHelpErrorText))) {
        fallbackOffline();
        return;
    }
    if (HelpPageBounds::exceedsNesting(text)) {
        qCWarning(debug_message) << "Help content nested too deeply to be shown:" << reply->url().toString();
        fallbackOffline();
        return;
    }
    m_textBrowser->setPageOrigin(reply->url());
    m_textBrowser->setText(text);
}

void BrowserWindow::slotQueryTimeout()
{
    Q_EMIT sigAbortRequest();
}
