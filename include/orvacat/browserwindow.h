#ifndef ORVACAT_BROWSERWINDOW_H
#define ORVACAT_BROWSERWINDOW_H

/**
 * @file
 * BrowserWindow, the dialog that shows an online page and falls back to
 * local content.
 */

#include <orvacat/orvacat_export.h>

#include <QDialog>
#include <QPointer>
#include <QUrl>

class HtmlTextBrowser;
class QNetworkAccessManager;
class QNetworkReply;
class QTimer;

/**
 * A dialog that fetches one URL and shows the HTML it returns. A network
 * error, no answer within 10 seconds (the request is then aborted), or a
 * body containing "Fail to get help content" calls fallbackOffline()
 * instead, which subclasses override to show local content. Bodies larger
 * than maxContentSize() are cut off and count as a network error, and so
 * does a body sent compressed though it was asked for unencoded, and so
 * does a page nested deeper than the view lays out (see HtmlTextBrowser::setText()).
 *
 * The window is application-modal and does not show itself.
 */
class ORVACAT_EXPORT BrowserWindow : public QDialog
{
    Q_OBJECT

public:
    /** An empty dialog with its view, ready to query; nothing is fetched before reload(). */
    explicit BrowserWindow(QWidget* parent = nullptr);
    ~BrowserWindow() override;

    /** Creates the network manager and the query timer; the constructor calls it, later calls do nothing. */
    void init();

    /** Makes @p url the current URL and queries it, dropping a request still pending. */
    void reload(const QUrl& url);
    /**
     * Queries the current URL again. A request still pending is aborted
     * first: only the latest one can change what the window shows.
     */
    void reload();

    /** The URL of the last reload(); empty before the first. */
    QUrl currentUrl() const;

    /** The view that shows the page. */
    HtmlTextBrowser* textBrowser() const;

    /** The largest page body accepted, in bytes. */
    static qint64 maxContentSize();

Q_SIGNALS:
    /** Emitted when the query times out; every pending reply aborts. */
    void sigAbortRequest();

protected:
    /** Issues the GET for the current URL with a 10000 ms timeout. */
    void query();

    /** What to show when no online content can be had; the base class shows nothing. */
    virtual void fallbackOffline();

private Q_SLOTS:
    void slotReceiveReply(QNetworkReply* reply);
    void slotQueryTimeout();

private:
    QUrl m_url;
    QNetworkAccessManager* m_manager = nullptr;
    QTimer* m_timer = nullptr;
    HtmlTextBrowser* m_textBrowser = nullptr;
    QPointer<QNetworkReply> m_reply; // the latest request, until it is handled
    QByteArray m_body; // what the latest request has read so far
};

#endif // ORVACAT_BROWSERWINDOW_H
