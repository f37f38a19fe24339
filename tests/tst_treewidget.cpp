// The folder tree, its delegate and the "home"-first item ordering.

#include "testmain.h"

#include "testenvironment.h"

#include <orvacat/globals.h>
#include <orvacat/orvatreewidget.h>

#include <QHeaderView>
#include <QLineEdit>
#include <QScrollBar>
#include <QVBoxLayout>

#include <functional>
#include <typeinfo>

namespace {

const QColor selectedColor(12, 200, 90);
const QColor hoverColor(200, 40, 160);
const QColor disabledTextColor(255, 0, 0);

FileSystemTreeWidgetItem* folder(const QString& text, const QString& kind = QString())
{
    auto* item = new FileSystemTreeWidgetItem;
    item->setText(0, text);
    item->kind = kind;
    return item;
}

QStringList topLevelTexts(const QTreeWidget& tree)
{
    QStringList texts;
    for (int i = 0; i < tree.topLevelItemCount(); ++i)
        texts << tree.topLevelItem(i)->text(0);
    return texts;
}

/** Adds a folder per name, shows @p tree active and moves the pointer off it. */
bool showWithFolders(OrvaTreeWidget& tree, const QStringList& names)
{
    for (const QString& name : names)
        tree.addTopLevelItem(folder(name));
    tree.setHeaderHidden(true);
    tree.resize(300, 200);
    tree.show();
    const bool active = QTest::qWaitForWindowActive(&tree);
    QCursor::setPos(tree.mapToGlobal(QPoint(tree.width() + 50, tree.height() + 50)));
    return active;
}

// Known colours and no focus frame, so that the highlight alone tints a row.
void prepareForPixels(OrvaTreeWidget& tree)
{
    QPalette palette = tree.palette();
    for (QPalette::ColorGroup group : {QPalette::Active, QPalette::Inactive, QPalette::Disabled}) {
        palette.setColor(group, QPalette::Highlight, Qt::transparent);
        palette.setColor(group, QPalette::Base, Qt::white);
        palette.setColor(group, QPalette::Text, Qt::black);
        palette.setColor(group, QPalette::HighlightedText, Qt::black);
    }
    palette.setColor(QPalette::Disabled, QPalette::Text, disabledTextColor);
    tree.setPalette(palette);
    tree.setFrameShape(QFrame::NoFrame);
    tree.setBackgroundColor(selectedColor, hoverColor);
    tree.setFocusPolicy(Qt::NoFocus);
}

/** The colour of each top-level row away from its text and rounded corners. */
QList<QColor> rowColours(OrvaTreeWidget& tree)
{
    const QImage shot = tree.viewport()->grab().toImage();
    QList<QColor> colours;
    for (int i = 0; i < tree.topLevelItemCount(); ++i) {
        const QRect row = tree.visualItemRect(tree.topLevelItem(i));
        colours << TestEnvironment::pixelAt(shot, QPoint(tree.viewport()->width() * 3 / 4, row.center().y()));
    }
    return colours;
}

bool hasTextIn(const QImage& shot, const QRect& rect, const std::function<bool(const QColor&)>& isText)
{
    for (int y = rect.top(); y <= rect.bottom(); ++y) {
        for (int x = rect.left(); x <= rect.right(); ++x) {
            if (isText(TestEnvironment::pixelAt(shot, QPoint(x, y))))
                return true;
        }
    }
    return false;
}

void movePointer(QTreeWidget& tree, const QPoint& pos)
{
    QCursor::setPos(tree.viewport()->mapToGlobal(pos));
    QTest::mouseMove(tree.viewport(), pos);
}

/** A tree drawn by the delegate, which it outlives. */
struct DelegateTree
{
    DelegateTree() { tree.setItemDelegate(&delegate); }
    ~DelegateTree() { tree.setItemDelegate(nullptr); }

    /** Starts editing @p item; its line editor once it has the focus. */
    QLineEdit* edit(QTreeWidgetItem* item)
    {
        tree.editItem(item, 0);
        QLineEdit* editor = nullptr;
        const bool focused = QTest::qWaitFor([&]() {
            editor = tree.viewport()->findChild<QLineEdit*>();
            return editor && editor->isVisible() && editor->hasFocus();
        });
        return focused ? editor : nullptr;
    }

    ItemDelegate delegate;
    OrvaTreeWidget tree;
};

} // namespace

class TestTreeWidget : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void cleanup();

    void sortingPutsHomeFirst();
    void selectedAndHoveredRowsAreHighlighted();
    void uncheckableRowsLookDisabledButStaySelectable();
    void focusKeepsOrPicksTheCurrentItem();
    void keysAndRightClicksAreReportedAndHandled();
    void updateScrollAreaBringsItemsIntoView();
    void delegateRowsAndCheckBoxes();
    void renamingTakesFileNamesAndEscapeCancels();
};

