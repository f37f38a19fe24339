// Gallery page: a file list whose icons come from the file-type table, drawn
// from the theme's filetypes/ folder, with removed files in their own
// variant, and a field that shows which icon any extension gets.

#include "gallerypages.h"
#include "pagebuilding.h"

#include <orvacat/orvacat.h>

#include <QAction>
#include <QFileInfo>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QTreeWidget>
#include <QVBoxLayout>

namespace {

QString iconPath(const QString& iconName)
{
    return UIPathManager::getInstance()->getPath(QStringLiteral("resource_path")) + QLatin1String("/filetypes/")
           + iconName;
}

// The host's part: pick the icon by the file's last suffix.
QString iconNameFor(const QString& fileName, bool removed)
{
    return FileTypeMap::getInstance()->getFiletypeMapping(QFileInfo(fileName).suffix(), removed);
}

struct SampleFile
{
    const char* name;
    const char* size;
    bool removed;
};

const SampleFile sampleFiles[] = {
    {"Quarterly report.pdf", "1.2 MB", false},
    {"Budget 2026.xlsx", "86 KB", false},
    {"Contract draft.DOCX", "41 KB", false},
    {"Holiday photo.jpg", "3.4 MB", false},
    {"Photo from phone.heic", "2.1 MB", false},
    {"Team meeting.mp4", "212 MB", false},
    {"Interview.mp3", "18 MB", false},
    {"Surround mix.ac3", "54 MB", false},
    {"Launch slides.pptx", "7.9 MB", false},
    {"Website backup.tar.gz", "640 MB", false},
    {"index.html", "12 KB", false},
    {"main.cpp", "9 KB", false},
    {"Installer.exe", "48 MB", true},
    {"Old notes.txt", "3 KB", true},
    {"Scan.abc", "420 KB", false},
};

QTreeWidget* fileList()
{
    auto* list = new QTreeWidget;
    list->setRootIsDecorated(false);
    list->setAccessibleName(QStringLiteral("Backed-up files"));
    list->setColumnCount(3);
    list->setHeaderLabels({QStringLiteral("Name"), QStringLiteral("Size"), QStringLiteral("Icon")});
    list->setIconSize(QSize(px(24), px(24)));
    list->setAlternatingRowColors(false);
    list->setSelectionMode(QAbstractItemView::SingleSelection);
    list->setStyleSheet(DPIinfo::getInstance()->getScaledStyleSheet(
        lookSheet(QStringLiteral("QTreeWidget { border: 1px solid @line; border-radius: 4px; background: @card; color: @text;"
                                 " outline: none; }"
                                 "QTreeWidget::item { padding: 3px 10px 3px 0px; }"
                                 "QTreeWidget::item:selected { background: @pick; color: @pickink; }"
                                 "QHeaderView::section { background: @strip; color: @quiet; border: none;"
                                 " border-bottom: 1px solid @line; padding: 5px 8px; }"))));

    for (const SampleFile& file : sampleFiles) {
        const QString name = QString::fromUtf8(file.name);
        const QString icon = iconNameFor(name, file.removed);
        auto* item = new QTreeWidgetItem(list);
        item->setIcon(0, QIcon(iconPath(icon)));
        item->setText(0, name);
        item->setText(1, QString::fromLatin1(file.size));
        item->setText(2, icon);
        item->setTextAlignment(1, Qt::AlignRight | Qt::AlignVCenter);
        if (file.removed) {
            for (int column = 0; column < 3; ++column)
                item->setForeground(column, lookColour(QStringLiteral("quiet")));
            item->setToolTip(0, QStringLiteral("Removed from the backup"));
        }
    }
    list->header()->setStretchLastSection(false);
    list->header()->setSectionResizeMode(0, QHeaderView::Stretch);
    list->header()->setSectionResizeMode(1, QHeaderView::ResizeToContents);
    list->header()->setSectionResizeMode(2, QHeaderView::ResizeToContents);
    list->setCurrentItem(list->topLevelItem(0));
    return list;
}

// Type an extension, see the icon and the name the table gives it.
QWidget* extensionProbe()
{
    auto* box = new QWidget;
    auto* field = new QLineEdit(QStringLiteral("FLAC"));
    field->setPlaceholderText(QStringLiteral("Extension, e.g. pdf"));
    field->setClearButtonEnabled(true);
    field->setAccessibleName(QStringLiteral("Extension"));
    // Qt's clear button is named by its action's text.
    if (auto* clear = field->findChild<QAction*>(QStringLiteral("_q_qlineeditclearaction")))
        clear->setText(QStringLiteral("Clear"));
    auto* normal = new QLabel;
    auto* removed = new QLabel;
    auto* answer = new QLabel;
    answer->setStyleSheet(lookSheet(QStringLiteral("color: @text;")));
    const int side = px(32);
    for (QLabel* label : {normal, removed})
        label->setFixedSize(side, side);

    auto update = [=](const QString& text) {
        const QString extension = text.trimmed();
        const QString normalName = FileTypeMap::getInstance()->getFiletypeMapping(extension, false);
        const QString removedName = FileTypeMap::getInstance()->getFiletypeMapping(extension, true);
        normal->setPixmap(QIcon(iconPath(normalName)).pixmap(side, side));
        removed->setPixmap(QIcon(iconPath(removedName)).pixmap(side, side));
        answer->setText(QStringLiteral("%1 \u00b7 %2").arg(normalName, removedName));
    };
    QObject::connect(field, &QLineEdit::textChanged, box, update);
    update(field->text());

    auto* icons = new QHBoxLayout;
    icons->setSpacing(px(8));
    icons->addWidget(normal);
    icons->addWidget(removed);
    icons->addWidget(answer, 1);

    auto* layout = new QVBoxLayout(box);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(px(6));
    layout->addWidget(field);
    layout->addLayout(icons);
    return box;
}

QWidget* createPage()
{
    // What a host does at start-up to teach the table a type it lacks.
    FileTypeMap::getInstance()->mappingFile(QStringLiteral("image"), QStringLiteral("heic"));

    auto* side = new QVBoxLayout;
    side->setSpacing(px(10));
    side->addWidget(note(QStringLiteral("<b>Icons by extension</b>, in any letter case: DOCX is a document. "
                                        "Only the last suffix counts, so a .tar.gz is an archive.")));
    side->addWidget(note(QStringLiteral("<b>Removed files</b> (greyed out) get the removed variant of their icon; "
                                        "unknown extensions get the generic one.")));
    side->addWidget(note(QStringLiteral("<b>Added by the host:</b> heic is registered as an image at start-up. "
                                        "ac3 is listed as audio and video; the later entry, video, wins.")));
    side->addSpacing(px(6));
    side->addWidget(note(QStringLiteral("<b>Try an extension</b>")));
    side->addWidget(extensionProbe());
    side->addStretch(1);

    auto* page = new QWidget;
    auto* layout = new QHBoxLayout(page);
    layout->setContentsMargins(px(24), px(18), px(24), px(18));
    layout->setSpacing(px(20));
    layout->addWidget(fileList(), 3);
    layout->addLayout(side, 2);
    return page;
}

GalleryPageRegistration registration("files", "File types", 60, &createPage);

} // namespace
