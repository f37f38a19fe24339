#include <orvacat/htmltextbrowser.h>

#include "helpimagecache_p.h"
#include "helppagebounds_p.h"

#include <orvacat/globals.h>

#include <QBuffer>
#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>
#include <QImageReader>
#include <QNetworkAccessManager>
#include <QPixmap>
#include <QPixmapCache>
#include <QPointer>
#include <QSet>
#include <QTextBlock>
#include <QTextDocument>
#include <QTimer>
#include <QUrl>

#include <algorithm>

namespace {

const QLatin1String kBaseTag("<base href=\"");
const QLatin1String kImageTag("<img");
const QLatin1String kSource("src=\"");
const QLatin1Char kQuote('"');

const int kMaxPagePictures = 256;
const int kRelayoutIntervalMs = 50;
const int kDecodeBudgetMs = 25;

// A picture is decoded whole: its declared size, not its file size, decides the memory it takes.
const int kMaxImageSide = 8192;
const qint64 kMaxImagePixels = qint64(32) * 1024 * 1024;

bool isWebScheme(const QString& scheme)
{
    return scheme == QLatin1String("http") || scheme == QLatin1String("https");
}

// Loaded once: a page asks for each of its pictures before they arrive.
QPixmap missingPicture()
{
    const QString name = QStringLiteral(":/qt-project.org/styles/commonstyle/images/file-16.png");
    QPixmap picture;
    if (!QPixmapCache::find(name, &picture) && picture.load(name))
        QPixmapCache::insert(name, picture);
    return picture;
}

bool isInside(const QString& path, const QString& folder)
{
    return !folder.isEmpty() && (path == folder || path.startsWith(folder.endsWith(QLatin1Char('/')) ? folder : folder + QLatin1Char('/')));
}

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
    // An offline page reads its pictures from its folder, never from the network.
    if (m_pageOrigin.isLocalFile()) {
        QTextBrowser::setText(text);
        return;
    }
    const QString allowedHost = isWebScheme(m_pageOrigin.scheme()) ? m_pageOrigin.host() : QUrl(m_baseUrl).host();

    if (!HelpImageCache::prepare()) {
        QTextBrowser::setText(text);
        return;
    }
    const QString imageFolder = HelpImageCache::folder();
    QStringList paths = searchPaths();
    paths.prepend(imageFolder);
    setSearchPaths(paths);

    QSet<QString> seen;
    int started = 0;
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
        // Every download holds memory, a file and, while it runs, a socket:
        // a page naming thousands of pictures must not take them all.
        if (started == kMaxPagePictures) {
            qCWarning(debug_message) << "Help page names more than" << kMaxPagePictures << "pictures, the others are not downloaded";
            break;
        }

        const QString fileName = value.mid(value.lastIndexOf(QLatin1Char('/')) + 1);
        if (!HelpImageCache::isSafeFileName(fileName)) {
            qCWarning(debug_message) << "Help image source names no file, skipped:" << value;
            continue;
        }
        const QString localPath = imageFolder + QLatin1String("/../image/") + fileName;
        const QString url = m_baseUrl + value;
        // The page names the address; only the host it came from may answer.
        const QUrl parsed(url, QUrl::TolerantMode);
        if (!isWebScheme(parsed.scheme()) || !parsed.userInfo().isEmpty() || parsed.host().isEmpty()
            || parsed.host().compare(allowedHost, Qt::CaseInsensitive) != 0) {
            qCWarning(debug_message) << "Help image refused, it does not come from the page's host:" << url;
            continue;
        }
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
        m_sources.insert(url, value);
        ++started;
        downloader->start(m_manager);
    }

    QTextBrowser::setText(text);
}

void HtmlTextBrowser::setPageOrigin(const QUrl& origin)
{
    m_pageOrigin = origin;
}

QUrl HtmlTextBrowser::pageOrigin() const
{
    return m_pageOrigin;
}

