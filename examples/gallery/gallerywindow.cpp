#include "gallerywindow.h"

#include "gallerypages.h"

#include <orvacat/orvacat.h>
#include <themefiles.h>

#include <QApplication>
#include <QComboBox>
#include <QDir>
#include <QHBoxLayout>
#include <QLabel>
#include <QListWidget>
#include <QScreen>
#include <QScrollArea>
#include <QStackedWidget>
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

    const double factor = DPIinfo::getInstance()->getDPI();
    auto px = [factor](int n) { return int(n * factor); };

    m_languageBox->addItems(ThemeFiles::languages(themeDir));
    m_languageBox->setCurrentText(language);
    m_languageBox->setMinimumWidth(px(64));

    m_pageList->setObjectName(QStringLiteral("galleryPageList"));
    m_pageList->setFixedWidth(px(170));
    m_pageList->setFrameShape(QFrame::NoFrame);
    m_pageList->setSpacing(0);
    m_pageList->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    m_pageList->setFocusPolicy(Qt::StrongFocus);

    m_pages->setObjectName(QStringLiteral("galleryPages"));

    auto* header = new QWidget;
    header->setObjectName(QStringLiteral("galleryHeader"));
    auto* headerLayout = new QHBoxLayout(header);
    headerLayout->setContentsMargins(px(16), px(10), px(16), px(10));
    headerLayout->setSpacing(px(8));
    auto* title = new QLabel(QStringLiteral("liborvacat-qt gallery"));
    title->setObjectName(QStringLiteral("galleryTitle"));
    auto* subtitle = new QLabel(QStringLiteral("every control on the default theme"));
    subtitle->setObjectName(QStringLiteral("gallerySubtitle"));
    headerLayout->addWidget(title);
    headerLayout->addWidget(subtitle);
    headerLayout->addStretch(1);
    headerLayout->addWidget(new QLabel(QStringLiteral("Language")));
    headerLayout->addWidget(m_languageBox);

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

    // The shell's own look. Pages group their controls in QGroupBoxes, drawn
    // here as white cards on a light background; the toolkit's widgets keep
    // the theme's style sheets, which win over these rules.
    setStyleSheet(QStringLiteral(
        "#galleryHeader { background: #FFFFFF; border-bottom: 1px solid #DADCE0; }"
        "#galleryTitle { color: #202124; font-weight: bold; font-size: %1px; }"
        "#gallerySubtitle { color: #5F6368; }"
        "#galleryPageList { background: #F1F3F4; border-right: 1px solid #DADCE0; outline: none;"
        "  padding-top: %2px; }"
        "#galleryPageList::item { color: #3C4043; padding: %3px %4px; border: none; }"
        "#galleryPageList::item:hover { background: #E8EAED; }"
        "#galleryPageList::item:selected { color: #174EA6; background: #D2E3FC; }"
        "#galleryPages, #galleryPages QScrollArea, #galleryPageViewport { background: #F8F9FA; }"
        "#galleryPages QGroupBox { background: #FFFFFF; border: 1px solid #DADCE0; border-radius: %5px;"
        "  margin-top: %6px; padding: %7px %8px %8px %8px; }"
        "#galleryPages QGroupBox::title { subcontrol-origin: margin; subcontrol-position: top left;"
        "  left: %9px; padding: 0px %10px; color: #202124; font-weight: bold; }")
        .arg(px(15)).arg(px(6)).arg(px(7)).arg(px(14)).arg(px(6)).arg(px(20)).arg(px(10)).arg(px(8))
        .arg(px(6)).arg(px(2)));
    m_pages->setAttribute(Qt::WA_StyledBackground);
    header->setAttribute(Qt::WA_StyledBackground);

    connect(m_pageList, &QListWidget::currentRowChanged, this, &GalleryWindow::showPage);
    connect(m_languageBox, &QComboBox::currentTextChanged, this, &GalleryWindow::setLanguage);

    // As large as the pages like, but never past the screen: pages scroll
    // when the window is smaller than they are.
    QSize size = designSize();
    if (const QScreen* screen = QGuiApplication::primaryScreen())
        size = size.boundedTo(screen->availableGeometry().size() * 0.9);
    resize(size);
    rebuildPages();
}

void GalleryWindow::setLanguage(const QString& language)
{
    ComponentStrings::getInstance()->installStrings(
        ThemeFiles::readStringTable(ThemeFiles::stringTablePath(m_themeDir, language)));
    // Widgets read their captions when they are built: build the pages anew.
    rebuildPages();
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
