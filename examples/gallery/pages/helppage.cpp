// Gallery page: the help window on the small offline help that ships with
// the default theme. The gallery has no knowledge base to ask: its host is
// pointed at a closed port of this computer, so the query fails at once and
// the offline page is shown.

#include "gallerypages.h"
#include "pagebuilding.h"

#include <orvacat/orvacat.h>

#include <QApplication>
#include <QAbstractItemView>
#include <QComboBox>
#include <QDir>
#include <QElapsedTimer>
#include <QHBoxLayout>
#include <QLabel>
#include <QPointer>
#include <QTcpServer>
#include <QTextDocument>
#include <QVBoxLayout>

namespace {

// A port of this computer that nothing listens on: the help query is refused
// at once instead of waiting for a name or a timeout.
int closedLocalPort()
{
    static int port = 0;
    if (port == 0) {
        QTcpServer probe;
        if (probe.listen(QHostAddress::LocalHost, 0))
            port = probe.serverPort();
        probe.close();
    }
    return port;
}

/**
 * The help pages carry colours of their own chosen for a light page (the
 * heading's blue, the tip's grey), which fall under 4.5:1 on a dark one: the
 * document keeps the light look's paper and ink in both looks.
 */
void showOnPaper(HelpWindow* help)
{
    auto* browser = help->findChild<HtmlTextBrowser*>();
    if (!browser)
        return;
    const auto light = [](const char* name) { return lookColour(QLatin1String(name), false).name(); };
    // A sheet, not a palette: a style sheet's polish puts back the palette it found.
    browser->setStyleSheet(QStringLiteral("HtmlTextBrowser { background: %1; color: %2; }").arg(light("card"), light("text")));
    browser->document()->setDefaultStyleSheet(QStringLiteral("a { color: %1; }").arg(light("link")));
}

/** Tells the page where the window took its content from. */
class GalleryHelpWindow : public HelpWindow
{
public:
    GalleryHelpWindow(const HelpContext& context, QLabel* status, QWidget* parent)
        : HelpWindow(context, parent)
        , m_status(status)
    {
    }

protected:
    void fallbackOffline() override
    {
        HelpWindow::fallbackOffline();
        if (!m_status)
            return;
        const bool shown = !textBrowser()->toPlainText().isEmpty();
        m_status->setText(shown ? QStringLiteral("Offline: no knowledge base answered, so the page comes from %1")
                                      .arg(QDir::toNativeSeparators(offlineFolder()))
                                : QStringLiteral("Offline, and no offline page was found."));
    }

private:
    QPointer<QLabel> m_status;
};

class HelpPage : public QWidget
{
public:
    HelpPage()
    {
        auto* intro = new QLabel(QStringLiteral(
            "The help window asks the knowledge base for a page first. No knowledge-base host answers in the "
            "gallery, so below you see the offline help shipped with the default theme, read from the folder "
            "of the chosen language (English when that language has no help of its own)."));
        intro->setWordWrap(true);

        m_language = new QComboBox;
        m_language->setObjectName(QStringLiteral("galleryHelpLanguage"));
        m_language->addItem(QStringLiteral("English (enu)"), QStringLiteral("enu"));
        m_language->addItem(QStringLiteral("German (deu, help folder \"ger\")"), QStringLiteral("deu"));
        m_language->addItem(QStringLiteral("Thai (tha, shown in English)"), QStringLiteral("tha"));

        auto* open = new OrvaButton(QStringLiteral("Open in a window"), 4);
        open->setMinimumWidth(px(120));

        m_status = new QLabel(QStringLiteral("Asking the knowledge base..."));
        m_status->setObjectName(QStringLiteral("galleryHelpStatus"));
        m_status->setStyleSheet(lookSheet(QStringLiteral("color: @quiet;")));
        m_status->setWordWrap(true);

        auto* controls = new QHBoxLayout;
        controls->setSpacing(px(10));
        auto* languageLabel = new QLabel(QStringLiteral("Help language"));
        languageLabel->setBuddy(m_language);
        // The box's popup list is met as a list of its own.
        m_language->view()->setAccessibleName(languageLabel->text());
        controls->addWidget(languageLabel);
        controls->addWidget(m_language);
        controls->addStretch(1);
        controls->addWidget(open);

        m_frame = new QWidget;
        m_frame->setObjectName(QStringLiteral("galleryHelpFrame"));
        m_frame->setAttribute(Qt::WA_StyledBackground);
        m_frame->setStyleSheet(lookSheet(QStringLiteral("#galleryHelpFrame { border: 1px solid @line; background: @card; }")));
        auto* frameLayout = new QVBoxLayout(m_frame);
        frameLayout->setContentsMargins(1, 1, 1, 1);

        auto* layout = pageLayout(this);
        layout->setSpacing(px(12));
        layout->addWidget(intro);
        layout->addLayout(controls);
        layout->addWidget(m_status);
        layout->addWidget(m_frame, 1);

        connect(m_language, QOverload<int>::of(&QComboBox::currentIndexChanged), this, [this] { showHelp(); });
        connect(open, &QPushButton::clicked, this, [this] {
            auto* window = new HelpWindow(context(), this);
            window->setAttribute(Qt::WA_DeleteOnClose);
            window->setWindowTitle(QStringLiteral("Help"));
            window->resize(px(520), px(420));
            showOnPaper(window);
            window->show();
        });
        showHelp();
    }

