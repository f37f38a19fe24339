#include <orvacat/htmltextbrowser.h>

#include "helpimagecache_p.h"
#include "helppagebounds_p.h"

#include <orvacat/globals.h>

#include <QAbstractTextDocumentLayout>
#include <QBuffer>
#include <QFile>
#include <QFileInfo>
#include <QGuiApplication>
#include <QImageReader>
#include <QNetworkAccessManager>
#include <QPainter>
#include <QPixmap>
#include <QPixmapCache>
#include <QPointer>
#include <QScreen>
#include <QScrollBar>
#include <QSet>
#include <QTextBlock>
#include <QTextLayout>
#include <QTextDocument>
#include <QTextObjectInterface>
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
const int kRelayoutDelayMs = 250; // for pictures out of sight
// Twice the connections the manager opens to a server: each connection has
// its next request waiting, and no request is made long before it is sent.
const int kRequestsAhead = 12;

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

// The size the picture's header declares, read without decoding it; invalid
// when the header names none. False, with a warning, when the picture takes
// too many bytes or declares too many pixels.
bool isAcceptableImage(QIODevice* device, qint64 bytes, const QString& where, QSize* declared = nullptr)
{
    if (bytes > ImageDownloader::maxImageSize()) {
        qCWarning(debug_message) << "Help image too large, not shown:" << where;
        return false;
    }
    const QSize size = QImageReader(device).size();
    if (size.width() > kMaxImageSide || size.height() > kMaxImageSide || qint64(size.width()) * size.height() > kMaxImagePixels) {
        qCWarning(debug_message) << "Help image declares too many pixels, not shown:" << where << size;
        return false;
    }
    if (declared)
        *declared = size;
    return true;
}

bool isAcceptableImage(const QByteArray& data, const QString& where)
{
    QBuffer buffer;
    buffer.setData(data);
    return buffer.open(QIODevice::ReadOnly) && isAcceptableImage(&buffer, data.size(), where);
}

QPixmap decodedPicture(const QString& path)
{
    QFile file(path);
    const QByteArray data = QFileInfo(path).isFile() && file.open(QIODevice::ReadOnly) ? file.read(ImageDownloader::maxImageSize() + 1) : QByteArray();
    QPixmap picture;
    return isAcceptableImage(data, path) && picture.loadFromData(data) ? picture : missingPicture();
}

} // namespace

/*
 * Decoding a picture costs far more than laying it out, and a page of
 * hundreds shows a few at a time. The downloaded pictures of a page are laid
 * out at the size their headers declare and decoded when first drawn; the
 * pictures still on their way take the place of the sign for a missing one.
 * Every other picture is left to the handler the layout came with.
 */
class HelpPictureHandler : public QObject, public QTextObjectInterface
{
    Q_OBJECT
    Q_INTERFACES(QTextObjectInterface)

public:
    HelpPictureHandler(QTextObjectInterface* fallback, QObject* parent)
        : QObject(parent)
        , m_fallback(fallback)
    {
    }

    void clear() { m_pictures.clear(); }
    void expect(const QString& source) { m_pictures.insert(source, {QString(), missingPicture().size()}); }
    void arrived(const QString& source, const QString& file, QSize size) { m_pictures.insert(source, {file, size}); }
    void forget(const QString& source) { m_pictures.remove(source); }

    QSizeF intrinsicSize(QTextDocument* document, int position, const QTextFormat& format) override
    {
        const QTextImageFormat image = format.toImageFormat();
        const auto picture = m_pictures.constFind(image.name());
        if (picture == m_pictures.cend())
            return m_fallback->intrinsicSize(document, position, format);
        // As the fallback sizes a picture: a width or a height the page gives
        // wins, keeping the proportions, and the whole is scaled from the
        // primary screen's resolution to the view's.
        const QSize natural = picture->size;
        const bool hasWidth = image.hasProperty(QTextFormat::ImageWidth), hasHeight = image.hasProperty(QTextFormat::ImageHeight);
        const int width = qRound(image.width()), height = qRound(image.height());
        QSize size(hasWidth ? width : natural.width(), hasHeight ? height : natural.height());
        if (hasHeight && !hasWidth && natural.height() > 0)
            size.setWidth(qRound(height * (natural.width() / qreal(natural.height()))));
        if (hasWidth && !hasHeight && natural.width() > 0)
            size.setHeight(qRound(width * (natural.height() / qreal(natural.width()))));
        if (const QPaintDevice* device = document->documentLayout()->paintDevice()) {
            const QScreen* screen = QGuiApplication::primaryScreen();
            const int standardDpi = QCoreApplication::testAttribute(Qt::AA_Use96Dpi) ? 96 : screen ? qRound(screen->logicalDotsPerInchY()) : 100;
            size *= qreal(device->logicalDpiY()) / standardDpi;
        }
        return size;
    }