void TestTreeWidget::initTestCase()
{
    TestEnvironment::installDefaultTheme();
}

void TestTreeWidget::cleanup()
{
    QCOMPARE(TestEnvironment::visibleTopLevels(), QStringList());
}

void TestTreeWidget::sortingPutsHomeFirst()
{
    OrvaTreeWidget tree;
    // The home entry shares its text with a plain folder, which sorts by text.
    tree.addTopLevelItem(folder(QStringLiteral("Music"), QStringLiteral("home")));
    for (const char* name : {"Pictures", "Music", "Art", "Desktop"})
        tree.addTopLevelItem(folder(QString::fromLatin1(name)));
    for (int twice = 0; twice < 2; ++twice) {
        tree.sortItems(0, Qt::AscendingOrder);
        QCOMPARE(topLevelTexts(tree), (QStringList{"Music", "Art", "Desktop", "Music", "Pictures"}));
        QCOMPARE(static_cast<FileSystemTreeWidgetItem*>(tree.topLevelItem(0))->kind, QStringLiteral("home"));
    }

    FileSystemTreeWidgetItem home;
    home.setText(0, QStringLiteral("B"));
    home.kind = QStringLiteral("home");
    FileSystemTreeWidgetItem otherHome;
    otherHome.setText(0, QStringLiteral("A"));
    otherHome.kind = QStringLiteral("home");
    QVERIFY(!(home < otherHome));
    QVERIFY(!(otherHome < home));
    // On the left, the home item compares by its text.
    FileSystemTreeWidgetItem other;
    other.setText(0, QStringLiteral("0"));
    QVERIFY(!(other < home));
    QVERIFY(!(home < other));
    other.setText(0, QStringLiteral("Z"));
    QVERIFY(home < other);
    // Case matters: "Home" is an ordinary kind.
    other.kind = QStringLiteral("Home");
    QVERIFY(home < other);

    QTreeWidgetItem plain;
    QVERIFY_EXCEPTION_THROWN(home < plain, std::bad_cast);
}

void TestTreeWidget::selectedAndHoveredRowsAreHighlighted()
{
    const QColor white(Qt::white);
    OrvaTreeWidget tree;
    prepareForPixels(tree);
    QVERIFY(showWithFolders(tree, {"One", "Two", "Three"}));
    QTreeWidgetItem* two = tree.topLevelItem(1);

    QTest::mouseClick(tree.viewport(), Qt::LeftButton, Qt::NoModifier, tree.visualItemRect(two).center());
    QCursor::setPos(tree.mapToGlobal(QPoint(tree.width() + 50, tree.height() + 50)));
    QCOMPARE(rowColours(tree), (QList<QColor>{white, selectedColor, white}));
    // The highlight stops short of the right edge.
    const QImage shot = tree.viewport()->grab().toImage();
    QCOMPARE(TestEnvironment::pixelAt(shot, QPoint(tree.viewport()->width() - 1, tree.visualItemRect(two).center().y())),
             white);

    // The pointer comes onto the third row, then onto the selected one.
    const QPoint overThree = tree.visualItemRect(tree.topLevelItem(2)).center();
    movePointer(tree, overThree);
    if (tree.viewport()->mapFromGlobal(QCursor::pos()) != overThree)
        QSKIP("This platform does not let the test place the pointer");
    QCOMPARE(rowColours(tree), (QList<QColor>{white, selectedColor, hoverColor}));
    movePointer(tree, tree.visualItemRect(two).center());
    QCOMPARE(rowColours(tree), (QList<QColor>{white, selectedColor, white}));
    // The hover test uses the row one pixel lower: the row's top line belongs to the row above.
    movePointer(tree, tree.visualItemRect(tree.topLevelItem(2)).topLeft() + QPoint(10, 0));
    QCOMPARE(rowColours(tree), (QList<QColor>{white, selectedColor, white}));

    // Off the tree: the next repaint has no hover highlight.
    QCursor::setPos(tree.mapToGlobal(QPoint(tree.width() + 40, 0)));
    QCOMPARE(rowColours(tree), (QList<QColor>{white, selectedColor, white}));
    tree.hide();
}

