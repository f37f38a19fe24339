// The folder tree, its delegate and the "home"-first item ordering.

#include "testmain.h"

#include "testenvironment.h"

#include <orvacat/dpiinfo.h>
#include <orvacat/globals.h>
#include <orvacat/orvatreewidget.h>

#include <QHeaderView>
#include <QLineEdit>
#include <QScrollBar>
#include <QSpinBox>
#include <QVBoxLayout>

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

QStringList topLevelTexts(QTreeWidget& tree)
{
    QStringList texts;
    for (int i = 0; i < tree.topLevelItemCount(); ++i)
        texts << tree.topLevelItem(i)->text(0);
    return texts;
}

// A tree that shows the highlight as a host would: the style's own
// selection background is made transparent, the text colours are known.
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
    tree.setHeaderHidden(true);
    tree.setRootIsDecorated(false);
    tree.setBackgroundColor(selectedColor, hoverColor);
    // The style's focus frame is translucent and would tint the sample points.
    tree.setFocusPolicy(Qt::NoFocus);
}

QImage grabViewport(QTreeWidget& tree)
{
    return tree.viewport()->grab().toImage();
}

// The colour at a logical point of a grabbed image, whatever its pixel ratio.
QColor colourAt(const QImage& image, const QPoint& logical)
{
    const qreal ratio = image.devicePixelRatio();
    return image.pixelColor(QPoint(int(logical.x() * ratio), int(logical.y() * ratio)));
}

// A point of the row's highlight away from its text and rounded corners.
QPoint emptyPartOf(QTreeWidget& tree, QTreeWidgetItem* item)
{
    const QRect rect = tree.visualItemRect(item);
    return QPoint(tree.viewport()->width() * 3 / 4, rect.center().y());
}

struct ColourCount
{
    int reddish = 0;
    int dark = 0;
};

ColourCount textColours(const QImage& image, const QRect& logicalRect)
{
    ColourCount count;
    const qreal ratio = image.devicePixelRatio();
    const QRect rect(QPoint(int(logicalRect.left() * ratio), int(logicalRect.top() * ratio)),
                     QPoint(int(logicalRect.right() * ratio), int(logicalRect.bottom() * ratio)));
    for (int y = rect.top(); y <= rect.bottom() && y < image.height(); ++y) {
        for (int x = rect.left(); x <= rect.right() && x < image.width(); ++x) {
            const QColor c = image.pixelColor(x, y);
            if (c.red() - c.green() > 100 && c.red() - c.blue() > 100)
                ++count.reddish;
            else if (c.red() < 110 && c.green() < 110 && c.blue() < 110)
                ++count.dark;
        }
    }
    return count;
}

/** Adds a plain folder per name, sizes and shows @p tree; the pointer is moved off it. */
bool showWithFolders(OrvaTreeWidget& tree, const QStringList& names, int width = 300, int height = 200)
{
    for (const QString& name : names)
        tree.addTopLevelItem(folder(name));
    tree.resize(TestEnvironment::scaled(width), TestEnvironment::scaled(height));
    tree.show();
    const bool active = QTest::qWaitForWindowActive(&tree);
    QCursor::setPos(tree.mapToGlobal(QPoint(tree.width() + 50, tree.height() + 50)));
    return active;
}

/** The pointer onto @p pos of the viewport, as a user moves it. */
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

    FileSystemTreeWidgetItem* addEditable(const QString& text)
    {
        FileSystemTreeWidgetItem* item = folder(text);
        item->setFlags(item->flags() | Qt::ItemIsEditable);
        tree.addTopLevelItem(item);
        return item;
    }

    /** Starts editing @p item and answers its line editor once it has the focus. */
    QLineEdit* edit(QTreeWidgetItem* item)
    {
        tree.editItem(item, 0);
        QLineEdit* editor = nullptr;
        QTest::qWaitFor([&]() {
            editor = tree.viewport()->findChild<QLineEdit*>();
            return editor && editor->isVisible() && editor->hasFocus();
        });
        return editor && editor->hasFocus() ? editor : nullptr;
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

    void sortingKeepsHomeFirst_data();
    void sortingKeepsHomeFirst();
    void clickingTheHeaderSortsWithHomeFirst();
    void homeComparisons();

    void selectedAndHoveredRowsAreHighlighted();
    void nothingIsHighlightedWithoutColours();
    void uncheckableRowsLookDisabledButStaySelectable();

    void focusKeepsOrPicksTheCurrentItem();
    void keysAndRightClicksAreReportedAndHandled();
    void updateScrollAreaBringsDeepItemsIntoView();

    void delegateRowHeight();
    void renameAcceptsOnlyFileNames_data();
    void renameAcceptsOnlyFileNames();
    void escapeInTheEditorIsReportedAndCancels();
    void nonTextEditorsGetNoValidator();
    void drawnCheckBoxIsRecordedForHitTests();
};