    void drawObject(QPainter* painter, const QRectF& rect, QTextDocument* document, int position, const QTextFormat& format) override
    {
        const QString name = format.toImageFormat().name();
        const auto picture = m_pictures.find(name);
        if (picture != m_pictures.end() && picture->file.isEmpty()) {
            const QPixmap missing = missingPicture();
            painter->drawPixmap(rect, missing, missing.rect());
            return;
        }
        if (picture != m_pictures.end()) {
            const QSize declared = picture->size;
            const QPixmap decoded = decodedPicture(picture->file);
            m_pictures.erase(picture);
            document->addResource(QTextDocument::ImageResource, QUrl(name), decoded);
            // A header that lied: lay the picture out again, once the painting is over.
            if (decoded.size() != declared) {
                QPointer<QTextDocument> guarded(document);
                QTimer::singleShot(0, this, [guarded, position] {
                    if (guarded && position < guarded->characterCount())
                        guarded->markContentsDirty(position, 1);
                });
            }
        }
        m_fallback->drawObject(painter, rect, document, position, format);
    }

private:
    struct Picture
    {
        QString file; // empty while it is on its way
        QSize size;
    };
    QTextObjectInterface* m_fallback;
    QHash<QString, Picture> m_pictures; // by the page's name for the picture
};

HtmlTextBrowser::HtmlTextBrowser(QWidget* parent)
    : QTextBrowser(parent)
{
}

HtmlTextBrowser::~HtmlTextBrowser()
{
    // Started, the downloads finish and release themselves without the view.
    startWaitingDownloads(m_waiting.size());
}

void HtmlTextBrowser::startWaitingDownloads(int count)
{
    while (count > 0 && !m_waiting.isEmpty()) {
        if (ImageDownloader* downloader = m_waiting.takeFirst()) {
            downloader->start(m_manager);
            --count;
        }
    }
}

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
    // The pictures still on their way belong to the page this text replaces;
    // those not asked for yet are not asked for at all.
    for (ImageDownloader* downloader : qAsConst(m_waiting)) {
        if (downloader && m_downloads.value(downloader->url()) == downloader)
            m_downloads.remove(downloader->url());
        delete downloader; // never started: nothing to wait for
    }
    m_waiting.clear();
    m_sources.clear();
    m_arrived.clear();
    m_unsettled.clear();
    if (m_pictureHandler)
        m_pictureHandler->clear();
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
    QAbstractTextDocumentLayout* layout = document()->documentLayout();
    if (!m_pictureHandler || m_pictureHandler->parent() != layout) {
        // A layout of the host's own without a picture handler reads the pictures itself.
        if (QTextObjectInterface* fallback = layout->handlerForObject(QTextFormat::ImageObject)) {
            m_pictureHandler = new HelpPictureHandler(fallback, layout);
            layout->registerHandler(QTextFormat::ImageObject, m_pictureHandler);
        }
    }
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
        if (m_pictureHandler)
            m_pictureHandler->expect(value);
        ++started;
        m_waiting.append(downloader);
    }
    // Making a request costs about as much as handling its answer: made as
    // the answers come, they are spread over the load instead of holding up
    // the first layout.
    startWaitingDownloads(kRequestsAhead);

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

