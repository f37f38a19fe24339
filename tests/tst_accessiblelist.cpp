// Focus lists of widget trees and the bulk focus-policy setter.

#include "testmain.h"
#include "testenvironment.h"

#include <orvacat/accessiblelist.h>

#include <QLineEdit>
#include <QPushButton>
#include <QTimer>
#include <QVBoxLayout>

namespace {

QStringList namesOf(const QList<QWidget*>& widgets)
{
    QStringList names;
    for (const QWidget* widget : widgets)
        names << (widget ? widget->objectName() : QStringLiteral("<null>"));
    return names;
}

QWidget* makeWidget(const char* name, Qt::FocusPolicy policy, QWidget* parent)
{
    auto* widget = new QWidget(parent);
    widget->setObjectName(QString::fromLatin1(name));
    widget->setFocusPolicy(policy);
    return widget;
}

/**
 * root (Strong)
 *   a (NoFocus)          with a layout and a timer as non-widget children
 *     a1 (Tab)
 *     a2 (Click)
 *   b (Wheel)
 *     b1 (Strong)
 *   c (Tab)
 *
 * Created in this order, so children() lists them so too.
 */
struct Tree
{
    Tree()
    {
        root.setObjectName(QStringLiteral("root"));
        root.setFocusPolicy(Qt::StrongFocus);
        a = makeWidget("a", Qt::NoFocus, &root);
        new QVBoxLayout(a);
        new QTimer(a);
        a1 = makeWidget("a1", Qt::TabFocus, a);
        a->layout()->addWidget(a1);
        a2 = makeWidget("a2", Qt::ClickFocus, a);
        a->layout()->addWidget(a2);
        b = makeWidget("b", Qt::WheelFocus, &root);
        b1 = makeWidget("b1", Qt::StrongFocus, b);
        c = makeWidget("c", Qt::TabFocus, &root);
        root.resize(200, 200);
    }

    QWidget root;
    QWidget* a;
    QWidget* a1;
    QWidget* a2;
    QWidget* b;
    QWidget* b1;
    QWidget* c;
};

} // namespace

class TestAccessibleList : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void cleanup();

    void filterDefaultsListEverything();
    void filterKeepsWhatItIsGiven();

    void focusableWidgetsInCreationOrder();
    void excludedWidgetKeepsItsChildren();
    void hiddenSubtreeIsSkipped();
    void hiddenOrNullRootGivesNothing();
    void widgetsAddedLaterComeLast();

    void levelIsComparedAsNumber_data();
    void levelIsComparedAsNumber();
    void defaultFilterListsNoFocusWidgetsToo();
    void filterExclusionKeepsChildren();

    void adjustFocusPolicySetsEveryWidget();
};

void TestAccessibleList::cleanup()
{
    QCOMPARE(TestEnvironment::visibleTopLevels(), QStringList());
}

void TestAccessibleList::filterDefaultsListEverything()
{
    AccessibleFilter filter;
    QVERIFY(filter.filterWidgets().isEmpty());
    QCOMPARE(filter.focusLevel(), Qt::NoFocus);
}

void TestAccessibleList::filterKeepsWhatItIsGiven()
{
    QWidget one;
    QWidget two;
    AccessibleFilter filter({&one}, Qt::ClickFocus);
    QCOMPARE(filter.filterWidgets(), QList<QWidget*>({&one}));
    QCOMPARE(filter.focusLevel(), Qt::ClickFocus);

    // The list is handed out by reference: callers may extend it in place.
    filter.filterWidgets().append(&two);
    QCOMPARE(filter.filterWidgets(), QList<QWidget*>({&one, &two}));

    filter.setFilterWidgets({&two});
    QCOMPARE(filter.filterWidgets(), QList<QWidget*>({&two}));
    filter.setFocusLevel(Qt::StrongFocus);
    QCOMPARE(filter.focusLevel(), Qt::StrongFocus);

    // A copy is independent of the original.
    AccessibleFilter copy = filter;
    copy.filterWidgets().clear();
    QCOMPARE(filter.filterWidgets().size(), 1);
}

void TestAccessibleList::focusableWidgetsInCreationOrder()
{
    Tree tree;
    tree.root.show();
    QVERIFY(QTest::qWaitForWindowExposed(&tree.root));

    QCOMPARE(namesOf(accessibleList(&tree.root, QList<QWidget*>())),
             QStringList({"root", "a1", "a2", "b", "b1", "c"}));
    // A sub-tree lists from its own root.
    QCOMPARE(namesOf(accessibleList(tree.b, QList<QWidget*>())), QStringList({"b", "b1"}));
}

void TestAccessibleList::excludedWidgetKeepsItsChildren()
{
    Tree tree;
    tree.root.show();
    QVERIFY(QTest::qWaitForWindowExposed(&tree.root));

    QCOMPARE(namesOf(accessibleList(&tree.root, QList<QWidget*>({&tree.root, tree.b}))),
             QStringList({"a1", "a2", "b1", "c"}));
    // Widgets of another tree in the list change nothing.
    QWidget stranger;
    QCOMPARE(namesOf(accessibleList(&tree.root, QList<QWidget*>({&stranger}))),
             QStringList({"root", "a1", "a2", "b", "b1", "c"}));
}

void TestAccessibleList::hiddenSubtreeIsSkipped()
{
    Tree tree;
    tree.a->hide();
    tree.b1->hide();
    tree.root.show();
    QVERIFY(QTest::qWaitForWindowExposed(&tree.root));

    QCOMPARE(namesOf(accessibleList(&tree.root, QList<QWidget*>())), QStringList({"root", "b", "c"}));
    QCOMPARE(namesOf(accessibleList(&tree.root, AccessibleFilter())), QStringList({"root", "b", "c"}));

    tree.a->show();
    QCOMPARE(namesOf(accessibleList(&tree.root, QList<QWidget*>())),
             QStringList({"root", "a1", "a2", "b", "c"}));
}

