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
    void homeItemsAreNotLessThanEachOther();
    void comparingWithAPlainItemThrows();

    void selectedRowIsHighlighted();
    void hoveredRowIsHighlightedUntilThePointerLeaves();
    void nothingIsHighlightedWithoutColours();
    void uncheckableRowsLookDisabledButStaySelectable();

    void focusKeepsOrPicksTheCurrentItem();
    void keyPressesAreReportedAndHandled();
    void rightClickIsReportedAndSelects();
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
    tree.sortItems(0, Qt::AscendingOrder);
    QCOMPARE(topLevelTexts(tree), sorted);
    if (homeGiven)
        QCOMPARE(static_cast<FileSystemTreeWidgetItem*>(tree.topLevelItem(0))->kind, QStringLiteral("home"));

    // Sorting again changes nothing.
    tree.sortItems(0, Qt::AscendingOrder);
    QCOMPARE(topLevelTexts(tree), sorted);
}

void TestTreeWidget::clickingTheHeaderSortsWithHomeFirst()
{
    OrvaTreeWidget tree;
    tree.setHeaderLabels({QStringLiteral("Folder")});
    tree.addTopLevelItem(folder(QStringLiteral("Home"), QStringLiteral("home")));
    for (const char* name : {"Videos", "Archive", "Downloads"})
        tree.addTopLevelItem(folder(QString::fromLatin1(name)));
    auto* child = folder(QStringLiteral("b"));
    tree.topLevelItem(1)->addChild(child);
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
    QCOMPARE(topLevelTexts(tree),
             (QStringList{"Home", "Archive", "Downloads", "Videos"}));
    QTreeWidgetItem* videos = tree.topLevelItem(3);
    QCOMPARE(videos->child(0)->text(0), QStringLiteral("a"));
    tree.hide();
}

void TestTreeWidget::homeItemsAreNotLessThanEachOther()
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
    FileSystemTreeWidgetItem capital;
    capital.setText(0, QStringLiteral("Z"));
    capital.kind = QStringLiteral("Home");
    QVERIFY(first < capital);
    QVERIFY(!(capital < first));
}

void TestTreeWidget::comparingWithAPlainItemThrows()
{
    FileSystemTreeWidgetItem item;
    QTreeWidgetItem plain;
    QVERIFY_EXCEPTION_THROWN(item < plain, std::bad_cast);
}

void TestTreeWidget::selectedRowIsHighlighted()
{
    OrvaTreeWidget tree;
    prepareForPixels(tree);
    for (const char* name : {"One", "Two", "Three"})
        tree.addTopLevelItem(folder(QString::fromLatin1(name)));
    tree.resize(TestEnvironment::scaled(300), TestEnvironment::scaled(200));
    tree.show();
    QVERIFY(QTest::qWaitForWindowExposed(&tree));
    QCursor::setPos(tree.mapToGlobal(QPoint(tree.width() + 50, tree.height() + 50)));

    QTreeWidgetItem* two = tree.topLevelItem(1);
    QTest::mouseClick(tree.viewport(), Qt::LeftButton, Qt::NoModifier, tree.visualItemRect(two).center());
    QVERIFY(two->isSelected());
    // The click left the pointer on the row: move it away again.
    QCursor::setPos(tree.mapToGlobal(QPoint(tree.width() + 50, tree.height() + 50)));

    const QImage image = grabViewport(tree);
    QCOMPARE(colourAt(image, emptyPartOf(tree, two)), selectedColor);
    QCOMPARE(colourAt(image, emptyPartOf(tree, tree.topLevelItem(0))), QColor(Qt::white));
    QCOMPARE(colourAt(image, emptyPartOf(tree, tree.topLevelItem(2))), QColor(Qt::white));

    // The highlight stops short of the right edge and keeps white corners.
    const QRect rect = tree.visualItemRect(two);
    QCOMPARE(colourAt(image, QPoint(tree.viewport()->width() - 1, rect.center().y())), QColor(Qt::white));
    tree.hide();
}