void HtmlTextBrowser::slotDownloadFinished(QString url, int res)
{
    ImageDownloader* stored = m_downloads.value(url);
    auto* finished = qobject_cast<ImageDownloader*>(sender());
    if (!finished && stored && stored->isFinished())
        finished = stored;
    // The entry may already belong to a newer download of the same URL, still running.
    if (stored && stored == finished)
        m_downloads.remove(url);
    if (finished)
        finished->deleteLater();
    if (qobject_cast<ImageDownloader*>(sender()))
        startWaitingDownloads(1);
    // The page asked for the picture before it was there: it is handed over
    // later, under the name the page gives it; a failed one as missing.
    const QString pageSource = stored == finished ? m_sources.take(url) : QString();
    if (finished && !pageSource.isEmpty())
        m_arrived.append({pageSource, res == 0 ? finished->localPath() : QString()});
    // A relayout of a page with hundreds of pictures takes tens of
    // milliseconds: the pictures that arrive within one interval share one.
    // The first after a pause and the last of the page are handed over at once.
    const bool last = m_sources.isEmpty() && !m_arrived.isEmpty();
    if (!m_relayoutPending || last) {
        m_relayoutPending = true;
        const qint64 since = m_lastHandOver.isValid() ? m_lastHandOver.elapsed() : kRelayoutIntervalMs;
        QTimer::singleShot(last ? 0 : int(qBound(qint64(0), kRelayoutIntervalMs - since, qint64(kRelayoutIntervalMs))), this,
                           &HtmlTextBrowser::showArrivedPictures);
    }
}

void HtmlTextBrowser::showArrivedPictures()
{
    m_relayoutPending = false;
    m_lastHandOver.start();
    if (m_unsettled.isEmpty())
        m_unsettledSince.start();
    for (const QPair<QString, QString>& arrived : qAsConst(m_arrived)) {
        m_unsettled.insert(arrived.first);
        QFile file(arrived.second);
        QSize declared;
        const bool acceptable = !arrived.second.isEmpty() && QFileInfo(arrived.second).isFile() && file.open(QIODevice::ReadOnly)
            && isAcceptableImage(&file, file.size(), arrived.second, &declared);
        if (m_pictureHandler && acceptable && declared.isValid()) {
            m_pictureHandler->arrived(arrived.first, arrived.second, declared);
            continue;
        }
        if (m_pictureHandler)
            m_pictureHandler->forget(arrived.first);
        // The page asked for it before it was there and keeps the answer
        // unless given another: decoded as bytes, it would be decoded again
        // at every layout and paint.
        document()->addResource(QTextDocument::ImageResource, QUrl(arrived.first), acceptable ? decodedPicture(arrived.second) : missingPicture());
    }
    m_arrived.clear();
    // Without a source, reload() leaves the laid-out page alone. Only the
    // stretch that holds the new pictures is laid out again, and only where
    // it was laid out with their stand-ins: the rest takes them when the
    // layout gets there.
    const qreal bottom = verticalScrollBar()->value() + viewport()->height();
    int first = -1, last = -1;
    bool inSight = false;
    for (QTextBlock block = document()->begin(); block.isValid() && !m_unsettled.isEmpty(); block = block.next()) {
        if (!block.layout() || block.layout()->lineCount() == 0)
            continue;
        for (QTextBlock::iterator it = block.begin(); !it.atEnd(); ++it) {
            const QTextCharFormat format = it.fragment().charFormat();
            if (format.isImageFormat() && m_unsettled.contains(format.toImageFormat().name())) {
                first = first < 0 ? it.fragment().position() : first;
                last = it.fragment().position() + it.fragment().length();
                inSight = inSight || block.layout()->position().y() < bottom;
            }
        }
    }
    // Laying a long stretch out again costs about as much as laying it out
    // first: out of sight, while more pictures are on their way, it waits
    // for them a while.
    if (first >= 0 && !inSight && !m_sources.isEmpty() && m_unsettledSince.elapsed() < kRelayoutDelayMs) {
        m_relayoutPending = true;
        QTimer::singleShot(kRelayoutIntervalMs, this, &HtmlTextBrowser::showArrivedPictures);
        return;
    }
    m_unsettled.clear();
    if (first >= 0)
        document()->markContentsDirty(first, last - first);
    viewport()->update();
}

#include "htmltextbrowser.moc"
