#include "gallerywindow.h"

#include "accessibilitywalk.h"
#include "gallerypages.h"
#include "pagebuilding.h"

#include <orvacat/orvacat.h>
#include <themefiles.h>

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QPalette>
#include <QStyle>
#include <QDir>
#include <QFileInfo>
#include <QHBoxLayout>
#include <QLabel>
#include <QListWidget>
#include <QScreen>
#include <QScrollArea>
#include <QStackedWidget>
#include <QTextStream>
#include <QVBoxLayout>

namespace {

/** The size the pages are laid out for. */
QSize designSize()
{
    const double factor = DPIinfo::getInstance()->getDPI();
    return QSize(int(1040 * factor), int(680 * factor));
}

} // namespace

GalleryWindow::GalleryWindow(const QString& themeDir, const QString& language, QWidget* parent)
    : QWidget(parent)
    , m_themeDir(themeDir)
    , m_languageBox(new OrvaComboBox)
    , m_pageList(new QListWidget)
    , m_pages(new QStackedWidget)
{
    setObjectName(QStringLiteral("GalleryWindow"));
    setWindowTitle(QStringLiteral("Orvacat gallery"));

    m_languageBox->addItems(ThemeFiles::languages(themeDir));
    m_languageBox->setCurrentText(language);
    m_languageBox->setMinimumWidth(px(64));

    // The other theme is the sibling folder: themes/default and themes/dark.
    const QDir themes = QFileInfo(themeDir).dir();
    const bool startedDark = QFileInfo(themeDir).fileName() == QLatin1String("dark");
    m_lightThemeDir = startedDark ? themes.filePath(QStringLiteral("default")) : themeDir;
    m_darkThemeDir = startedDark ? themeDir : themes.filePath(QStringLiteral("dark"));
    m_darkBox = new OrvaCheckBox(QStringLiteral("&Dark theme"));
    m_darkBox->setChecked(startedDark);
    m_darkBox->setEnabled(QFileInfo::exists(m_lightThemeDir + QLatin1String("/images.json"))
                          && QFileInfo::exists(m_darkThemeDir + QLatin1String("/images.json")));

    m_pageList->setObjectName(QStringLiteral("galleryPageList"));
    m_pageList->setFixedWidth(px(170));
    m_pageList->setFrameShape(QFrame::NoFrame);
    m_pageList->setSpacing(0);
    m_pageList->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    m_pageList->setFocusPolicy(Qt::StrongFocus);
    m_pageList->setAccessibleName(QStringLiteral("Pages"));

    m_pages->setObjectName(QStringLiteral("galleryPages"));

    auto* header = new QWidget;
    header->setObjectName(QStringLiteral("galleryHeader"));
    auto* headerLayout = new QHBoxLayout(header);
    headerLayout->setContentsMargins(px(16), px(10), px(16), px(10));
    headerLayout->setSpacing(px(8));
    auto* title = new QLabel(QStringLiteral("liborvacat-qt gallery"));
    title->setObjectName(QStringLiteral("galleryTitle"));
    auto* subtitle = new QLabel(QStringLiteral("every control of the toolkit"));
    subtitle->setObjectName(QStringLiteral("gallerySubtitle"));
    headerLayout->addWidget(title);
    headerLayout->addWidget(subtitle);
    headerLayout->addStretch(1);
    auto* languageLabel = new QLabel(QStringLiteral("&Language"));
    // Names the box for screen readers, and Alt+L reaches it.
    languageLabel->setBuddy(m_languageBox);
    headerLayout->addWidget(languageLabel);
    headerLayout->addWidget(m_languageBox);
    headerLayout->addSpacing(px(12));
    headerLayout->addWidget(m_darkBox);

    auto* body = new QHBoxLayout;
    body->setContentsMargins(0, 0, 0, 0);
    body->setSpacing(0);
    body->addWidget(m_pageList);
    body->addWidget(m_pages, 1);

    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addWidget(header);
    layout->addLayout(body, 1);

    applyShellLook();
    m_pages->setAttribute(Qt::WA_StyledBackground);
    header->setAttribute(Qt::WA_StyledBackground);

    connect(m_pageList, &QListWidget::currentRowChanged, this, &GalleryWindow::showPage);
    connect(m_languageBox, &QComboBox::currentTextChanged, this, &GalleryWindow::setLanguage);
    connect(m_darkBox, &QCheckBox::toggled, this, &GalleryWindow::setDarkTheme);
    // A keyboard user must see where the focus is: the page scrolls to the
    // whole control (ensureWidgetVisible() settles for a text cursor or a
    // table's current cell), also when the focus comes from outside the page.
    m_followFocus = connect(qApp, &QApplication::focusChanged, this, [this](QWidget*, QWidget* now) {
        auto* scroll = qobject_cast<QScrollArea*>(m_pages->currentWidget());
        if (!now || !scroll || !scroll->widget() || !scroll->widget()->isAncestorOf(now))
            return;
        const QRect area(now->mapTo(scroll->widget(), QPoint(0, 0)), now->size());
        scroll->ensureVisible(area.center().x(), area.center().y(), area.width() / 2 + px(6), area.height() / 2 + px(6));
    });

    // As large as the pages like, but never past the screen: pages scroll
    // when the window is smaller than they are.
    QSize size = designSize();
    if (const QScreen* screen = QGuiApplication::primaryScreen())
        size = size.boundedTo(screen->availableGeometry().size() * 0.9);
    resize(size);
    rebuildPages();
}