void TestTreeWidget::hoveredRowIsHighlightedUntilThePointerLeaves()
{
    OrvaTreeWidget tree;
    prepareForPixels(tree);
    for (const char* name : {"One", "Two", "Three"})
        tree.addTopLevelItem(folder(QString::fromLatin1(name)));
    tree.resize(TestEnvironment::scaled(300), TestEnvironment::scaled(200));
    tree.show();
    QVERIFY(QTest::qWaitForWindowExposed(&tree));
    QTreeWidgetItem* one = tree.topLevelItem(0);
    QTreeWidgetItem* three = tree.topLevelItem(2);
    tree.setCurrentItem(one);
    QVERIFY(one->isSelected());

    // The pointer comes onto the third row.
    const QPoint overThree = tree.visualItemRect(three).center();
    QCursor::setPos(tree.viewport()->mapToGlobal(overThree));
    QTest::mouseMove(tree.viewport(), overThree);
    if (tree.viewport()->mapFromGlobal(QCursor::pos()) != overThree)
        QSKIP("This platform does not let the test place the pointer");
    QImage image = grabViewport(tree);
    QCOMPARE(colourAt(image, emptyPartOf(tree, three)), hoverColor);
    QCOMPARE(colourAt(image, emptyPartOf(tree, one)), selectedColor);
    QCOMPARE(colourAt(image, emptyPartOf(tree, tree.topLevelItem(1))), QColor(Qt::white));

    // Over the selected row: it keeps the selected colour.
    const QPoint overOne = tree.visualItemRect(one).center();
    QCursor::setPos(tree.viewport()->mapToGlobal(overOne));
    QTest::mouseMove(tree.viewport(), overOne);
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
    tree.addTopLevelItem(folder(QStringLiteral("One")));
    tree.resize(TestEnvironment::scaled(300), TestEnvironment::scaled(100));
    tree.show();
    QVERIFY(QTest::qWaitForWindowExposed(&tree));
    tree.setCurrentItem(tree.topLevelItem(0));
    const QImage image = grabViewport(tree);
    // An invalid colour paints as black; only the white border would show.
    const QColor colour = colourAt(image, emptyPartOf(tree, tree.topLevelItem(0)));
    QVERIFY2(colour != selectedColor && colour != hoverColor, qPrintable(colour.name()));
    tree.hide();
}

void TestTreeWidget::uncheckableRowsLookDisabledButStaySelectable()
{
    OrvaTreeWidget tree;
    prepareForPixels(tree);
    ItemDelegate delegate;
    tree.setItemDelegate(&delegate);
    QFont font = tree.font();
    font.setPixelSize(TestEnvironment::scaled(16));
    font.setBold(true);
    tree.setFont(font);

    FileSystemTreeWidgetItem* checkable = folder(QStringLiteral("WWWWWW"));
    checkable->setFlags(checkable->flags() | Qt::ItemIsUserCheckable);
    checkable->setCheckState(0, Qt::Checked);
    FileSystemTreeWidgetItem* plain = folder(QStringLiteral("WWWWWW"));
    plain->setFlags(plain->flags() & ~Qt::ItemIsUserCheckable);
    tree.addTopLevelItem(checkable);
    tree.addTopLevelItem(plain);
    tree.resize(TestEnvironment::scaled(300), TestEnvironment::scaled(150));
    tree.show();
    QVERIFY(QTest::qWaitForWindowExposed(&tree));
    QCursor::setPos(tree.mapToGlobal(QPoint(tree.width() + 50, tree.height() + 50)));

    const QImage image = grabViewport(tree);
    const ColourCount checkableText = textColours(image, tree.visualItemRect(checkable));
    const ColourCount plainText = textColours(image, tree.visualItemRect(plain));
    QCOMPARE(checkableText.reddish, 0);
    QVERIFY(checkableText.dark > 0);
    QVERIFY(plainText.reddish > 0);
    QCOMPARE(plainText.dark, 0);

    // The disabled look is only a look: the row is enabled and selectable.
    QVERIFY(plain->flags() & Qt::ItemIsEnabled);
    QTest::mouseClick(tree.viewport(), Qt::LeftButton, Qt::NoModifier, tree.visualItemRect(plain).center());
    QVERIFY(plain->isSelected());
    QCOMPARE(tree.currentItem(), plain);
    tree.hide();
    tree.setItemDelegate(nullptr);
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
    QTest::keyClick(tree, Qt::Key_Backtab);
    QTRY_VERIFY(before->hasFocus());
    QTest::keyClick(before, Qt::Key_Tab);
    QTRY_VERIFY(tree->hasFocus());
    QCOMPARE(tree->currentItem(), tree->topLevelItem(0));

    // A current item stays current, announced again.
    QTreeWidgetItem* three = tree->topLevelItem(2);
    tree->setCurrentItem(three);
    QTest::keyClick(tree, Qt::Key_Backtab);
    QTRY_VERIFY(before->hasFocus());
    changed.clear();
    QTest::keyClick(before, Qt::Key_Tab);
    QTRY_VERIFY(tree->hasFocus());
    QCOMPARE(tree->currentItem(), three);
    QVERIFY(three->isSelected());
    QVERIFY(changed.count() >= 1);
    QCOMPARE(changed.last(), three);
    window.hide();
}