QVariant HtmlTextBrowser::loadResource(int type, const QUrl& name)
{
    // What is not served here must still not come back empty: the document
    // would then open the name itself as a path, relative to the working
    // folder or absolute, pipes included. A picture gets Qt's own sign for
    // a missing one.
    const QVariant refused = type == QTextDocument::ImageResource ? QVariant(missingPicture()) : QVariant(QByteArray(""));
    if (name.scheme() == QLatin1String("qrc"))
        return QTextBrowser::loadResource(type, name);
    if (name.scheme() == QLatin1String("data")) {
        const QString path = name.path(QUrl::FullyEncoded);
        const int comma = path.indexOf(QLatin1Char(','));
        const QByteArray payload = QByteArray::fromPercentEncoding(path.mid(comma + 1).toLatin1());
        const QByteArray data = path.left(comma).endsWith(QLatin1String(";base64")) ? QByteArray::fromBase64(payload) : payload;
        return type != QTextDocument::ImageResource || isAcceptableImage(data, QStringLiteral("data:")) ? QVariant(data) : refused;
    }
    const QUrl resolved = name.isRelative() && source().isLocalFile() ? source().resolved(name) : name;
    const QString fileName = resolved.isLocalFile() ? resolved.toLocalFile()
                                                    : resolved.scheme().isEmpty() ? resolved.path() : QString();
    if (fileName.isEmpty())
        return refused;
    QStringList candidates{fileName};
    if (QFileInfo(fileName).isRelative()) {
        candidates.clear();
        for (const QString& folder : searchPaths())
            candidates << folder + QLatin1Char('/') + fileName;
    }
    // A page from outside reads only inside its folder, or inside the search
    // paths (the picture cache among them); the host's own pages anywhere.
    QStringList roots;
    if (m_pageOrigin.isLocalFile())
        roots << m_pageOrigin.toLocalFile();
    else if (!m_pageOrigin.isEmpty())
        roots = searchPaths();
    for (QString& root : roots)
        root = QFileInfo(root).canonicalFilePath();
    for (const QString& candidate : qAsConst(candidates)) {
        const QFileInfo info(candidate);
        if (!info.exists())
            continue;
        const QString path = info.canonicalFilePath();
        // A pipe or a device would block the GUI or never end.
        const bool allowed = info.isFile() && (m_pageOrigin.isEmpty() || std::any_of(roots.cbegin(), roots.cend(), [&](const QString& root) { return isInside(path, root); }));
        if (!allowed) {
            qCWarning(debug_message) << "Help resource refused, not a file of the page's folder:" << candidate;
            return refused;
        }
        if (type != QTextDocument::ImageResource)
            return QTextBrowser::loadResource(type, QUrl::fromLocalFile(path));
        QFile file(path);
        const QByteArray data = file.open(QIODevice::ReadOnly) ? file.read(ImageDownloader::maxImageSize() + 1) : QByteArray();
        return isAcceptableImage(data, candidate) ? QVariant(data) : refused;
    }
    return refused;
}

bool HtmlTextBrowser::isAcceptableImage(const QByteArray& data, const QString& where)
{
    if (data.size() > ImageDownloader::maxImageSize()) {
        qCWarning(debug_message) << "Help image too large, not shown:" << where;
        return false;
    }
    QBuffer buffer;
    buffer.setData(data);
    const QSize declared = QImageReader(&buffer).size();
    if (declared.width() > kMaxImageSide || declared.height() > kMaxImageSide
        || qint64(declared.width()) * declared.height() > kMaxImagePixels) {
        qCWarning(debug_message) << "Help image declares too many pixels, not shown:" << where << declared;
        return false;
    }
    return true;
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
    // The page asked for the picture before it was there: it is handed over
    // later, under the name the page gives it.
    const QString pageSource = m_sources.take(url);
    if (finished && res == 0 && !pageSource.isEmpty())
        m_arrived.append({pageSource, finished->localPath()});
    // A relayout of a page with hundreds of pictures takes tens of
    // milliseconds: the pictures that arrive within one interval share one.
    if (!m_relayoutPending) {
        m_relayoutPending = true;
        QTimer::singleShot(kRelayoutIntervalMs, this, &HtmlTextBrowser::showArrivedPictures);
    }
}

void HtmlTextBrowser::showArrivedPictures()
{
    m_relayoutPending = false;
    // Decoding is the costly part: a burst of arrivals is spread over several
    // turns of the event loop, each within a budget.
    QElapsedTimer clock;
    clock.start();
    QSet<QString> shown;
    while (!m_arrived.isEmpty() && clock.elapsed() < kDecodeBudgetMs) {
        const QPair<QString, QString> arrived = m_arrived.takeFirst();
        QFile file(arrived.second);
        const QByteArray data = QFileInfo(file.fileName()).isFile() && file.open(QIODevice::ReadOnly)
            ? file.read(ImageDownloader::maxImageSize() + 1) : QByteArray();
        // Decoded once here: handed over as bytes, it would be decoded again
        // at every layout and paint.
        QPixmap picture;
        if (isAcceptableImage(data, arrived.second) && picture.loadFromData(data)) {
            document()->addResource(QTextDocument::ImageResource, QUrl(arrived.first), picture);
            shown.insert(arrived.first);
        }
    }
    // Without a source, reload() leaves the laid-out page alone. Only the
    // stretch that holds the new pictures is laid out again: the whole page
    // would cost as much again as the pictures themselves.
    int first = -1, last = -1;
    for (QTextBlock block = document()->begin(); block.isValid() && !shown.isEmpty(); block = block.next()) {
        for (QTextBlock::iterator it = block.begin(); !it.atEnd(); ++it) {
            const QTextCharFormat format = it.fragment().charFormat();
            if (format.isImageFormat() && shown.contains(format.toImageFormat().name())) {
                first = first < 0 ? it.fragment().position() : first;
                last = it.fragment().position() + it.fragment().length();
            }
        }
    }
    if (first >= 0)
        document()->markContentsDirty(first, last - first);
    viewport()->update();
    if (!m_arrived.isEmpty()) {
        m_relayoutPending = true;
        QTimer::singleShot(0, this, &HtmlTextBrowser::showArrivedPictures);
    }
}