void TestTreeWidget::initTestCase()
{
    qRegisterMetaType<QKeyEvent*>("QKeyEvent*");
    qRegisterMetaType<QMouseEvent*>("QMouseEvent*");
    TestEnvironment::installDefaultTheme();
}

void TestTreeWidget::cleanup()
{
    QCOMPARE(TestEnvironment::visibleTopLevels(), QStringList());
}

void TestTreeWidget::sortingKeepsHomeFirst_data()
{
    QTest::addColumn<QStringList>("texts");
    QTest::addColumn<QString>("home");
    QTest::addColumn<QStringList>("sorted");

    QTest::newRow("home added first, text sorts late")
        << QStringList{"Home", "Pictures", "Desktop", "Music", "Documents"} << "Home"
        << QStringList{"Home", "Desktop", "Documents", "Music", "Pictures"};
    QTest::newRow("home added last, text sorts first")
        << QStringList{"zeta", "beta", "Alpha"} << "Alpha" << QStringList{"Alpha", "beta", "zeta"};
    QTest::newRow("home named like a folder")
        << QStringList{"Music", "Music", "Art"} << "Music" << QStringList{"Music", "Art", "Music"};
    QTest::newRow("no home: by text") << QStringList{"c", "a", "b"} << QString() << QStringList{"a", "b", "c"};
    QStringList many{"~"};
    for (int i = 40; i > 0; --i)
        many << QStringLiteral("folder %1").arg(i, 2, 10, QLatin1Char('0'));
    QStringList manySorted = many;
    std::sort(manySorted.begin() + 1, manySorted.end());
    QTest::newRow("home ahead of forty folders") << many << "~" << manySorted;
}

void TestTreeWidget::sortingKeepsHomeFirst()
{
    QFETCH(QStringList, texts);
    QFETCH(QString, home);
    QFETCH(QStringList, sorted);

    OrvaTreeWidget tree;
    bool homeGiven = false;
    for (const QString& text : texts) {
        // Only the first item with the home text is the home entry.
        const bool isHome = !homeGiven && text == home;
        homeGiven = homeGiven || isHome;
        tree.addTopLevelItem(folder(text, isHome ? QStringLiteral("home") : QStringLiteral("folder")));
    }
    // Sorting again changes nothing.
    for (int twice = 0; twice < 2; ++twice) {
        tree.sortItems(0, Qt::AscendingOrder);
        QCOMPARE(topLevelTexts(tree), sorted);
    }
    if (homeGiven)
        QCOMPARE(static_cast<FileSystemTreeWidgetItem*>(tree.topLevelItem(0))->kind, QStringLiteral("home"));
}

void TestTreeWidget::clickingTheHeaderSortsWithHomeFirst()
{
    OrvaTreeWidget tree;
    tree.setHeaderLabels({QStringLiteral("Folder")});
    tree.addTopLevelItem(folder(QStringLiteral("Home"), QStringLiteral("home")));
    for (const char* name : {"Videos", "Archive", "Downloads"})
        tree.addTopLevelItem(folder(QString::fromLatin1(name)));
    tree.topLevelItem(1)->addChild(folder(QStringLiteral("b")));
    tree.topLevelItem(1)->addChild(folder(QStringLiteral("a")));
    tree.setSortingEnabled(true);
    tree.sortByColumn(0, Qt::DescendingOrder);
    tree.resize(TestEnvironment::scaled(300), TestEnvironment::scaled(300));
    tree.show();
    QVERIFY(QTest::qWaitForWindowExposed(&tree));

    QHeaderView* header = tree.header();
    QTest::mouseClick(header->viewport(), Qt::LeftButton, Qt::NoModifier,
                      QPoint(header->sectionViewportPosition(0) + 10, header->height() / 2));
    QCOMPARE(header->sortIndicatorOrder(), Qt::AscendingOrder);
    QCOMPARE(topLevelTexts(tree), (QStringList{"Home", "Archive", "Downloads", "Videos"}));
    QCOMPARE(tree.topLevelItem(3)->child(0)->text(0), QStringLiteral("a"));
    tree.hide();
}

