#include <orvacat/htmltextbrowser.h>

#include "helpimagecache_p.h"

#include <orvacat/globals.h>

#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QNetworkRequest>
#include <QUrl>

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
    QNetworkReply* reply = m_manager->get(QNetworkRequest(QUrl(m_url, QUrl::TolerantMode)));
    m_reply = reply;
    connect(reply, &QNetworkReply::finished, this, [this, reply] { slotFinishDownload(reply); });
    // A picture that never ends would otherwise fill the memory before it fails.
    connect(reply, &QNetworkReply::downloadProgress, reply, [reply](qint64 received, qint64 total) {
        if (!reply->isFinished() && (received > maxImageSize() || total > maxImageSize())) {
            qCWarning(debug_message) << "Help image too large, download stopped:" << reply->url().toString();
            reply->abort();
        }
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
    // On a fast link the whole body can arrive before a progress report
    // could stop it: check its size here as well.
    const bool tooLarge = reply->bytesAvailable() > maxImageSize();
    if (tooLarge)
        qCWarning(debug_message) << "Help image too large, not written:" << reply->url().toString();
    if (reply->error() == QNetworkReply::NoError && !tooLarge) {
        // An unwritable file still counts as a download: the page just lacks the picture.
        HelpImageCache::writeFile(m_localPath, reply->readAll());
        m_result = 0;
    } else {
        m_result = -1;
    }
    m_finished = true;
    Q_EMIT sigDownloadFinish(m_url, m_result);
}
