#ifndef ORVACAT_HTMLTEXTBROWSER_H
#define ORVACAT_HTMLTEXTBROWSER_H

/**
 * @file
 * HtmlTextBrowser, the view of the help pages, and ImageDownloader, which
 * fetches their pictures into the cache.
 */

#include <orvacat/orvacat_export.h>

#include <QElapsedTimer>
#include <QMap>
#include <QObject>
#include <QPointer>
#include <QSet>
#include <QSharedPointer>
#include <QString>
#include <QTextBrowser>
#include <QUrl>

class HelpPictureHandler;
class QNetworkAccessManager;
class QNetworkReply;

/**
 * Fetches one URL into one local file with a plain GET, through a network
 * manager of its own or one shared with other downloads.
 *
 * The file is written only after a reply without network error, and never
 * through a symbolic link: a link planted at the local path is left alone
 * (the download then still counts as a success, with nothing written).
 * Inside the help image cache (see HtmlTextBrowser) the cache folders must
 * also belong to the current user. Bodies larger than maxImageSize() are
 * cut off and reported as a failed download, and so are downloads that have
 * not finished 10 seconds after start(). Only http and https are fetched;
 * the body is asked for unencoded, and one sent compressed all the same
 * fails: compressed bytes could not be bounded before Qt inflates them.
 */
class ORVACAT_EXPORT ImageDownloader : public QObject
{
    Q_OBJECT

public:
    /** Stores @p localPath and @p url; starts nothing. */
    ImageDownloader(const QString& localPath, const QString& url, QObject* parent = nullptr);
    ~ImageDownloader() override;

    /** Issues the GET through a network manager of its own. A second start does nothing. */
    void start();
    /**
     * Issues the GET through @p manager, shared with other downloads: it
     * runs a few requests per server at a time and queues the others. The
     * manager lives as long as one of its users holds it.
     */
    void start(const QSharedPointer<QNetworkAccessManager>& manager);

    /** True once the reply has been handled and sigDownloadFinish emitted. */
    bool isFinished() const;

    /** 0 after a reply without network error, -1 after an error; -1 before isFinished(). */
    int result() const;

    /** The file the body is written to, as given to the constructor. */
    QString localPath() const;
    /** The URL fetched, as given to the constructor. */
    QString url() const;

    /** The largest image body accepted, in bytes. */
    static qint64 maxImageSize();

Q_SIGNALS:
    /** The reply for @p url was handled; @p res as result(). */
    void sigDownloadFinish(QString url, int res);

private Q_SLOTS:
    void slotFinishDownload(QNetworkReply* reply);

private:
    QString m_localPath;
    QString m_url;
    QSharedPointer<QNetworkAccessManager> m_manager;
    QPointer<QNetworkReply> m_reply;
    QByteArray m_data; // the body read so far
    bool m_tooLarge = false;
    bool m_finished = false;
    int m_result = -1;
};

/**
 * The rich-text view of the help and browser windows. When setText() gets
 * HTML carrying a base tag (\<base href="..."\>), every distinct image source
 * of the page is downloaded from base URL + source into the cache folder
 * QDir::tempPath() + "/orvana_help/image", which is put in front of the
 * search paths. The pictures take their place as they arrive, laid out at
 * the size their headers declare (the arrivals of 50 ms share one layout),
 * and each is decoded when it is first drawn. The downloads of a view share
 * one network manager, which fetches at most six at a time from a server;
 * the view asks for twelve at a time, the next as each one ends, and a page
 * starts at most 256 downloads (the others are skipped with one warning).
 * Those running or waiting when the view goes finish on their own; those of
 * a page not asked for yet when the next setText() comes are dropped. A page
 * refers to a cached picture as "../image/" followed by its file name.
 *
 * The cache folders are created private to the user. If one of them is a
 * symbolic link or belongs to someone else, nothing is downloaded and the
 * page is shown as given. A source whose file name cannot name a file in the
 * cache (empty, "." or "..") is skipped.
 */
class ORVACAT_EXPORT HtmlTextBrowser : public QTextBrowser
{
    Q_OBJECT

public:
    /** An empty view without a base URL; nothing is downloaded before setText(). */
    explicit HtmlTextBrowser(QWidget* parent = nullptr);
    ~HtmlTextBrowser() override;

    /**
     * Shows @p text (rich or plain, as Qt::mightBeRichText decides) and, for
     * HTML with a base tag, starts the image downloads. Hides
     * QTextEdit::setText(); the text is shown unchanged, base tag included.
     *
     * HTML that nests more than 10 tables or 256 elements (void elements and
     * those whose end tag may be left out aside) would take the layout
     * minutes or the stack: it is shown as plain text without its tags,
     * with a warning, and starts no download.
     */
    void setText(const QString& text);

    /**
     * Where the next pages come from, which decides what their pictures may
     * read. An http or https URL (a window sets its page's own): pictures are
     * downloaded over http or https from that host only, and local files are
     * read only from inside the search paths (the picture cache among them).
     * A local folder (QUrl::fromLocalFile, an offline help folder): nothing is
     * downloaded, and local files are read only from inside that folder.
     * Empty, the default, for a host's own text: pictures come over http or
     * https from the base tag's own host, local files from anywhere. Whatever
     * the origin, other addresses are refused with a warning and only
     * regular files are read, never pipes or devices.
     */
    void setPageOrigin(const QUrl& origin);
    /** The origin set with setPageOrigin(); empty before. */
    QUrl pageOrigin() const;

    /** The value of the last base tag seen; empty before the first. */
    QString baseUrl() const;

    /** The downloads still pending, by URL. */
    QMap<QString, ImageDownloader*> pendingDownloads() const;

    /** The image cache folder under the current temporary folder. */
    static QString imageCacheFolder();

protected:
    /**
     * Reads a page's resources within the bounds of setPageOrigin(). A
     * picture larger than ImageDownloader::maxImageSize() or declaring more
     * than 8192 pixels a side or 32 megapixels is refused with a warning and
     * shown as missing.
     */
    QVariant loadResource(int type, const QUrl& name) override;

protected Q_SLOTS:
    /**
     * A download for @p url finished: forgets and releases it, asks for the
     * next picture waiting, and gives the page its picture (a failed one
     * shows as missing): at once after a pause and for the page's last,
     * else with those that finish within 50 ms of the previous hand-over.
     * The page is laid out again where it changed in sight at once; out of
     * sight, while more pictures are on their way, within 250 ms.
     * A table entry that is missing or belongs to a newer download of the
     * same URL is left alone.
     */
    void slotDownloadFinished(QString url, int res);

private:
    void showArrivedPictures();
    void startWaitingDownloads(int count);

    QString m_baseUrl;
    QUrl m_pageOrigin;
    QMap<QString, QString> m_sources; // the page's image source of each pending download, by URL
    QList<QPair<QString, QString>> m_arrived; // pictures not yet handed to the page: its source, the file (empty: failed)
    QSet<QString> m_unsettled; // pictures handed over whose places still have the size of their stand-ins
    QElapsedTimer m_unsettledSince;
    QElapsedTimer m_lastHandOver;
    bool m_relayoutPending = false;
    QPointer<HelpPictureHandler> m_pictureHandler; // lays out and draws the downloaded pictures, owned by the layout
    QMap<QString, ImageDownloader*> m_downloads;
    QList<QPointer<ImageDownloader>> m_waiting; // not started yet, in page order
    QSharedPointer<QNetworkAccessManager> m_manager;
};

#endif // ORVACAT_HTMLTEXTBROWSER_H