void TestTreeWidget::homeComparisons()
{
    FileSystemTreeWidgetItem first;
    first.setText(0, QStringLiteral("A"));
    first.kind = QStringLiteral("home");
    FileSystemTreeWidgetItem second;
    second.setText(0, QStringLiteral("B"));
    second.kind = QStringLiteral("home");
    QVERIFY(!(first < second));
    QVERIFY(!(second < first));

    FileSystemTreeWidgetItem other;
    other.setText(0, QStringLiteral("0"));
    QVERIFY(!(other < first));
    // The home item's own kind is not consulted on the left.
    QVERIFY(!(first < other));
    other.setText(0, QStringLiteral("Z"));
    QVERIFY(first < other);

    // Case-sensitive: "Home" is an ordinary kind.
    other.kind = QStringLiteral("Home");
    QVERIFY(first < other);
    QVERIFY(!(other < first));

    QTreeWidgetItem plain;
    QVERIFY_EXCEPTION_THROWN(first < plain, std::bad_cast);
}

void TestTreeWidget::selectedAndHoveredRowsAreHighlighted()
{
    OrvaTreeWidget tree;
    prepareForPixels(tree);
    QVERIFY(showWithFolders(tree, {"One", "Two", "Three"}));
    QTreeWidgetItem* one = tree.topLevelItem(0);
    QTreeWidgetItem* two = tree.topLevelItem(1);
    QTreeWidgetItem* three = tree.topLevelItem(2);

    QTest::mouseClick(tree.viewport(), Qt::LeftButton, Qt::NoModifier, tree.visualItemRect(two).center());
    QVERIFY(two->isSelected());
    // The click left the pointer on the row: move it away again.
    QCursor::setPos(tree.mapToGlobal(QPoint(tree.width() + 50, tree.height() + 50)));
    QImage image = grabViewport(tree);
    QCOMPARE(colourAt(image, emptyPartOf(tree, two)), selectedColor);
    QCOMPARE(colourAt(image, emptyPartOf(tree, one)), QColor(Qt::white));
    QCOMPARE(colourAt(image, emptyPartOf(tree, three)), QColor(Qt::white));
    // The highlight stops short of the right edge and keeps white corners.
    const QRect rect = tree.visualItemRect(two);
    QCOMPARE(colourAt(image, QPoint(tree.viewport()->width() - 1, rect.center().y())), QColor(Qt::white));

    // The pointer comes onto the third row.
    tree.setCurrentItem(one);
    const QPoint overThree = tree.visualItemRect(three).center();
    movePointer(tree, overThree);
    if (tree.viewport()->mapFromGlobal(QCursor::pos()) != overThree)
        QSKIP("This platform does not let the test place the pointer");
    image = grabViewport(tree);
    QCOMPARE(colourAt(image, emptyPartOf(tree, three)), hoverColor);
    QCOMPARE(colourAt(image, emptyPartOf(tree, one)), selectedColor);
    QCOMPARE(colourAt(image, emptyPartOf(tree, two)), QColor(Qt::white));

    // Over the selected row: it keeps the selected colour.
    movePointer(tree, tree.visualItemRect(one).center());
    image = grabViewport(tree);
    QCOMPARE(colourAt(image, emptyPartOf(tree, one)), selectedColor);
    QCOMPARE(colourAt(image, emptyPartOf(tree, three)), QColor(Qt::white));

    // Off the tree: the next repaint has no hover highlight.
    QCursor::setPos(tree.mapToGlobal(QPoint(tree.width() + 40, 0)));
    image = grabViewport(tree);
    QCOMPARE(colourAt(image, emptyPartOf(tree, three)), QColor(Qt::white));
    QCOMPARE(colourAt(image, emptyPartOf(tree, one)), selectedColor);
    tree.hide();
}

