// Focus lists of widget trees and the bulk focus-policy setter.

#include "testmain.h"
#include "testenvironment.h"

#include <orvacat/orvacat.h>

#include <QTimer>
#include <QVBoxLayout>

namespace {

QString names(const QList<QWidget*>& widgets)
{
    QStringList names;
    for (const QWidget* widget : widgets)
        names << widget->objectName();
    return names.join(QLatin1Char(' '));
}

QWidget* make(const char* name, Qt::FocusPolicy policy, QWidget* parent)
{
    auto* widget = new QWidget(parent);
    widget->setObjectName(QString::fromLatin1(name));
    widget->setFocusPolicy(policy);
    return widget;
}

} // namespace

class TestAccessibleList : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { TestEnvironment::installDefaultTheme(); }
    void cleanup() { QCOMPARE(TestEnvironment::visibleTopLevels(), QStringList()); }
    void listsTheVisibleTreeInCreationOrder();
    void toolkitControlsAreOneStopEach();
};

void TestAccessibleList::listsTheVisibleTreeInCreationOrder()
{
    QWidget root;
    root.setObjectName(QStringLiteral("root"));
    root.setFocusPolicy(Qt::StrongFocus);
    QWidget* a = make("a", Qt::NoFocus, &root);
    new QTimer(a); // not a widget: never listed
    QWidget* a1 = make("a1", Qt::TabFocus, a);
    QWidget* a2 = make("a2", Qt::ClickFocus, a);
    // Laid out the other way round: creation order is the one that counts.
    auto* layout = new QVBoxLayout(a);
    layout->addWidget(a2);
    layout->addWidget(a1);
    QWidget* b = make("b", Qt::WheelFocus, &root);
    QWidget* b1 = make("b1", Qt::StrongFocus, b);
    make("c", Qt::TabFocus, &root);

    // Nothing of a tree that is not shown, nor of no tree.
    QCOMPARE(names(accessibleList(&root, QList<QWidget*>())), QString());
    QCOMPARE(names(accessibleList(nullptr, AccessibleFilter())), QString());
    root.show();
    QVERIFY(QTest::qWaitForWindowExposed(&root));

    QCOMPARE(names(accessibleList(&root, QList<QWidget*>())), QStringLiteral("root a1 a2 b b1 c"));
    QCOMPARE(names(accessibleList(b, QList<QWidget*>())), QStringLiteral("b b1"));
    // An excluded widget goes, its children stay.
    QCOMPARE(names(accessibleList(&root, {&root, b})), QStringLiteral("a1 a2 b1 c"));

    // A level admits the policies not below it as numbers: StrongFocus (11)
    // is above ClickFocus (2) although it shares no bit with TabFocus (1).
    QCOMPARE(names(accessibleList(&root, AccessibleFilter())), QStringLiteral("root a a1 a2 b b1 c"));
    QCOMPARE(names(accessibleList(&root, AccessibleFilter({}, Qt::ClickFocus))), QStringLiteral("root a2 b b1"));
    QCOMPARE(names(accessibleList(&root, AccessibleFilter({}, Qt::StrongFocus))), QStringLiteral("root b b1"));
    QCOMPARE(names(accessibleList(&root, AccessibleFilter({b, a2}, Qt::TabFocus))), QStringLiteral("root a1 b1 c"));
    // Below the level, the children are still visited.
    adjustFocusPolicy(Qt::NoFocus, {b, a2});
    QCOMPARE(names(accessibleList(&root, AccessibleFilter({}, Qt::StrongFocus))), QStringLiteral("root b1"));
    QCOMPARE(names(accessibleList(&root, QList<QWidget*>())), QStringLiteral("root a1 b1 c"));

    // A hidden sub-tree is left out whole, focus policies or not.
    a->hide();
    b1->hide();
    QCOMPARE(names(accessibleList(&root, QList<QWidget*>())), QStringLiteral("root c"));
    QCOMPARE(names(accessibleList(&root, AccessibleFilter())), QStringLiteral("root b c"));
}

void TestAccessibleList::toolkitControlsAreOneStopEach()
{
    // What a sheet's focus chain gets from the toolkit's controls: one stop
    // for each thing a keyboard user acts on, and nothing else.
    QWidget root;
    auto* layout = new QVBoxLayout(&root);
    auto* edit = new OrvaLineEdit;
    edit->getPreLabel()->setText(QStringLiteral("Port"));
    auto* link = new LinkLabel(QStringLiteral("Help"));
    QPixmap picture(16, 16);
    picture.fill(Qt::darkBlue);
    auto* icon = new OrvaIconButton(picture);
    for (QWidget* widget : {static_cast<QWidget*>(new OrvaLabel(QStringLiteral("Note"))), static_cast<QWidget*>(edit),
                            static_cast<QWidget*>(link), static_cast<QWidget*>(icon)})
        layout->addWidget(widget);
    root.show();
    QVERIFY(QTest::qWaitForWindowExposed(&root));

    // The field, not the widget around it: that one hands its focus on, and
    // listing both would make Backtab land on the field again and again.
    const QList<QWidget*> stops = accessibleList(&root, AccessibleFilter({}, Qt::TabFocus));
    QCOMPARE(stops, (QList<QWidget*>{edit->getLineEdit(), link, icon}));
    edit->setFocus();
    QCOMPARE(root.focusWidget(), edit->getLineEdit());
}

ORVACAT_TEST_MAIN(TestAccessibleList)
#include "tst_accessiblelist.moc"