void TestTreeWidget::uncheckableRowsLookDisabledButStaySelectable()
{
    OrvaTreeWidget tree;
    prepareForPixels(tree);
    QFont font = tree.font();
    font.setPixelSize(16);
    font.setBold(true);
    tree.setFont(font);
    QVERIFY(showWithFolders(tree, {"WWWWWW", "WWWWWW"}));
    QTreeWidgetItem* checkable = tree.topLevelItem(0);
    checkable->setFlags(checkable->flags() | Qt::ItemIsUserCheckable);
    QTreeWidgetItem* plain = tree.topLevelItem(1);
    plain->setFlags(plain->flags() & ~Qt::ItemIsUserCheckable);

    const auto isRed = [](const QColor& c) { return c.red() - c.green() > 100 && c.red() - c.blue() > 100; };
    const auto isDark = [](const QColor& c) { return c.red() < 110 && c.green() < 110 && c.blue() < 110; };
    const QImage shot = tree.viewport()->grab().toImage();
    QVERIFY(hasTextIn(shot, tree.visualItemRect(checkable), isDark));
    QVERIFY(!hasTextIn(shot, tree.visualItemRect(checkable), isRed));
    QVERIFY(hasTextIn(shot, tree.visualItemRect(plain), isRed));
    QVERIFY(!hasTextIn(shot, tree.visualItemRect(plain), isDark));

    // Only a look: the row is enabled and selectable.
    QTest::mouseClick(tree.viewport(), Qt::LeftButton, Qt::NoModifier, tree.visualItemRect(plain).center());
    QVERIFY(plain->isSelected());
    tree.hide();
}

void TestTreeWidget::focusKeepsOrPicksTheCurrentItem()
{
    QWidget window;
    auto* before = new QLineEdit;
    auto* tree = new OrvaTreeWidget;
    auto* layout = new QVBoxLayout(&window);
    layout->addWidget(before);
    layout->addWidget(tree);
    window.show();
    QVERIFY(QTest::qWaitForWindowActive(&window));
    QList<QTreeWidgetItem*> changed;
    connect(tree, &QTreeWidget::currentItemChanged, tree, [&changed](QTreeWidgetItem* current) { changed << current; });
    const auto tabIn = [&]() {
        before->setFocus();
        QTRY_VERIFY(before->hasFocus());
        changed.clear();
        QTest::keyClick(before, Qt::Key_Tab);
        QTRY_VERIFY(tree->hasFocus());
    };

    tabIn();
    QVERIFY(!tree->currentItem());
    QCOMPARE(changed.count(), 0);

    // Items but no current one: the first visible item becomes current.
    tree->setHeaderHidden(true);
    for (const char* name : {"One", "Two", "Three"})
        tree->addTopLevelItem(folder(QString::fromLatin1(name)));
    tree->setCurrentItem(nullptr);
    tabIn();
    QCOMPARE(tree->currentItem(), tree->topLevelItem(0));

    // A current item stays current and is announced again.
    QTreeWidgetItem* three = tree->topLevelItem(2);
    tree->setCurrentItem(three);
    tabIn();
    QCOMPARE(tree->currentItem(), three);
    QVERIFY(three->isSelected());
    QVERIFY(!changed.isEmpty());
    QCOMPARE(changed.last(), three);
    window.hide();
}

void TestTreeWidget::keysAndRightClicksAreReportedAndHandled()
{
    OrvaTreeWidget tree;
    QVERIFY(showWithFolders(tree, {"One", "Two", "Three"}));
    tree.setCurrentItem(tree.topLevelItem(0));
    QSignalSpy keys(&tree, &OrvaTreeWidget::sigKeyPressEvent);
    QSignalSpy rightClicks(&tree, &OrvaTreeWidget::sigMouseRightClickEvent);
    QVERIFY(keys.isValid() && rightClicks.isValid());

    QTest::keyClick(&tree, Qt::Key_End);
    QCOMPARE(keys.count(), 1);
    QCOMPARE(tree.currentItem(), tree.topLevelItem(2));

    // The right button is reported and still selects; the left one is not reported.
    QTest::mouseClick(tree.viewport(), Qt::RightButton, Qt::NoModifier, tree.visualItemRect(tree.topLevelItem(0)).center());
    QCOMPARE(rightClicks.count(), 1);
    QVERIFY(tree.topLevelItem(0)->isSelected());
    QTest::mouseClick(tree.viewport(), Qt::LeftButton, Qt::NoModifier, tree.visualItemRect(tree.topLevelItem(1)).center());
    QCOMPARE(rightClicks.count(), 1);
    QVERIFY(tree.topLevelItem(1)->isSelected());
    QCOMPARE(keys.count(), 1);
    tree.hide();
}

