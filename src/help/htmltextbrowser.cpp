#include <orvacat/htmltextbrowser.h>

#include "helpimagecache_p.h"
#include "helppagebounds_p.h"

#include <orvacat/globals.h>

#include <QNetworkAccessManager>
#include <QPointer>
#include <QSet>
#include <QTextDocument>

namespace {

const QLatin1String kBaseTag("<base href=\"");
const QLatin1String kImageTag("<img");
const QLatin1String kSource("src=\"");
const QLatin1Char kQuote('"');

} // namespace

HtmlTextBrowser::HtmlTextBrowser(QWidget* parent)
    : QTextBrowser(parent)
{
}

HtmlTextBrowser::~HtmlTextBrowser() = default;

QString HtmlTextBrowser::baseUrl() const
{
    return m_baseUrl;
}

QMap<QString, ImageDownloader*> HtmlTextBrowser::pendingDownloads() const
{
    return m_downloads;
}

QString HtmlTextBrowser::imageCacheFolder()
{
    return HelpImageCache::folder();
}

void HtmlTextBrowser::setText(const QString& text)
{
    if (!Qt::mightBeRichText(text)) {
        QTextBrowser::setText(text);
        return;
    }
    if (HelpPageBounds::exceedsNesting(text)) {
        qCWarning(debug_message) << "HTML nested too deeply to be laid out, shown as plain text";
        setPlainText(HelpPageBounds::flattened(text));
        return;
    }
    const int start = text.indexOf(kBaseTag);
    const int end = start < 0 ? -1 : text.indexOf(kQuote, start + kBaseTag.size());
    if (end < 0) {
        QTextBrowser::setText(text);
        return;
    }
    m_baseUrl = text.mid(start + kBaseTag.size(), end - start - kBaseTag.size());

    if (!HelpImageCache::prepare()) {
        QTextBrowser::setText(text);
        return;
    }
    const QString imageFolder = HelpImageCache::folder();
    QStringList paths = searchPaths();
    paths.prepend(imageFolder);
    setSearchPaths(paths);

    QSet<QString> seen;
    int pos = end;
    while (true) {
        const int image = text.indexOf(kImageTag, pos);
        if (image < 0)
            break;
        const int source = text.indexOf(kSource, image);
        if (source < 0)
            break;
        pos = source;
        const int valueStart = source + kSource.size();
        const int valueEnd = text.indexOf(kQuote, valueStart);
        const QString value = valueEnd < 0 ? text.mid(valueStart) : text.mid(valueStart, valueEnd - valueStart);
        if (seen.contains(value))
            continue;
        seen.insert(value);

        const QString fileName = value.mid(value.lastIndexOf(QLatin1Char('/')) + 1);
        if (!HelpImageCache::isSafeFileName(fileName)) {
            qCWarning(debug_message) << "Help image source names no file, skipped:" << value;
            continue;
        }
        const QString localPath = imageFolder + QLatin1String("/../image/") + fileName;
        const QString url = m_baseUrl + value;
        // One manager for the page: it runs a few downloads per server at a
        // time and queues the rest, where a manager per picture would open
        // a thread and a connection for each at once.
        if (!m_manager)
            m_manager.reset(new QNetworkAccessManager, &QObject::deleteLater);
        auto* downloader = new ImageDownloader(localPath, url);
        connect(downloader, &ImageDownloader::sigDownloadFinish, this, &HtmlTextBrowser::slotDownloadFinished);
        // Once this view is gone nobody releases the downloader: it does so itself when done.
        QPointer<HtmlTextBrowser> view(this);
        connect(downloader, &ImageDownloader::sigDownloadFinish, downloader, [downloader, view] {
            if (!view)
                downloader->deleteLater();
        });
        m_downloads.insert(url, downloader);
        downloader->start(m_manager);
    }

    QTextBrowser::setText(text);
}

void HtmlTextBrowser::slotDownloadFinished(QString url, int res)
{
    Q_UNUSED(res)
    ImageDownloader* stored = m_downloads.value(url);
    auto* finished = qobject_cast<ImageDownloader*>(sender());
    if (!finished && stored && stored->isFinished())
        finished = stored;
    // The entry may already belong to a newer download of the same URL, still running.
    if (stored && stored == finished)
        m_downloads.remove(url);
    if (finished)
        finished->deleteLater();

    QTextBrowser::reload();
    // Without a source, reload() leaves the laid-out page alone; relaying it
    // out makes the images that are now on disk appear.
    if (source().isEmpty())
        document()->markContentsDirty(0, document()->characterCount());
    viewport()->update();
}
