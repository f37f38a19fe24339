// The folder tree, its delegate and the "home"-first item ordering.

#include "testmain.h"

#include "testenvironment.h"

#include <orvacat/globals.h>
#include <orvacat/orvatreewidget.h>

#include <QAccessible>
#include <QHeaderView>
#include <QLineEdit>
#include <QScopeGuard>
#include <QScrollBar>


namespace {

const QColor selectedColor(12, 200, 90);
const QColor hoverColor(200, 40, 160);

FileSystemTreeWidgetItem* folder(const QString& text, const QString& kind = QString())
{
    auto* item = new FileSystemTreeWidgetItem;
    item->setText(0, text);
    item->kind = kind;
    return item;
}

/** Adds a folder per name, shows @p tree active and moves the pointer off it. */
bool showWithFolders(OrvaTreeWidget& tree, const QStringList& names)
{
    for (const QString& name : names)
        tree.addTopLevelItem(folder(name));
    tree.setHeaderHidden(true);
    tree.setFrameShape(QFrame::NoFrame);
    tree.resize(300, 200);
    tree.show();
    QCursor::setPos(tree.mapToGlobal(QPoint(400, 300)));
    tree.activateWindow(); // no window manager does it under a bare X server
    return QTest::qWaitForWindowActive(&tree);
}

/** Per row: its colour away from the text and rounded corners, then " red" or " dark" for its text. */
QStringList rowLooks(OrvaTreeWidget& tree)
{
    const QImage shot = tree.viewport()->grab().toImage();
    QStringList looks;
    for (int i = 0; i < tree.topLevelItemCount(); ++i) {
        const QRect row = tree.visualItemRect(tree.topLevelItem(i));
        bool red = false, dark = false;
        for (int x = row.left(); x < row.center().x(); ++x) {
            const QColor c = TestEnvironment::pixelAt(shot, QPoint(x, row.center().y()));
            red = red || (c.red() - c.green() > 100 && c.red() - c.blue() > 100);
            dark = dark || c.value() < 110;
        }
        looks << TestEnvironment::pixelAt(shot, QPoint(tree.viewport()->width() * 3 / 4, row.center().y())).name()
                + (red ? " red" : "") + (dark ? " dark" : "");
    }
    return looks;
}

/** What a screen reader is told of check boxes: the row's name and its new state. */
QStringList& checkNews()
{
    static QStringList news;
    return news;
}

void recordCheckNews(QAccessibleEvent* event)
{
    if (event->type() != QAccessible::StateChanged
        || !static_cast<QAccessibleStateChangeEvent*>(event)->changedStates().checked)
        return;
    QAccessibleInterface* row = event->accessibleInterface();
    checkNews() << row->text(QAccessible::Name) + (row->state().checked ? " checked" : " unchecked");
}

} // namespace

class TestTreeWidget : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { TestEnvironment::installDefaultTheme(); }
    void cleanup() { QCOMPARE(TestEnvironment::visibleTopLevels(), QStringList()); }

    void sortingPutsHomeFirst();
    void rowsShowSelectionHoverAndCheckability();
    void focusKeysAndRightClicksReachTheTree();
    void updateScrollAreaBringsItemsIntoView();
    void delegateRowsCheckBoxesAndRenaming();
};

void TestTreeWidget::sortingPutsHomeFirst()
{
    OrvaTreeWidget tree;
    // The home entry shares its text with a plain folder, which sorts by text.
    tree.addTopLevelItem(folder(QStringLiteral("Music"), QStringLiteral("home")));
    for (const char* name : {"Pictures", "Music", "Art", "Desktop"})
        tree.addTopLevelItem(folder(QString::fromLatin1(name)));
    tree.sortItems(0, Qt::AscendingOrder);
    const auto item = [&tree](int i) { return static_cast<FileSystemTreeWidgetItem*>(tree.topLevelItem(i)); };
    QStringList sorted;
    for (int i = 0; i < tree.topLevelItemCount(); ++i)
        sorted << item(i)->kind + item(i)->text(0);
    QCOMPARE(sorted, (QStringList{"homeMusic", "Art", "Desktop", "Music", "Pictures"}));

    // Two home items: neither sorts before the other.
    item(4)->kind = QStringLiteral("home");
    QVERIFY(!(*item(0) < *item(4)) && !(*item(4) < *item(0)));
}