void TestTreeWidget::nothingIsHighlightedWithoutColours()
{
    OrvaTreeWidget tree;
    prepareForPixels(tree);
    tree.setBackgroundColor(QColor(), QColor());
    QVERIFY(showWithFolders(tree, {"One"}, 300, 100));
    tree.setCurrentItem(tree.topLevelItem(0));
    // An invalid colour paints as black; only the white border would show.
    const QColor colour = colourAt(grabViewport(tree), emptyPartOf(tree, tree.topLevelItem(0)));
    QVERIFY2(colour != selectedColor && colour != hoverColor, qPrintable(colour.name()));
    tree.hide();
}

void TestTreeWidget::uncheckableRowsLookDisabledButStaySelectable()
{
    DelegateTree d;
    OrvaTreeWidget& tree = d.tree;
    prepareForPixels(tree);
    QFont font = tree.font();
    font.setPixelSize(TestEnvironment::scaled(16));
    font.setBold(true);
    tree.setFont(font);

    QVERIFY(showWithFolders(tree, {"WWWWWW", "WWWWWW"}, 300, 150));
    QTreeWidgetItem* checkable = tree.topLevelItem(0);
    checkable->setFlags(checkable->flags() | Qt::ItemIsUserCheckable);
    checkable->setCheckState(0, Qt::Checked);
    QTreeWidgetItem* plain = tree.topLevelItem(1);
    plain->setFlags(plain->flags() & ~Qt::ItemIsUserCheckable);

    const QImage image = grabViewport(tree);
    const ColourCount checkableText = textColours(image, tree.visualItemRect(checkable));
    const ColourCount plainText = textColours(image, tree.visualItemRect(plain));
    QCOMPARE(checkableText.reddish, 0);
    QVERIFY(checkableText.dark > 0);
    QVERIFY(plainText.reddish > 0);
    QCOMPARE(plainText.dark, 0);

    // The disabled look is only a look: the row is enabled and selectable.
    QTest::mouseClick(tree.viewport(), Qt::LeftButton, Qt::NoModifier, tree.visualItemRect(plain).center());
    QVERIFY(plain->isSelected());
    QCOMPARE(tree.currentItem(), plain);
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
    window.resize(TestEnvironment::scaled(300), TestEnvironment::scaled(300));
    window.show();
    QApplication::setActiveWindow(&window);
    QVERIFY(QTest::qWaitForWindowActive(&window));
    QList<QTreeWidgetItem*> changed;
    connect(tree, &QTreeWidget::currentItemChanged, tree,
            [&changed](QTreeWidgetItem* current) { changed << current; });
    auto tabBackIn = [&]() {
        QTest::keyClick(tree, Qt::Key_Backtab);
        QTRY_VERIFY(before->hasFocus());
        changed.clear();
        QTest::keyClick(before, Qt::Key_Tab);
        QTRY_VERIFY(tree->hasFocus());
    };

    // Empty tree: tabbing in sets no current item.
    before->setFocus();
    QTest::keyClick(before, Qt::Key_Tab);
    QTRY_VERIFY(tree->hasFocus());
    QVERIFY(!tree->currentItem());
    QCOMPARE(changed.count(), 0);

    // Items but no current one: the first visible item becomes current.
    tree->setHeaderHidden(true);
    for (const char* name : {"One", "Two", "Three"})
        tree->addTopLevelItem(folder(QString::fromLatin1(name)));
    tree->setCurrentItem(nullptr);
    tabBackIn();
    QCOMPARE(tree->currentItem(), tree->topLevelItem(0));

    // A current item stays current, announced again.
    QTreeWidgetItem* three = tree->topLevelItem(2);
    tree->setCurrentItem(three);
    tabBackIn();
    QCOMPARE(tree->currentItem(), three);
    QVERIFY(three->isSelected());
    QVERIFY(changed.count() >= 1);
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

    QTest::keyClick(&tree, Qt::Key_Down);
    QCOMPARE(keys.count(), 1);
    QCOMPARE(tree.currentItem(), tree.topLevelItem(1));
    QTest::keyClick(&tree, Qt::Key_End);
    QCOMPARE(keys.count(), 2);
    QCOMPARE(tree.currentItem(), tree.topLevelItem(2));

    QTreeWidgetItem* one = tree.topLevelItem(0);
    QTest::mouseClick(tree.viewport(), Qt::RightButton, Qt::NoModifier, tree.visualItemRect(one).center());
    QCOMPARE(rightClicks.count(), 1);
    QVERIFY(one->isSelected());
    QTreeWidgetItem* two = tree.topLevelItem(1);
    QTest::mouseClick(tree.viewport(), Qt::LeftButton, Qt::NoModifier, tree.visualItemRect(two).center());
    QCOMPARE(rightClicks.count(), 1);
    QVERIFY(two->isSelected());
    QCOMPARE(keys.count(), 2);
    tree.hide();
}