GalleryWindow::~GalleryWindow()
{
    disconnect(m_followFocus);
}

void GalleryWindow::setLanguage(const QString& language)
{
    ComponentStrings::getInstance()->installStrings(
        ThemeFiles::readStringTable(ThemeFiles::stringTablePath(m_themeDir, language)));
    // Widgets read their captions when they are built: build the pages anew.
    rebuildPages();
}

void GalleryWindow::setDarkTheme(bool dark)
{
    const QString themeDir = dark ? m_darkThemeDir : m_lightThemeDir;
    if (themeDir == m_themeDir)
        return;
    // The host's start-up order once more: the registries take the other
    // folder's pictures and sheets; widgets read them when they are built.
    ThemeFiles::install(themeDir, UIPathManager::getInstance()->getPath(QStringLiteral("user_data_path")),
                        m_languageBox->currentText());
    m_themeDir = themeDir;
    applyShellLook();
    redressHeader();
    rebuildPages();
}

void GalleryWindow::applyShellLook()
{
    darkLook() = m_themeDir == m_darkThemeDir;
    // Plain Qt widgets, popups and the toolkit's palette-drawn parts (a bare
    // sheet's card) take the look from the application palette; the pages'
    // own sheets name their colours from the same list.
    QPalette palette = QApplication::style()->standardPalette();
    const QPair<QPalette::ColorRole, const char*> roles[] = {
        {QPalette::Window, "page"},         {QPalette::WindowText, "text"},   {QPalette::Base, "card"},
        {QPalette::AlternateBase, "strip"}, {QPalette::Text, "text"},         {QPalette::Button, "card"},
        {QPalette::ButtonText, "text"},     {QPalette::ToolTipBase, "strip"}, {QPalette::ToolTipText, "text"},
        {QPalette::PlaceholderText, "quiet"}, {QPalette::Highlight, "pick"},  {QPalette::HighlightedText, "pickink"},
        {QPalette::Link, "link"},           {QPalette::LinkVisited, "link"},  {QPalette::Mid, "line"},
    };
    for (const auto& role : roles)
        palette.setColor(role.first, lookColour(QLatin1String(role.second)));
    for (QPalette::ColorRole role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText})
        palette.setColor(QPalette::Disabled, role, lookColour(QStringLiteral("faint")));
    const QColor card = lookColour(QStringLiteral("card"));
    palette.setColor(QPalette::Light, card.lighter(150));
    palette.setColor(QPalette::Midlight, card.lighter(125));
    palette.setColor(QPalette::Dark, card.darker(200));
    QApplication::setPalette(palette);

    // The shell's own look. Pages group their controls in QGroupBoxes, drawn
    // here as cards on a quieter background; the toolkit's widgets keep the
    // theme's style sheets, which win over these rules.
    setStyleSheet(lookSheet(QStringLiteral(
        "#galleryHeader { background: @card; border-bottom: 1px solid @line; }"
        "#galleryHeader QLabel { color: @quiet; }"
        "#galleryHeader QLabel#galleryTitle { color: @text; font-weight: bold; font-size: %1px; }"
        "#galleryPageList { background: @list; border-right: 1px solid @line; outline: none;"
        "  padding-top: %2px; }"
        "#galleryPageList::item { color: @itemink; padding: %3px %4px; border: none; }"
        "#galleryPageList::item:hover { background: @hover; }"
        "#galleryPageList::item:selected { color: @pickink; background: @pick; }"
        "#galleryPages, #galleryPages QScrollArea, #galleryPageViewport, #galleryPageViewport > QWidget {"
        "  background: @page; }"
        // Plain Qt text on the pages; the toolkit's own and the pages' own sheets win.
        "#galleryPages QLabel, #galleryPages QGroupBox, #galleryPages QCheckBox { color: @text; }"
        "#galleryPages QGroupBox { background: @card; border: 1px solid @line; border-radius: %5px;"
        "  margin-top: %6px; padding: %7px %8px %8px %8px; }"
        "#galleryPages QGroupBox::title { subcontrol-origin: margin; subcontrol-position: top left;"
        "  left: %9px; padding: 0px %10px; color: @text; font-weight: bold; }")
        .arg(px(15)).arg(px(6)).arg(px(7)).arg(px(14)).arg(px(6)).arg(px(20)).arg(px(10)).arg(px(8))
        .arg(px(6)).arg(px(2))));
}