void TestTreeWidget::rowsShowSelectionHoverAndCheckability()
{
    OrvaTreeWidget tree;
    // No selection colour of the style's own, disabled text in red, no focus frame, no theme sheet over them.
    tree.setStyleSheet(QString());
    QPalette palette = tree.palette();
    palette.setColor(QPalette::Highlight, Qt::transparent);
    palette.setColor(QPalette::HighlightedText, Qt::black);
    palette.setColor(QPalette::Disabled, QPalette::Text, Qt::red);
    tree.setPalette(palette);
    tree.setFocusPolicy(Qt::NoFocus);
    tree.setFont(QFont(tree.font().family(), -1, QFont::Bold));
    tree.setBackgroundColor(selectedColor, hoverColor);
    QVERIFY(showWithFolders(tree, {"WWWW", "WWWW", "WWWW"}));
    // Rows that cannot be checked are drawn disabled, yet they are not.
    for (QTreeWidgetItem* item : {tree.topLevelItem(0), tree.topLevelItem(2)})
        item->setFlags(item->flags() & ~Qt::ItemIsUserCheckable);
    const QRect two = tree.visualItemRect(tree.topLevelItem(1));
    const QRect three = tree.visualItemRect(tree.topLevelItem(2));
    QTest::mouseClick(tree.viewport(), Qt::LeftButton, Qt::NoModifier, two.center());
    const QString plain = QStringLiteral("#ffffff red");
    const QString selected = selectedColor.name() + QLatin1String(" dark");
    QCOMPARE(rowLooks(tree), (QStringList{plain, selected, plain}));
    // The highlight stops short of the right edge, and its border is white.
    const QImage shot = tree.viewport()->grab().toImage();
    QCOMPARE(TestEnvironment::pixelAt(shot, QPoint(tree.viewport()->width() - 1, two.center().y())), QColor(Qt::white));
    QVERIFY(TestEnvironment::pixelAt(shot, QPoint(two.center().x(), two.top() - 1)).value() > 200);

    // The pointer comes onto the third row, onto the selected one, then
    // onto lines one pixel lower than the rows, which the hover test takes.
    const auto looksWithPointerAt = [&tree](const QPoint& pos) {
        QCursor::setPos(tree.viewport()->mapToGlobal(pos));
        QTest::mouseMove(tree.viewport(), pos);
        return rowLooks(tree);
    };
    const QString hovered = hoverColor.name() + QLatin1String(" red");
    QCOMPARE(looksWithPointerAt(three.center()), (QStringList{plain, selected, hovered}));
    QCOMPARE(looksWithPointerAt(two.center()), (QStringList{plain, selected, plain}));
    QCOMPARE(looksWithPointerAt(three.topLeft()), (QStringList{plain, selected, plain}));
    QCOMPARE(looksWithPointerAt(three.bottomLeft() + QPoint(0, 1)), (QStringList{plain, selected, hovered}));
}

void TestTreeWidget::focusKeysAndRightClicksReachTheTree()
{
    // Declared before the tree: Qt 6 announces a null current item while the tree is destroyed.
    QList<QTreeWidgetItem*> changed;
    OrvaTreeWidget tree;
    QVERIFY(showWithFolders(tree, {"One", "Two", "Three"}));
    connect(&tree, &QTreeWidget::currentItemChanged, &tree, [&changed](QTreeWidgetItem* current) { changed << current; });
    const auto focusIn = [&]() {
        tree.clearFocus();
        changed.clear();
        tree.setFocus(Qt::TabFocusReason);
        return tree.hasFocus();
    };
    // No current item: the first visible item becomes current.
    tree.setCurrentItem(nullptr);
    QVERIFY(focusIn());
    QCOMPARE(tree.currentItem(), tree.topLevelItem(0));
    // A current item stays current and is announced again.
    tree.setCurrentItem(tree.topLevelItem(1));
    QVERIFY(focusIn());
    QCOMPARE(changed, (QList<QTreeWidgetItem*>{nullptr, tree.topLevelItem(1)}));

    // Keys and right clicks are reported, and handled as in any tree.
    QSignalSpy keys(&tree, &OrvaTreeWidget::sigKeyPressEvent);
    QSignalSpy rightClicks(&tree, &OrvaTreeWidget::sigMouseRightClickEvent);
    QVERIFY(keys.isValid() && rightClicks.isValid());
    QTest::keyClick(&tree, Qt::Key_End);
    QTest::mouseClick(tree.viewport(), Qt::RightButton, {}, tree.visualItemRect(tree.topLevelItem(0)).center());
    QCOMPARE(rightClicks.count(), 1);
    QVERIFY(tree.topLevelItem(0)->isSelected());
    QTest::mouseClick(tree.viewport(), Qt::LeftButton, {}, tree.visualItemRect(tree.topLevelItem(1)).center());
    QCOMPARE(rightClicks.count(), 1);
    QCOMPARE(keys.count(), 1);
}

