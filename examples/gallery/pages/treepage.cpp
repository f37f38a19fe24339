// Gallery page: a folder tree with the home entry kept in front, check boxes
// for the folders that can be backed up (the others drawn greyed out),
// rounded selection and hover highlights, and renaming in place (F2 or a
// click on the selected row) that only accepts valid file names.

#include "gallerypages.h"
#include "pagebuilding.h"

#include <orvacat/orvacat.h>

#include <QApplication>
#include <QDir>
#include <QFrame>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QMouseEvent>
#include <QPainter>
#include <QPainterPath>
#include <QVBoxLayout>

namespace {

// The theme has folder pictures only; the home entry gets a small house.
QIcon homeIcon()
{
    const double ratio = DPIinfo::getInstance()->getDPR();
    const int side = px(16);
    QPixmap pixmap(qRound(side * ratio), qRound(side * ratio));
    pixmap.setDevicePixelRatio(ratio);
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    painter.setRenderHint(QPainter::Antialiasing);
    const double s = side / 16.0;
    QPainterPath house;
    house.moveTo(8 * s, 1.5 * s);
    house.lineTo(15 * s, 7.5 * s);
    house.lineTo(13 * s, 7.5 * s);
    house.lineTo(13 * s, 14.5 * s);
    house.lineTo(3 * s, 14.5 * s);
    house.lineTo(3 * s, 7.5 * s);
    house.lineTo(1 * s, 7.5 * s);
    house.closeSubpath();
    painter.setPen(Qt::NoPen);
    painter.setBrush(QColor(QStringLiteral("#1A73E8")));
    painter.drawPath(house);
    painter.setBrush(Qt::white);
    painter.drawRoundedRect(QRectF(6.5 * s, 9.5 * s, 3 * s, 5 * s), 0.8 * s, 0.8 * s);
    return QIcon(pixmap);
}

FileSystemTreeWidgetItem* addFolder(QTreeWidgetItem* parent, const QString& name, bool checkable = true)
{
    auto* item = new FileSystemTreeWidgetItem;
    item->kind = QStringLiteral("folder");
    item->setText(0, name);
    item->setIcon(0, QIcon(getGlobalImage("folder", ImageManager::Normal)));
    Qt::ItemFlags flags = Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemIsEditable;
    if (checkable)
        flags |= Qt::ItemIsUserCheckable;
    item->setFlags(flags);
    if (checkable)
        item->setCheckState(0, Qt::Unchecked);
    if (parent)
        parent->addChild(item);
    return item;
}

QString treeStyle()
{
    // The theme dresses the tree (check boxes, highlight, colours); the page
    // only frames it.
    return DPIinfo::getInstance()->getScaledStyleSheet(QStringLiteral("OrvaTreeWidget { padding: 4px; }"));
}

QWidget* createPage()
{
    auto* tree = new OrvaTreeWidget;
    tree->setAccessibleName(QStringLiteral("Folders"));
    // The host owns the delegate; the tree is the natural owner here.
    auto* delegate = new ItemDelegate;
    delegate->setParent(tree);
    tree->setItemDelegate(delegate);
    tree->setHeaderHidden(true);
    tree->setColumnCount(1);
    tree->setIconSize(QSize(px(16), px(16)));
    tree->setIndentation(px(18));
    tree->setEditTriggers(QAbstractItemView::EditKeyPressed | QAbstractItemView::SelectedClicked);
    tree->setStyleSheet(tree->styleSheet() + treeStyle());
    tree->setMinimumWidth(px(300));

    // Home first, although "Home" sorts after "Archive" and "Backups".
    auto* home = new FileSystemTreeWidgetItem;
    home->kind = QStringLiteral("home");
    home->setText(0, QStringLiteral("Home"));
    home->setIcon(0, homeIcon());
    home->setFlags(Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemIsUserCheckable);
    home->setCheckState(0, Qt::PartiallyChecked);
    tree->addTopLevelItem(home);

    for (const char* name : {"Pictures", "Desktop", "Music", "Downloads"})
        addFolder(home, QString::fromLatin1(name));
    FileSystemTreeWidgetItem* documents = addFolder(home, QStringLiteral("Documents"));
    documents->setCheckState(0, Qt::Checked);
    for (const char* name : {"Reports 2026", "Invoices", "Letters"})
        addFolder(documents, QString::fromLatin1(name))->setCheckState(0, Qt::Checked);
    FileSystemTreeWidgetItem* projects = addFolder(home, QStringLiteral("Projects"));
    FileSystemTreeWidgetItem* research = addFolder(projects, QStringLiteral("R&D"));
    addFolder(research, QStringLiteral("Prototypes"));
    addFolder(projects, QStringLiteral("Website"));

    tree->addTopLevelItem(addFolder(nullptr, QStringLiteral("Backups")));
    tree->addTopLevelItem(addFolder(nullptr, QStringLiteral("Archive")));
    // Not for backing up: shown greyed out, but still selectable.
    tree->addTopLevelItem(addFolder(nullptr, QStringLiteral("Shared with me"), false));
    tree->addTopLevelItem(addFolder(nullptr, QStringLiteral("Trash"), false));

    tree->setSortingEnabled(true);
    tree->sortByColumn(0, Qt::AscendingOrder);
    home->setExpanded(true);
    documents->setExpanded(true);
    projects->setExpanded(true);
    tree->setCurrentItem(documents);

    // What the tree reports, as a host would see it.
    auto* log = new QLabel(QStringLiteral("Select, right-click, press keys or rename a folder."));
    log->setWordWrap(true);
    log->setAlignment(Qt::AlignLeft | Qt::AlignTop);
    log->setMinimumHeight(px(60));
    log->setStyleSheet(DPIinfo::getInstance()->getScaledStyleSheet(
        lookSheet(QStringLiteral("QLabel { background: @strip; color: @text; border: 1px solid @line; border-radius: 4px; padding: 8px; }"))));
    QObject::connect(tree, &OrvaTreeWidget::sigMouseRightClickEvent, log, [tree, log](QMouseEvent* event) {
        QTreeWidgetItem* item = tree->itemAt(event->pos());
        log->setText(QStringLiteral("Right click on \u201c%1\u201d").arg(item ? item->text(0) : QStringLiteral("nothing")));
    });
    QObject::connect(tree, &OrvaTreeWidget::sigKeyPressEvent, log, [log](QKeyEvent* event) {
        log->setText(QStringLiteral("Key pressed: %1").arg(QKeySequence(event->key()).toString()));
    });
    QObject::connect(delegate, &ItemDelegate::sigKeyPressed, log,
                     [log](QKeyEvent*) { log->setText(QStringLiteral("Renaming cancelled with Escape")); });
    QObject::connect(tree, &QTreeWidget::itemChanged, log, [log](QTreeWidgetItem* item, int) {
        log->setText(QStringLiteral("\u201c%1\u201d is now %2").arg(item->text(0),
            item->checkState(0) == Qt::Checked ? QStringLiteral("backed up") : QStringLiteral("not backed up")));
    });
    // Deep folders scroll sideways into view as they become current.
    QObject::connect(tree, &QTreeWidget::currentItemChanged, tree,
                     [tree](QTreeWidgetItem* current) { tree->updateScrollArea(current); });

    auto* side = new QVBoxLayout;
    side->setSpacing(px(10));
    side->addWidget(note(QStringLiteral("<b>Home stays in front</b> of the sorted folders although its name sorts "
                                        "after Archive and Backups.")));
    side->addWidget(note(QStringLiteral("<b>Check boxes</b> choose the folders to back up. Shared with me and Trash "
                                        "cannot be backed up: they are drawn greyed out, yet can be selected.")));
    side->addWidget(note(QStringLiteral("<b>Rename</b> with F2 or a click on the selected folder. A name cannot "
                                        "start with a dot, and \\ / : * ? \" &lt; &gt; | are refused anywhere.")));
    side->addWidget(log);
    side->addStretch(1);

    auto* page = new QWidget;
    auto* layout = new QHBoxLayout(page);
    layout->setContentsMargins(px(24), px(18), px(24), px(18));
    layout->setSpacing(px(20));
    layout->addWidget(tree, 3);
    layout->addLayout(side, 2);
    return page;
}

// The tree with a folder being renamed.
void renameScreenshot(QWidget* window, QWidget* page, const QString& dir)
{
    auto* tree = page->findChild<OrvaTreeWidget*>();
    if (!tree)
        return;
    const QList<QTreeWidgetItem*> found = tree->findItems(QStringLiteral("Reports 2026"), Qt::MatchExactly | Qt::MatchRecursive);
    if (found.isEmpty())
        return;
    QTreeWidgetItem* previous = tree->currentItem();
    tree->setCurrentItem(found.first());
    tree->editItem(found.first(), 0);
    QApplication::processEvents();
    auto* editor = tree->viewport()->findChild<QLineEdit*>();
    if (editor)
        editor->setText(QStringLiteral("Reports 2026 (final)"));
    QApplication::processEvents();
    window->grab().save(QDir(dir).filePath(QStringLiteral("tree-rename.png")));
    if (editor) {
        QKeyEvent escape(QEvent::KeyPress, Qt::Key_Escape, Qt::NoModifier);
        QApplication::sendEvent(editor, &escape);
    }
    tree->setCurrentItem(previous);
    QApplication::processEvents();
}

GalleryPageRegistration registration("tree", "Tree", 55, &createPage, &renameScreenshot);

} // namespace