void TestTreeWidget::keyPressesAreReportedAndHandled()
{
    OrvaTreeWidget tree;
    for (const char* name : {"One", "Two", "Three"})
        tree.addTopLevelItem(folder(QString::fromLatin1(name)));
    tree.show();
    QVERIFY(QTest::qWaitForWindowExposed(&tree));
    tree.setCurrentItem(tree.topLevelItem(0));
    QSignalSpy keys(&tree, &OrvaTreeWidget::sigKeyPressEvent);
    QVERIFY(keys.isValid());

    QTest::keyClick(&tree, Qt::Key_Down);
    QCOMPARE(keys.count(), 1);
    QCOMPARE(tree.currentItem(), tree.topLevelItem(1));
    QTest::keyClick(&tree, Qt::Key_End);
    QCOMPARE(keys.count(), 2);
    QCOMPARE(tree.currentItem(), tree.topLevelItem(2));
    tree.hide();
}

void TestTreeWidget::rightClickIsReportedAndSelects()
{
    OrvaTreeWidget tree;
    for (const char* name : {"One", "Two", "Three"})
        tree.addTopLevelItem(folder(QString::fromLatin1(name)));
    tree.resize(TestEnvironment::scaled(300), TestEnvironment::scaled(200));
    tree.show();
    QVERIFY(QTest::qWaitForWindowExposed(&tree));
    tree.setCurrentItem(tree.topLevelItem(0));
    QSignalSpy rightClicks(&tree, &OrvaTreeWidget::sigMouseRightClickEvent);
    QVERIFY(rightClicks.isValid());

    QTreeWidgetItem* three = tree.topLevelItem(2);
    QTest::mouseClick(tree.viewport(), Qt::RightButton, Qt::NoModifier, tree.visualItemRect(three).center());
    QCOMPARE(rightClicks.count(), 1);
    QVERIFY(three->isSelected());

    QTreeWidgetItem* two = tree.topLevelItem(1);
    QTest::mouseClick(tree.viewport(), Qt::LeftButton, Qt::NoModifier, tree.visualItemRect(two).center());
    QCOMPARE(rightClicks.count(), 1);
    QVERIFY(two->isSelected());
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
    ItemDelegate delegate;
    OrvaTreeWidget tree;
    tree.setItemDelegate(&delegate);
    tree.addTopLevelItem(folder(QStringLiteral("Some folder with a long name")));
    QStyleOptionViewItem option;
    option.initFrom(&tree);
    const QModelIndex index = tree.model()->index(0, 0);
    const QSize hint = delegate.sizeHint(option, index);
    QCOMPARE(hint.height(), TestEnvironment::scaled(28));
    QVERIFY(hint.width() > 0);
    tree.show();
    QVERIFY(QTest::qWaitForWindowExposed(&tree));
    QCOMPARE(tree.visualItemRect(tree.topLevelItem(0)).height(), TestEnvironment::scaled(28));
    tree.hide();
    tree.setItemDelegate(nullptr);
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

    ItemDelegate delegate;
    OrvaTreeWidget tree;
    tree.setItemDelegate(&delegate);
    FileSystemTreeWidgetItem* item = folder(QStringLiteral("Old name"));
    item->setFlags(item->flags() | Qt::ItemIsEditable);
    tree.addTopLevelItem(item);
    tree.addTopLevelItem(folder(QStringLiteral("Other")));
    tree.show();
    QApplication::setActiveWindow(&tree);
    QVERIFY(QTest::qWaitForWindowActive(&tree));

    tree.editItem(item, 0);
    QLineEdit* editor = nullptr;
    QTRY_VERIFY((editor = tree.viewport()->findChild<QLineEdit*>()) && editor->isVisible());
    QVERIFY(editor->validator());
    QCOMPARE(editor->text(), QStringLiteral("Old name"));
    QTRY_VERIFY(editor->hasFocus());

    // The user clears the name and types a new one.
    QTest::keyClick(editor, Qt::Key_A, Qt::ControlModifier);
    QTest::keyClick(editor, Qt::Key_Backspace);
    QCOMPARE(editor->text(), QString());
    QTest::keyClicks(editor, typed);
    QCOMPARE(editor->text(), result);

    QTest::keyClick(editor, Qt::Key_Return);
    QTRY_COMPARE(item->text(0), result);
    tree.hide();
    tree.setItemDelegate(nullptr);
}