void GalleryWindow::redressHeader()
{
    // A control of each kind built now wears the new theme's sheet; the header's keep their state.
    m_languageBox->setStyleSheet(OrvaComboBox().styleSheet());
    m_darkBox->setStyleSheet(OrvaCheckBox(QString()).styleSheet());
}

void GalleryWindow::rebuildPages()
{
    const int current = qMax(0, m_pageList->currentRow());
    m_pageList->clear();
    while (QWidget* page = m_pages->widget(0)) {
        m_pages->removeWidget(page);
        delete page;
    }
    // Pages are built when they are first shown: most starts look at one or two.
    for (const GalleryPage& page : GalleryPages::all()) {
        auto* scroll = new QScrollArea;
        scroll->setWidgetResizable(true);
        scroll->setFrameShape(QFrame::NoFrame);
        scroll->viewport()->setObjectName(QStringLiteral("galleryPageViewport"));
        // It takes the focus to scroll the page with the keyboard: a screen reader names it.
        scroll->setAccessibleName(page.title);
        m_pages->addWidget(scroll);
        m_pageList->addItem(page.title);
    }
    if (m_pageList->count() > 0)
        m_pageList->setCurrentRow(qMin(current, m_pageList->count() - 1));
}

void GalleryWindow::showPage(int row)
{
    const QList<GalleryPage> pages = GalleryPages::all();
    if (row < 0 || row >= pages.size())
        return;
    auto* scroll = static_cast<QScrollArea*>(m_pages->widget(row));
    if (!scroll->widget()) {
        QWidget* page = pages.at(row).create();
        page->setObjectName(pages.at(row).name);
        scroll->setWidget(page);
    }
    m_pages->setCurrentIndex(row);
}

int GalleryWindow::checkAccessibility(QTextStream& out)
{
    resize(designSize());
    return AccessibilityWalk(this, m_pageList, m_pages, out).run();
}

bool GalleryWindow::saveScreenshots(const QString& dir)
{
    QDir().mkpath(dir);
    bool allWritten = true;
    const QList<GalleryPage> pages = GalleryPages::all();
    // Screenshots show the pages as laid out, whatever screen draws them.
    resize(designSize());
    show();
    for (int i = 0; i < pages.size(); ++i) {
        m_pageList->setCurrentRow(i);
        QApplication::processEvents();
        const QString path = QDir(dir).filePath(pages.at(i).name + QLatin1String(".png"));
        if (!grab().save(path)) {
            qWarning("Cannot write %s", qPrintable(path));
            allWritten = false;
        }
        if (pages.at(i).extraScreenshots)
            pages.at(i).extraScreenshots(this, static_cast<QScrollArea*>(m_pages->widget(i))->widget(), dir);
    }
    return allWritten;
}
