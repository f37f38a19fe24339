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

    /** The widget of the tree named @p name, or @p stranger. */
    QWidget* named(const QString& name, QWidget* stranger)
    {
        if (name == QLatin1String("root"))
            return &root;
        QWidget* found = root.findChild<QWidget*>(name);
        return found ? found : stranger;
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

    void listsTheTree_data();
    void listsTheTree();
    void hiddenOrNullRootGivesNothing();
    void widgetsAddedLaterComeLast();
};

void TestAccessibleList::cleanup()
{
    QCOMPARE(TestEnvironment::visibleTopLevels(), QStringList());
}

void TestAccessibleList::listsTheTree_data()
{
    // Listed from "start" with "excluded" left out, by the list overload
    // (level -1) or through a filter at "level" (compared as a number), after
    // hiding "hidden" and giving the widgets of "adjust" ("a,b=policy") a new
    // focus policy. "stranger" is a widget of another tree.
    QTest::addColumn<QString>("start");
    QTest::addColumn<QStringList>("excluded");
    QTest::addColumn<int>("level");
    QTest::addColumn<QStringList>("hidden");
    QTest::addColumn<QString>("adjust");
    QTest::addColumn<QStringList>("expected");
    const QStringList all{"root", "a", "a1", "a2", "b", "b1", "c"};
    const QStringList focusable{"root", "a1", "a2", "b", "b1", "c"};

    QTest::newRow("creation order") << "root" << QStringList() << -1 << QStringList() << "" << focusable;
    QTest::newRow("sub-tree from its own root") << "b" << QStringList() << -1 << QStringList() << "" << QStringList{"b", "b1"};
    QTest::newRow("excluded keep their children")
        << "root" << QStringList{"root", "b"} << -1 << QStringList() << "" << QStringList{"a1", "a2", "b1", "c"};
    QTest::newRow("another tree's widget excluded changes nothing")
        << "root" << QStringList{"stranger"} << -1 << QStringList() << "" << focusable;
    QTest::newRow("hidden sub-trees skipped")
        << "root" << QStringList() << -1 << QStringList{"a", "b1"} << "" << QStringList{"root", "b", "c"};
    QTest::newRow("hidden sub-trees skipped by the filter too")
        << "root" << QStringList() << 0 << QStringList{"a", "b1"} << "" << QStringList{"root", "b", "c"};
    QTest::newRow("no focus: every visible widget") << "root" << QStringList() << 0 << QStringList() << "" << all;
    QTest::newRow("tab: every focusable widget") << "root" << QStringList() << 1 << QStringList() << "" << focusable;
    QTest::newRow("click: tab-only widgets left out")
        << "root" << QStringList() << 2 << QStringList() << "" << QStringList{"root", "a2", "b", "b1"};
    QTest::newRow("strong: strong and wheel only")
        << "root" << QStringList() << 11 << QStringList() << "" << QStringList{"root", "b", "b1"};
    QTest::newRow("wheel: wheel only") << "root" << QStringList() << 15 << QStringList() << "" << QStringList{"b"};
    QTest::newRow("filter exclusion keeps children")
        << "root" << QStringList{"b", "a2"} << 1 << QStringList() << "" << QStringList{"root", "a1", "b1", "c"};
    QTest::newRow("children of a too low policy still visited")
        << "root" << QStringList() << 11 << QStringList() << "b=1" << QStringList{"root", "b1"};
    QTest::newRow("adjusted policies only for the listed widgets")
        << "root" << QStringList() << 2 << QStringList() << "a,c=2" << QStringList{"root", "a", "a2", "b", "b1", "c"};
    QTest::newRow("adjusted to no focus") << "root" << QStringList() << -1 << QStringList() << "b,b1=0"
                                          << QStringList{"root", "a1", "a2", "c"};
}

void TestAccessibleList::listsTheTree()
{
    QFETCH(QString, start);
    QFETCH(QStringList, excluded);
    QFETCH(int, level);
    QFETCH(QStringList, hidden);
    QFETCH(QString, adjust);
    QFETCH(QStringList, expected);
    Tree tree;
    QWidget stranger;
    QList<QWidget*> exclude;
    for (const QString& name : qAsConst(excluded))
        exclude << tree.named(name, &stranger);
    for (const QString& name : qAsConst(hidden))
        tree.named(name, nullptr)->hide();
    if (!adjust.isEmpty()) {
        QList<QWidget*> widgets;
        for (const QString& name : adjust.section(QLatin1Char('='), 0, 0).split(QLatin1Char(',')))
            widgets << tree.named(name, nullptr);
        adjustFocusPolicy(Qt::FocusPolicy(adjust.section(QLatin1Char('='), 1).toInt()), widgets);
    }
    tree.root.show();
    QVERIFY(QTest::qWaitForWindowExposed(&tree.root));

    QWidget* root = tree.named(start, nullptr);
    const QList<QWidget*> listed = level < 0 ? accessibleList(root, exclude)
                                             : accessibleList(root, AccessibleFilter(exclude, Qt::FocusPolicy(level)));
    QCOMPARE(namesOf(listed), expected);
}

void TestAccessibleList::hiddenOrNullRootGivesNothing()
{
    Tree tree; // never shown: nothing in it is visible
    QVERIFY(accessibleList(&tree.root, QList<QWidget*>()).isEmpty());
    QVERIFY(accessibleList(&tree.root, AccessibleFilter()).isEmpty());
    QVERIFY(accessibleList(nullptr, QList<QWidget*>()).isEmpty());
    QVERIFY(accessibleList(nullptr, AccessibleFilter({}, Qt::TabFocus)).isEmpty());
    adjustFocusPolicy(Qt::TabFocus, {});
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

ORVACAT_TEST_MAIN(TestAccessibleList)
#include "tst_accessiblelist.moc"
