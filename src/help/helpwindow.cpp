#include <orvacat/helpwindow.h>

#include <orvacat/globals.h>
#include <orvacat/htmltextbrowser.h>

#include <QFile>
#include <QFileInfo>
#include <QUrl>

#include <utility>

namespace {

struct KnowledgeBase
{
    QString host = QStringLiteral("kb.orvana.example");
    int port = -1;
};

KnowledgeBase& knowledgeBase()
{
    static KnowledgeBase instance;
    return instance;
}

} // namespace

HelpWindow::HelpWindow(const HelpContext& context, QWidget* parent)
    : BrowserWindow(parent)
    , m_context(context)
{
    m_context.language = helpLanguage(m_context.language);
    retrieveHelpContent();
}

HelpWindow::~HelpWindow() = default;

QString HelpWindow::helpLanguage(const QString& language)
{
    static const struct
    {
        const char* given;
        const char* used;
    } mapping[] = {
        {"deu", "ger"}, {"esn", "spn"}, {"fra", "fre"},
        // No help is written in these: English is shown instead.
        {"dan", "enu"}, {"sve", "enu"}, {"hun", "enu"}, {"trk", "enu"},
        {"nor", "enu"}, {"ptg", "enu"}, {"ptb", "enu"}, {"tha", "enu"},
    };
    for (const auto& entry : mapping) {
        if (language == QLatin1String(entry.given))
            return QString::fromLatin1(entry.used);
    }
    return language;
}

void HelpWindow::setKnowledgeBaseHost(const QString& host, int port)
{
    KnowledgeBase& base = knowledgeBase();
    base.host = host.isEmpty() ? KnowledgeBase().host : host;
    base.port = port >= 1 && port <= 65535 ? port : -1;
}

QString HelpWindow::knowledgeBaseHost()
{
    return knowledgeBase().host;
}

int HelpWindow::knowledgeBasePort()
{
    return knowledgeBase().port;
}

HelpContext HelpWindow::helpContext() const
{
    return m_context;
}

QString HelpWindow::offlineFolder() const
{
    return m_offlineFolder;
}

void HelpWindow::retrieveHelpContent()
{
    QUrl url;
    url.setScheme(QStringLiteral("https"));
    url.setHost(knowledgeBaseHost(), QUrl::TolerantMode);
    url.setPort(knowledgeBasePort());
    url.setPath(QStringLiteral("/cgi/knowledgebase/"), QUrl::TolerantMode);

    // Every value is percent-encoded here, as a form would send it: left to
    // QUrl, a '+' stays literal (the server reads a space) and "%41" is
    // taken as an escape, so the page asked for would not be the host's.
    const std::pair<const char*, QString> items[] = {
        {"action", QStringLiteral("findHelpFile")},
        {"section", m_context.section},
        {"lang", m_context.language},
        {"link", m_context.link},
        {"unique", QStringLiteral("orvana_utility_help")},
        {"version", m_context.version},
    };
    QByteArray query;
    for (const auto& item : items) {
        if (!query.isEmpty())
            query += '&';
        query += item.first + QByteArray("=") + QUrl::toPercentEncoding(item.second, "/");
    }
    url.setQuery(QString::fromLatin1(query), QUrl::StrictMode);

    reload(url);
}

void HelpWindow::fallbackOffline()
{
    // Only a regular file: a pipe or a device put in the folder would hang
    // the window or never end.
    QFile file;
    const auto open = [&](const QString& folder) {
        m_offlineFolder = folder;
        file.setFileName(m_offlineFolder + QLatin1Char('/') + m_context.link);
        return QFileInfo(file.fileName()).isFile() && file.open(QIODevice::ReadOnly);
    };
    if (!open(m_context.localHelpPath + QLatin1Char('/') + m_context.language)
        && !open(m_context.localHelpPath + QLatin1String("/enu")))
        return;
    const QByteArray page = file.read(maxContentSize() + 1);
    if (page.size() > maxContentSize()) {
        qCWarning(debug_message) << "Offline help page too large, not shown:" << file.fileName();
        return;
    }
    textBrowser()->setSearchPaths(QStringList{m_offlineFolder});
    textBrowser()->setPageOrigin(QUrl::fromLocalFile(m_context.localHelpPath));
    textBrowser()->setText(QString::fromUtf8(page));
}