void TestTreeWidget::updateScrollAreaBringsDeepItemsIntoView()
{
    OrvaTreeWidget tree;
    tree.setHeaderHidden(true);
    tree.header()->setStretchLastSection(false);
    tree.setIndentation(TestEnvironment::scaled(30));
    QTreeWidgetItem* top = folder(QStringLiteral("top"));
    tree.addTopLevelItem(top);
    QTreeWidgetItem* deep = top;
    for (int level = 0; level < 12; ++level) {
        QTreeWidgetItem* child = folder(QStringLiteral("level %1").arg(level));
        deep->addChild(child);
        deep = child;
    }
    tree.expandAll();
    tree.setColumnWidth(0, TestEnvironment::scaled(800));
    tree.resize(TestEnvironment::scaled(160), TestEnvironment::scaled(600));
    tree.show();
    QVERIFY(QTest::qWaitForWindowExposed(&tree));
    QScrollBar* bar = tree.horizontalScrollBar();
    QTRY_VERIFY(bar->maximum() > 0);
    bar->setValue(0);

    const int width = tree.viewport()->width();
    int x = tree.visualItemRect(deep).left();
    QVERIFY(x + TestEnvironment::scaled(100) > width);
    tree.updateScrollArea(deep);
    QCOMPARE(bar->value(), qBound(bar->minimum(), 0 - width / 2 + x, bar->maximum()));
    if (bar->value() < bar->maximum())
        QCOMPARE(tree.visualItemRect(deep).left(), width / 2);

    // Already in view: nothing moves.
    QTreeWidgetItem* visible = deep->parent();
    bar->setValue(tree.visualItemRect(visible).left() + bar->value() - 2);
    const int before = bar->value();
    QVERIFY(tree.visualItemRect(visible).left() >= 0);
    if (tree.visualItemRect(visible).left() + TestEnvironment::scaled(100) <= width) {
        tree.updateScrollArea(visible);
        QCOMPARE(bar->value(), before);
    }

    // Scrolled past on the left: back to the middle (or as far as it goes).
    bar->setValue(bar->maximum());
    x = tree.visualItemRect(top).left();
    QVERIFY(x < 0);
    const int value = bar->value();
    tree.updateScrollArea(top);
    QCOMPARE(bar->value(), qBound(bar->minimum(), value - width / 2 + x, bar->maximum()));

    tree.updateScrollArea(nullptr);
    tree.hide();
}

void TestTreeWidget::delegateRowHeight()
{
    DelegateTree d;
    QVERIFY(showWithFolders(d.tree, {"Some folder with a long name"}));
    QCOMPARE(d.tree.visualItemRect(d.tree.topLevelItem(0)).height(), TestEnvironment::scaled(28));
    d.tree.hide();
}

void TestTreeWidget::renameAcceptsOnlyFileNames_data()
{
    QTest::addColumn<QString>("typed");
    QTest::addColumn<QString>("result");

    QTest::newRow("plain name") << "Reports 2026" << "Reports 2026";
    QTest::newRow("leading dot refused") << ".hidden" << "hidden";
    QTest::newRow("two leading dots refused") << "..x" << "x";
    QTest::newRow("later dots accepted") << "notes.v2.txt" << "notes.v2.txt";
    QTest::newRow("trailing dot accepted") << "name." << "name.";
    QTest::newRow("slash refused") << "a/b" << "ab";
    QTest::newRow("backslash refused") << "a\\b" << "ab";
    QTest::newRow("every forbidden character") << "a:b*c?d\"e<f>g|h" << "abcdefgh";
    QTest::newRow("forbidden first character") << "|x" << "x";
    QTest::newRow("ampersand and spaces") << "R&D  draft (2)" << "R&D  draft (2)";
}

