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
#include <QStackedWidget>
#include <QVBoxLayout>

GalleryWindow::GalleryWindow(const QString& themeDir, const QString& language, QWidget* parent)
    : QWidget(parent)
    , m_themeDir(themeDir)
    , m_languageBox(new QComboBox)
    , m_pageList(new QListWidget)
    , m_pages(new QStackedWidget)
{
    setObjectName(QStringLiteral("GalleryWindow"));
    setWindowTitle(QStringLiteral("Orvacat gallery"));

    const double factor = DPIinfo::getInstance()->getDPI();
    m_languageBox->addItems(ThemeFiles::languages(themeDir));
    m_languageBox->setCurrentText(language);
    m_pageList->setFixedWidth(int(160 * factor));
    m_pageList->setFrameShape(QFrame::NoFrame);
    m_pageList->setStyleSheet(QStringLiteral(
        "QListWidget { background: #F3F5F8; outline: none; }"
        "QListWidget::item { padding: %1px %2px; color: #2B3440; }"
        "QListWidget::item:selected { background: #DCE8F7; color: #1A5FB4; }")
        .arg(int(6 * factor)).arg(int(12 * factor)));

    auto* header = new QHBoxLayout;
    auto* title = new QLabel(QStringLiteral("liborvacat-qt gallery"));
    QFont titleFont = title->font();
    titleFont.setBold(true);
    title->setFont(titleFont);
    header->addWidget(title);
    header->addStretch(1);
    header->addWidget(new QLabel(QStringLiteral("Language")));
    header->addWidget(m_languageBox);

    auto* body = new QHBoxLayout;
    body->setSpacing(0);
    body->addWidget(m_pageList);
    body->addWidget(m_pages, 1);

    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, int(8 * factor), 0, 0);
    header->setContentsMargins(int(12 * factor), 0, int(12 * factor), int(8 * factor));
    layout->addLayout(header);
    layout->addLayout(body, 1);

    connect(m_pageList, &QListWidget::currentRowChanged, m_pages, &QStackedWidget::setCurrentIndex);
    connect(m_languageBox, &QComboBox::currentTextChanged, this, &GalleryWindow::setLanguage);

    resize(int(1040 * factor), int(680 * factor));
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
    for (const GalleryPage& page : GalleryPages::all()) {
        QWidget* widget = page.create();
        widget->setObjectName(page.name);
        m_pages->addWidget(widget);
        m_pageList->addItem(page.title);
    }
    if (m_pageList->count() > 0)
        m_pageList->setCurrentRow(qMin(current, m_pageList->count() - 1));
}

bool GalleryWindow::saveScreenshots(const QString& dir)
{
    QDir().mkpath(dir);
    bool allWritten = true;
    const QList<GalleryPage> pages = GalleryPages::all();
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
            pages.at(i).extraScreenshots(this, m_pages->widget(i), dir);
    }
    return allWritten;
}
