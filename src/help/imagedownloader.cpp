#include <orvacat/htmltextbrowser.h>

#include "helpimagecache_p.h"

#include <orvacat/globals.h>

#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QNetworkRequest>
#include <QTimer>
#include <QUrl>

namespace {

const qint64 kReadChunk = 64 * 1024;
const int kTimeoutMs = 10000;

} // namespace

ImageDownloader::ImageDownloader(const QString& localPath, const QString& url, QObject* parent)
    : QObject(parent)
    , m_localPath(localPath)
    , m_url(url)
{
}

ImageDownloader::~ImageDownloader()
{
    // A download given up frees its place for the others of the manager.
    if (m_reply && !m_finished) {
        m_reply->disconnect(this);
        m_reply->abort();
        m_reply->deleteLater();
    }
}

void ImageDownloader::start()
{
    // Deleted later: the manager may still be delivering the reply when the last user goes.
    start(QSharedPointer<QNetworkAccessManager>(new QNetworkAccessManager, &QObject::deleteLater));
}

void ImageDownloader::start(const QSharedPointer<QNetworkAccessManager>& manager)
{
    if (m_manager || !manager)
        return;
    m_manager = manager;
    const QUrl url(m_url, QUrl::TolerantMode);
    // Other schemes read files, pipes and data the page has no business with.
    if (url.scheme() != QLatin1String("http") && url.scheme() != QLatin1String("https")) {
        qCWarning(debug_message) << "Help image refused, only http and https are fetched:" << m_url;
        QTimer::singleShot(0, this, [this] {
            m_finished = true;
            Q_EMIT sigDownloadFinish(m_url, m_result);
        });
        return;
    }
    QNetworkRequest request(url);
    // Asked for, a compressed body reaches us as it is and counts at its
    // size; left to Qt, it would be inflated whole before any check.
    request.setRawHeader("Accept-Encoding", "identity");
    QNetworkReply* reply = m_manager->get(request);
    m_reply = reply;
    // What is buffered stays near the cap whatever the server sends and
    // however busy the GUI thread is.
    reply->setReadBufferSize(kReadChunk);
    connect(reply, &QNetworkReply::readyRead, this, [this, reply] {
        if (!reply->isOpen())
            return;
        m_data += reply->read(maxImageSize() + 1 - m_data.size());
        if (m_data.size() > maxImageSize() && !reply->isFinished()) {
            qCWarning(debug_message) << "Help image too large, download stopped:" << reply->url().toString();
            m_data.clear();
            m_tooLarge = true;
            reply->abort();
        }
    });
    connect(reply, &QNetworkReply::finished, this, [this, reply] { slotFinishDownload(reply); });
    // A server that never answers would keep the connection for ever.
    QTimer::singleShot(kTimeoutMs, reply, [reply] {
        if (reply->isFinished())
            return;
        qCWarning(debug_message) << "Help image not received in time, download stopped:" << reply->url().toString();
        reply->abort();
    });
}

bool ImageDownloader::isFinished() const
{
    return m_finished;
}

int ImageDownloader::result() const
{
    return m_result;
}

QString ImageDownloader::localPath() const
{
    return m_localPath;
}

QString ImageDownloader::url() const
{
    return m_url;
}

qint64 ImageDownloader::maxImageSize()
{
    return qint64(16) * 1024 * 1024;
}

void ImageDownloader::slotFinishDownload(QNetworkReply* reply)
{
    if (!reply || m_finished)
        return;
    reply->deleteLater();
    if (!m_tooLarge && reply->isOpen())
        m_data += reply->read(maxImageSize() + 1 - m_data.size());
    const QByteArray encoding = reply->rawHeader("Content-Encoding").trimmed().toLower();
    const bool tooLarge = m_tooLarge || m_data.size() > maxImageSize();
    if (tooLarge)
        qCWarning(debug_message) << "Help image too large, not written:" << reply->url().toString();
    else if (!encoding.isEmpty() && encoding != "identity")
        qCWarning(debug_message) << "Help image sent encoded though it was asked for as it is, not written:" << reply->url().toString();
    if (reply->error() == QNetworkReply::NoError && !tooLarge && (encoding.isEmpty() || encoding == "identity")) {
        // An unwritable file still counts as a download: the page just lacks the picture.
        HelpImageCache::writeFile(m_localPath, m_data);
        m_result = 0;
    } else {
        m_result = -1;
    }
    m_data = QByteArray();
    m_finished = true;
    Q_EMIT sigDownloadFinish(m_url, m_result);
}