void TestTreeWidget::updateScrollAreaBringsItemsIntoView()
{
    // A chain of folders twelve levels deep, 30 pixels a level, in a narrow view.
    OrvaTreeWidget tree;
    tree.setHeaderHidden(true);
    tree.header()->setStretchLastSection(false);
    tree.setIndentation(30);
    QList<QTreeWidgetItem*> levels{folder(QStringLiteral("top"))};
    tree.addTopLevelItem(levels.first());
    for (int level = 1; level <= 12; ++level) {
        levels << folder(QStringLiteral("level %1").arg(level));
        levels.at(level - 1)->addChild(levels.last());
    }
    tree.expandAll();
    tree.setColumnWidth(0, 1000);
    tree.resize(TestEnvironment::scaled(100) + 150, 600);
    tree.show();
    QVERIFY(QTest::qWaitForWindowExposed(&tree));
    QScrollBar* bar = tree.horizontalScrollBar();
    QTRY_VERIFY(bar->maximum() > 0);
    const int middle = tree.viewport()->width() / 2;
    const auto left = [&](int level) { return tree.visualItemRect(levels.at(level)).left(); };
    const auto place = [&](int level, int x) { bar->setValue(bar->value() + left(level) - x); };

    // Right of the view, or too close to its right edge: to the middle.
    bar->setValue(0);
    tree.updateScrollArea(levels.at(12));
    QCOMPARE(left(12), middle);
    place(8, tree.viewport()->width() - TestEnvironment::scaled(100) + 1);
    tree.updateScrollArea(levels.at(8));
    QCOMPARE(left(8), middle);
    // Left of the view: to the middle as well.
    bar->setValue(bar->maximum());
    QVERIFY(left(10) < 0);
    tree.updateScrollArea(levels.at(10));
    QCOMPARE(left(10), middle);

    // Its first 100 pixels in view, to the pixel at either end: nothing moves.
    for (const int x : {0, tree.viewport()->width() - TestEnvironment::scaled(100)}) {
        place(6, x);
        QCOMPARE(left(6), x);
        tree.updateScrollArea(levels.at(6));
        QCOMPARE(left(6), x);
    }
    tree.updateScrollArea(nullptr);
    tree.hide();
}

void TestTreeWidget::delegateRowsAndCheckBoxes()
{
    DelegateTree d;
    QVERIFY(showWithFolders(d.tree, {"Plain"}));
    FileSystemTreeWidgetItem* item = folder(QStringLiteral("Checkable"));
    item->setFlags(item->flags() | Qt::ItemIsUserCheckable);
    item->setCheckState(0, Qt::Unchecked);
    d.tree.addTopLevelItem(item);
    QCOMPARE(d.tree.visualItemRect(item).height(), TestEnvironment::scaled(28));

    // The host hit-tests a click against the check box drawn last (rows are drawn top down).
    g_check_rect = QRect();
    d.tree.viewport()->grab();
    QVERIFY(d.tree.visualItemRect(item).contains(g_check_rect));
    QTest::mouseClick(d.tree.viewport(), Qt::LeftButton, Qt::NoModifier, g_check_rect.center());
    QCOMPARE(item->checkState(0), Qt::Checked);
    d.tree.hide();
}

void TestTreeWidget::renamingTakesFileNamesAndEscapeCancels()
{
    DelegateTree d;
    FileSystemTreeWidgetItem* item = folder(QStringLiteral("Old name"));
    item->setFlags(item->flags() | Qt::ItemIsEditable);
    d.tree.addTopLevelItem(item);
    QVERIFY(showWithFolders(d.tree, {}));
    QSignalSpy escapes(&d.delegate, &ItemDelegate::sigKeyPressed);
    QVERIFY(escapes.isValid());

    // The old name comes selected: typing replaces it. A leading dot is
    // refused, later dots are not; the other forbidden characters never are.
    QPointer<QLineEdit> editor = d.edit(item);
    QVERIFY(editor);
    QCOMPARE(editor->selectedText(), QStringLiteral("Old name"));
    QTest::keyClicks(editor, QStringLiteral(".|a.b/c\\d:e*f?g\"h<i>j|k."));
    QCOMPARE(editor->text(), QStringLiteral("a.bcdefghijk."));
    QTest::keyClick(editor, Qt::Key_Return);
    QTRY_COMPARE(item->text(0), QStringLiteral("a.bcdefghijk."));
    QCOMPARE(escapes.count(), 0);

    editor = d.edit(item);
    QVERIFY(editor);
    QTest::keyClicks(editor, QStringLiteral("thrown away"));
    QTest::keyClick(editor, Qt::Key_Escape);
    QCOMPARE(escapes.count(), 1);
    QTRY_VERIFY(!editor || !editor->isVisible());
    QCOMPARE(item->text(0), QStringLiteral("a.bcdefghijk."));
    d.tree.hide();
}

ORVACAT_TEST_MAIN(TestTreeWidget)
#include "tst_treewidget.moc"
