#ifndef ORVACAT_HELPWINDOW_H
#define ORVACAT_HELPWINDOW_H

/**
 * @file
 * HelpWindow, the help dialog, and HelpContext, which says what page it shows.
 */

#include <orvacat/browserwindow.h>
#include <orvacat/orvacat_export.h>

#include <QString>

/**
 * Which help page to show: the page @p link of @p section, in @p language,
 * with the offline copy under @p localHelpPath + "/" + language + "/" + link.
 */
struct ORVACAT_EXPORT HelpContext
{
    /** Three-letter help language code ("enu", "fra", ...). */
    QString language;
    /** Root of the offline help: one sub-folder per language code. */
    QString localHelpPath;
    /** The page, relative to a language folder. */
    QString link;
    /** The help section the page belongs to. */
    QString section;
    /** Help version. */
    QString version = QStringLiteral("1.0");
};

/**
 * The help dialog. The constructor asks the knowledge base for the page of
 * the context (a GET of "/cgi/knowledgebase/?action=findHelpFile&..." over
 * https on the knowledge-base host, every value percent-encoded so that a
 * server reads it as written);
 * when that fails it shows the page from the offline help folder of the
 * language, else of English ("enu"), else nothing. An offline page is read
 * only from a regular file of at most maxContentSize() bytes; its pictures
 * only from regular files under localHelpPath, and it downloads nothing.
 * An online page's pictures come from the knowledge-base host only
 * (see HtmlTextBrowser::setPageOrigin()).
 *
 * Languages without help of their own are mapped before use: "deu" to
 * "ger", "esn" to "spn", "fra" to "fre", and "dan", "sve", "hun", "trk",
 * "nor", "ptg", "ptb" and "tha" to "enu".
 *
 * The host sets the knowledge-base host once at start-up with
 * setKnowledgeBaseHost(), before the first HelpWindow is built.
 */
class ORVACAT_EXPORT HelpWindow : public BrowserWindow
{
    Q_OBJECT

public:
    /** Copies @p context, maps its language and starts the online query. */
    explicit HelpWindow(const HelpContext& context, QWidget* parent = nullptr);
    ~HelpWindow() override;

    /** Queries the knowledge base again for the page of the context. */
    void retrieveHelpContent();

    /** The context in use, its language already mapped. */
    HelpContext helpContext() const;

    /** The language folder the offline page was last read from; empty before. */
    QString offlineFolder() const;

    /**
     * The knowledge-base host that help queries go to, over "https". The
     * default is "kb.orvana.example", a name that never resolves: until the
     * host application sets its own, every query fails at once and the
     * offline help is shown. An empty @p host restores the default. @p port
     * is for test servers; -1 (or any value outside 1..65535) means the
     * scheme's default port.
     */
    static void setKnowledgeBaseHost(const QString& host, int port = -1);
    /** The host set with setKnowledgeBaseHost(), or the default when none was. */
    static QString knowledgeBaseHost();
    /** The port set with the host; -1 for the scheme's default. */
    static int knowledgeBasePort();

    /** The help language used for @p language (see the class description). */
    static QString helpLanguage(const QString& language);

protected:
    /** Shows the page from the offline help folder. */
    void fallbackOffline() override;

private:
    HelpContext m_context;
    QString m_offlineFolder;
};

#endif // ORVACAT_HELPWINDOW_H