    HelpWindow* helpWindow() const { return m_help; }
    QComboBox* languageBox() const { return m_language; }

private:
    HelpContext context() const
    {
        HelpWindow::setKnowledgeBaseHost(QStringLiteral("127.0.0.1"), closedLocalPort());
        HelpContext context;
        context.language = m_language->currentData().toString();
        context.localHelpPath = UIPathManager::getInstance()->getPath(QStringLiteral("resource_path"))
            + QStringLiteral("/help");
        context.link = QStringLiteral("index.html");
        context.section = QStringLiteral("gallery");
        return context;
    }

    void showHelp()
    {
        delete m_help;
        m_status->setText(QStringLiteral("Asking the knowledge base..."));
        m_help = new GalleryHelpWindow(context(), m_status, m_frame);
        // Shown inside the page rather than as a dialog of its own.
        m_help->setWindowFlags(Qt::Widget);
        m_help->setAccessibleName(QStringLiteral("Online help"));
        // The page itself is read in the browser inside: a screen reader names it too.
        if (auto* browser = m_help->findChild<HtmlTextBrowser*>())
            browser->setAccessibleName(QStringLiteral("Help page"));
        m_help->layout()->setContentsMargins(0, 0, 0, 0);
        m_frame->layout()->addWidget(m_help);
        showOnPaper(m_help);
        m_help->show();
    }

    QComboBox* m_language = nullptr;
    QLabel* m_status = nullptr;
    QWidget* m_frame = nullptr;
    QPointer<HelpWindow> m_help;
};

QWidget* createPage()
{
    return new HelpPage;
}

bool waitForContent(HelpWindow* help)
{
    QElapsedTimer clock;
    clock.start();
    while (help && help->textBrowser()->toPlainText().isEmpty() && clock.elapsed() < 5000)
        QApplication::processEvents(QEventLoop::AllEvents, 50);
    QApplication::processEvents();
    return help && !help->textBrowser()->toPlainText().isEmpty();
}

// The refused query arrives through the event loop: take the picture once the
// offline page is up, and once more in German.
void helpScreenshots(QWidget* window, QWidget* page, const QString& dir)
{
    auto* helpPage = dynamic_cast<HelpPage*>(page);
    if (!helpPage)
        return;
    if (waitForContent(helpPage->helpWindow()))
        window->grab().save(QDir(dir).filePath(QStringLiteral("help.png")));
    helpPage->languageBox()->setCurrentIndex(1);
    if (waitForContent(helpPage->helpWindow()))
        window->grab().save(QDir(dir).filePath(QStringLiteral("help-german.png")));
    helpPage->languageBox()->setCurrentIndex(0);
    waitForContent(helpPage->helpWindow());
}

GalleryPageRegistration registration("help", "Help", 80, &createPage, &helpScreenshots);

} // namespace