void TestAccessibleList::hiddenOrNullRootGivesNothing()
{
    Tree tree; // never shown: nothing in it is visible
    QVERIFY(accessibleList(&tree.root, QList<QWidget*>()).isEmpty());
    QVERIFY(accessibleList(&tree.root, AccessibleFilter()).isEmpty());
    QVERIFY(accessibleList(nullptr, QList<QWidget*>()).isEmpty());
    QVERIFY(accessibleList(nullptr, AccessibleFilter({}, Qt::TabFocus)).isEmpty());
}

void TestAccessibleList::widgetsAddedLaterComeLast()
{
    QWidget root;
    root.setObjectName(QStringLiteral("root"));
    auto* layout = new QVBoxLayout(&root);
    auto* second = new QLineEdit(&root);
    second->setObjectName(QStringLiteral("second"));
    auto* first = new QPushButton(QStringLiteral("First"), &root);
    first->setObjectName(QStringLiteral("first"));
    // Layout order is not the order that counts: creation order is.
    layout->addWidget(first);
    layout->addWidget(second);
    root.show();
    QVERIFY(QTest::qWaitForWindowExposed(&root));

    QCOMPARE(namesOf(accessibleList(&root, QList<QWidget*>())), QStringList({"second", "first"}));

    auto* third = new QPushButton(QStringLiteral("Third"), &root);
    third->setObjectName(QStringLiteral("third"));
    layout->addWidget(third);
    third->show();
    QCOMPARE(namesOf(accessibleList(&root, QList<QWidget*>())), QStringList({"second", "first", "third"}));
}

void TestAccessibleList::levelIsComparedAsNumber_data()
{
    QTest::addColumn<int>("level");
    QTest::addColumn<QStringList>("expected");

    QTest::newRow("no focus: every visible widget")
        << int(Qt::NoFocus) << QStringList({"root", "a", "a1", "a2", "b", "b1", "c"});
    QTest::newRow("tab: every focusable widget")
        << int(Qt::TabFocus) << QStringList({"root", "a1", "a2", "b", "b1", "c"});
    QTest::newRow("click: tab-only widgets left out")
        << int(Qt::ClickFocus) << QStringList({"root", "a2", "b", "b1"});
    QTest::newRow("strong: strong and wheel only")
        << int(Qt::StrongFocus) << QStringList({"root", "b", "b1"});
    QTest::newRow("wheel: wheel only") << int(Qt::WheelFocus) << QStringList({"b"});
}

void TestAccessibleList::levelIsComparedAsNumber()
{
    QFETCH(int, level);
    QFETCH(QStringList, expected);

    Tree tree;
    tree.root.show();
    QVERIFY(QTest::qWaitForWindowExposed(&tree.root));

    const AccessibleFilter filter({}, Qt::FocusPolicy(level));
    QCOMPARE(namesOf(accessibleList(&tree.root, filter)), expected);
}

void TestAccessibleList::defaultFilterListsNoFocusWidgetsToo()
{
    QWidget root;
    root.setObjectName(QStringLiteral("root"));
    auto* label = makeWidget("plain", Qt::NoFocus, &root);
    Q_UNUSED(label)
    root.show();
    QVERIFY(QTest::qWaitForWindowExposed(&root));

    QCOMPARE(namesOf(accessibleList(&root, AccessibleFilter())), QStringList({"root", "plain"}));
    // The list form never lists NoFocus widgets.
    QVERIFY(accessibleList(&root, QList<QWidget*>()).isEmpty());
}

void TestAccessibleList::filterExclusionKeepsChildren()
{
    Tree tree;
    tree.root.show();
    QVERIFY(QTest::qWaitForWindowExposed(&tree.root));

    const AccessibleFilter filter({tree.b, tree.a2}, Qt::TabFocus);
    QCOMPARE(namesOf(accessibleList(&tree.root, filter)), QStringList({"root", "a1", "b1", "c"}));
    // The children of a widget whose policy is too low are still visited.
    const AccessibleFilter strong({}, Qt::StrongFocus);
    tree.b->setFocusPolicy(Qt::TabFocus);
    QCOMPARE(namesOf(accessibleList(&tree.root, strong)), QStringList({"root", "b1"}));
}

void TestAccessibleList::adjustFocusPolicySetsEveryWidget()
{
    Tree tree;
    adjustFocusPolicy(Qt::ClickFocus, {tree.a, tree.a1, tree.c});
    QCOMPARE(tree.a->focusPolicy(), Qt::ClickFocus);
    QCOMPARE(tree.a1->focusPolicy(), Qt::ClickFocus);
    QCOMPARE(tree.c->focusPolicy(), Qt::ClickFocus);
    // Widgets not in the list keep theirs.
    QCOMPARE(tree.b->focusPolicy(), Qt::WheelFocus);
    QCOMPARE(tree.a2->focusPolicy(), Qt::ClickFocus);
    QCOMPARE(tree.root.focusPolicy(), Qt::StrongFocus);

    adjustFocusPolicy(Qt::NoFocus, {tree.b, tree.b1});
    tree.root.show();
    QVERIFY(QTest::qWaitForWindowExposed(&tree.root));
    QCOMPARE(namesOf(accessibleList(&tree.root, QList<QWidget*>())), QStringList({"root", "a", "a1", "a2", "c"}));

    // An empty list is fine.
    adjustFocusPolicy(Qt::TabFocus, {});
}

ORVACAT_TEST_MAIN(TestAccessibleList)
#include "tst_accessiblelist.moc"