void TestTreeWidget::renameAcceptsOnlyFileNames()
{
    QFETCH(QString, typed);
    QFETCH(QString, result);

    DelegateTree d;
    FileSystemTreeWidgetItem* item = d.addEditable(QStringLiteral("Old name"));
    QVERIFY(showWithFolders(d.tree, {"Other"}));
    QLineEdit* editor = d.edit(item);
    QVERIFY(editor);
    QCOMPARE(editor->text(), QStringLiteral("Old name"));

    // The user clears the name and types a new one.
    QTest::keyClick(editor, Qt::Key_A, Qt::ControlModifier);
    QTest::keyClick(editor, Qt::Key_Backspace);
    QCOMPARE(editor->text(), QString());
    QTest::keyClicks(editor, typed);
    QCOMPARE(editor->text(), result);

    QTest::keyClick(editor, Qt::Key_Return);
    QTRY_COMPARE(item->text(0), result);
    d.tree.hide();
}

void TestTreeWidget::escapeInTheEditorIsReportedAndCancels()
{
    DelegateTree d;
    FileSystemTreeWidgetItem* item = d.addEditable(QStringLiteral("Keep me"));
    QVERIFY(showWithFolders(d.tree, {}));
    QSignalSpy escapes(&d.delegate, &ItemDelegate::sigKeyPressed);
    QVERIFY(escapes.isValid());

    QPointer<QLineEdit> editor = d.edit(item);
    QVERIFY(editor);
    QTest::keyClicks(editor, QStringLiteral("changed"));
    QTest::keyClick(editor, Qt::Key_Return, Qt::NoModifier);
    QCOMPARE(escapes.count(), 0);
    QTRY_COMPARE(item->text(0), QStringLiteral("changed"));

    editor = d.edit(item);
    QVERIFY(editor);
    QTest::keyClicks(editor, QStringLiteral("thrown away"));
    QTest::keyClick(editor, Qt::Key_Escape);
    QCOMPARE(escapes.count(), 1);
    QTRY_VERIFY(!editor || !editor->isVisible());
    QCOMPARE(item->text(0), QStringLiteral("changed"));
    d.tree.hide();
}

void TestTreeWidget::nonTextEditorsGetNoValidator()
{
    DelegateTree d;
    FileSystemTreeWidgetItem* item = d.addEditable(QString());
    item->setData(0, Qt::EditRole, 42);
    QVERIFY(showWithFolders(d.tree, {}));
    d.tree.editItem(item, 0);
    QSpinBox* editor = nullptr;
    QTRY_VERIFY((editor = d.tree.viewport()->findChild<QSpinBox*>()) != nullptr);
    QCOMPARE(editor->value(), 42);

    // Setting data on no editor at all is harmless.
    d.delegate.setEditorData(nullptr, QModelIndex());
    d.tree.hide();
}

void TestTreeWidget::drawnCheckBoxIsRecordedForHitTests()
{
    DelegateTree d;
    OrvaTreeWidget& tree = d.tree;
    tree.setHeaderHidden(true);
    FileSystemTreeWidgetItem* item = folder(QStringLiteral("Checkable"));
    item->setFlags(item->flags() | Qt::ItemIsUserCheckable);
    item->setCheckState(0, Qt::Unchecked);
    g_check_rect = QRect();
    QVERIFY(showWithFolders(tree, {"Plain"}));
    tree.addTopLevelItem(item);
    tree.viewport()->grab();
    QVERIFY(!g_check_rect.isNull());
    QVERIFY(tree.visualItemRect(item).contains(g_check_rect));

    // A host hit-tests a click against it.
    QTest::mouseClick(tree.viewport(), Qt::LeftButton, Qt::NoModifier, g_check_rect.center());
    QCOMPARE(item->checkState(0), Qt::Checked);
    tree.hide();
}

ORVACAT_TEST_MAIN(TestTreeWidget)
#include "tst_treewidget.moc"