void TestTreeWidget::escapeInTheEditorIsReportedAndCancels()
{
    ItemDelegate delegate;
    OrvaTreeWidget tree;
    tree.setItemDelegate(&delegate);
    FileSystemTreeWidgetItem* item = folder(QStringLiteral("Keep me"));
    item->setFlags(item->flags() | Qt::ItemIsEditable);
    tree.addTopLevelItem(item);
    tree.show();
    QApplication::setActiveWindow(&tree);
    QVERIFY(QTest::qWaitForWindowActive(&tree));
    QSignalSpy escapes(&delegate, &ItemDelegate::sigKeyPressed);
    QVERIFY(escapes.isValid());

    tree.editItem(item, 0);
    QPointer<QLineEdit> editor;
    QTRY_VERIFY((editor = tree.viewport()->findChild<QLineEdit*>()) && editor->hasFocus());
    QTest::keyClicks(editor, QStringLiteral("changed"));
    QTest::keyClick(editor, Qt::Key_Return, Qt::NoModifier);
    QCOMPARE(escapes.count(), 0);
    QTRY_COMPARE(item->text(0), QStringLiteral("changed"));

    tree.editItem(item, 0);
    QTRY_VERIFY((editor = tree.viewport()->findChild<QLineEdit*>()) && editor->isVisible() && editor->hasFocus());
    QTest::keyClicks(editor, QStringLiteral("thrown away"));
    QTest::keyClick(editor, Qt::Key_Escape);
    QCOMPARE(escapes.count(), 1);
    QTRY_VERIFY(!editor || !editor->isVisible());
    QCOMPARE(item->text(0), QStringLiteral("changed"));
    tree.hide();
    tree.setItemDelegate(nullptr);
}

void TestTreeWidget::nonTextEditorsGetNoValidator()
{
    ItemDelegate delegate;
    OrvaTreeWidget tree;
    tree.setItemDelegate(&delegate);
    auto* item = folder(QString());
    item->setData(0, Qt::EditRole, 42);
    item->setFlags(item->flags() | Qt::ItemIsEditable);
    tree.addTopLevelItem(item);
    tree.show();
    QVERIFY(QTest::qWaitForWindowExposed(&tree));
    tree.editItem(item, 0);
    QSpinBox* editor = nullptr;
    QTRY_VERIFY((editor = tree.viewport()->findChild<QSpinBox*>()) != nullptr);
    QCOMPARE(editor->value(), 42);

    // Setting data on no editor at all is harmless.
    delegate.setEditorData(nullptr, QModelIndex());
    tree.hide();
    tree.setItemDelegate(nullptr);
}

void TestTreeWidget::drawnCheckBoxIsRecordedForHitTests()
{
    ItemDelegate delegate;
    OrvaTreeWidget tree;
    tree.setItemDelegate(&delegate);
    tree.setHeaderHidden(true);
    tree.addTopLevelItem(folder(QStringLiteral("Plain")));
    FileSystemTreeWidgetItem* item = folder(QStringLiteral("Checkable"));
    item->setFlags(item->flags() | Qt::ItemIsUserCheckable);
    item->setCheckState(0, Qt::Unchecked);
    tree.addTopLevelItem(item);
    tree.resize(TestEnvironment::scaled(300), TestEnvironment::scaled(200));

    g_check_rect = QRect();
    tree.show();
    QVERIFY(QTest::qWaitForWindowExposed(&tree));
    tree.viewport()->grab();
    QVERIFY(!g_check_rect.isNull());
    const QRect row = tree.visualItemRect(item);
    QVERIFY2(row.contains(g_check_rect), qPrintable(QStringLiteral("%1,%2 %3x%4").arg(g_check_rect.x())
                                                         .arg(g_check_rect.y()).arg(g_check_rect.width())
                                                         .arg(g_check_rect.height())));

    // A host hit-tests a click against it.
    const QPoint click = g_check_rect.center();
    QTest::mouseClick(tree.viewport(), Qt::LeftButton, Qt::NoModifier, click);
    QCOMPARE(item->checkState(0), Qt::Checked);
    tree.hide();
    tree.setItemDelegate(nullptr);
}

ORVACAT_TEST_MAIN(TestTreeWidget)
#include "tst_treewidget.moc"