void TestTreeWidget::updateScrollAreaBringsItemsIntoView()
{
    // A chain of folders seven levels deep, 30 pixels a level, in a narrow view.
    OrvaTreeWidget tree;
    tree.header()->setStretchLastSection(false);
    tree.setIndentation(30);
    QList<QTreeWidgetItem*> levels;
    for (QTreeWidgetItem* parent = tree.invisibleRootItem(); levels.size() < 7; parent = levels.last()) {
        levels << folder(QStringLiteral("level %1").arg(levels.size()));
        parent->addChild(levels.last());
    }
    tree.expandAll();
    tree.setColumnWidth(0, 1000);
    tree.setFixedSize(TestEnvironment::scaled(100) + 150, 600);
    QVERIFY(showWithFolders(tree, {}));
    QScrollBar* bar = tree.horizontalScrollBar();
    const auto left = [&]() { return tree.visualItemRect(levels.last()).left(); };

    // Left of the view, or too close to its right edge: to the middle. Its
    // first 100 pixels in view, to the pixel at either end: nothing moves.
    const int middle = tree.viewport()->width() / 2;
    const int edge = tree.viewport()->width() - TestEnvironment::scaled(100);
    const QList<QPair<int, int>> moves{{-1, middle}, {edge + 1, middle}, {0, 0}, {edge, edge}};
    for (const auto& move : moves) {
        bar->setValue(bar->value() + left() - move.first);
        tree.updateScrollArea(levels.last());
        QCOMPARE(left(), move.second);
    }
}

void TestTreeWidget::delegateRowsCheckBoxesAndRenaming()
{
    ItemDelegate delegate;
    OrvaTreeWidget tree;
    tree.setItemDelegate(&delegate);
    QVERIFY(showWithFolders(tree, {"Plain"}));
    FileSystemTreeWidgetItem* item = folder(QStringLiteral("Old name"));
    item->setFlags(item->flags() | Qt::ItemIsUserCheckable | Qt::ItemIsEditable);
    item->setCheckState(0, Qt::Unchecked);
    tree.addTopLevelItem(item);
    QCOMPARE(tree.visualItemRect(tree.topLevelItem(0)).height(), TestEnvironment::scaled(28));

    // The host hit-tests a click against the check box drawn last (rows are drawn top down).
    g_check_rect = QRect();
    tree.viewport()->grab();
    QVERIFY(tree.visualItemRect(item).contains(g_check_rect));
    // Ticked with the mouse, then cleared with Space: a screen reader hears each (checked at the end).
    const QAccessible::UpdateHandler earlier = QAccessible::installUpdateHandler(&recordCheckNews);
    auto restore = qScopeGuard([earlier] { QAccessible::installUpdateHandler(earlier); });
    checkNews().clear();
    QTest::mouseClick(tree.viewport(), Qt::LeftButton, {}, g_check_rect.center());
    QCOMPARE(item->checkState(0), Qt::Checked);
    tree.setCurrentItem(item); // a click on its check box leaves the current row as it was
    QTest::keyClick(&tree, Qt::Key_Space);
    QCOMPARE(item->checkState(0), Qt::Unchecked);
    const QStringList heard = checkNews();
    QAccessibleInterface* access = QAccessible::queryAccessibleInterface(&tree);
    QCOMPARE(access->role(), QAccessible::Tree);
    QVERIFY(access->child(1)->text(QAccessible::Name) == "Plain" && !access->child(1)->state().checkable);

    // Renaming: typing replaces the old name. A leading dot is refused,
    // later dots are not, the other forbidden characters never are.
    // Reported as the key press it is (the event is gone by the time a spy is read).
    QList<QEvent::Type> escapes;
    connect(&delegate, &ItemDelegate::sigKeyPressed, &tree, [&escapes](QKeyEvent* key) { escapes << key->type(); });
    tree.editItem(item, 0);
    QPointer<QLineEdit> editor;
    QTRY_VERIFY((editor = tree.viewport()->findChild<QLineEdit*>()) && editor->hasFocus());
    QTest::keyClicks(editor, QStringLiteral(".|a.b/c\\d:e*f?g\"h<i>j|k."));
    QCOMPARE(editor->text(), QStringLiteral("a.bcdefghijk."));
    QVERIFY(escapes.isEmpty());
    // Escape is reported and still cancels.
    QTest::keyClick(editor, Qt::Key_Escape);
    QCOMPARE(escapes, QList<QEvent::Type>{QEvent::KeyPress});
    QTRY_VERIFY(!editor || !editor->isVisible());
    QCOMPARE(item->text(0), QStringLiteral("Old name"));

    if (!QAccessible::isActive())
        QSKIP("Qt sends accessibility events only while assistive technology listens: the AT-SPI run checks them");
    QCOMPARE(heard, (QStringList{"Old name checked", "Old name unchecked"}));
}

ORVACAT_TEST_MAIN(TestTreeWidget)
#include "tst_treewidget.moc"
